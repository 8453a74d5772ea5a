#include "tests/commands/CommandHarness.h"

#include "base/math/FloatBits.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"

#include <QtTest>

using namespace Harness;
using namespace ZT::AnimCmd;

class UndoExactnessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aHandleWhoseTypeChangedMeanwhileIsNotRestored_data() {
        QTest::addColumn<bool>("isLeft");
        QTest::newRow("left") << true;
        QTest::newRow("right") << false;
    }
    void aHandleWhoseTypeChangedMeanwhileIsNotRestored() {
        QFETCH(const bool, isLeft);
        const Side changed = isLeft ? Side::left : Side::right;
        const Side other = isLeft ? Side::right : Side::left;
        Key key(bezier({-1.0F, 1.0F}, {1.0F, 1.0F}));
        const Record captured = bezier({-2.0F, 2.0F}, {2.0F, 2.0F});
        key.setTangentType(changed, Type::linear);
        const auto before = key.getTangentOffset(changed);
        QVERIFY(key._restoreHandles(captured));
        QCOMPARE(key.getTangentOffset(changed), before);
        QCOMPARE(key.getTangentOffset(other), qMakePair(isLeft ? 2.0F : -2.0F, 2.0F));
    }

    // The drag ends on 0 after 5; redone from -0, the last step finds an equal value and leaves the -0.
    void redoingADragGivesAZeroTheSignThatTheDragGaveIt() {
        Scene scene;
        Record negative = record();
        negative.value = -0.0F;
        Key* const key = scene.addKey(3, negative);
        scene.stack->push(new MoveCurveKeysCommand({{key, QPointF(3, 5)}}, false));
        scene.stack->push(new MoveCurveKeysCommand({{key, QPointF(3, 0)}}, true));
        const QString made = scene.state();
        scene.stack->undo();
        scene.stack->redo();
        QCOMPARE(scene.state(), made);
    }

    // The key is not taken in, since it stands in the curve; undoing takes it out as if it had been.
    void aKeyThatWasNotTakenInIsNotTakenOutByUndo() {
        Scene scene;
        Key* const key = scene.addKey(3);
        const QString before = scene.state();
        scene.stack->push(new AddCurveKeysCommand({{&scene.curve(), {{key, 3}}}}));
        QCOMPARE(scene.state(), before);
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
    }

    // Each step turns the opposite handle and rounds its length; redone, the last step alone rounds it once.
    void redoingADragOfASmoothKeysHandleGivesWhatTheDragMade() {
        Scene scene;
        Key* const key = scene.addKey(3, bezier({-1.0F, 0.0F}, {0.7F, 0.3F}));
        key->setSmooth(true);
        for (int step = 1; step <= 20; ++step) {
            const float height = 0.37F * static_cast<float>(step);
            scene.stack->push(new MoveTangentCommand(key, Side::left, -1.0F, height, step == 20));
        }
        const QString made = scene.state();
        scene.stack->undo();
        scene.stack->redo();
        QCOMPARE(scene.state(), made);
    }

    // A step through NaN leaves the opposite handle NaN for the rest of the drag, but not for its redo.
    void redoingADragThroughNaNGivesWhatTheDragMade() {
        Scene scene;
        Key* const key = scene.addKey(3, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        key->setSmooth(true);
        scene.stack->push(new MoveTangentCommand(key, Side::left, -1.0F, std::nanf(""), false));
        scene.stack->push(new MoveTangentCommand(key, Side::left, -2.0F, 0.0F, true));
        const QString made = scene.state();
        scene.stack->undo();
        scene.stack->redo();
        QCOMPARE(scene.state(), made);
    }

    // The first step sends both keys to frame 20, where one finds no place; the second takes the other on.
    // The redo has room for both, so that the automatic key has another neighbour than when the handle's
    // command was built. That command's undo writes the handle back that was right then.
    void undoLeavesAutomaticHandlesAsTheirNeighboursHaveThem() {
        Scene scene;
        Key* const automatic = scene.addKey(0, record(Type::bezier, Type::bezierAuto));
        const Keys dragged = scene.add({10, 11});
        scene.stack->push(
            new MoveRangeCommand(&scene.markers(), {{dragged[0], 10}, {dragged[1], 10}}, 10, 11, 20, false));
        scene.stack->push(
            new MoveRangeCommand(&scene.markers(), {{dragged[0], 10}, {dragged[1], 10}}, 10, 11, 25, true));
        QCOMPARE(framesOf(dragged), QString("25 -"));
        scene.stack->push(new MoveTangentCommand(automatic, Side::left, -1.0F, 1.0F, true));
        scene.stack->setIndex(0);
        scene.stack->setIndex(1);
        QCOMPARE(framesOf(dragged), QString("25 20"));
        const QString before = scene.state();
        scene.stack->redo();
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
    }
};

QTEST_GUILESS_MAIN(UndoExactnessTest)
#include "UndoExactnessTest.moc"
