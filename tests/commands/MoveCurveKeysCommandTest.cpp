#include "commands/MoveCurveKeysCommand.h"
#include "CommandHarness.h"

#include "base/math/FloatBits.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace {

using namespace Harness;
using Move = ZT::AnimCmd::MoveCurveKeysCommand;
using KeyPosMap = Curve::KeyPosMap;

static_assert(std::is_convertible_v<Move*, QUndoCommand*>);
static_assert(std::is_convertible_v<Move*, ZT::MergeableCommand*>);
static_assert(std::is_same_v<Move::KeyPosMap, QMap<Key*, QPointF>>);

/// The keys go to the frames and keep their values.
KeyPosMap to(const Keys& keys, std::initializer_list<double> targets) {
    KeyPosMap result;
    auto key = keys.begin();
    for (const double target : targets) {
        result.insert(*key, QPointF(target, static_cast<double>((*key)->getValue())));
        ++key;
    }
    return result;
}

} // namespace

class MoveCurveKeysCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // A value that equals the one a step leads to stays, with its sign.
    void aDragOverAZeroOfTheOtherSignIsRedoneToIt() {
        Scene scene;
        Key* const key = scene.addKey(1);
        key->setValue(1.0F);
        for (const double zero : {-0.0, 0.0}) {
            scene.stack->push(new Move({{key, QPointF(3.0, zero)}}, false));
        }
        QCOMPARE(scene.stack->count(), 1);
        QVERIFY(std::signbit(key->getValue()));
        scene.stack->undo();
        scene.stack->redo();
        QVERIFY(key->getValue() == 0.0F && std::signbit(key->getValue()));
    }

    void everyDragThatIsNotEmptyIsLabelledMoveOneKey() {
        Scene scene;
        const Keys keys = scene.add({1, 2, 3});
        QCOMPARE(Move(to(keys, {4, 5, 6}), false).text(), QString("Move one key"));
        QCOMPARE(Move(KeyPosMap{{nullptr, QPointF()}}, false).text(), QString("Move one key"));
        QCOMPARE(Move(KeyPosMap(), false).text(), QString("Move 0 keys"));
    }

    void theTextsAreTranslatedInTheContextOfTheClass() {
        const RecordingTranslator translator;
        QCOMPARE(Move(KeyPosMap(), false).text(), QString("translated Move 0 keys"));
        QCOMPARE(translator.asked.last(), QString("ZT::AnimCmd::MoveCurveKeysCommand: Move %1 keys"));
        QCOMPARE(Move(KeyPosMap{{nullptr, QPointF()}}, false).text(), QString("translated Move one key"));
        QCOMPARE(translator.asked.last(), QString("ZT::AnimCmd::MoveCurveKeysCommand: Move one key"));
    }

    void aCommandWithoutKeysDoesNothing() {
        Scene scene;
        Key* const held = scene.addKey(3);
        const std::unique_ptr<Key> loose(scene.makeKey());
        for (const KeyPosMap& positions :
             {KeyPosMap(), KeyPosMap{{nullptr, QPointF(1, 1)}, {loose.get(), QPointF(2, 2)}}}) {
            const Walk seen = walk(scene, new Move(positions, true));
            QCOMPARE(seen.redoSignals, QString());
            QCOMPARE(seen.undoSignals, QString());
        }
        QCOMPARE(loose->getValue(), 0.0F);
        held->setValue(2.0F); // No batch was left open.
        QCOMPARE(scene.recorder.take(), QString("a.valueChanged(2), curve0.keysChanged()"));
    }

    void aKeyTakesItsValueAndFrameAndGivesThemBack() {
        Scene scene;
        Key* const key = scene.addKey(3);
        const Walk seen = walk(scene, new Move({{key, QPointF(5.9, 2.5)}}, false));
        QCOMPARE(seen.redoSignals, QString("a.valueChanged(2.5), a.indexChanged(5), curve0.keysChanged(), "
                                           "curve0.greaterIndexChanged(5, 3)"));
        QCOMPARE(seen.undoSignals, QString("a.valueChanged(0), a.indexChanged(3), curve0.keysChanged(), "
                                           "curve0.greaterIndexChanged(3, 5)"));
    }

    void eachCurveIsEditedOnce() {
        Scene scene(2);
        Keys keys = scene.add({1, 2});
        keys.push_back(scene.addKey(7, record(), 1));
        const Walk seen = walk(scene, new Move(to(keys, {2, 3, 8}), false));
        for (const QString& texts : {seen.redoSignals, seen.undoSignals}) {
            QCOMPARE(texts.count("curve0.keysChanged()"), 1);
            QCOMPARE(texts.count("curve1.keysChanged()"), 1);
            QVERIFY(texts.indexOf("curve0.keysChanged()") < texts.indexOf("curve1.keysChanged()"));
        }
    }

    void everyMoveComesBackExactly_data() {
        QTest::addColumn<QList<int>>("from");
        QTest::addColumn<QList<double>>("targets");
        QTest::newRow("blocked on the way back") << QList<int>{1, 2, 4} << QList<double>{2, 4, 3};
        QTest::newRow("neighbours up") << QList<int>{1, 2, 3} << QList<double>{2, 3, 4};
        QTest::newRow("neighbours down") << QList<int>{1, 2, 3} << QList<double>{0, 1, 2};
        QTest::newRow("apart") << QList<int>{3, 4} << QList<double>{0, 9};
        QTest::newRow("past each other") << QList<int>{3, 6} << QList<double>{8, 1};
        QTest::newRow("exchange") << QList<int>{3, 6} << QList<double>{6, 3};
        QTest::newRow("circle") << QList<int>{3, 4, 5} << QList<double>{4, 5, 3};
        QTest::newRow("all to one frame") << QList<int>{1, 5, 9} << QList<double>{7, 7, 7};
        QTest::newRow("onto a key that stays") << QList<int>{1, 5} << QList<double>{20, 21};
        QTest::newRow("below zero") << QList<int>{0, 1} << QList<double>{-1, -0.5};
        QTest::newRow("no number") << QList<int>{4, 5}
                                   << QList<double>{std::numeric_limits<double>::quiet_NaN(),
                                                    std::numeric_limits<double>::infinity()};
        QTest::newRow("the last frame") << QList<int>{0, 5} << QList<double>{4294967295.0, 4294967296.0};
    }
    void everyMoveComesBackExactly() {
        QFETCH(QList<int>, from);
        QFETCH(QList<double>, targets);
        QVector<int> order;
        for (int i = 0; i < from.size(); ++i) {
            order.append(i);
        }
        do { // Keys are visited by address: every assignment of addresses to frames counts.
            Scene scene;
            scene.add({20});
            const Keys keys = scene.makeKeys(static_cast<std::size_t>(from.size()));
            KeyPosMap positions;
            for (int i = 0; i < from.size(); ++i) {
                Key* const key = keys[static_cast<std::size_t>(order[i])];
                scene.curve().insert(static_cast<unsigned int>(from[i]), key);
                positions.insert(key, QPointF(targets[i], i + 0.5));
            }
            walk(scene, new Move(positions, false));
        } while (!QTest::currentTestFailed() && std::next_permutation(order.begin(), order.end()));
    }

    void keysThatBlockEachOtherOnTheWayBackReachedTheirTargetsFirst() {
        Scene scene;
        const Keys keys = scene.add({1, 2, 4});
        scene.stack->push(new Move(to(keys, {2, 4, 3}), false));
        QCOMPARE(framesOf(keys), QString("2 4 3"));
    }

    void automaticHandlesFollowBothWays() {
        Scene scene;
        const Keys keys = scene.add({0, 10, 20}, 0, Record());
        keys[2]->setValue(4.0F);
        scene.curve().updateBezierAutoTangents();
        walk(scene, new Move({{keys[1], QPointF(14, 3)}}, false));
    }

    void valuesComeBackBitForBit_data() {
        QTest::addColumn<uint>("old");
        QTest::addColumn<double>("target");
        QTest::newRow("zero to a number") << 0U << 5.0;
        QTest::newRow("negative zero to a number") << 0x80000000U << 5.0;
        QTest::newRow("zero to negative zero") << 0U << -0.0;
        QTest::newRow("negative zero to zero") << 0x80000000U << 0.0;
        QTest::newRow("infinity") << 0x7f800000U << 5.0;
        QTest::newRow("quiet NaN with a payload") << 0xffc12345U << 5.0;
        QTest::newRow("signalling NaN") << 0x7f800001U << 5.0;
        QTest::newRow("smallest") << 1U << -5.0;
        QTest::newRow("largest to beyond") << 0x7f7fffffU << 1e300;
    }
    void valuesComeBackBitForBit() {
        QFETCH(uint, old);
        QFETCH(double, target);
        Scene scene;
        Record before = record();
        before.value = VQ::Math::floatFromBits(old);
        Key* const key = scene.addKey(3, before);
        walk(scene, new Move({{key, QPointF(4, target)}}, true));
    }

    void aDragThatEndsAtTheOtherZeroComesBackBitForBit_data() {
        QTest::addColumn<float>("old");
        QTest::newRow("from zero") << 0.0F;
        QTest::newRow("from negative zero") << -0.0F;
    }
    void aDragThatEndsAtTheOtherZeroComesBackBitForBit() {
        QFETCH(float, old);
        Scene scene;
        Record before = record();
        before.value = old;
        Key* const key = scene.addKey(3, before);
        const QString start = scene.state();
        scene.stack->push(new Move({{key, QPointF(3, 5)}}, false));
        scene.stack->push(new Move({{key, QPointF(3, -static_cast<double>(old))}}, false));
        QCOMPARE(scene.stack->count(), 1);
        const QString end = scene.state();
        scene.stack->undo();
        QCOMPARE(scene.state(), start);
        scene.stack->redo();
        QCOMPARE(scene.state(), end);
    }

    // As where a replacement in between is not in the history.
    void keysThatHaveChangedTheirCurvesAreTheSameKeys() {
        Scene scene(2);
        const Keys keys{scene.addKey(3, record(), 0), scene.addKey(3, record(), 1)};
        Move first(to(keys, {4, 4}), false);
        first.redo();
        scene.curve(0).release(4);
        scene.curve(1).release(4);
        scene.curve(0).insert(4, keys[1]);
        scene.curve(1).insert(4, keys[0]);
        const Move second(to(keys, {5, 5}), false);
        QVERIFY(first.mergeWith(&second));
    }

    void aDragIsOneEntryThatUndoesToItsStart() {
        Scene scene;
        const Keys keys = scene.add({1, 2});
        const QString before = scene.state();
        scene.stack->push(new Move(to(keys, {2, 3}), false));
        scene.stack->push(new Move(to(keys, {5, 6}), false));
        const QPointF last(8, 1.5);
        scene.stack->push(new Move({{keys[0], last}, {keys[1], QPointF(9, 0)}}, true));
        QCOMPARE(scene.stack->count(), 1);
        const QString after = scene.state();
        scene.recorder.take();
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
        scene.stack->redo();
        QCOMPARE(scene.state(), after);
        QCOMPARE(framesOf(keys), QString("8 9"));
    }

    void aDragOverAKeyLeavesThatKeyInPlace() {
        Scene scene;
        const Keys keys = scene.add({1, 2, 3});
        const QString before = scene.state();
        for (const double target : {2.0, 3.0, 4.0}) {
            scene.stack->push(new Move({{keys[0], QPointF(target, 0)}}, false));
        }
        QCOMPARE(framesOf(keys), QString("4 2 3"));
        QCOMPARE(scene.stack->count(), 1);
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
    }

    // Otherwise the later entry, which found the second key at 12, would push it out on its way back.
    void redoingADragGivesWhatItsStepsHadMade() {
        Scene scene;
        const Keys keys = scene.add({18, 20});
        QUndoStack stack;
        stack.push(new Move(to(keys, {8, 12}), false));
        stack.push(new Move(to(keys, {12, 12}), true)); // The second key stands in the first one's way.
        QCOMPARE(ZT::index(keys[0]), 8U);
        QCOMPARE(ZT::index(keys[1]), 12U);
        const QString made = scene.state();
        for (int i = 0; i < 3; ++i) {
            stack.undo();
            QCOMPARE(ZT::index(keys[0]), 18U);
            QCOMPARE(ZT::index(keys[1]), 20U);
            stack.redo();
            QCOMPARE(scene.state(), made);
        }
    }

    void aKeyThatWasElsewhereDuringUndoIsMovedToItsTarget() {
        Scene scene;
        const Keys keys = scene.add({3});
        QUndoStack stack;
        stack.push(new Move(to(keys, {8}), true));
        Key* const away = scene.curve().release(8);
        stack.undo();
        scene.curve().insert(3, away);
        stack.redo();
        QCOMPARE(ZT::index(keys[0]), 8U);
    }

    void stepsWithOtherKeysDoNotMerge_data() {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("second");
        QTest::addColumn<bool>("merges");
        QTest::newRow("same") << 3 << 3 << true;
        QTest::newRow("one more") << 1 << 3 << false;
        QTest::newRow("one less") << 3 << 2 << false;
        QTest::newRow("another") << 1 << 2 << false;
        QTest::newRow("none") << 0 << 0 << true;
    }
    void stepsWithOtherKeysDoNotMerge() {
        QFETCH(int, first);
        QFETCH(int, second);
        QFETCH(bool, merges);
        Scene scene;
        const Keys keys = scene.add({1, 5});
        const auto step = [&](int members, double by) {
            KeyPosMap positions;
            for (std::size_t i = 0; i < keys.size(); ++i) {
                if ((members & (1 << i)) != 0) {
                    positions.insert(keys[i], QPointF(ZT::index(keys[i]) + by, 0));
                }
            }
            return new Move(positions, false);
        };
        auto* const older = step(first, 1);
        scene.stack->push(older);
        scene.stack->push(step(second, 1));
        QCOMPARE(scene.stack->count(), merges ? 1 : 2);
        QCOMPARE(older->isFinalCommand(), !merges);
        const QString after = scene.state();
        scene.stack->setIndex(0);
        QCOMPARE(framesOf(keys), QString("1 5"));
        scene.stack->setIndex(scene.stack->count());
        QCOMPARE(scene.state(), after);
    }

    void keysInNoCurveDoNotCountForMerging() {
        Scene scene;
        Key* const key = scene.addKey(1);
        const std::unique_ptr<Key> loose(scene.makeKey());
        scene.stack->push(new Move({{key, QPointF(2, 0)}, {loose.get(), QPointF(7, 7)}}, false));
        scene.stack->push(new Move({{key, QPointF(3, 0)}, {nullptr, QPointF(7, 7)}}, false));
        QCOMPARE(scene.stack->count(), 1);
    }

    void itOwnsNoKeys() {
        Scene scene;
        const Keys keys = scene.add({1, 2});
        const auto watched = watch(keys);
        scene.stack->push(new Move(to(keys, {3, 2}), false));
        scene.stack->push(new Move(to(keys, {4, 2}), true));
        scene.stack->undo();
        scene.stack->clear();
        QCOMPARE(alive(watched), 2);
        scene.stack->push(new Move(to(keys, {3, 4}), false));
        scene.animation.reset();
        scene.stack.reset();
        QCOMPARE(alive(watched), 0);
    }
};

QTEST_GUILESS_MAIN(MoveCurveKeysCommandTest)
#include "MoveCurveKeysCommandTest.moc"
