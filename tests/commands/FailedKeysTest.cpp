#include "BlockedRange.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"

#include <memory>
#include <utility>

using namespace Harness;
using Change = ZT::AnimCmd::ChangeRangeCommand;
using Move = ZT::AnimCmd::MoveRangeCommand;

/// Whose the keys are that a range command could not place.
class FailedKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theCommandOwnsAFailedKeyForAsLongAsNoCurveHasIt_data() {
        QTest::addColumn<int>("steps");
        QTest::addColumn<int>("alive");
        QTest::newRow("constructed") << 0 << 3;
        QTest::newRow("redone") << 1 << 2;
        QTest::newRow("undone") << 2 << 3;
        QTest::newRow("redone again") << 3 << 2;
        QTest::newRow("undone again") << 4 << 3;
    }
    void theCommandOwnsAFailedKeyForAsLongAsNoCurveHasIt() {
        QFETCH(int, steps);
        QFETCH(int, alive);
        Blocked blocked;
        std::unique_ptr<Move> command(blocked.move());
        for (int step = 0; step < steps; ++step) {
            step % 2 == 0 ? command->redo() : command->undo();
        }
        command.reset();
        QCOMPARE(Harness::alive(blocked.watched), alive);
        QCOMPARE(static_cast<int>(blocked.scene.curve().size()), alive);
    }

    void aMergeHandsFailedKeysOver() {
        Blocked blocked;
        Scene& scene = blocked.scene;
        Key* const far = scene.addKey(30);
        const QString before = scene.state();
        auto* const older = blocked.move();
        scene.stack->push(older);
        auto newer = std::make_unique<Move>(&scene.markers(), KeysIndexMap{{far, 30}}, 30, 30, 13, false);
        newer->redo();
        QCOMPARE(newer->failedKeys(), Keys{far});
        QVERIFY(older->mergeWith(newer.get()));
        QCOMPARE(older->failedKeys(), Keys({blocked.keys[1], far}));
        QVERIFY(newer->failedKeys().empty());
        newer.reset();
        QCOMPARE(alive(blocked.watched), 3);
        scene.stack->undo();
        QCOMPARE(framesOf({blocked.keys[0], blocked.keys[1], blocked.keys[2], far}), QString("10 11 13 30"));
        QCOMPARE(scene.state(), before);
    }

    void aMergedCommandDeletesTheFailedKeysOfAllItsSteps() {
        Blocked blocked;
        Scene& scene = blocked.scene;
        Key* const far = scene.addKey(30);
        const auto watched = watch({blocked.keys[1], far});
        scene.stack->push(blocked.move());
        scene.stack->push(new Move(&scene.markers(), {{far, 30}}, 30, 30, 13, true));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(alive(watched), 2);
        scene.stack->clear();
        QCOMPARE(alive(watched), 0);
        QCOMPARE(frames(scene.curve()), QString("12 13"));
    }

    void aRefusedMergeLeavesFailedKeysWithTheirCommand() {
        Blocked blocked;
        std::unique_ptr<Move> older(blocked.move(12, true));
        older->redo();
        Move newer(&blocked.scene.markers(), {{blocked.keys[0], 12}}, 12, 12, 13, false);
        newer.redo();
        QVERIFY(!older->mergeWith(&newer));
        QCOMPARE(older->failedKeys(), Keys{blocked.keys[1]});
        QCOMPARE(newer.failedKeys(), Keys{blocked.keys[0]});
        older.reset();
        QVERIFY(blocked.watched[1].isNull());
        QVERIFY(!blocked.watched[0].isNull());
    }

    void undoReportsTheKeysThatItCannotPlace() {
        Scene scene;
        const auto watched = watch(scene.add({10, 20}));
        auto* const command = new Move(&scene.markers(), {{watched[0], 10}}, 10, 10, 12, true);
        scene.stack->push(command);
        scene.curve().translateKey(watched[1], 10);
        scene.stack->undo();
        QCOMPARE(command->failedKeys(), Keys{watched[0]});
        QVERIFY(watched[0]->getParentCurve() == nullptr);
        scene.stack->redo(); // Back in the curve, it belongs to that again.
        QVERIFY(command->failedKeys().empty());
        QCOMPARE(framesOf({watched[0], watched[1]}), QString("12 10"));
        scene.stack->clear();
        QCOMPARE(alive(watched), 2);
    }

    void aKeyThatSomebodyElsePutIntoACurveIsLeftAlone() {
        Blocked blocked;
        blocked.scene.stack->push(blocked.move());
        blocked.scene.curve().insert(50, blocked.keys[1]);
        blocked.scene.stack->clear();
        QCOMPARE(alive(blocked.watched), 3);
        blocked.scene.stack->push(blocked.move());
    }

    void aKeyThatDiedInACurveMeanwhileIsNotTouched() {
        Blocked blocked;
        blocked.scene.stack->push(blocked.move());
        blocked.scene.curve().insert(50, blocked.keys[1]);
        blocked.scene.curve().remove(50U);
        blocked.scene.stack->clear();
        QCOMPARE(alive(blocked.watched), 2);
    }

    void aFailedKeyThatALaterEntryTookOutAgainIsThatEntrys() {
        Blocked blocked;
        Scene& scene = blocked.scene;
        scene.stack->setUndoLimit(2);
        scene.stack->push(blocked.move(12, true));
        scene.stack->push(new ZT::AnimCmd::AddCurveKeysCommand(blocked.keys[1], &scene.curve(), 50));
        scene.stack->push(new ZT::AnimCmd::RemoveCurveKeysCommand(blocked.keys[1])); // The move is gone.
        QCOMPARE(alive(blocked.watched), 3);
        scene.stack->undo();
        QCOMPARE(ZT::index(blocked.keys[1]), 50U);
    }

    void aFailedKeyThatDiedWithALaterEntryIsForgotten() {
        Blocked blocked;
        Scene& scene = blocked.scene;
        scene.stack->push(blocked.move(12, true));
        scene.stack->push(new ZT::AnimCmd::AddCurveKeysCommand(blocked.keys[1], &scene.curve(), 50));
        scene.stack->undo();
        scene.stack->push(new Change(&scene.markers(), {}, 1, 2, true));
        QVERIFY(blocked.watched[1].isNull());
        scene.stack->undo();
        scene.stack->undo();
        QCOMPARE(frames(scene.curve()), QString("10 13"));
        scene.stack->redo();
        QCOMPARE(frames(scene.curve()), QString("12 13"));
    }

    void aKeyThatTheCurveOnlyMadeAndCannotPlaceStaysWithItsOwner() {
        Scene scene;
        scene.addKey(12);
        const QPointer<Key> made =
            Key::_toEditable(std::make_pair(0U, scene.curve().createCurveKey())).second;
        auto* const command = new Move(&scene.markers(), {{made, 10}}, 10, 10, 12, true);
        scene.stack->push(command);
        QCOMPARE(command->failedKeys(), Keys{made.data()});
        scene.stack->clear();
        QVERIFY(!made.isNull());
        delete made;
    }

    void aKeyThatASlotTakesOutOnItsWayBackIsTheSlots() {
        Blocked blocked;
        Scene& scene = blocked.scene;
        Key* const key = blocked.keys[1];
        scene.stack->push(blocked.move(12, true));
        connect(key, &Key::indexChanged, key, [&] { scene.curve().release(11); });
        scene.stack->undo();
        QVERIFY(key->getParentCurve() == nullptr);
        scene.stack->clear();
        QVERIFY(!blocked.watched[1].isNull());
        delete key;
    }

    void aKeyThatWasTakenOutAndCannotBePlacedStaysWithItsOwner() {
        Scene scene;
        const QPointer<Key> key = scene.addKey(10);
        auto* const command = new Move(&scene.markers(), {{key, 10}}, 10, 10, 12, true);
        scene.stack->push(command);
        QCOMPARE(scene.curve().release(12), key.data());
        scene.addKey(10);
        scene.stack->undo();
        QCOMPARE(command->failedKeys(), Keys{key.data()});
        scene.stack->clear();
        QVERIFY(!key.isNull());
        delete key;
    }

    void aFailedKeyThatSomebodyTookOutAgainAndThatFailsOnceMoreStaysWithThem() {
        Blocked blocked;
        Scene& scene = blocked.scene;
        scene.stack->push(blocked.move(12, true));
        scene.curve().insert(50, blocked.keys[1]);
        QCOMPARE(scene.curve().release(50), blocked.keys[1]);
        scene.addKey(11);
        scene.stack->undo();
        QVERIFY(blocked.keys[1]->getParentCurve() == nullptr);
        scene.stack->clear();
        QVERIFY(!blocked.watched[1].isNull());
        delete blocked.keys[1];
    }

    void aKeyThatUndoCouldNotPlaceComesBackWhenTheCommandDies_data() {
        QTest::addColumn<bool>("isFree");
        QTest::addColumn<QString>("frames");
        QTest::newRow("to its frame") << true << "10 11 13";
        QTest::newRow("behind the last") << false << "10 11 13 14";
    }
    // Older entries of the history name it.
    void aKeyThatUndoCouldNotPlaceComesBackWhenTheCommandDies() {
        QFETCH(const bool, isFree);
        QFETCH(const QString, frames);
        Blocked blocked;
        Scene& scene = blocked.scene;
        scene.stack->push(new ZT::AnimCmd::MoveCurveKeysCommand({{blocked.keys[1], QPointF(11, 7)}}, true));
        scene.stack->push(blocked.move(12, true));
        scene.addKey(11);
        scene.stack->undo();
        QVERIFY(blocked.keys[1]->getParentCurve() == nullptr);
        if (isFree) {
            scene.curve().remove(11U);
        }
        scene.stack->push(new Change(&scene.markers(), {}, 1, 2, true));
        QCOMPARE(Snapshot::frames(scene.curve()), frames);
        scene.stack->undo();
        scene.stack->undo();
        QCOMPARE(alive(blocked.watched), 3);
        QCOMPARE(blocked.keys[1]->getValue(), 0.0F);
    }

    void aKeyThatAnotherEntryOwnsAndTakesWithItIsForgotten() {
        Scene scene;
        scene.stack->setUndoLimit(2);
        const QPointer<Key> key = scene.addKey(10);
        scene.stack->push(new Move(&scene.markers(), {{key, 10}}, 10, 10, 12, true));
        scene.stack->push(new Move(&scene.markers(), {{key, 12}}, 12, 12, 20, true));
        scene.stack->undo();
        scene.stack->undo();
        scene.addKey(12);
        scene.addKey(20);
        scene.stack->redo();
        scene.stack->redo(); // The key is the first entry's.
        scene.stack->push(new Change(&scene.markers(), {}, 1, 2, true));
        QVERIFY(key.isNull());
        scene.stack->undo();
        scene.stack->undo();
        QCOMPARE(frames(scene.curve()), QString("12 20"));
    }

    void theUndoLimitDeletesFailedKeys() {
        Blocked blocked;
        blocked.scene.stack->setUndoLimit(1);
        blocked.scene.stack->push(blocked.move(12, true));
        QCOMPARE(alive(blocked.watched), 3);
        blocked.scene.stack->push(new Change(&blocked.scene.markers(), {}, 1, 2, true));
        QCOMPARE(alive(blocked.watched), 2);
    }

    void aDroppedRedoBranchDeletesNoKeyOfACurve() {
        Blocked blocked;
        blocked.scene.stack->push(blocked.move(12, true));
        blocked.scene.stack->undo();
        blocked.scene.stack->push(new Change(&blocked.scene.markers(), {}, 1, 2, true));
        QCOMPARE(alive(blocked.watched), 3);
        QCOMPARE(framesOf(blocked.keys), QString("10 11 13"));
    }

    void theHistoryMayDieBeforeOrAfterTheAnimation_data() {
        QTest::addColumn<bool>("historyFirst");
        QTest::addColumn<bool>("undone");
        for (const bool historyFirst : {true, false}) {
            for (const bool undone : {true, false}) {
                QTest::addRow("%s, %s", historyFirst ? "before" : "after", undone ? "undone" : "redone")
                    << historyFirst << undone;
            }
        }
    }
    void theHistoryMayDieBeforeOrAfterTheAnimation() {
        QFETCH(bool, historyFirst);
        QFETCH(bool, undone);
        Blocked blocked;
        blocked.scene.stack->push(blocked.move(12, true));
        if (undone) {
            blocked.scene.stack->undo();
        }
        if (historyFirst) {
            blocked.scene.stack.reset();
            blocked.scene.animation.reset();
        } else {
            blocked.scene.animation.reset();
            blocked.scene.stack.reset();
        }
        QCOMPARE(alive(blocked.watched), 0);
    }

    // Who takes it out of the curve later has it.
    void aKeyThatFoundItsPlaceAgainIsNoLongerTheCommands() {
        Blocked blocked;
        {
            const std::unique_ptr<Move> command(blocked.move());
            command->redo();
            QCOMPARE(command->failedKeys().size(), std::size_t{1});
            command->undo();
            QCOMPARE(ZT::index(blocked.keys[1]), 11U);
            blocked.keys[1]->getParentCurve()->release(11);
        }
        QVERIFY(!blocked.watched[1].isNull());
        delete blocked.keys[1];
    }
};

QTEST_GUILESS_MAIN(FailedKeysTest)
#include "FailedKeysTest.moc"
