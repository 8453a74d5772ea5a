#pragma once

#include "base/Export.h"
#include "base/animation/MotionCurve.h"
#include "base/animation/SerializationInterface.h"

#include <memory>
#include <string>

namespace VQ::Animation {

/// One animated channel: what it moves, how, and whether it is silent.
class VQ_EXPORT AnimationLayer : public SerializationInterface {
public:
    std::unique_ptr<MotionCurve> curve; ///< owned; a curve of a derived class may stand here
    /// The name of what the layer animates, UTF-8. Other bytes are kept as they are, also in trees; only an
    /// XML file is refused with them.
    std::string actuatorName;
    /// Whether the channel is silent, for whoever plays it: evaluation does not ask.
    bool mute = false;

    /// A layer without name that holds an empty curve.
    AnimationLayer();
    /// A deep copy; the copied curve is plain.
    AnimationLayer(const AnimationLayer& other);
    /// Takes name, flag and the curve itself over. @p other is left without a curve.
    AnimationLayer(AnimationLayer&& other) noexcept;
    /// Takes the same of @p other, or of its deep copy; the old curve is deleted.
    AnimationLayer& operator=(AnimationLayer other) noexcept;
    /// Deletes the curve.
    virtual ~AnimationLayer();

    /// The attributes "name" and, where true, "mute", and the element "curve".
    boost::property_tree::ptree serialize() const override;

    /// Replaces name, mute flag and curve by those of @p tree, building the curve with createCurve(). On
    /// false the layer is unchanged; problemIn() says why.
    bool deserialize(const boost::property_tree::ptree& tree) override;

    /// What is wrong with a tree that deserialize() refuses, and where; empty for a readable one.
    static std::string problemIn(const boost::property_tree::ptree& tree);

    /// A new empty curve of the kind that this layer holds; belongs to the caller.
    virtual MotionCurve* createCurve() const;

private:
    void _read(const boost::property_tree::ptree& tree);
};

} // namespace VQ::Animation
