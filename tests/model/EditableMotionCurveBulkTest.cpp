#include "model/EditableMotionCurveExceptions.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QPointer>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

using VQ::Math::Interpolation::InterpolationType;
using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

namespace {

/// A curve with linear keys, whose handles are never recomputed, so that signals are those of the moves
/// alone. Keys are named a, b, c, ... in ascending order of their addresses: the order in which bulk
/// operations take them.
struct Curve {
    explicit Curve(const std::vector<unsigned int>& frames) {
        std::vector<EditableMotionCurveKey*> created;
        for (std::size_t i = 0; i < frames.size(); ++i) {
            created.push_back(newKey());
        }
        std::sort(created.begin(), created.end(), std::less<>());
        for (std::size_t i = 0; i < frames.size(); ++i) {
            curve.insert(frames[i], created[i]);
            keys.push_back(created[i]);
            recorder.watch(*created[i], QString(QChar('a' + static_cast<int>(i))));
        }
        recorder.watch(curve);
    }

    static EditableMotionCurveKey* newKey() {
        VQ::Math::Interpolation::Key record;
        record.leftTangentType = InterpolationType::linear;
        record.rightTangentType = InterpolationType::linear;
        return new EditableMotionCurveKey(record);
    }

    /// "a@1 b@5": the keys in frame order.
    QString layout() const {
        QStringList parts;
        for (const auto element : curve) {
            const auto found = std::find(keys.begin(), keys.end(), element.second);
            parts.append(
                QString("%1@%2").arg(QChar('a' + static_cast<int>(found - keys.begin()))).arg(element.first));
        }
        return parts.join(' ');
    }

    EditableMotionCurveKey* operator[](std::size_t i) const { return keys[i]; }

    EditableMotionCurve curve;
    std::vector<EditableMotionCurveKey*> keys;
    SignalRecorder recorder;
};

/// Whether a change of a key reaches keysChanged(): it does not while the batch depth is raised.
bool isListening(EditableMotionCurve& curve) {
    EditableMotionCurveKey* const probe = Curve::newKey();
    curve.insert(4000000000U, probe);
    int count = 0;
    const auto connection =
        QObject::connect(&curve, &EditableMotionCurve::keysChanged, [&count] { ++count; });
    probe->setValue(probe->getValue() + 1.0F);
    QObject::disconnect(connection);
    curve.remove(4000000000U);
    return count == 1;
}

} // namespace

class EditableMotionCurveBulkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void movingUpMovesTheLastKeyFirst() {
        Curve c({1, 2, 3});
        c.curve.moveKeys({{c[0], {2, 0}}, {c[1], {3, 0}}, {c[2], {4, 0}}});
        QCOMPARE(c.layout(), QString("a@2 b@3 c@4"));
        QCOMPARE(c.recorder.take(), QString("c.indexChanged(4), b.indexChanged(3), a.indexChanged(2), "
                                            "curve.keysChanged(), curve.greaterIndexChanged(4, 3)"));
    }

    void movingDownMovesTheFirstKeyFirst() {
        Curve c({1, 2, 3});
        c.curve.moveKeys({{c[0], {0, 0}}, {c[1], {1, 0}}, {c[2], {2, 0}}});
        QCOMPARE(c.layout(), QString("a@0 b@1 c@2"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(0), b.indexChanged(1), c.indexChanged(2), "
                                            "curve.keysChanged(), curve.greaterIndexChanged(2, 3)"));
    }

    void theValueIsSetBeforeTheFrame() {
        Curve c({1});
        c.curve.moveKeys({{c[0], {7, 2.5}}});
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(2.5), a.indexChanged(7), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(7, 1)"));
    }

    void movingOntoAKeyThatStaysChangesOnlyTheValue() {
        Curve c({1, 2});
        c.curve.moveKeys({{c[0], {2, 5}}});
        QCOMPARE(c.layout(), QString("a@1 b@2"));
        QCOMPARE(c[0]->getValue(), 5.0F);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(5), curve.keysChanged()"));
    }

    // The first key alone decides: b and c, which move up, then meet in ascending order.
    void theDirectionIsChosenFromTheFirstKeyAlone() {
        Curve c({5, 6, 7});
        c.curve.moveKeys({{c[0], {4, 0}}, {c[1], {7, 0}}, {c[2], {8, 0}}});
        QCOMPARE(c.layout(), QString("a@4 b@6 c@8"));
    }

    void targetsAreTruncated_data() {
        QTest::addColumn<double>("target");
        QTest::addColumn<unsigned int>("frame");
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("4.99") << 4.99 << 4U;
        QTest::newRow("-0.5") << -0.5 << 0U;
        QTest::newRow("-1") << -1.0 << 4294967295U;
        QTest::newRow("2^32 + 3") << 4294967299.0 << 3U;
        QTest::newRow("NaN") << std::nan("") << 0U;
        QTest::newRow("infinity") << infinity << 0U;
        QTest::newRow("-infinity") << -infinity << 0U;
        QTest::newRow("1e300") << 1e300 << 0U;
        QTest::newRow("2^63") << 9223372036854775808.0 << 0U;
        QTest::newRow("-2^63") << -9223372036854775808.0 << 0U;
    }
    void targetsAreTruncated() {
        QFETCH(double, target);
        QFETCH(unsigned int, frame);
        Curve c({10});
        c.curve.moveKeys({{c[0], {target, 0}}});
        QCOMPARE(ZT::index(c[0]), frame);
    }

    void aValueBeyondFloatBecomesInfinite() {
        Curve c({10});
        c.curve.moveKeys({{c[0], {10, -1e300}}});
        QCOMPARE(c[0]->getValue(), -std::numeric_limits<float>::infinity());
    }

    void aFractionOfTheCurrentFrameCountsAsAMoveToItself() {
        Curve c({4});
        c.curve.moveKeys({{c[0], {4.5, 0}}});
        QCOMPARE(c.layout(), QString("a@4"));
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
    }

    void movingNullAndForeignKeysDoesNothingToThem() {
        Curve c({1});
        Curve other({1});
        c.curve.moveKeys({{nullptr, {9, 9}}, {other[0], {9, 9}}});
        QCOMPARE(other.recorder.take(), QString());
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(other.layout(), QString("a@1"));
    }

    void movingNothingLeavesTheBatchDepthRaised() {
        Curve c({1});
        c.curve.moveKeys({});
        QCOMPARE(c.recorder.take(), QString());
        c[0]->setValue(3.0F);
        c.curve.translateKey(c[0], 20);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(3), a.indexChanged(20)"));
        QVERIFY(!isListening(c.curve));
    }

    void otherOperationsLeaveTheDepthAsTheyFoundIt() {
        Curve c({1, 2});
        c.curve.moveKeys({{c[0], {5, 0}}});
        QVERIFY(isListening(c.curve));
        c.curve.reorganizeKeys({});
        QVERIFY(isListening(c.curve));
        c.curve.releaseAndInsertKeys({}, {});
        QVERIFY(isListening(c.curve));
    }

    void emptyReorganisationAndReplacementRunTheirBatchEnd() {
        Curve c({1});
        c.curve.reorganizeKeys({});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        c.curve.releaseAndInsertKeys({}, {});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
    }

    void automaticHandlesAreRecomputedBeforeTheBatchEnds() {
        EditableMotionCurve curve;
        auto* const low = new EditableMotionCurveKey;
        auto* const high = new EditableMotionCurveKey;
        curve.insert(0, low);
        curve.insert(30, high);
        SignalRecorder recorder;
        recorder.watch(*low, "low");
        recorder.watch(*high, "high");
        recorder.watch(curve);
        curve.moveKeys({{high, {60, 0}}});
        QCOMPARE(recorder.take(),
                 QString("high.indexChanged(60), low.tangentsChanged(), high.tangentsChanged(), "
                         "curve.keysChanged(), curve.greaterIndexChanged(60, 30)"));
        QCOMPARE(low->getTangentOffset(ZT::TangentSide::right), qMakePair(20.0F, 0.0F));
    }

    void twoKeysExchangeTheirFrames() {
        Curve c({3, 8});
        c.curve.reorganizeKeys({{c[0], 8}, {c[1], 3}});
        QCOMPARE(c.layout(), QString("b@3 a@8"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(8), b.indexChanged(3), curve.keysChanged()"));
    }

    void aKeyPlacedWhereItStoodIsAnnouncedToo() {
        Curve c({3});
        c.curve.reorganizeKeys({{c[0], 3}});
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(3), curve.keysChanged()"));
    }

    void aKeyWhoseFrameIsTakenLeavesTheCurveAndIsReported() {
        Curve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> failed(c[0]);
        bool wasHeldWhenAnnounced = true;
        QObject::connect(&c.curve, &EditableMotionCurve::keyAboutToBeRemoved,
                         [&] { wasHeldWhenAnnounced = c.curve._find(failed.get()) != c.curve.end(); });
        try {
            c.curve.reorganizeKeys({{c[0], 8}});
            QFAIL("the reorganisation was not refused");
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            QCOMPARE(QString(failure.what()), QString("Editable motion curve: reorganization failed"));
            QCOMPARE(failure.failedKeys, std::vector<EditableMotionCurveKey*>{c[0]});
        }
        QVERIFY(!wasHeldWhenAnnounced);
        QCOMPARE(failed->getParentCurve(), nullptr);
        QCOMPARE(c.layout(), QString("b@8"));
        QCOMPARE(c.recorder.take(), QString("curve.keyAboutToBeRemoved(a), curve.keysChanged()"));
        failed->setValue(4.0F);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(4)"));
        QVERIFY(isListening(c.curve));
    }

    void ofTwoKeysSentToOneFrameTheFirstByAddressWins() {
        Curve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> failed(c[1]);
        QVERIFY_EXCEPTION_THROWN(c.curve.reorganizeKeys({{c[0], 5}, {c[1], 5}}),
                                 ZT::EditableMotionCurveReorganizedFail);
        QCOMPARE(c.layout(), QString("a@5"));
        QCOMPARE(c.recorder.take(),
                 QString("a.indexChanged(5), curve.keyAboutToBeRemoved(b), curve.keysChanged(), "
                         "curve.greaterIndexChanged(5, 8)"));
    }

    void aNewcomerIsTakenIn() {
        Curve c({3});
        EditableMotionCurveKey* const newcomer = Curve::newKey();
        c.recorder.watch(*newcomer, "new");
        c.curve.reorganizeKeys({{newcomer, 9}});
        QCOMPARE(c.recorder.take(), QString("new.indexChanged(9), curve.keyAdded(new), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(9, 3)"));
        QCOMPARE(newcomer->getParentCurve(), &c.curve);
        newcomer->setValue(1.0F);
        QCOMPARE(c.recorder.take(), QString("new.valueChanged(1), curve.keysChanged()"));
    }

    void aNewcomerThatFailsIsLeftAsItWas() {
        Curve c({3});
        const std::unique_ptr<EditableMotionCurveKey> newcomer(Curve::newKey());
        try {
            c.curve.reorganizeKeys({{newcomer.get(), 3}});
            QFAIL("the reorganisation was not refused");
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            QCOMPARE(failure.failedKeys, std::vector<EditableMotionCurveKey*>{newcomer.get()});
        }
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(newcomer->getParentCurve(), nullptr);
    }

    void reorganisingSkipsNullAndForeignKeys() {
        Curve c({3});
        Curve other({5});
        c.curve.reorganizeKeys({{nullptr, 9}, {other[0], 9}});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(c.layout(), QString("a@3"));
        QCOMPARE(other.layout(), QString("a@5"));
    }

    void replacingReleasesFirstAndThenInserts() {
        Curve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> gone(c[0]);
        EditableMotionCurveKey* const added = Curve::newKey();
        c.recorder.watch(*added, "new");
        const auto left = c.curve.releaseAndInsertKeys({{c[0], 3}}, {{added, 12}});
        QCOMPARE(left, (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(gone->getParentCurve(), nullptr);
        QCOMPARE(c.recorder.take(),
                 QString("curve.keyAboutToBeRemoved(a), curve.keyAdded(new), curve.keysChanged(), "
                         "curve.greaterIndexChanged(12, 8)"));
    }

    void aKeyNamedAtAWrongFrameIsNotReleased() {
        Curve c({3, 8});
        QVERIFY(c.curve.releaseAndInsertKeys({{c[0], 8}, {c[1], 5}}, {}).isEmpty());
        QCOMPARE(c.layout(), QString("a@3 b@8"));
    }

    void aDisplacedKeyIsGivenBackWithItsFrame() {
        Curve c({3});
        const std::unique_ptr<EditableMotionCurveKey> displaced(c[0]);
        EditableMotionCurveKey* const added = Curve::newKey();
        QCOMPARE(c.curve.releaseAndInsertKeys({}, {{added, 3}}),
                 (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(c.curve.getKey(3), added);
        QCOMPARE(displaced->getParentCurve(), nullptr);
    }

    void ofTwoKeysInsertedAtOneFrameTheSecondDisplacesTheFirst() {
        Curve c({});
        std::unique_ptr<EditableMotionCurveKey> first(Curve::newKey());
        std::unique_ptr<EditableMotionCurveKey> second(Curve::newKey());
        if (std::less<>()(second.get(), first.get())) {
            first.swap(second);
        }
        const auto left = c.curve.releaseAndInsertKeys({}, {{first.get(), 3}, {second.get(), 3}});
        QCOMPARE(left, (EditableMotionCurve::KeysIndexMap{{first.get(), 3}}));
        QCOMPARE(c.curve.getKey(3), second.release());
    }

    void nullAndHeldKeysAreNotInserted() {
        Curve c({3});
        Curve other({5});
        const auto left =
            c.curve.releaseAndInsertKeys({{nullptr, 3}}, {{nullptr, 3}, {c[0], 7}, {other[0], 3}});
        QVERIFY(left.isEmpty());
        QCOMPARE(c.layout(), QString("a@3"));
        QCOMPARE(other.layout(), QString("a@5"));
    }

    void aBatchStartedFromASlotIsAnnouncedWithTheOuterOne() {
        Curve c({1, 2});
        bool isNested = false;
        QObject::connect(c[0], &EditableMotionCurveKey::valueChanged, [&] {
            isNested = true;
            c.curve.moveKeys({{c[1], {9, 0}}});
        });
        c.curve.moveKeys({{c[0], {1, 5}}});
        QVERIFY(isNested);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(5), b.indexChanged(9), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(9, 2)"));
    }

    void anExceptionFromASlotLowersTheBatchDepth() {
        Curve c({1});
        const auto connection = QObject::connect(c[0], &EditableMotionCurveKey::valueChanged,
                                                 [] { throw std::runtime_error("slot"); });
        QVERIFY_EXCEPTION_THROWN(c.curve.moveKeys({{c[0], {1, 5}}}), std::runtime_error);
        QObject::disconnect(connection);
        QVERIFY(isListening(c.curve));
    }

    void aHundredThousandKeysMoveAtOnce() {
        EditableMotionCurve curve;
        EditableMotionCurve::KeyPosMap targets;
        for (unsigned int i = 0; i < 100000; ++i) {
            targets.insert(curve.insert(i, Curve::newKey())->second, QPointF(i + 1.0, 0.25));
        }
        curve.moveKeys(targets);
        QCOMPARE(curve.begin()->first, 1U);
        QCOMPARE(curve.getGreaterIndex(), 100000U);
    }
};

QTEST_GUILESS_MAIN(EditableMotionCurveBulkTest)
#include "EditableMotionCurveBulkTest.moc"
