#pragma once

#include "base/animation/AnimationLayer.h"
#include "model/EditableMotionCurve.h"
#include "model/Export.h"

#include <QObject>
#include <QString>

namespace ZT {

class EditableAnimation;

/// One layer of an editable animation: an actuator's name, a mute flag and a curve, each change of which is
/// announced.
///
/// The layer owns its curve, which is always an EditableMotionCurve. The animation owns the layer, or whoever
/// created it; a layer never has a QObject parent.
///
/// Signals that come from the curve come from within its edit, which goes on when the slots are done: a slot
/// may read everything and edit as EditableMotionCurve says, but must neither destroy the layer nor have its
/// curve replaced. What it throws reaches the caller of the edit, and slots that are connected behind it do
/// not hear the signal.
class ZT_MODEL_EXPORT EditableAnimationLayer : public QObject, private VQ::Animation::AnimationLayer {
    Q_OBJECT

public:
    /// A layer without name that holds an empty curve. Emits nothing.
    EditableAnimationLayer();

    /// A copy of @p layer whose curve is wrapped. Emits nothing. O(keys).
    explicit EditableAnimationLayer(const VQ::Animation::AnimationLayer& layer);

    /// Deletes the curve with its keys.
    ~EditableAnimationLayer() override;

    /// The animation that holds the layer, or null.
    EditableAnimation* getParentAnimation() const noexcept { return _parentAnimation; }

    /// What the layer animates. Bytes of the record that are not UTF-8 read as replacement characters.
    QString getActuatorName() const;
    /// Whether the layer is silent, for whoever plays it: the model does not ask.
    bool isMute() const noexcept { return mute; }

    /// A copy of the plain record, with plain keys. O(keys).
    VQ::Animation::AnimationLayer baseAnimationLayer() const;

    /// The layer's tree; each key keeps its smooth and symmetrical flags.
    using VQ::Animation::AnimationLayer::serialize;
    /// Replaces name, mute flag and curve by those of a tree; the old curve and its keys are destroyed. Emits
    /// curveChanged() for each automatic handle that is recomputed in the new curve, while the old one is
    /// still there, and nothing for name and mute flag. On false the layer is unchanged.
    using VQ::Animation::AnimationLayer::deserialize;
    using VQ::Animation::AnimationLayer::problemIn;

    /// Owned by the layer. Never null: a record without a curve was given an empty one.
    EditableMotionCurve* getCurve() const noexcept;

    /// Views the record of an editable layer as that layer. Nothing is checked.
    ///@{
    static EditableAnimationLayer* _toEditable(VQ::Animation::AnimationLayer& layer) noexcept;
    static const EditableAnimationLayer* _toEditable(const VQ::Animation::AnimationLayer& layer) noexcept;
    ///@}

    /// A new empty curve connected to this layer but not installed in it; belongs to the caller.
    VQ::Animation::MotionCurve* createCurve() const override;

Q_SIGNALS:
    /// setActuatorName() gave the layer the name @p pName.
    void nameChanged(const QString& pName);
    /// The curve was replaced, or keys or settings of it changed: once for each such signal of the curve.
    void curveChanged();
    /// setMute() gave the layer the flag @p pMute. The animation does not pass it on.
    void muteChanged(bool pMute);
    /// As the curve announced it.
    void greaterIndexChanged(unsigned int newGreater, unsigned int previousGreater);

public Q_SLOTS:
    /// Emits nameChanged() if the name is another one.
    void setActuatorName(const QString& pActuatorName);
    /// Takes ownership of @p pCurve, deletes the old curve with its keys and emits curveChanged(). Does
    /// nothing for null and for the curve that the layer holds.
    void setCurve(EditableMotionCurve* pCurve);
    /// Emits muteChanged() if the flag is another one.
    void setMute(bool pMute);

private:
    friend class EditableAnimation; // It holds the layer by its base record.

    void _wrapCurve();
    void _connectCurve(EditableMotionCurve* editableCurve) const;
    void _disconnectCurve(EditableMotionCurve* editableCurve) const;
    void _setParentAnimation(EditableAnimation* animation) noexcept { _parentAnimation = animation; }

    EditableAnimation* _parentAnimation = nullptr;
};

} // namespace ZT
