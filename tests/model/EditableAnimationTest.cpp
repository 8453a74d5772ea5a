#include "PlainAnimation.h"
#include "tests/support/SignalRecorder.h"

#include <QPointer>
#include <QtTest>

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

using ZT::EditableAnimation;
using ZT::EditableAnimationLayer;
using ZT::EditableMotionCurveKey;

static_assert(std::is_same_v<decltype(*std::declval<EditableAnimation&>().begin()), EditableAnimationLayer*>);
static_assert(std::is_same_v<decltype(*std::declval<const EditableAnimation&>().begin()),
                             const EditableAnimationLayer*>);

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

    void layersAreFoundByTheirPosition() {
        EditableAnimation animation(plainAnimation({{"a", 1}, {"b", 2}, {"c", 3}}));
        const EditableAnimation& constant = animation;
        unsigned long position = 0;
        for (const QString name : {"a", "b", "c"}) {
            QCOMPARE(animation[position]->getActuatorName(), name);
            QCOMPARE(constant[position]->getActuatorName(), name);
            ++position;
        }
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

    void layersThatWerePutInAreHeardOnce_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("wrapped") << 0;
        QTest::newRow("appended") << 1;
        QTest::newRow("inserted") << 2;
    }
    void layersThatWerePutInAreHeardOnce() {
        QFETCH(int, way);
        EditableAnimation animation(plainAnimation({{"a", 10}}));
        if (way == 1) {
            animation.push_back(new EditableAnimationLayer);
        } else if (way == 2) {
            animation.insert(animation.end(), new EditableAnimationLayer);
        }
        EditableAnimationLayer& layer = *animation[way == 0 ? 0 : 1];
        SignalRecorder recorder;
        recorder.watch(animation);
        layer.setActuatorName("renamed");
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
        Q_EMIT layer.getCurve()->timeUnitChanged();
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
        layer.getCurve()->insert(77, new EditableMotionCurveKey);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        for (const auto& [ofLayer, ofAnimation] : std::vector<std::pair<QByteArray, QByteArray>>{
                 {SIGNAL(nameChanged(QString)), SIGNAL(layersChanged())},
                 {SIGNAL(curveChanged()), SIGNAL(layersChanged())},
                 {SIGNAL(greaterIndexChanged(uint, uint)), SLOT(_onGreaterCurveIndexChanged(uint, uint))}}) {
            QVERIFY2(QObject::disconnect(&layer, ofLayer.constData(), &animation, ofAnimation.constData()),
                     ofLayer.constData());
        }
    }

    void aLayerIsInsertedBeforeTheGivenOne() {
        EditableAnimation animation(plainAnimation({{"a", 1}, {"b", 2}}));
        auto* const layer = new EditableAnimationLayer;
        const auto position = animation.insert(++animation.begin(), layer);
        QCOMPARE(position - animation.begin(), std::ptrdiff_t{1});
        QCOMPARE(animation[1], layer);
        QCOMPARE(animation[2]->getActuatorName(), QString("b"));
    }

    void erasingTheLastLayerGivesTheEnd() {
        EditableAnimation animation(plainAnimation({{"a", 1}}));
        const QPointer<ZT::EditableMotionCurve> curve = animation[0]->getCurve();
        const auto behind = animation.erase(animation.begin());
        QVERIFY(behind == animation.end());
        QVERIFY(curve.isNull());
    }

    void aReleasedLayerKeepsItsKeysAndSpeaksToTheAnimationNoMore() {
        EditableAnimation animation(plainAnimation({{"a", 1}, {"b", 2}}));
        EditableAnimationLayer* const released = animation[0];
        SignalRecorder recorder;
        recorder.watch(animation);
        const auto layer = animation.release(animation.begin());
        QCOMPARE(layer.get(), released);
        QCOMPARE(layer->getParentAnimation(), nullptr);
        QCOMPARE(layer->getCurve()->getGreaterIndex(), 1U);
        QCOMPARE(animation.size(), std::size_t{1});
        QCOMPARE(animation[0]->getActuatorName(), QString("b"));
        layer->setActuatorName("c");
        layer->getCurve()->getKey(1)->setValue(5.0F);
        layer->getCurve()->insert(9, new EditableMotionCurveKey);
        QCOMPARE(recorder.take(), QString());
        QVERIFY(animation.release(animation.end()) == nullptr);
    }

    void aReleasedLayerCanComeBack() {
        EditableAnimation animation(plainAnimation({{"a", 1}, {"b", 2}}));
        EditableAnimationLayer* const layer = animation.release(animation.begin()).release();
        animation.insert(animation.end(), layer);
        SignalRecorder recorder;
        recorder.watch(animation);
        QCOMPARE(layer->getParentAnimation(), &animation);
        layer->setActuatorName("c");
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
        layer->getCurve()->getKey(1)->setValue(5.0F);
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
        layer->getCurve()->insert(9, new EditableMotionCurveKey);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
    }

    void layersAreFoundByTheirUtf8Names() {
        EditableAnimation animation(plainAnimation({{"\u00e9paule", 1}, {"\u8155", 2}}));
        QCOMPARE(animation.getLayer(QString::fromUtf8("\u8155")), animation[1]);
        QCOMPARE(animation.getLayer(QString::fromUtf8("epaule")), nullptr);
    }

    void wrappingLeavesThePlainAnimationAsItWas() {
        const VQ::Animation::Animation plain = plainAnimation({{"a", 10}});
        EditableAnimation animation(plain);
        animation[0]->setActuatorName("b");
        animation[0]->getCurve()->clear();
        QCOMPARE(plain.begin()->actuatorName, std::string("a"));
        QCOMPARE(plain.begin()->curve->size(), std::size_t{1});
    }

    void layersDieBeforeTheMarkers() {
        auto animation = std::make_unique<EditableAnimation>(plainAnimation({{"a", 10}}));
        QStringList deaths;
        QObject::connect((*animation)[0]->getCurve(), &QObject::destroyed, [&] { deaths << "curve"; });
        QObject::connect((*animation)[0], &QObject::destroyed, [&] { deaths << "layer"; });
        QObject::connect(animation->getMarkers(), &QObject::destroyed, [&] { deaths << "markers"; });
        animation.reset();
        QCOMPARE(deaths.join(' '), QString("curve layer markers"));
    }
};

QTEST_GUILESS_MAIN(EditableAnimationTest)
#include "EditableAnimationTest.moc"
