#include "commands/MergeableCommand.h"
#include "CommandHarness.h"
#include "commands/ChangeKeyParamCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "commands/StretchRangeCommand.h"

#include <type_traits>

namespace {

using namespace Harness;
using namespace ZT::AnimCmd;

static_assert(std::is_abstract_v<ZT::MergeableCommand>);
static_assert(std::has_virtual_destructor_v<ZT::MergeableCommand>);
static_assert(
    std::is_same_v<decltype(&ZT::MergeableCommand::isFinalCommand), bool (ZT::MergeableCommand::*)() const>);
static_assert(!std::is_base_of_v<QUndoCommand, ZT::MergeableCommand>);

template <class Command>
constexpr bool isMergeable =
    std::is_convertible_v<Command*, QUndoCommand*>&& std::is_convertible_v<Command*, ZT::MergeableCommand*> &&
    !std::is_abstract_v<Command> && std::has_virtual_destructor_v<Command>;
static_assert(isMergeable<MoveCurveKeysCommand> && isMergeable<MoveTangentCommand>);
static_assert(isMergeable<ChangeRangeCommand> && isMergeable<MoveRangeCommand>);
static_assert(isMergeable<StretchRangeCommand>);
static_assert(std::is_convertible_v<MoveRangeCommand*, ChangeRangeCommand*>);
static_assert(std::is_convertible_v<StretchRangeCommand*, ChangeRangeCommand*>);
static_assert(!std::is_base_of_v<ZT::MergeableCommand, ReplaceCurveKeysCommand>);
static_assert(!std::is_base_of_v<ZT::MergeableCommand, ChangeKeyParamCommand>);

/// The mergeable classes by their id.
enum Kind { moveKeys = 1, moveTangent, changeRange, moveRange, stretchRange };
constexpr Kind allKinds[] = {moveKeys, moveTangent, changeRange, moveRange, stretchRange};

struct KindOfCommand {
    QUndoCommand* command;
    ZT::MergeableCommand* mergeable;
};

template <class Command>
KindOfCommand both(Command* command) {
    return {command, command};
}

KindOfCommand make(Scene& scene, Key* key, Kind kind, bool finalCommand) {
    ZT::AnimationMarkers* const markers = &scene.markers();
    const KeysIndexMap keys{{key, 10}};
    switch (kind) {
    case moveKeys:
        return both(new MoveCurveKeysCommand({{key, QPointF(11, 0)}}, finalCommand));
    case moveTangent:
        return both(new MoveTangentCommand(key, Side::left, 1, 2, finalCommand));
    case changeRange:
        return both(new ChangeRangeCommand(markers, keys, 3, 4, finalCommand));
    case moveRange:
        return both(new MoveRangeCommand(markers, keys, 10, 12, 11, finalCommand));
    case stretchRange:
        return both(new StretchRangeCommand(markers, keys, 10, 12, 14, finalCommand, StretchSide::end));
    }
    return {nullptr, nullptr};
}

/// Commands of all kinds for one key.
struct Commands {
    KindOfCommand make(Kind kind, bool finalCommand) {
        const KindOfCommand result = ::make(scene, key, kind, finalCommand);
        owned.emplace_back(result.command);
        return result;
    }

    Scene scene;
    Key* key = scene.addKey(10);
    std::vector<std::unique_ptr<QUndoCommand>> owned;
};

void kindColumns() {
    QTest::addColumn<int>("kind");
    QTest::newRow("move keys") << int{moveKeys};
    QTest::newRow("move tangent") << int{moveTangent};
    QTest::newRow("change range") << int{changeRange};
    QTest::newRow("move range") << int{moveRange};
    QTest::newRow("stretch range") << int{stretchRange};
}

} // namespace

class MergeableCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theIdTellsTheClass_data() { kindColumns(); }
    void theIdTellsTheClass() {
        QFETCH(int, kind);
        Commands commands;
        const KindOfCommand made = commands.make(static_cast<Kind>(kind), false);
        QCOMPARE(made.command->id(), kind);
        // Second of the two bases: the undo command comes first.
        QVERIFY(static_cast<void*>(made.command) == dynamic_cast<void*>(made.command));
        QVERIFY(static_cast<void*>(made.mergeable) != dynamic_cast<void*>(made.mergeable));
        QVERIFY(dynamic_cast<ZT::MergeableCommand*>(made.command) == made.mergeable);
    }

    void aNewCommandIsFinalAsItWasBuilt_data() { kindColumns(); }
    void aNewCommandIsFinalAsItWasBuilt() {
        QFETCH(int, kind);
        Commands commands;
        QVERIFY(!commands.make(static_cast<Kind>(kind), false).mergeable->isFinalCommand());
        QVERIFY(commands.make(static_cast<Kind>(kind), true).mergeable->isFinalCommand());
    }

    void aFinalCommandRefusesEveryMerge_data() { kindColumns(); }
    void aFinalCommandRefusesEveryMerge() {
        QFETCH(int, kind);
        Commands commands;
        const KindOfCommand older = commands.make(static_cast<Kind>(kind), true);
        for (const bool newerIsFinal : {false, true}) {
            const KindOfCommand newer = commands.make(static_cast<Kind>(kind), newerIsFinal);
            QVERIFY(!older.command->mergeWith(newer.command));
            QVERIFY(older.mergeable->isFinalCommand());
            QCOMPARE(newer.mergeable->isFinalCommand(), newerIsFinal);
        }
    }

    void aCommandThatRefusedAMergeIsFinalUntilItAcceptsOne_data() { kindColumns(); }
    void aCommandThatRefusedAMergeIsFinalUntilItAcceptsOne() {
        QFETCH(int, kind);
        Commands commands;
        const KindOfCommand older = commands.make(static_cast<Kind>(kind), false);
        for (const Kind other : allKinds) {
            if (other == kind) {
                continue;
            }
            QVERIFY(!older.command->mergeWith(commands.make(other, false).command));
            QVERIFY(older.mergeable->isFinalCommand());
            QVERIFY(older.command->mergeWith(commands.make(static_cast<Kind>(kind), false).command));
            QVERIFY(!older.mergeable->isFinalCommand());
        }
        const QUndoCommand plain;
        QVERIFY(!older.command->mergeWith(&plain));
        QVERIFY(older.mergeable->isFinalCommand());
    }

    void aMergeTakesOverWhetherTheDragHasEnded_data() { kindColumns(); }
    void aMergeTakesOverWhetherTheDragHasEnded() {
        QFETCH(int, kind);
        Commands commands;
        const KindOfCommand older = commands.make(static_cast<Kind>(kind), false);
        QVERIFY(older.command->mergeWith(commands.make(static_cast<Kind>(kind), false).command));
        QVERIFY(!older.mergeable->isFinalCommand());
        QVERIFY(older.command->mergeWith(commands.make(static_cast<Kind>(kind), true).command));
        QVERIFY(older.mergeable->isFinalCommand());
        QVERIFY(!older.command->mergeWith(commands.make(static_cast<Kind>(kind), false).command));
        QVERIFY(older.mergeable->isFinalCommand());
    }

    void theHistoryHoldsOneEntryForEachDrag_data() { kindColumns(); }
    void theHistoryHoldsOneEntryForEachDrag() {
        QFETCH(int, kind);
        Commands commands;
        QUndoStack& stack = *commands.scene.stack;
        const auto push = [&](int pushed, bool finalCommand) {
            stack.push(::make(commands.scene, commands.key, static_cast<Kind>(pushed), finalCommand).command);
        };
        for (int drag = 1; drag <= 2; ++drag) {
            push(kind, false);
            push(kind, false);
            push(kind, true);
            QCOMPARE(stack.count(), drag);
        }
        // Another kind is never offered: the open drag stays open but is no longer on top.
        push(kind, false);
        push(kind % 5 + 1, false);
        QCOMPARE(stack.count(), 4);
        push(kind, false);
        QCOMPARE(stack.count(), 5);
    }

    void aChangeRangeRefusesAMoveRangeWhenAsked() {
        Commands commands;
        for (const Kind older : {changeRange, moveRange, stretchRange}) {
            for (const Kind newer : {changeRange, moveRange, stretchRange}) {
                const KindOfCommand asked = commands.make(older, false);
                const bool merged = asked.command->mergeWith(commands.make(newer, false).command);
                QCOMPARE(merged, older == newer);
                QCOMPARE(asked.mergeable->isFinalCommand(), older != newer);
            }
        }
    }
};

QTEST_GUILESS_MAIN(MergeableCommandTest)
#include "MergeableCommandTest.moc"
