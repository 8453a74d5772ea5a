#include "LetteredCurve.h"
#include "tests/model/TwoEntries.h"

#include <QtTest>

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

class ReleasingAndInsertingKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void replacingReleasesFirstAndThenInserts() {
        LetteredCurve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> gone(c[0]);
        EditableMotionCurveKey* const added = LetteredCurve::newKey();
        c.recorder.watch(*added, "new");
        const auto left = c.curve.releaseAndInsertKeys({{c[0], 3}}, {{added, 12}});
        QCOMPARE(left, (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(gone->getParentCurve(), nullptr);
        QCOMPARE(c.recorder.take(),
                 QString("curve.keyAboutToBeRemoved(a), curve.keyAdded(new), curve.keysChanged(), "
                         "curve.greaterIndexChanged(12, 8)"));
    }

    void aKeyNamedAtAWrongFrameIsNotReleased() {
        LetteredCurve c({3, 8});
        QVERIFY(c.curve.releaseAndInsertKeys({{c[0], 8}, {c[1], 5}}, {}).isEmpty());
        QCOMPARE(c.layout(), QString("a@3 b@8"));
    }

    void aKeyNamedTwiceIsGivenBackAtTheFrameWhereItStood() {
        if (!mapsHoldTwoEntries) {
            QSKIP("Qt 6's QMap cannot name a key twice");
        }
        LetteredCurve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> gone(c[0]);
        const auto twice = entriesOf({{c[0], 3}, {c[0], 99}}); // The last is walked first.
        QCOMPARE(c.curve.releaseAndInsertKeys(twice, {}), (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(gone->getParentCurve(), nullptr);
        QCOMPARE(c.layout(), QString("b@8"));
    }

    void aKeyNamedTwiceIsTakenBackToTheFrameWhereItStood() {
        if (!mapsHoldTwoEntries) {
            QSKIP("Qt 6's QMap cannot name a key twice");
        }
        LetteredCurve c({3, 8});
        const auto twice =
            entriesOf({{c[0], 99}, {c[0], 3}, {c[0], 3}, {c[0], 42}}); // The last is walked first.
        QObject::connect(&c.curve, &EditableMotionCurve::keysChanged, [] { throw std::runtime_error("no"); });
        QVERIFY_EXCEPTION_THROWN(c.curve.releaseAndInsertKeys(twice, {}), std::runtime_error);
        QCOMPARE(c.layout(), QString("a@3 b@8"));
    }

    void aDisplacedKeyIsGivenBackWithItsFrame() {
        LetteredCurve c({3});
        const std::unique_ptr<EditableMotionCurveKey> displaced(c[0]);
        EditableMotionCurveKey* const added = LetteredCurve::newKey();
        QCOMPARE(c.curve.releaseAndInsertKeys({}, {{added, 3}}),
                 (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(c.curve.getKey(3), added);
        QCOMPARE(displaced->getParentCurve(), nullptr);
    }

    void ofTwoKeysInsertedAtOneFrameTheSecondDisplacesTheFirst() {
        LetteredCurve c({});
        std::unique_ptr<EditableMotionCurveKey> first(LetteredCurve::newKey());
        std::unique_ptr<EditableMotionCurveKey> second(LetteredCurve::newKey());
        if (std::less<>()(second.get(), first.get())) {
            first.swap(second);
        }
        const auto left = c.curve.releaseAndInsertKeys({}, {{first.get(), 3}, {second.get(), 3}});
        QCOMPARE(left, (EditableMotionCurve::KeysIndexMap{{first.get(), 3}}));
        QCOMPARE(c.curve.getKey(3), second.release());
    }

    void nullAndHeldKeysAreNotInserted() {
        LetteredCurve c({3});
        LetteredCurve other({5});
        const auto left =
            c.curve.releaseAndInsertKeys({{nullptr, 3}}, {{nullptr, 3}, {c[0], 7}, {other[0], 3}});
        QVERIFY(left.isEmpty());
        QCOMPARE(c.layout(), QString("a@3"));
        QCOMPARE(other.layout(), QString("a@5"));
    }

    void aKeyTakenOutAndPutBackIsStillReportedAsGone() {
        LetteredCurve c({3});
        QCOMPARE(c.curve.releaseAndInsertKeys({{c[0], 3}}, {{c[0], 9}}),
                 (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(c.layout(), QString("a@9"));
        QCOMPARE(c[0]->getParentCurve(), &c.curve);
        QCOMPARE(c.recorder.take(), QString("curve.keyAboutToBeRemoved(a), curve.keyAdded(a), "
                                            "curve.keysChanged(), curve.greaterIndexChanged(9, 3)"));
        c[0]->setValue(1.0F);
        QCOMPARE(c.recorder.count("curve.keysChanged()"), 1);
    }

    void aKeyIsReportedWithTheFrameThatItLeftLast() {
        LetteredCurve c({3, 4});
        const std::unique_ptr<EditableMotionCurveKey> displaced(c[0]);
        QCOMPARE(c.curve.releaseAndInsertKeys({{c[0], 3}, {c[1], 4}}, {{c[0], 9}, {c[1], 9}}),
                 (EditableMotionCurve::KeysIndexMap{{c[0], 9}, {c[1], 4}}));
        QCOMPARE(c.layout(), QString("b@9"));
    }

    void aKeyThatLeftTwiceIsTakenBackToWhereItStoodFirst() {
        LetteredCurve c({3, 4});
        QObject::connect(&c.curve, &EditableMotionCurve::keysChanged, [] { throw std::runtime_error("no"); });
        QVERIFY_EXCEPTION_THROWN(c.curve.releaseAndInsertKeys({{c[0], 3}, {c[1], 4}}, {{c[0], 9}, {c[1], 9}}),
                                 std::runtime_error);
        QCOMPARE(c.layout(), QString("a@3 b@4"));
    }

    void aSlotMayReleaseAKeyWhoseTurnIsToCome_data() {
        QTest::addColumn<bool>("isInFrameOrder");
        QTest::newRow("keys in frame order") << true;
        QTest::newRow("keys in another order") << false;
    }

    void aSlotMayReleaseAKeyWhoseTurnIsToCome() {
        QFETCH(bool, isInFrameOrder);
        constexpr unsigned int count = 40; // More than are fetched ahead.
        std::vector<unsigned int> frames;
        for (unsigned int i = 0; i < count; ++i) {
            frames.push_back(isInFrameOrder ? i : (i * 17) % count);
        }
        EditableMotionCurve curve;
        std::vector<EditableMotionCurveKey*> keys;
        std::generate_n(std::back_inserter(keys), count, [] { return new EditableMotionCurveKey; });
        std::sort(keys.begin(), keys.end(), std::less<>());
        EditableMotionCurve::KeysIndexMap all;
        for (std::size_t i = 0; i < count; ++i) {
            curve.insert(frames[i], keys[i]);
            all.insert(keys[i], frames[i]);
        }
        bool isDone = false;
        std::unique_ptr<EditableMotionCurveKey> released;
        QObject::connect(&curve, &EditableMotionCurve::keyAboutToBeRemoved, [&] {
            if (!std::exchange(isDone, true)) {
                released.reset(curve.release(frames[8]));
                curve.translateKey(keys[9], 100);
            }
        });
        const auto left = curve.releaseAndInsertKeys(all, {});
        QCOMPARE(left.size(), static_cast<int>(count) - 2);
        QVERIFY(!left.contains(keys[8]));
        QCOMPARE(curve.size(), std::size_t{1});
        QCOMPARE(curve.getKey(100), keys[9]);
        qDeleteAll(left.keys());
    }

    // The keys' places are known beforehand when their addresses are not in the order of their frames.
    void aSlotMayClearTheCurveWhileItsKeysAreReleased() {
        LetteredCurve c({30, 20, 10});
        const EditableMotionCurve::KeysIndexMap all{{c[0], 30U}, {c[1], 20U}, {c[2], 10U}};
        QObject::connect(&c.curve, &EditableMotionCurve::keyAboutToBeRemoved, [&c] { c.curve.clear(); });
        QVERIFY(c.curve.releaseAndInsertKeys(all, {}).isEmpty());
        QVERIFY(c.curve.empty());
    }

    void aKeyThatAnotherCurveMadeIsTakenIn_data() {
        QTest::addColumn<bool>("isReorganized");
        QTest::addColumn<bool>("isMakerAlive");
        QTest::newRow("inserted") << false << true;
        QTest::newRow("inserted when its maker is gone") << false << false;
        QTest::newRow("placed") << true << true;
        QTest::newRow("placed when its maker is gone") << true << false;
    }
    void aKeyThatAnotherCurveMadeIsTakenIn() {
        QFETCH(const bool, isReorganized);
        QFETCH(const bool, isMakerAlive);
        auto maker = std::make_unique<EditableMotionCurve>();
        auto* const key =
            EditableMotionCurveKey::_toEditable(std::make_pair(0U, maker->createCurveKey())).second;
        if (!isMakerAlive) {
            maker.reset();
        }
        QCOMPARE(index(key), 0U);
        key->setValue(7);
        LetteredCurve c({3});
        if (isReorganized) {
            c.curve.reorganizeKeys({{key, 8}});
        } else {
            QVERIFY(c.curve.releaseAndInsertKeys({}, {{key, 8}}).isEmpty());
        }
        QCOMPARE(c.curve.getKey(8), key);
        QCOMPARE(key->getParentCurve(), &c.curve);
        c.recorder.take();
        key->setValue(4);
        QVERIFY(c.recorder.take().contains("curve.keysChanged()"));
    }
};

QTEST_GUILESS_MAIN(ReleasingAndInsertingKeysTest)
#include "ReleasingAndInsertingKeysTest.moc"
