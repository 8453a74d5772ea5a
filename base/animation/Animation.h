#pragma once

#include "base/Export.h"
#include "base/animation/AnimationLayer.h"
#include "base/animation/SerializationInterface.h"

#include <boost/ptr_container/ptr_vector.hpp>

#include <cstddef>
#include <memory>
#include <string>

/// The plain records of an animation, their trees and files, and what they evaluate to. Needs no Qt.
namespace VQ::Animation {

/// An ordered, owning list of layers.
class VQ_EXPORT Animation : public SerializationInterface {
    using Layers = boost::ptr_vector<AnimationLayer>;

public:
    /// Random access, in list order; *it is an AnimationLayer&. As with a vector, no longer valid when layers
    /// come or go.
    ///@{
    using iterator = Layers::iterator;
    using const_iterator = Layers::const_iterator;
    ///@}

    /// An animation without layers.
    Animation();
    /// A deep copy; the copied layers and their curves are plain.
    Animation(const Animation& other);
    /// Takes the layers over as they are; @p other is empty then.
    Animation(Animation&& other) noexcept;
    /// Takes the layers of @p other, or of its deep copy, over; the old ones are deleted.
    Animation& operator=(Animation other) noexcept;
    /// Deletes the layers.
    virtual ~Animation();

    /// In list order.
    ///@{
    iterator begin();
    iterator end();
    const_iterator begin() const;
    const_iterator end() const;
    ///@}
    /// The number of layers.
    std::size_t size() const noexcept;
    /// Whether there is no layer.
    bool empty() const noexcept;

    /// The first layer in list order that animates @p actuatorName, or end(). O(layers).
    ///@{
    iterator find(const std::string& actuatorName);
    const_iterator find(const std::string& actuatorName) const;
    ///@}

    /// Inserts @p layer before @p position and takes ownership, also when it throws: boost::bad_pointer for
    /// null. Returns the iterator to it.
    iterator insert(iterator position, AnimationLayer* layer);
    /// Appends @p layer and takes ownership, also when it throws: boost::bad_pointer for null.
    void push_back(AnimationLayer* layer);
    /// Removes and deletes the layer; returns the iterator behind it.
    iterator erase(iterator position);
    /// Takes the layer out of the list and gives it to the caller; null at end().
    std::unique_ptr<AnimationLayer> release(iterator position);
    /// Removes and deletes all layers.
    void clear() noexcept;

    /// One element "layer" for each layer, in list order.
    boost::property_tree::ptree serialize() const override;

    /// Replaces the layers by those of @p tree, building each with createLayer(). On false the animation is
    /// unchanged; problemIn() says why.
    bool deserialize(const boost::property_tree::ptree& tree) override;

    /// What is wrong with a tree that deserialize() refuses, and where; empty for a readable one.
    static std::string problemIn(const boost::property_tree::ptree& tree);

    /// A new layer of the kind that this animation holds; belongs to the caller.
    virtual AnimationLayer* createLayer() const;

protected:
    /// Puts @p layer in the place of the one at @p position, which is deleted. Takes ownership.
    void replace(iterator position, AnimationLayer* layer);

private:
    void _read(const boost::property_tree::ptree& tree);

    Layers _layers;
};

} // namespace VQ::Animation
