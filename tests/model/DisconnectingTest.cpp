#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurve.h"
#include "tests/support/PrivateMember.h"
#include "tests/support/SignalRecorder.h"

#include <QtTest>

#include <memory>
#include <utility>

struct DisconnectCurve {
    using Function = void (ZT::EditableAnimationLayer::*)(ZT::EditableMotionCurve*) const;
    friend Function find(DisconnectCurve);
};
template struct PrivateMember<DisconnectCurve, &ZT::EditableAnimationLayer::_disconnectCurve>;

struct DisconnectLayer {
    using Function = void (ZT::EditableAnimation::*)(ZT::EditableAnimationLayer*) const;
    friend Function find(DisconnectLayer);
};
template struct PrivateMember<DisconnectLayer, &ZT::EditableAnimation::_disconnectLayer>;

namespace {

using Animation = ZT::EditableAnimation;
using Curve = ZT::EditableMotionCurve;
using Layer = ZT::EditableAnimationLayer;

void emitAll(Curve& curve) {
    Q_EMIT curve.keysChanged();
    Q_EMIT curve.timeUnitChanged();
    Q_EMIT curve.valueLimitsChanged({0.0F, 1.0F});
    Q_EMIT curve.maxAbsoluteDerivativeChanged(2.0F);
    Q_EMIT curve.greaterIndexChanged(7, 3);
}

void emitAll(Layer& layer) {
    Q_EMIT layer.nameChanged("name");
    Q_EMIT layer.curveChanged();
    Q_EMIT layer.greaterIndexChanged(7, 3);
}

} // namespace

class DisconnectingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLayerHearsItsCurveUntilItIsDisconnected() {
        Layer layer;
        Curve& curve = *layer.getCurve();
        SignalRecorder recorder;
        recorder.watch(layer);
        emitAll(curve);
        QCOMPARE(recorder.take(), QString("layer.curveChanged(), layer.curveChanged(), layer.curveChanged(), "
                                          "layer.curveChanged(), layer.greaterIndexChanged(7, 3)"));
        (layer.*find(DisconnectCurve()))(&curve);
        emitAll(curve);
        QCOMPARE(recorder.take(), QString());
    }

    void aDisconnectedCurveHasNoLayer() {
        Layer layer;
        QCOMPARE(layer.getCurve()->getParentLayer(), &layer);
        (layer.*find(DisconnectCurve()))(layer.getCurve());
        QVERIFY(layer.getCurve()->getParentLayer() == nullptr);
    }

    void disconnectingACurveLeavesTheConnectionsOfOthers() {
        Layer layer;
        Layer other;
        SignalRecorder recorder;
        recorder.watch(*layer.getCurve());
        recorder.watch(other, "other");
        (layer.*find(DisconnectCurve()))(layer.getCurve());
        Q_EMIT layer.getCurve()->keysChanged();
        Q_EMIT other.getCurve()->keysChanged();
        QCOMPARE(recorder.take(), QString("curve.keysChanged(), other.curveChanged()"));
    }

    void anAnimationHearsItsLayerUntilItIsDisconnected() {
        Animation animation;
        auto* const layer = new Layer;
        animation.push_back(layer);
        SignalRecorder recorder;
        recorder.watch(animation);
        emitAll(*layer);
        QCOMPARE(recorder.take(), QString("animation.layersChanged(), animation.layersChanged(), "
                                          "animation.greaterIndexChanged()"));
        (animation.*find(DisconnectLayer()))(layer);
        emitAll(*layer);
        Q_EMIT layer->greaterIndexChanged(9, 7);
        QCOMPARE(recorder.take(), QString());
    }

    void aDisconnectedLayerHasNoAnimation() {
        Animation animation;
        auto* const layer = new Layer;
        animation.push_back(layer);
        QCOMPARE(layer->getParentAnimation(), &animation);
        (animation.*find(DisconnectLayer()))(layer);
        QVERIFY(layer->getParentAnimation() == nullptr);
    }
};

QTEST_APPLESS_MAIN(DisconnectingTest)
#include "DisconnectingTest.moc"
