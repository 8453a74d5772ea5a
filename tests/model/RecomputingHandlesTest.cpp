#include "model/EditableMotionCurve.h"
#include "tests/support/SignalRecorder.h"

#include <QtTest>

#include <functional>
#include <memory>

namespace {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;

/// A rising curve with automatic tangents, none of which has been computed.
struct Rising {
    Rising() {
        VQ::Math::Interpolation::Key record;
        for (const unsigned int frame : {10U, 20U, 30U, 40U}) {
            record.value = static_cast<float>(frame);
            keys.push_back(new Key(record));
            curve.insert(frame, keys.back());
        }
    }

    /// Once, while the first handle of the given key changes.
    void whileChanging(std::size_t key, std::function<void()> action) {
        QObject::connect(keys[key], &Key::tangentsChanged, &context,
                         [action, wasCalled = std::make_shared<bool>(false)] {
                             if (!std::exchange(*wasCalled, true)) {
                                 action();
                             }
                         });
    }

    /// Whether each automatic handle is what its formula says.
    bool isRecomputed() {
        bool isRight = true;
        for (const auto element : curve) {
            isRight = !element.second->updateBezierAutoTangents() && isRight;
        }
        return isRight;
    }

    Curve curve;
    std::vector<Key*> keys;
    QObject context;
};

} // namespace

class RecomputingHandlesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyHandleIsRecomputed() {
        Rising rising;
        QVERIFY(!rising.isRecomputed());
        Rising other;
        other.curve.updateBezierAutoTangents();
        QVERIFY(other.isRecomputed());
    }

    // The other curve finds neither the key nor neighbours.
    void aKeyThatNamesAnotherCurveIsRecomputedAsThatOneSeesIt() {
        Rising rising;
        rising.curve.updateBezierAutoTangents();
        Curve other;
        Key* const key = rising.keys[1];
        key->_setParentCurve(&other);
        rising.curve.updateBezierAutoTangents();
        const auto handle = key->getTangentOffset(ZT::TangentSide::right);
        key->_setParentCurve(&rising.curve);
        QCOMPARE(handle, qMakePair(0.0F, 0.0F));
        QVERIFY(!rising.isRecomputed());
    }

    void aKeyThatASlotMovesOnIsRecomputedWhereItStandsThen() {
        Rising rising;
        rising.whileChanging(1, [&] { rising.curve.translateKey(rising.keys[1], 33); });
        rising.curve.updateBezierAutoTangents();
        QCOMPARE(rising.curve.getIndexOf(rising.keys[1]), 33U);
        QVERIFY(!rising.keys[1]->updateBezierAutoTangents());
        QVERIFY(!rising.keys[2]->updateBezierAutoTangents());
        QVERIFY(!rising.keys[3]->updateBezierAutoTangents());
    }

    void theRestIsRecomputedWhenASlotTakesTheFirstKeyOut() {
        Rising rising;
        rising.whileChanging(0, [&] { delete rising.curve.release(40); });
        rising.curve.updateBezierAutoTangents();
        QVERIFY(rising.isRecomputed());

        Rising other;
        std::unique_ptr<Key> first;
        other.whileChanging(0, [&] { first.reset(other.curve.release(10)); });
        other.curve.updateBezierAutoTangents();
        QVERIFY(other.isRecomputed());
        QCOMPARE(first.get(), other.keys[0]);
    }

    void theRestIsRecomputedWhenASlotMovesTheKeyBefore() {
        Rising rising;
        rising.whileChanging(2, [&] { rising.curve.translateKey(rising.keys[1], 12); });
        rising.curve.updateBezierAutoTangents();
        QVERIFY(!rising.keys[3]->updateBezierAutoTangents());
    }

    // A slot that moves its key at each change would keep the pass going.
    void thePassEndsWhereTheCurveEndedAtFirst() {
        Rising rising;
        int calls = 0;
        Key* const last = rising.keys[3];
        connect(last, &Key::tangentsChanged, &rising.context, [&] {
            last->setValue(last->getValue() * 3.0F);
            if (++calls < 100) {
                rising.curve.translateKey(last, rising.curve.getIndexOf(last) + 30U);
            }
        });
        rising.curve.updateBezierAutoTangents();
        QVERIFY(calls < 100);
        QVERIFY(rising.curve.getIndexOf(last) > 40U);
    }

    void insertingNullDoesNothing() {
        Rising rising;
        SignalRecorder recorder;
        recorder.watch(rising.curve);
        QVERIFY(rising.curve.insert(10, nullptr) == rising.curve.end());
        QVERIFY(rising.curve.insert(11, nullptr) == rising.curve.end());
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(rising.curve.size(), std::size_t{4});
    }

    void insertingAnswersWithTheKeyAlsoWhenASlotMovedOthers() {
        Rising rising;
        connect(&rising.curve, &Curve::keyAdded, &rising.context,
                [&] { rising.curve.translateKey(rising.keys[0], 5); });
        auto* const key = new Key;
        const auto position = rising.curve.insert(15, key);
        QVERIFY(position != rising.curve.end());
        QCOMPARE(position->first, 15U);
        QCOMPARE(position->second, key);
        QCOMPARE(rising.curve.getIndexOf(rising.keys[0]), 5U);
    }

    void aKeyThatStandsStillIsReleasedAlthoughASlotMovedAnother() {
        Rising rising;
        connect(&rising.curve, &Curve::keyAboutToBeRemoved, &rising.context,
                [&] { rising.curve.translateKey(rising.keys[0], 5); });
        const std::unique_ptr<Key> released(rising.curve.release(20));
        QCOMPARE(released.get(), rising.keys[1]);
        QVERIFY(rising.curve.isIndexAvailable(20));
    }

    void aKeyThatASlotMovesAwayIsNotReleased() {
        Rising rising;
        connect(&rising.curve, &Curve::keyAboutToBeRemoved, &rising.context,
                [&](Key* key) { rising.curve.translateKey(key, 25); });
        QVERIFY(rising.curve.release(20) == nullptr);
        QCOMPARE(rising.curve.getKey(25), rising.keys[1]);
        QCOMPARE(rising.keys[1]->getParentCurve(), &rising.curve);
    }

    void aKeyThatASlotReplacesIsNotReleasedNorDestroyed() {
        for (const bool isDestroyed : {false, true}) {
            Rising rising;
            connect(&rising.curve, &Curve::keyAboutToBeRemoved, &rising.context, [&](Key* key) {
                rising.curve.translateKey(key, 25);
                rising.curve.translateKey(rising.keys[0], 20);
            });
            if (isDestroyed) {
                rising.curve.remove(20U);
            } else {
                QVERIFY(rising.curve.release(20) == nullptr);
            }
            QCOMPARE(rising.curve.getKey(25), rising.keys[1]);
            QCOMPARE(rising.curve.getKey(20), rising.keys[0]);
            QCOMPARE(rising.curve.size(), std::size_t{4});
        }
    }

    void aValueWithTheSameBitsIsNotRestored() {
        Key key;
        key.setValue(2.0F);
        SignalRecorder recorder;
        recorder.watch(key, "key");
        QVERIFY(!key._restoreValue(2.0F));
        QCOMPARE(recorder.take(), QString());
        QVERIFY(key._restoreValue(3.0F));
        QCOMPARE(recorder.take(), QString("key.valueChanged(3)"));
        QCOMPARE(key.getValue(), 3.0F);
    }
};

QTEST_APPLESS_MAIN(RecomputingHandlesTest)
#include "RecomputingHandlesTest.moc"
