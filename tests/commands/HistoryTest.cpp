#include "Story.h"

#include <vector>

using namespace Harness;
using namespace ZT::AnimCmd;

class HistoryTest : public QObject {
    Q_OBJECT

    static bool undoingEverythingGivesBackWhatWasThere(Automatic automatic) {
        return rc::check("undoing everything gives back what was there", [automatic] {
            Story story(automatic);
            const int steps = *rc::gen::inRange(1, 15);
            for (int step = 0; step < steps; ++step) {
                story.goOn();
            }
            story.end();
        });
    }

private Q_SLOTS:
    void undoingEverythingGivesBackWhatWasThere() {
        QVERIFY(undoingEverythingGivesBackWhatWasThere(Automatic::no));
    }

    void undoingEverythingGivesBackWhatWasThereWithAutomaticTangents() {
        QVERIFY(undoingEverythingGivesBackWhatWasThere(Automatic::yes));
    }

    void aRemovedKeyIsFoundAgainByTheCommandsBehindItsReturn() {
        Scene scene;
        const Keys keys = scene.add({3, 7}, 0, bezier({-1.0F, 0.5F}, {1.0F, 2.0F}));
        std::vector<QString> states{scene.state()};
        for (QUndoCommand* const command :
             {static_cast<QUndoCommand*>(new MoveCurveKeysCommand({{keys[0], QPointF(5, 2)}}, true)),
              static_cast<QUndoCommand*>(new ChangeSmoothnessCommand(keys[0], true)),
              static_cast<QUndoCommand*>(new RemoveCurveKeysCommand(keys[1]))}) {
            scene.stack->push(command);
            states.push_back(scene.state());
        }
        scene.stack->push(new MoveCurveKeysCommand({{keys[0], QPointF(7, 1)}}, true));
        states.push_back(scene.state());
        for (const int index : {0, 4, 2, 3, 1, 4, 0}) {
            scene.stack->setIndex(index);
            QCOMPARE(scene.state(), states[static_cast<std::size_t>(index)]);
        }
    }

    void aFailedKeyReturnsBeforeTheCommandsThatPlacedItAreUndone() {
        Scene scene;
        const Keys keys = scene.makeKeys(3);
        const auto watched = watch(keys);
        const QString empty = scene.state();
        scene.stack->push(
            new AddCurveKeysCommand({{&scene.curve(), {{keys[0], 10}, {keys[1], 11}, {keys[2], 13}}}}));
        scene.stack->push(new MoveRangeCommand(&scene.markers(), {{keys[0], 10}, {keys[1], 11}}, 10, 11, 12,
                                               true)); // The second key meets the third.
        QCOMPARE(framesOf(keys), QString("12 - 13"));
        scene.stack->push(new RemoveCurveKeysCommand(keys[0]));
        scene.stack->setIndex(0);
        QCOMPARE(scene.state(), empty);
        scene.stack->setIndex(3);
        QCOMPARE(framesOf(keys), QString("- - 13"));
        scene.stack->clear();
        QCOMPARE(alive(watched), 1);
    }

    void aDroppedBranchLeavesTheKeysOfTheRestAlone() {
        Scene scene;
        const auto watched = watch(scene.add({10, 11, 13}));
        const QString before = scene.state();
        scene.stack->push(new RemoveCurveKeysCommand(watched[2]));
        scene.stack->push(new AddCurveKeysCommand(scene.makeKey(), &scene.curve(), 12));
        scene.stack->push(new MoveRangeCommand(&scene.markers(), {{watched[1], 11}}, 11, 11, 12, true));
        QVERIFY(watched[1]->getParentCurve() == nullptr);
        scene.stack->setIndex(1);
        scene.stack->push(new MoveCurveKeysCommand({{watched[0], QPointF(13, 0)}}, true));
        QCOMPARE(alive(watched), 3);
        scene.stack->setIndex(0);
        QCOMPARE(scene.state(), before);
    }
};

QTEST_GUILESS_MAIN(HistoryTest)
#include "HistoryTest.moc"
