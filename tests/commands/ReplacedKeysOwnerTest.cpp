#include "CommandHarness.h"
#include "commands/ReplaceCurveKeysCommand.h"

#include <memory>

using namespace Harness;
using Add = ZT::AnimCmd::AddCurveKeysCommand;
using Remove = ZT::AnimCmd::RemoveCurveKeysCommand;
using Replace = ZT::AnimCmd::ReplaceCurveKeysCommand;
using CurvesKeysMap = QMap<Curve*, KeysIndexMap>;

class ReplacedKeysOwnerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void twoKeysInsertedAtOneFrameAreOwnedAfterRedo() {
        Scene scene;
        const Keys fresh = scene.makeKeys(2);
        const auto watched = watch(fresh);
        scene.stack->push(new Add(CurvesKeysMap{{&scene.curve(), {{fresh[0], 5}, {fresh[1], 5}}}}));
        scene.stack.reset();
        QVERIFY(watched[0].isNull());
        QVERIFY(!watched[1].isNull());
    }

    void keysToInsertAreTheCommandsHoweverThoseToRemoveAreNamed() {
        Scene scene;
        const Keys old = scene.add({3});
        const auto fresh = watch({scene.makeKey()});
        { const Replace command({old[0]}, CurvesKeysMap{{&scene.curve(), {{fresh[0], 4}}}}); }
        QVERIFY(fresh[0].isNull());
    }

    void theCommandDeletesTheKeysThatAreOutsideACurve_data() {
        QTest::addColumn<int>("redos");
        QTest::addColumn<int>("undos");
        QTest::newRow("constructed") << 0 << 0;
        QTest::newRow("redone") << 1 << 0;
        QTest::newRow("undone") << 1 << 1;
        QTest::newRow("redone again") << 2 << 1;
        QTest::newRow("undone again") << 2 << 2;
    }
    void theCommandDeletesTheKeysThatAreOutsideACurve() {
        QFETCH(int, redos);
        QFETCH(int, undos);
        Scene scene;
        const Keys old = scene.add({3, 4, 5});
        const Keys fresh = scene.makeKeys(2);
        const auto oldWatched = watch({old[0], old[1]}); // One named, one displaced.
        const auto freshWatched = watch(fresh);
        auto command =
            std::make_unique<Replace>(CurvesKeysMap{{&scene.curve(), {{old[0], 3}}}},
                                      CurvesKeysMap{{&scene.curve(), {{fresh[0], 4}, {fresh[1], 8}}}});
        for (int i = 0; i < redos + undos; ++i) {
            i % 2 == 0 ? command->redo() : command->undo();
        }
        const bool isRedone = redos > undos;
        command.reset();
        QCOMPARE(alive(oldWatched), isRedone ? 0 : 2);
        QCOMPARE(alive(freshWatched), isRedone ? 2 : 0);
        QCOMPARE(frames(scene.curve()), QString(isRedone ? "4 5 8" : "3 4 5"));
    }

    void aDroppedRedoBranchDeletesTheKeysItWouldHaveAdded() {
        Scene scene;
        Key* const old = scene.addKey(3);
        const auto fresh = watch({scene.makeKey()});
        scene.stack->push(new Add(fresh[0], &scene.curve(), 3));
        scene.stack->undo();
        scene.stack->push(new Remove(static_cast<Key*>(nullptr)));
        QCOMPARE(alive(fresh), 0);
        QCOMPARE(scene.curve().getKey(3), old);
    }

    void theUndoLimitDeletesTheKeysThatCanNeverComeBack() {
        Scene scene;
        const Keys keys = scene.add({1, 2, 3});
        const auto watched = watch(keys);
        scene.stack->setUndoLimit(2);
        for (Key* const key : keys) {
            scene.stack->push(new Remove(key));
        }
        QCOMPARE(alive(watched), 2);
        QVERIFY(watched[0].isNull());
        scene.stack->setIndex(0);
        QCOMPARE(frames(scene.curve()), QString("2 3"));
    }

    void clearingTheHistoryDeletesTheRemovedKeys() {
        Scene scene;
        const Keys keys = scene.add({1, 2});
        const auto watched = watch(keys);
        scene.stack->push(new Remove(keys[0]));
        scene.stack->push(new Remove(keys[1]));
        scene.stack->undo();
        scene.stack->clear();
        QVERIFY(watched[0].isNull());
        QCOMPARE(scene.curve().getKey(2), keys[1]);
    }

    void aKeyThatACurveMadeBelongsToTheCommandThatHoldsIt_data() {
        QTest::addColumn<bool>("commandFirst");
        QTest::newRow("the command dies first") << true;
        QTest::newRow("the curve dies first") << false;
    }
    void aKeyThatACurveMadeBelongsToTheCommandThatHoldsIt() {
        QFETCH(bool, commandFirst);
        Scene scene;
        Key* const made = Key::_toEditable(std::make_pair(0U, scene.curve().createCurveKey())).second;
        const auto watched = watch({made});
        auto command = std::make_unique<Add>(made, &scene.curve(), 5);
        if (commandFirst) {
            command.reset();
            QCOMPARE(alive(watched), 0);
        }
        scene.animation.reset();
        command.reset();
        QCOMPARE(alive(watched), 0);
    }

    void anAdditionThatWasNeverDoneDeletesItsKeys() {
        Scene scene;
        const auto watched = watch(scene.makeKeys(2));
        { const Add command(CurvesKeysMap{{&scene.curve(), {{watched[0], 5}, {watched[1], 6}}}}); }
        QCOMPARE(alive(watched), 0);
    }

    // It is the curve's, and whose the curve's is after that.
    void aKeyThatUndoDidNotFindIsNotPutInAgain() {
        Scene scene;
        const QPointer<Key> key = scene.makeKey();
        {
            Add command(CurvesKeysMap{{&scene.curve(), {{key, 5}}}});
            command.redo();
            scene.curve().translateKey(key, 7);
            command.undo();
            QCOMPARE(scene.curve().release(7), key.data());
            command.redo();
            QVERIFY(scene.curve().empty());
        }
        QVERIFY(!key.isNull());
        delete key;
    }

    void aKeyThatASlotTookOutAgainIsTheSlots() {
        Scene scene;
        const QPointer<Key> key = scene.makeKey();
        {
            Add command(key, &scene.curve(), 5);
            connect(&scene.curve(), &Curve::keyAdded, key, [&] { scene.curve().release(5); });
            command.redo();
            QVERIFY(scene.curve().empty());
        }
        QVERIFY(!key.isNull());
        delete key;
    }

    void anAddedKeyThatDiedInACurveMeanwhileIsForgotten() {
        Scene scene;
        const auto watched = watch(scene.makeKeys(2));
        Add command(CurvesKeysMap{{&scene.curve(), {{watched[0], 5}, {watched[1], 6}}}});
        command.redo();
        command.undo();
        scene.curve().insert(50, watched[0]);
        scene.curve().remove(50U);
        command.redo();
        QCOMPARE(frames(scene.curve()), QString("6"));
    }

    void aRemovedKeyThatDiedInACurveMeanwhileIsForgotten() {
        Scene scene;
        const Keys keys = scene.add({3, 4});
        const auto watched = watch(keys);
        scene.stack->push(new Remove({keys[0], keys[1]}));
        scene.curve().insert(50, keys[0]);
        scene.curve().remove(50U);
        scene.stack->undo();
        QCOMPARE(frames(scene.curve()), QString("4"));
        scene.stack->redo();
        QCOMPARE(frames(scene.curve()), QString());
        scene.stack->clear();
        QCOMPARE(alive(watched), 0);
    }

    void aRemovedKeyThatALaterEntryTookOutAgainIsThatEntrys() {
        Scene scene;
        const Keys keys = scene.add({3});
        const auto watched = watch(keys);
        scene.stack->setUndoLimit(2);
        scene.stack->push(new Remove(keys[0]));
        scene.stack->push(new Add(keys[0], &scene.curve(), 50));
        scene.stack->push(new Remove(keys[0])); // The first one is gone.
        QCOMPARE(alive(watched), 1);
        scene.stack->undo();
        QCOMPARE(frames(scene.curve()), QString("50"));
    }

    void theHistoryMayDieBeforeOrAfterTheAnimation_data() {
        QTest::addColumn<bool>("historyFirst");
        QTest::addColumn<int>("index");
        for (const bool historyFirst : {true, false}) {
            for (int index = 0; index <= 3; ++index) {
                QTest::addRow("%s, %d done", historyFirst ? "before" : "after", index)
                    << historyFirst << index;
            }
        }
    }
    void theHistoryMayDieBeforeOrAfterTheAnimation() {
        QFETCH(bool, historyFirst);
        QFETCH(int, index);
        Scene scene;
        const Keys old = scene.add({1, 2});
        const Keys fresh = scene.makeKeys(2);
        auto watched = watch(old);
        watched.insert(watched.end(), fresh.begin(), fresh.end());
        scene.stack->push(new Add(fresh[0], &scene.curve(), 1));
        scene.stack->push(new Remove(QList<Key*>{fresh[0], old[1]}));
        scene.stack->push(new Add(fresh[1], &scene.curve(), 7));
        scene.stack->setIndex(index);
        if (historyFirst) {
            scene.stack.reset();
            scene.animation.reset();
        } else {
            scene.animation.reset();
            scene.stack.reset();
        }
        QCOMPARE(alive(watched), 0);
    }
};

QTEST_GUILESS_MAIN(ReplacedKeysOwnerTest)
#include "ReplacedKeysOwnerTest.moc"
