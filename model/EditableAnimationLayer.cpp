#include "model/EditableAnimationLayer.h"

#include "model/FirstException.h"

#include <utility>

namespace ZT {

EditableAnimationLayer::EditableAnimationLayer() {
    _wrapCurve();
}

EditableAnimationLayer::EditableAnimationLayer(const VQ::Animation::AnimationLayer& layer)
    : AnimationLayer(layer) {
    _wrapCurve();
}

EditableAnimationLayer::~EditableAnimationLayer() = default;

void EditableAnimationLayer::_wrapCurve() {
    // A record without a curve, which only a caller's own hand can make, gets an empty one.
    auto wrapped =
        curve ? std::make_unique<EditableMotionCurve>(*curve) : std::make_unique<EditableMotionCurve>();
    EditableMotionCurve* const editableCurve = wrapped.get();
    curve = std::unique_ptr<VQ::Animation::MotionCurve>(wrapped.release());
    _connectCurve(editableCurve);
}

QString EditableAnimationLayer::getActuatorName() const {
    return QString::fromStdString(actuatorName);
}

VQ::Animation::AnimationLayer EditableAnimationLayer::baseAnimationLayer() const {
    return *this;
}

EditableMotionCurve* EditableAnimationLayer::getCurve() const noexcept {
    return EditableMotionCurve::_toEditable(curve.get());
}

EditableAnimationLayer* EditableAnimationLayer::_toEditable(VQ::Animation::AnimationLayer& layer) noexcept {
    return static_cast<EditableAnimationLayer*>(&layer);
}

const EditableAnimationLayer*
EditableAnimationLayer::_toEditable(const VQ::Animation::AnimationLayer& layer) noexcept {
    return static_cast<const EditableAnimationLayer*>(&layer);
}

VQ::Animation::MotionCurve* EditableAnimationLayer::createCurve() const {
    auto created = std::make_unique<EditableMotionCurve>();
    _connectCurve(created.get());
    return created.release();
}

void EditableAnimationLayer::setActuatorName(const QString& pActuatorName) {
    if (getActuatorName() == pActuatorName) {
        return;
    }
    actuatorName = pActuatorName.toStdString();
    Q_EMIT nameChanged(pActuatorName);
}

void EditableAnimationLayer::setMute(bool pMute) {
    if (mute == pMute) {
        return;
    }
    mute = pMute;
    Q_EMIT muteChanged(pMute);
}

void EditableAnimationLayer::setCurve(EditableMotionCurve* pCurve) {
    if (pCurve == nullptr || pCurve == getCurve()) {
        return;
    }
    if (pCurve->getParentLayer() != this) { // A curve that this layer created is connected already.
        FirstException thrown;
        if (!thrown.guard([&] { _connectCurve(pCurve); })) {
            _disconnectCurve(pCurve); // Memory is out: it stays the caller's.
            thrown.rethrow();
        }
    }
    curve.reset(pCurve);
    Q_EMIT curveChanged();
}

void EditableAnimationLayer::_connectCurve(EditableMotionCurve* editableCurve) const {
    editableCurve->_setParentLayer(const_cast<EditableAnimationLayer*>(this));
    connect(editableCurve, SIGNAL(keysChanged()), this, SIGNAL(curveChanged()));
    connect(editableCurve, SIGNAL(timeUnitChanged()), this, SIGNAL(curveChanged()));
    connect(editableCurve, SIGNAL(valueLimitsChanged(QPair<float, float>)), this, SIGNAL(curveChanged()));
    connect(editableCurve, SIGNAL(maxAbsoluteDerivativeChanged(float)), this, SIGNAL(curveChanged()));
    connect(editableCurve, SIGNAL(greaterIndexChanged(uint, uint)), this,
            SIGNAL(greaterIndexChanged(uint, uint)));
}

void EditableAnimationLayer::_disconnectCurve(EditableMotionCurve* editableCurve) const {
    editableCurve->_setParentLayer(nullptr);
    disconnect(editableCurve, SIGNAL(keysChanged()), this, SIGNAL(curveChanged()));
    disconnect(editableCurve, SIGNAL(timeUnitChanged()), this, SIGNAL(curveChanged()));
    disconnect(editableCurve, SIGNAL(valueLimitsChanged(QPair<float, float>)), this, SIGNAL(curveChanged()));
    disconnect(editableCurve, SIGNAL(maxAbsoluteDerivativeChanged(float)), this, SIGNAL(curveChanged()));
    disconnect(editableCurve, SIGNAL(greaterIndexChanged(uint, uint)), this,
               SIGNAL(greaterIndexChanged(uint, uint)));
}

} // namespace ZT
