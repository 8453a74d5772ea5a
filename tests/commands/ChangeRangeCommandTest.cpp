#include "commands/ChangeRangeCommand.h"
#include "CommandHarness.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"

#include <type_traits>

namespace {

using namespace Harness;
using Change = ZT::AnimCmd::ChangeRangeCommand;
using Move = ZT::AnimCmd::MoveRangeCommand;

static_assert(std::is_same_v<decltype(std::declval<const Change&>().failedKeys()), const std::vector<Key*>&>);

/// Keys a, b and c at 10, 11 and 13. Moving the range [10, 11] to 12 with only a and b named sends b to c's
/// frame, where it cannot be placed.
struct Blocked {
    Scene scene;
    Keys keys = scene.add({10, 11, 13});
    std::vector<QPointer<Key>> watched = watch(keys);

    Move* move(unsigned int newStart = 12, bool finalCommand = false) {
        return new Move(&scene.markers(), {{keys[0], 10}, {keys[1], 11}}, 10, 11, newStart, finalCommand);
    }
};

/// Thinks better of the frames that it had for its keys.
class Forgetful : public Change {
public:
    Forgetful(ZT::AnimationMarkers* markers, Key* key)
        : Change(markers, {{key, 10}}, 3, 4, true) {
        newIndices[key->getParentCurve()].insert(key, 20);
        forgetKeys();
    }
};

} // namespace

class ChangeRangeCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTextRunsFromTheMarkersRangeToTheNewOne() {
        Scene scene;
        scene.setRange(5, 4000000000U);
        QCOMPARE(Change(&scene.markers(), {}, 10000, 2, false).text(),
                 QString("Range command from (5; 4000000000) to (10000; 2)"));
    }

    void theTextIsTranslatedInTheContextOfTheClass() {
        const RecordingTranslator translator;
        Scene scene;
        QCOMPARE(Change(&scene.markers(), {}, 3, 4, false).text(),
                 QString("translated Range command from (1; 1) to (3; 4)"));
        QCOMPARE(translator.asked,
                 QStringList{"ZT::AnimCmd::ChangeRangeCommand: Range command from (%1; %2) to (%3; %4)"});
    }

    void keysThatItForgetsStayWhereTheyAre() {
        Scene scene;
        Key* const key = scene.addKey(10);
        Forgetful command(&scene.markers(), key);
        command.redo();
        QCOMPARE(ZT::index(key), 10U);
        key->getParentCurve()->translateKey(key, 12);
        command.undo();
        QCOMPARE(ZT::index(key), 12U);
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

    void itChangesTheRangeBothWays() {
        Scene scene;
        scene.setRange(10, 20);
        const Walk seen = walk(scene, new Change(&scene.markers(), {}, 15, 30, false));
        QCOMPARE(seen.redoSignals,
                 QString("markers.rangeStartIndexChanged(15), markers.rangeEndIndexChanged(30)"));
        QCOMPARE(seen.undoSignals,
                 QString("markers.rangeStartIndexChanged(10), markers.rangeEndIndexChanged(20)"));
    }

    void theRangeComesBackExactly_data() {
        QTest::addColumn<uint>("start");
        QTest::addColumn<uint>("end");
        QTest::addColumn<QString>("shown");
        QTest::newRow("the same") << 10U << 20U << "10-20";
        QTest::newRow("behind") << 30U << 40U << "30-40";
        QTest::newRow("before") << 1U << 2U << "1-2";
        QTest::newRow("reversed") << 30U << 5U << "5-5";
        QTest::newRow("reversed inside") << 18U << 12U << "12-12";
        QTest::newRow("all") << 0U << 4294967295U << "0-4294967295";
        QTest::newRow("reversed at the ends") << 4294967295U << 0U << "0-0";
    }
    void theRangeComesBackExactly() {
        QFETCH(uint, start);
        QFETCH(uint, end);
        QFETCH(QString, shown);
        Scene scene;
        scene.setRange(10, 20);
        walk(scene, new Change(&scene.markers(), {}, start, end, false));
        scene.stack->redo();
        QCOMPARE(scene.range(), shown);
    }

    void itMovesNoKeyButPutsItsKeysBackOnUndo() {
        Scene scene(2);
        const Keys keys = scene.add({3, 5});
        Key* const other = scene.addKey(8, record(), 1);
        // The frames in the map are not used.
        const KeysIndexMap given{{keys[0], 70}, {keys[1], 71}, {other, 72}, {nullptr, 73}};
        scene.stack->push(new Change(&scene.markers(), given, 2, 6, false));
        QCOMPARE(framesOf({keys[0], keys[1], other}), QString("3 5 8"));
        QVERIFY(!scene.recorder.take().contains("curve"));
        scene.curve().translateKey(keys[0], 4);
        scene.curve(1).translateKey(other, 9);
        scene.recorder.take();
        scene.stack->undo();
        QCOMPARE(framesOf({keys[0], keys[1], other}), QString("3 5 8"));
        QCOMPARE(scene.recorder.take(),
                 QString("a.indexChanged(3), b.indexChanged(5), curve0.keysChanged(), "
                         "c.indexChanged(8), curve1.keysChanged(), curve1.greaterIndexChanged(8, 9), "
                         "markers.rangeStartIndexChanged(1), markers.rangeEndIndexChanged(1)"));
    }

    void keysThatWereInNoCurveAreIgnored() {
        Scene scene;
        const std::unique_ptr<Key> loose(scene.makeKey());
        const Walk seen =
            walk(scene, new Change(&scene.markers(), {{loose.get(), 3}, {nullptr, 4}}, 2, 6, false));
        QVERIFY(!seen.undoSignals.contains("curve"));
        QVERIFY(loose->getParentCurve() == nullptr);
    }

    void aDragIsOneEntryWhoseTextRunsFromItsStartToTheMarkers() {
        Scene scene;
        scene.setRange(10, 20);
        const QString before = scene.state();
        scene.stack->push(new Change(&scene.markers(), {}, 11, 21, false));
        scene.stack->push(new Change(&scene.markers(), {}, 12, 22, false));
        scene.stack->push(new Change(&scene.markers(), {}, 30, 5, true));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(scene.stack->text(0), QString("Range command from (10; 20) to (5; 5)"));
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
        scene.stack->redo();
        QCOMPARE(scene.range(), QString("5-5"));
        QCOMPARE(scene.stack->text(0), QString("Range command from (10; 20) to (5; 5)"));
    }

    void aMergeKeepsTheOlderFrameOfAKeyAndAddsKeysNotHeldYet() {
        Scene scene;
        const Keys keys = scene.add({3, 5});
        scene.stack->push(new Change(&scene.markers(), {{keys[0], 0}}, 2, 6, false));
        scene.curve().translateKey(keys[0], 30);
        scene.stack->push(new Change(&scene.markers(), {{keys[0], 0}, {keys[1], 0}}, 2, 7, false));
        QCOMPARE(scene.stack->count(), 1);
        scene.curve().translateKey(keys[0], 40);
        scene.curve().translateKey(keys[1], 50);
        scene.stack->undo();
        QCOMPARE(framesOf(keys), QString("3 5"));
    }

    void aMergeTakesTheNewFramesOver() {
        Scene scene;
        const Keys keys = scene.add({10, 12, 15});
        const KeysIndexMap given = whereTheyStand(keys);
        const QString before = scene.state();
        scene.stack->push(new Move(&scene.markers(), given, 10, 12, 11, false));
        scene.stack->push(new Move(&scene.markers(), given, 10, 12, 20, true));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(framesOf(keys), QString("20 22 12"));
        const QString after = scene.state();
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
        scene.stack->redo();
        QCOMPARE(scene.state(), after);
    }

    void aKeyThatCannotBePlacedIsReportedAndComesBackOnUndo() {
        Blocked blocked;
        Scene& scene = blocked.scene;
        auto* const command = blocked.move();
        const Walk seen = walk(scene, command);
        QCOMPARE(seen.redoSignals,
                 QString("a.indexChanged(12), curve0.keyAboutToBeRemoved(b), curve0.keysChanged(), "
                         "markers.rangeStartIndexChanged(12), markers.rangeEndIndexChanged(12), "
                         "markers.rangeEndIndexChanged(13)"));
        QCOMPARE(seen.undoSignals, QString("a.indexChanged(10), b.indexChanged(11), curve0.keyAdded(b), "
                                           "curve0.keysChanged(), markers.rangeStartIndexChanged(1), "
                                           "markers.rangeEndIndexChanged(1)"));
        QVERIFY(command->failedKeys().empty());
        scene.stack->redo();
        QCOMPARE(command->failedKeys(), Keys{blocked.keys[1]});
        QCOMPARE(framesOf(blocked.keys), QString("12 - 13"));
        QCOMPARE(scene.range(), QString("12-13"));
    }

    void anotherCurveIsReorganisedAllTheSame() {
        Scene scene(2);
        const Keys first = scene.add({10, 12});
        const Keys second = scene.add({10, 12}, 1);
        auto* const command = new Move(&scene.markers(), {{first[0], 10}, {second[0], 10}}, 10, 10, 12, true);
        walk(scene, command);
        scene.curve(1).remove(12U);
        scene.stack->redo();
        QCOMPARE(command->failedKeys(), Keys{first[0]});
        QCOMPARE(ZT::index(second[0]), 12U);
    }

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
};

QTEST_GUILESS_MAIN(ChangeRangeCommandTest)
#include "ChangeRangeCommandTest.moc"
