#include "commands/MoveTangentCommand.h"
#include "CommandHarness.h"

#include <limits>
#include <type_traits>

namespace {

using namespace Harness;
using Move = ZT::AnimCmd::MoveTangentCommand;
using KeysSet = QSet<Key*>;
using Offset = QPair<float, float>;

static_assert(std::is_convertible_v<Move*, QUndoCommand*>);
static_assert(std::is_convertible_v<Move*, ZT::MergeableCommand*>);

} // namespace

class MoveTangentCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTextTellsTheFormNotTheNumberOfKeys() {
        Scene scene;
        Key* const key = scene.addKey(1);
        const QString some = "Move the tangent of some curve keys";
        QCOMPARE(Move(KeysSet(), Side::left, 0, 0, false).text(), some);
        QCOMPARE(Move(KeysSet{key}, Side::left, 0, 0, false).text(), some);
        const QString one = "Move the tangent of one curve key";
        QCOMPARE(Move(key, Side::left, 0, 0, false).text(), one);
        QCOMPARE(Move(static_cast<Key*>(nullptr), Side::left, 0, 0, false).text(), one);
    }

    void theTextsAreTranslatedInTheContextOfTheClass() {
        const RecordingTranslator translator;
        QCOMPARE(Move(KeysSet(), Side::left, 0, 0, false).text(),
                 QString("translated Move the tangent of some curve keys"));
        QCOMPARE(Move(static_cast<Key*>(nullptr), Side::left, 0, 0, false).text(),
                 QString("translated Move the tangent of one curve key"));
        QCOMPARE(translator.asked,
                 QStringList({"ZT::AnimCmd::MoveTangentCommand: Move the tangent of some curve keys",
                              "ZT::AnimCmd::MoveTangentCommand: Move the tangent of one curve key"}));
    }

    void aCommandWithoutKeysDoesNothing() {
        Scene scene;
        Key* const held = scene.addKey(3);
        const std::unique_ptr<Key> loose(scene.makeKey(bezier({-1.0F, 0.0F}, {1.0F, 0.0F})));
        const QString before = Snapshot::of(*loose);
        for (QUndoCommand* const command : {new Move(KeysSet(), Side::left, 2, 3, true),
                                            new Move(KeysSet{nullptr, loose.get()}, Side::left, 2, 3, true),
                                            new Move(loose.get(), Side::right, 2, 3, true),
                                            new Move(static_cast<Key*>(nullptr), Side::right, 2, 3, true)}) {
            const Walk seen = walk(scene, command);
            QCOMPARE(seen.redoSignals, QString());
            QCOMPARE(seen.undoSignals, QString());
        }
        QCOMPARE(Snapshot::of(*loose), before);
        held->setValue(2.0F); // No batch was left open.
        QCOMPARE(scene.recorder.take(), QString("a.valueChanged(2), curve0.keysChanged()"));
    }

    void allKeysGetOneOffsetAndEachGetsItsOwnBack() {
        Scene scene(2);
        Key* const first = scene.addKey(1, bezier({-1.0F, 0.5F}, {1.0F, 2.0F}));
        Key* const second = scene.addKey(5, bezier({-2.0F, 0.0F}, {3.0F, 4.0F}));
        Key* const third = scene.addKey(5, bezier({-2.0F, 7.0F}, {4.0F, 4.0F}), 1);
        const Walk seen = walk(scene, new Move(KeysSet{first, second, third}, Side::right, 6, -7, false));
        QCOMPARE(seen.redoSignals.count("tangentsChanged()"), 3);
        QCOMPARE(seen.undoSignals.count("tangentsChanged()"), 3);
        for (const QString& texts : {seen.redoSignals, seen.undoSignals}) {
            QCOMPARE(texts.count("curve0.keysChanged()"), 1);
            QCOMPARE(texts.count("curve1.keysChanged()"), 1);
            QVERIFY(texts.endsWith("c.tangentsChanged(), curve1.keysChanged()"));
        }
        scene.stack->redo();
        for (const Key* const key : {first, second, third}) {
            QCOMPARE(key->getTangentOffset(Side::right), Offset(6.0F, -7.0F));
        }
        QCOMPARE(first->getTangentOffset(Side::left), Offset(-1.0F, 0.5F));
    }

    void undoEmitsNothingMoreWhereTheOffsetSuffices() {
        Scene scene;
        Key* const free = scene.addKey(1, bezier({-1.0F, 0.5F}, {1.0F, 2.0F}));
        const QString once = "a.tangentsChanged(), curve0.keysChanged()";
        const Walk seen = walk(scene, new Move(free, Side::left, -3, 1, true));
        QCOMPARE(seen.redoSignals, once);
        QCOMPARE(seen.undoSignals, once);
        free->setSymmetrical(true);
        const Walk mirrored = walk(scene, new Move(free, Side::right, 3, 1, true));
        QCOMPARE(mirrored.redoSignals, once);
        QCOMPARE(mirrored.undoSignals, once);
    }

    void tangentsThatAreNotBezierStayAsTheyAre() {
        Scene scene;
        for (const Type type : {Type::constant, Type::linear, Type::bezierAuto}) {
            Key* const key = scene.addKey(static_cast<unsigned int>(type) + 1,
                                          record(type, Type::bezier, {-1.0F, 2.0F}, {3.0F, 4.0F}));
            const QString before = Snapshot::of(*key);
            const Walk seen = walk(scene, new Move(key, Side::left, -9, 9, true));
            QCOMPARE(seen.redoSignals, QString("curve0.keysChanged()"));
            QCOMPARE(seen.undoSignals, QString("curve0.keysChanged()"));
            scene.stack->redo();
            QCOMPARE(Snapshot::of(*key), before);
        }
    }

    void aValueThatIsNoSideMovesNothing() {
        Scene scene;
        Key* const key = scene.addKey(1, bezier({-1.0F, 2.0F}, {3.0F, 4.0F}));
        const QString before = scene.state();
        walk(scene, new Move(key, static_cast<Side>(2), -9, 9, true));
        scene.stack->redo();
        QCOMPARE(scene.state(), before);
    }

    void theOppositeHandleOfASmoothKeyComesBackExactly_data() {
        QTest::addColumn<float>("x");
        QTest::addColumn<float>("y");
        QTest::newRow("turned") << 1.0F << 1.0F;
        QTest::newRow("nothing") << 0.0F << 0.0F;
        QTest::newRow("other zeros") << -0.0F << -0.0F;
        QTest::newRow("no number") << std::numeric_limits<float>::quiet_NaN() << 1.0F;
        QTest::newRow("endless") << std::numeric_limits<float>::infinity() << -1.0F;
        QTest::newRow("largest") << std::numeric_limits<float>::max() << std::numeric_limits<float>::max();
    }
    void theOppositeHandleOfASmoothKeyComesBackExactly() {
        QFETCH(float, x);
        QFETCH(float, y);
        Scene scene;
        Key* const smooth = scene.addKey(1, bezier({-1.1F, 0.3F}, {2.7F, 0.9F}));
        smooth->setSmooth(true);
        Key* const zero = scene.addKey(3, bezier({-0.0F, 0.0F}, {0.0F, -0.0F}));
        zero->setSmooth(true);
        Key* const symmetrical = scene.addKey(5, bezier({-1.1F, 0.3F}, {2.7F, 0.9F}));
        symmetrical->setSymmetrical(true);
        for (const Side side : {Side::left, Side::right}) {
            walk(scene, new Move(KeysSet{smooth, zero, symmetrical}, side, x, y, true));
        }
    }

    void aThousandRoundsDoNotDrift() {
        Scene scene;
        Key* const key = scene.addKey(1, bezier({-1.1F, 0.3F}, {2.7F, 0.9F}));
        key->setSmooth(true);
        const QString before = scene.state();
        scene.stack->push(new Move(key, Side::right, 1, 1.7F, true));
        const QString after = scene.state();
        for (int round = 0; round < 1000; ++round) {
            scene.stack->undo();
            scene.stack->redo();
        }
        QCOMPARE(scene.state(), after);
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
    }

    void aDragIsOneEntryThatUndoesToItsStart() {
        Scene scene;
        Key* const key = scene.addKey(1, bezier({-1.1F, 0.3F}, {2.7F, 0.9F}));
        key->setSmooth(true);
        const QString before = scene.state();
        for (const float y : {1.0F, 2.0F, 3.0F}) {
            scene.stack->push(new Move(key, Side::left, -2, y, y == 3.0F));
        }
        QCOMPARE(scene.stack->count(), 1);
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
        scene.stack->redo();
        QCOMPARE(key->getTangentOffset(Side::left), Offset(-2.0F, 3.0F));
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
    }

    void stepsOnOtherKeysOfTheSameSideMerge() {
        Scene scene;
        Key* const first = scene.addKey(1, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        Key* const second = scene.addKey(5, bezier({-2.0F, 0.0F}, {2.0F, 0.0F}));
        auto* const older = new Move(first, Side::left, -3, 1, false);
        scene.stack->push(older);
        scene.stack->push(new Move(KeysSet{second}, Side::left, -4, 2, false));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(older->text(), QString("Move the tangent of one curve key"));
        QVERIFY(!older->isFinalCommand());
        scene.stack->undo();
        QCOMPARE(first->getTangentOffset(Side::left), Offset(-1.0F, 0.0F));
        QCOMPARE(second->getTangentOffset(Side::left), Offset(-4.0F, 2.0F)); // The older command's keys only.
        scene.stack->redo();
        QCOMPARE(first->getTangentOffset(Side::left), Offset(-4.0F, 2.0F));
    }

    void stepsOnOtherKeysOfTheOtherSideDoNotMerge() {
        Scene scene;
        Key* const first = scene.addKey(1, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        Key* const second = scene.addKey(5, bezier({-2.0F, 0.0F}, {2.0F, 0.0F}));
        const QString before = scene.state();
        auto* const older = new Move(first, Side::left, -3, 1, false);
        scene.stack->push(older);
        scene.stack->push(new Move(second, Side::right, 4, 2, false));
        QCOMPARE(scene.stack->count(), 2);
        QVERIFY(older->isFinalCommand());
        scene.stack->setIndex(0);
        QCOMPARE(scene.state(), before);
    }

    void stepsOnTheSameKeysOfTheOtherSideMergeAndKeepTheSide_data() {
        QTest::addColumn<bool>("isLeft");
        QTest::newRow("left") << true;
        QTest::newRow("right") << false;
    }
    // The step's handle is the other one: neither undo nor redo reaches it.
    void stepsOnTheSameKeysOfTheOtherSideMergeAndKeepTheSide() {
        QFETCH(const bool, isLeft);
        const Side side = isLeft ? Side::left : Side::right;
        const Side other = isLeft ? Side::right : Side::left;
        Scene scene;
        Key* const key = scene.addKey(1, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        const Offset before = key->getTangentOffset(side);
        scene.stack->push(new Move(key, side, -3, 1, false));
        scene.stack->push(new Move(KeysSet{key}, other, -4, 2, false));
        QCOMPARE(scene.stack->count(), 1);
        scene.stack->undo();
        QCOMPARE(key->getTangentOffset(side), before);
        QCOMPARE(key->getTangentOffset(other), Offset(-4.0F, 2.0F));
        scene.stack->redo();
        QCOMPARE(key->getTangentOffset(side), Offset(-4.0F, 2.0F));
        QCOMPARE(key->getTangentOffset(other), Offset(-4.0F, 2.0F));
    }

    void aSmoothKeyBindsItsHandlesOnlyWhereBothAreFree_data() {
        QTest::addColumn<bool>("isLeft");
        QTest::newRow("left") << true;
        QTest::newRow("right") << false;
    }
    void aSmoothKeyBindsItsHandlesOnlyWhereBothAreFree() {
        QFETCH(const bool, isLeft);
        const Side fixed = isLeft ? Side::left : Side::right;
        const Side other = isLeft ? Side::right : Side::left;
        Scene scene;
        Key* const key = scene.addKey(1, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        key->setSmooth(true);
        key->setTangentType(fixed, Type::linear);
        scene.stack->push(new Move(key, fixed, -3, 1, false));
        scene.stack->push(new Move(KeysSet{key}, other, 4, 2, false));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(key->getTangentOffset(other), Offset(4.0F, 2.0F));
        scene.stack->undo();
        QCOMPARE(key->getTangentOffset(other), Offset(4.0F, 2.0F));
    }

    void theSameKeysOfOtherCurvesAreOtherKeys() {
        Scene scene(2);
        Key* const first = scene.addKey(1, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        Key* const second = scene.addKey(1, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}), 1);
        Move both(KeysSet{first, second}, Side::left, -3, 1, false);
        const Move reversed(KeysSet{second, first}, Side::right, 3, 1, false);
        QVERIFY(both.mergeWith(&reversed));
        const Move one(KeysSet{first}, Side::right, 3, 1, false);
        QVERIFY(!both.mergeWith(&one));
    }

    void itOwnsNoKeys() {
        Scene scene;
        const auto keys = watch(scene.add({1, 2}, 0, bezier({-1.0F, 0.0F}, {1.0F, 0.0F})));
        scene.stack->push(new Move(keys[0], Side::left, -3, 1, false));
        scene.stack->push(new Move(keys[0], Side::left, -4, 1, true));
        scene.stack->undo();
        scene.stack->clear();
        QCOMPARE(alive(keys), 2);
        scene.stack->push(new Move(keys[1], Side::left, -3, 1, false));
        scene.animation.reset();
        scene.stack.reset();
        QCOMPARE(alive(keys), 0);
    }
};

QTEST_GUILESS_MAIN(MoveTangentCommandTest)
#include "MoveTangentCommandTest.moc"
