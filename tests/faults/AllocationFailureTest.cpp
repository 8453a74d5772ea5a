#include "tests/faults/FailEachAllocation.h"

#include "commands/ChangeRangeCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "model/EditableMotionCurveExceptions.h"
#include "tests/faults/FaultOperations.h"

#include <QtTest>

#include <functional>
#include <memory>
#include <utility>

class AllocationFailureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anOperationWithoutMemoryLosesNoKey_data();
    void anOperationWithoutMemoryLosesNoKey();
    void manyOperationsNeedMemory();
    void aReplacementWithoutMemoryCanBeTakenBackOrTriedAgain_data();
    void aReplacementWithoutMemoryCanBeTakenBackOrTriedAgain();
    void aMergeWithoutMemoryLeavesTwoCommands_data();
    void aMergeWithoutMemoryLeavesTwoCommands();
    void aCommandThatCannotBeBuiltLeavesItsKeysToTheCaller();
    void aKeyThatCannotBeTakenInIsNotAnnounced();
    void aNewcomerWithoutMemoryFailsOrStandsConnected();
    void keysThatARangeCommandNamesAsFailedAreOutside();
    void aKeyWhoseWayBackIsBlockedIsInItsCurveOrMissedAloud();
};

void AllocationFailureTest::anOperationWithoutMemoryLosesNoKey_data() {
    QTest::addColumn<FaultOperation>("operation");
    for (const auto& operations : {faultyEdits(), faultyCommands()}) {
        for (const FaultOperation& operation : operations) {
            QTest::newRow(operation.name) << operation;
        }
    }
}

void AllocationFailureTest::anOperationWithoutMemoryLosesNoKey() {
    QFETCH(const FaultOperation, operation);
    const int deaths = operation.deaths();
    failEachAllocation([&](std::size_t n) {
        FaultScene scene;
        operation.prepare(scene);
        const bool hasFailed = runFailing(n, [&] { operation.run(scene); });
        [&] { QVERIFY(scene.deaths() <= deaths); }();
        const QString fault = scene.fault();
        scene.command.reset();
        [&] { QCOMPARE(scene.fault(), QString()); }();
        [&] { QCOMPARE(QString("allocation %1: ").arg(n) + fault, QString("allocation %1: ").arg(n)); }();
        return hasFailed;
    });
}

void AllocationFailureTest::manyOperationsNeedMemory() {
    int failed = 0;
    for (const auto& operations : {faultyEdits(), faultyCommands()}) {
        for (const FaultOperation& operation : operations) {
            FaultScene scene;
            operation.prepare(scene);
            failed += runFailing(1, [&] { operation.run(scene); }) ? 1 : 0;
        }
    }
    QVERIFY(failed > 20);
}

void AllocationFailureTest::aReplacementWithoutMemoryCanBeTakenBackOrTriedAgain_data() {
    QTest::addColumn<bool>("isTriedAgain");
    QTest::addColumn<bool>("isUndo");
    for (const bool isUndo : {false, true}) {
        QTest::addRow("%s, taken back", isUndo ? "undo" : "redo") << false << isUndo;
        QTest::addRow("%s, tried again", isUndo ? "undo" : "redo") << true << isUndo;
    }
}

// Some keys are displaced, some leave and one is to enter a curve in which it stands by then.
void AllocationFailureTest::aReplacementWithoutMemoryCanBeTakenBackOrTriedAgain() {
    QFETCH(const bool, isTriedAgain);
    QFETCH(const bool, isUndo);
    using Maps = QMap<FaultScene::Curve*, FaultScene::Curve::KeysIndexMap>;
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        FaultScene scene;
        scene.command = std::make_unique<ZT::AnimCmd::ReplaceCurveKeysCommand>(
            Maps{{&scene.curve(0), {{scene.key(0), 2}}}, {&scene.curve(1), {{scene.key(4), 2}}}},
            Maps{{&scene.curve(0), {{scene.key(8), 4}, {scene.key(9), 9}}},
                 {&scene.curve(1), {{scene.key(10), 8}}}});
        scene.curve(0).insert(9, scene.key(9));
        const QString before = scene.state();
        scene.command->redo();
        const QString after = scene.state();
        if (!isUndo) {
            scene.command->undo();
        }
        const auto run = [&](bool undoes) { undoes ? scene.command->undo() : scene.command->redo(); };
        bool isDone = false;
        const bool hasFailed = runFailing(n, [&] {
            run(isUndo);
            isDone = true;
        });
        if (isTriedAgain && !isDone) {
            run(isUndo);
            [&] { QCOMPARE(scene.state(), isUndo ? before : after); }();
        }
        run(!isUndo);
        [&] { QCOMPARE(scene.state(), isUndo ? after : before); }();
        [&] { QCOMPARE(scene.fault(), QString()); }();
        for (std::size_t i = 0; i < FaultScene::keyCount; ++i) {
            [&] { QVERIFY(scene.isAlive(i)); }();
        }
        return hasFailed;
    });
    QVERIFY(failures > 0);
}

using BuildStep = std::function<QUndoCommand*(FaultScene&, int step)>;
Q_DECLARE_METATYPE(BuildStep)

void AllocationFailureTest::aMergeWithoutMemoryLeavesTwoCommands_data() {
    using namespace ZT::AnimCmd;
    QTest::addColumn<BuildStep>("build");
    QTest::newRow("keys") << BuildStep([](FaultScene& s, int step) {
        return new MoveCurveKeysCommand(s.forEachStanding<QPointF>([step](FaultScene::Key* key) {
            return QPointF(ZT::index(key), step);
        }),
                                        false);
    });
    QTest::newRow("a range that finds frames taken") << BuildStep([](FaultScene& s, int step) {
        const auto first = static_cast<unsigned int>(step);
        return new MoveRangeCommand(&s.markers(),
                                    {{s.key(step == 1 ? 0 : 1), 2U * first}, {s.key(4), 1U + first}},
                                    first + 1U, first + 3U, first + 3U, false);
    });
}

void AllocationFailureTest::aMergeWithoutMemoryLeavesTwoCommands() {
    QFETCH(const BuildStep, build);
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        FaultScene scene;
        const QString before = scene.state();
        scene.command.reset(build(scene, 1));
        scene.command->redo();
        std::unique_ptr<QUndoCommand> step(build(scene, 2));
        step->redo();
        const auto* const range = dynamic_cast<ZT::AnimCmd::ChangeRangeCommand*>(step.get());
        const auto failedKeys =
            range != nullptr ? range->failedKeys() : std::vector<ZT::EditableMotionCurveKey*>();
        bool isMerged = false;
        const bool hasFailed = runFailing(n, [&] { isMerged = scene.command->mergeWith(step.get()); });
        [&] { QVERIFY(hasFailed || isMerged); }();
        if (isMerged) {
            step.reset();
        } else {
            [&] { QVERIFY(range == nullptr || range->failedKeys() == failedKeys); }();
            step->undo();
        }
        scene.command->undo();
        [&] { QCOMPARE(scene.state(), before); }();
        for (std::size_t i = 0; i < FaultScene::keyCount; ++i) {
            [&] { QVERIFY(scene.isAlive(i)); }();
        }
        return hasFailed;
    });
    QVERIFY(failures > 0);
}

void AllocationFailureTest::aKeyThatCannotBeTakenInIsNotAnnounced() {
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        const FaultScene scene;
        int announced = 0;
        connect(&scene.curve(), &FaultScene::Curve::keyAdded, [&announced] { ++announced; });
        bool isDone = false;
        const bool hasFailed = runFailing(n, [&] {
            scene.curve().insert(9, scene.key(8));
            isDone = true;
        });
        [&] { QCOMPARE(isDone, announced == 1); }();
        [&] { QCOMPARE(isDone, scene.curve().getKey(9) == scene.key(8)); }();
        return hasFailed;
    });
    QVERIFY(failures > 1);
}

// What else the call was given is done by then: who gets no list of failed keys must find the key in the
// curve.
void AllocationFailureTest::aNewcomerWithoutMemoryFailsOrStandsConnected() {
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        FaultScene scene;
        ZT::EditableMotionCurve& curve = scene.curve();
        ZT::EditableMotionCurveKey* const key = scene.key(9);
        bool isFailed = false;
        const bool hasFailed = runFailing(n, [&] {
            try {
                curve.reorganizeKeys({{scene.key(0), 20}, {key, 9}});
            } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
                isFailed = failure.failedKeys == std::vector<ZT::EditableMotionCurveKey*>{key};
            }
        });
        const bool isUnchanged = curve.getKey(2) == scene.key(0);
        [&] { QCOMPARE(curve.getKey(9) == key, !isFailed && !isUnchanged); }();
        if (curve.getKey(9) == key) {
            int changes = 0;
            connect(&curve, &ZT::EditableMotionCurve::keysChanged, [&changes] { ++changes; });
            key->setValue(77);
            key->setLeftTangentOffset({-1, 1});
            curve.translateKey(key, 11);
            [&] { QCOMPARE(changes, 3); }();
        }
        return hasFailed;
    });
    QVERIFY(failures > 3);
}

void AllocationFailureTest::keysThatARangeCommandNamesAsFailedAreOutside() {
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        FaultScene scene;
        ZT::AnimCmd::MoveRangeCommand command(&scene.markers(), {{scene.key(0), 2}, {scene.key(1), 4}}, 2, 4,
                                              4, true);
        bool isDone = false;
        const bool hasFailed = runFailing(n, [&] {
            command.redo();
            isDone = true;
        });
        for (const ZT::EditableMotionCurveKey* const key : command.failedKeys()) {
            [&] { QVERIFY(key->getParentCurve() == nullptr); }();
        }
        [&] { QVERIFY(!isDone || command.failedKeys().size() == 1); }();
        return hasFailed;
    });
    QVERIFY(failures > 3);
}

// Two keys that a drag has exchanged go back together; a slot puts a third one in the way of the second.
void AllocationFailureTest::aKeyWhoseWayBackIsBlockedIsInItsCurveOrMissedAloud() {
    using ZT::AnimCmd::MoveCurveKeysCommand;
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        FaultScene scene;
        ZT::EditableMotionCurve& curve = scene.curve();
        MoveCurveKeysCommand drag({{scene.key(0), QPointF(10.0, 0.0)}, {scene.key(1), QPointF(2.0, 0.0)}},
                                  false);
        drag.redo();
        drag.redo(); // The frame that the one has left is free for the other.
        MoveCurveKeysCommand step({{scene.key(0), QPointF(4.0, 0.0)}, {scene.key(1), QPointF(2.0, 0.0)}},
                                  false);
        step.redo();
        [&] { QVERIFY(drag.mergeWith(&step)); }();
        bool isBlocked = false;
        connect(scene.key(0), &FaultScene::Key::indexChanged, [&] {
            if (!std::exchange(isBlocked, true)) {
                curve.insert(4, scene.key(8));
            }
        });
        bool isDone = false;
        const bool hasFailed = runFailing(n, [&] {
            drag.undo();
            isDone = true;
        });
        for (const std::size_t i : {0U, 1U}) {
            [&] { QVERIFY(!isDone || scene.key(i)->getParentCurve() == &curve); }();
        }
        return hasFailed;
    });
    QVERIFY(failures > 3);
}

void AllocationFailureTest::aCommandThatCannotBeBuiltLeavesItsKeysToTheCaller() {
    for (const FaultOperation& operation : faultyCommands()) {
        const std::size_t failures = failEachAllocation([&](std::size_t n) {
            FaultScene scene;
            const QString before = scene.state();
            QUndoCommand* command = nullptr;
            const bool hasFailed = runFailing(n, [&] { command = operation.build(scene); });
            [&] { QCOMPARE(scene.state(), before); }();
            scene.command.reset(command);
            for (std::size_t i = 0; i < FaultScene::keyCount; ++i) {
                [&] { QVERIFY(scene.isAlive(i)); }();
            }
            return hasFailed;
        });
        QVERIFY2(failures > 0, operation.name);
    }
}

QTEST_GUILESS_MAIN(AllocationFailureTest)
#include "AllocationFailureTest.moc"
