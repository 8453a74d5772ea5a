#include "tests/support/SignalRecorder.h"

#include <QPointer>
#include <QtTest>

#include <memory>
#include <vector>

using ZT::EditableAnimation;
using ZT::EditableAnimationLayer;
using ZT::EditableMotionCurveKey;

namespace {

VQ::Animation::Animation plainAnimation(const std::vector<std::pair<std::string, unsigned int>>& layers) {
    VQ::Animation::Animation animation;
    for (const auto& [name, lastFrame] : layers) {
        auto* const layer = new VQ::Animation::AnimationLayer;
        layer->actuatorName = name;
        layer->curve->insert(lastFrame, new VQ::Math::Interpolation::Key);
        animation.push_back(layer);
    }
    return animation;
}

void report(EditableAnimation& animation, unsigned int newGreater, unsigned int previousGreater) {
    QVERIFY(QMetaObject::invokeMethod(&animation, "_onGreaterCurveIndexChanged",
                                      Q_ARG(unsigned int, newGreater), Q_ARG(unsigned int, previousGreater)));
}

} // namespace

class EditableAnimationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aWrappedAnimationHoldsConnectedLayersInOrder() {
        EditableAnimation animation(plainAnimation({{"a", 10}, {"b", 0}, {"c", 25}}));
        QCOMPARE(animation.size(), std::size_t{3});
        QStringList names;
        for (EditableAnimationLayer* const layer : animation) {
            QCOMPARE(layer->getParentAnimation(), &animation);
            QCOMPARE(layer->getCurve()->getParentLayer(), layer);
            names.append(layer->getActuatorName());
        }
        QCOMPARE(names.join(' '), QString("a b c"));
        QCOMPARE(animation.getGreaterIndex(), 25U);
        QVERIFY(animation.getMarkers() != nullptr);
        QCOMPARE(animation.getMarkers()->animation(), &animation);
    }

    void withoutLayersTheGreatestFrameIsZero() { QCOMPARE(EditableAnimation().getGreaterIndex(), 0U); }

    void aPositionPastTheLastLayerIsNull() {
        EditableAnimation animation(plainAnimation({{"a", 1}}));
        QVERIFY(animation[0] != nullptr);
        QCOMPARE(animation[1], nullptr);
        QCOMPARE(std::as_const(animation)[1], nullptr);
        QCOMPARE(animation[4294967295UL], nullptr);
    }

    void layersAreFoundByNameTheFirstOfEqualOnes() {
        EditableAnimation animation(plainAnimation({{"a", 1}, {"b", 2}, {"b", 3}}));
        QCOMPARE(animation.getLayer("b"), animation[1]);
        QCOMPARE(animation.getLayer("none"), nullptr);
    }

    void renamingIsAnnouncedOnceAndMutingNotAtAll() {
        EditableAnimation animation(plainAnimation({{"a", 1}}));
        SignalRecorder recorder;
        recorder.watch(animation);
        animation[0]->setActuatorName("b");
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
        animation[0]->setMute(true);
        QCOMPARE(recorder.take(), QString());
    }

    void aKeysChangeTravelsUpInOrder() {
        EditableAnimation animation(plainAnimation({{"a", 10}}));
        SignalRecorder recorder;
        ZT::EditableMotionCurve& curve = *animation[0]->getCurve();
        recorder.watch(animation);
        recorder.watch(*animation[0]);
        recorder.watch(curve);
        recorder.watch(*curve.getKey(10), "a");
        curve.translateKey(curve.getKey(10), 12);
        // The model connected itself first: what it re-emits comes before what the recorder hears of the same
        // signal.
        QCOMPARE(
            recorder.take(),
            QString(
                "animation.layersChanged(), layer.curveChanged(), curve.keysChanged(), a.indexChanged(12), "
                "animation.greaterIndexChanged(), layer.greaterIndexChanged(12, 10), "
                "curve.greaterIndexChanged(12, 10)"));
    }

    void changesOfTheListEmitNothing() {
        EditableAnimation animation(plainAnimation({{"a", 10}}));
        SignalRecorder recorder;
        recorder.watch(animation);
        auto* const last = new EditableAnimationLayer;
        auto* const first = new EditableAnimationLayer;
        first->getCurve()->insert(99, new EditableMotionCurveKey);
        animation.push_back(last);
        const auto inserted = animation.insert(animation.begin(), first);
        QCOMPARE(*inserted, first);
        QCOMPARE(animation[0], first);
        QCOMPARE(animation[2], last);
        QCOMPARE(first->getParentAnimation(), &animation);
        QCOMPARE(last->getParentAnimation(), &animation);
        const QPointer<EditableAnimationLayer> erased = animation[1];
        const auto behind = animation.erase(++animation.begin());
        QVERIFY(erased.isNull());
        QCOMPARE(*behind, last);
        const QPointer<EditableAnimationLayer> cleared = last;
        animation.clear();
        QVERIFY(cleared.isNull());
        QCOMPARE(recorder.take(), QString());
    }

    void aRaisedGreatestFrameIsAnnounced() {
        EditableAnimation animation;
        SignalRecorder recorder;
        recorder.watch(animation);
        report(animation, 25, 0);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        report(animation, 30, 20);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        report(animation, 30, 31);
        QCOMPARE(recorder.take(), QString());
        report(animation, 10, 15);
        QCOMPARE(recorder.take(), QString());
    }

    void aLoweredMaximumIsMeasuredAgain() {
        EditableAnimation animation(plainAnimation({{"a", 10}, {"b", 20}}));
        SignalRecorder recorder;
        recorder.watch(animation);
        report(animation, 30, 20);
        recorder.take();
        report(animation, 10, 30);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        // The announced maximum is 20 now: a report of what is there already announces nothing.
        report(animation, 20, 10);
        QCOMPARE(recorder.take(), QString());
    }

    void aLoweredMaximumThatAnotherLayerHoldsIsNotAnnounced() {
        EditableAnimation animation(plainAnimation({{"a", 10}, {"b", 30}}));
        report(animation, 30, 20);
        SignalRecorder recorder;
        recorder.watch(animation);
        report(animation, 10, 30);
        QCOMPARE(recorder.take(), QString());
    }

    void theFirstReportAfterConstructionIsComparedWithZero() {
        EditableAnimation animation(plainAnimation({{"a", 50}, {"b", 5}}));
        SignalRecorder recorder;
        recorder.watch(animation);
        animation[1]->getCurve()->insert(7, new EditableMotionCurveKey);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        QCOMPARE(animation.getGreaterIndex(), 50U);
    }

    void aCreatedLayerIsConnectedButNotListed() {
        EditableAnimation animation;
        SignalRecorder recorder;
        recorder.watch(animation);
        const std::unique_ptr<VQ::Animation::AnimationLayer> created(animation.createLayer());
        QCOMPARE(animation.size(), std::size_t{0});
        EditableAnimationLayer* const layer = EditableAnimationLayer::_toEditable(*created);
        QCOMPARE(layer->getParentAnimation(), &animation);
        layer->setActuatorName("new");
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
    }

    void theBaseCopyIsIndependent() {
        EditableAnimation animation(plainAnimation({{"a", 10}}));
        VQ::Animation::Animation copy = animation.baseAnimation();
        copy.begin()->actuatorName = "b";
        copy.begin()->curve->clear();
        QCOMPARE(animation[0]->getActuatorName(), QString("a"));
        QCOMPARE(animation.getGreaterIndex(), 10U);
    }

    void layersAndMarkersDieWithTheAnimation() {
        QPointer<EditableAnimationLayer> layer;
        QPointer<ZT::AnimationMarkers> markers;
        {
            QObject owner;
            auto* const animation = new EditableAnimation(plainAnimation({{"a", 10}}), &owner);
            layer = (*animation)[0];
            markers = animation->getMarkers();
        }
        QVERIFY(layer.isNull());
        QVERIFY(markers.isNull());
    }
};

QTEST_GUILESS_MAIN(EditableAnimationTest)
#include "EditableAnimationTest.moc"
