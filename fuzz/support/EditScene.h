#pragma once

#include "fuzz/support/Bytes.h"
#include "model/EditableAnimation.h"

#include <QPointer>
#include <QString>

#include <memory>
#include <vector>

/// A small editable animation that is built from bytes, with all keys that were ever made for it.
class EditScene {
public:
    using Curve = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;
    using Keys = std::vector<Key*>;

    explicit EditScene(Bytes& bytes);
    EditScene(const EditScene&) = delete;
    EditScene& operator=(const EditScene&) = delete;
    /// Destroys the animation and the keys that nobody else owns. The history must be gone by then, since it
    /// owns keys. Requires that each key had exactly one owner.
    ~EditScene();

    ZT::EditableAnimation& animation() const noexcept { return *_animation; }
    ZT::AnimationMarkers& markers() const { return *_animation->getMarkers(); }

    // Choices from the bytes.
    Curve& anyCurve();
    Key* newKey();
    Keys someKeys();
    unsigned int anyFrame();
    float anyNumber();
    VQ::Math::Interpolation::InterpolationType anyType();
    ZT::TangentSide anySide();
    bool yesOrNo() { return _bytes.yesOrNo(); }
    unsigned int below(unsigned int count) { return _bytes.below(count); }
    bool isAtEnd() const { return _bytes.isAtEnd(); }

    /// The key belongs to nobody but this scene, unless a curve or a command has it when the scene ends.
    void own(Key* key) { _released.emplace_back(key); }

    /// What must hold after each operation: frames ascend, keys know their curve and frame, neighbours and
    /// the greatest frame are right, no batch is left open.
    void requireSound() const;

private:
    void _requireSound(const Curve& curve) const;

    Bytes& _bytes;
    std::unique_ptr<ZT::EditableAnimation> _animation;
    std::vector<QPointer<Key>> _keys;
    std::vector<QPointer<Key>> _released;
};
