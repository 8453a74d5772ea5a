#include "commands/ChangeKeyParamCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "commands/StretchRangeCommand.h"
#include "tests/faults/FaultOperations.h"

namespace {

using namespace ZT::AnimCmd;
using Curve = FaultScene::Curve;
using Key = FaultScene::Key;
using Scene = FaultScene;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;
using Build = std::function<QUndoCommand*(Scene&)>;
using CurvesKeysMap = QMap<Curve*, Curve::KeysIndexMap>;

Curve::KeysIndexMap frames(const Scene& scene) {
    return scene.forEachStanding<unsigned int>([](Key* key) { return ZT::index(key); });
}

QList<Key*> listOf(const Scene& scene) {
    return scene.standing().values();
}

QUndoCommand* replacement(Scene& s) {
    return new ReplaceCurveKeysCommand(
        CurvesKeysMap{{&s.curve(0), {{s.key(0), 2}, {s.key(3), 8}}}, {&s.curve(1), {{s.key(4), 2}}}},
        CurvesKeysMap{{&s.curve(0), {{s.key(8), 2}, {s.key(9), 4}}}, {&s.curve(1), {{s.key(10), 11}}}});
}

QUndoCommand* movement(Scene& s) {
    const auto target = [](Key* key) {
        return QPointF(ZT::index(key) + 1, static_cast<double>(key->getValue()) + 1);
    };
    return new MoveCurveKeysCommand(s.forEachStanding<QPointF>(target), true);
}

// The first key of each curve goes to a frame that a key outside of the range holds.
QUndoCommand* collidingRange(Scene& s) {
    Curve::KeysIndexMap keys{{s.key(0), 2}, {s.key(1), 4}, {s.key(4), 2}, {s.key(5), 4}};
    return new MoveRangeCommand(&s.markers(), keys, 2, 4, 4, true);
}

struct Kind {
    const char* redo;
    const char* undo;
    const char* redoAgain;
    Law law;
    Build build;
    bool handsOverByException = false;
};

} // namespace

std::vector<FaultOperation> faultyCommands() {
    // A replacement is taken back curve by curve: with several curves neither one nor the other is left.
    const std::vector<Kind> kinds{
        {"ReplaceCurveKeysCommand, redo", "ReplaceCurveKeysCommand, undo",
         "ReplaceCurveKeysCommand, redo again", Law::curveByCurve, replacement},
        {"AddCurveKeysCommand, redo", "AddCurveKeysCommand, undo", "AddCurveKeysCommand, redo again",
         Law::curveByCurve,
         [](Scene& s) {
             return new AddCurveKeysCommand(CurvesKeysMap{{&s.curve(0), {{s.key(8), 9}}},
                                                          {&s.curve(1), {{s.key(9), 4}, {s.key(10), 7}}}});
         }},
        {"RemoveCurveKeysCommand, redo", "RemoveCurveKeysCommand, undo", "RemoveCurveKeysCommand, redo again",
         Law::curveByCurve, [](Scene& s) { return new RemoveCurveKeysCommand(listOf(s)); }},
        {"MoveCurveKeysCommand, redo", "MoveCurveKeysCommand, undo", "MoveCurveKeysCommand, redo again",
         Law::carriedThrough, movement},
        {"MoveTangentCommand, redo", "MoveTangentCommand, undo", "MoveTangentCommand, redo again",
         Law::carriedThrough,
         [](Scene& s) { return new MoveTangentCommand(s.standing(), Side::left, -0.5F, 1.0F, true); }},
        {"ChangeInterpTypeCommand, redo", "ChangeInterpTypeCommand, undo",
         "ChangeInterpTypeCommand, redo again", Law::carriedThrough,
         [](Scene& s) {
             QMultiMap<Key*, Side> tangents;
             for (Key* const key : s.standing()) {
                 tangents.insert(key, Side::left);
                 tangents.insert(key, Side::right);
             }
             return new ChangeInterpTypeCommand(tangents, Type::bezier);
         }},
        {"ChangeTangentParamCommand, redo", "ChangeTangentParamCommand, undo",
         "ChangeTangentParamCommand, redo again", Law::carriedThrough,
         [](Scene& s) { return new ChangeTangentParamCommand(s.standing(), Type::bezier, true, false); }},
        {"ChangeSmoothnessCommand, redo", "ChangeSmoothnessCommand, undo",
         "ChangeSmoothnessCommand, redo again", Law::carriedThrough,
         [](Scene& s) { return new ChangeSmoothnessCommand(s.standing(), true); }},
        {"ChangeSymmetryCommand, redo", "ChangeSymmetryCommand, undo", "ChangeSymmetryCommand, redo again",
         Law::carriedThrough, [](Scene& s) { return new ChangeSymmetryCommand(s.standing(), true); }},
        {"MoveRangeCommand, redo", "MoveRangeCommand, undo", "MoveRangeCommand, redo again",
         Law::carriedThrough,
         [](Scene& s) { return new MoveRangeCommand(&s.markers(), frames(s), 2, 4, 6, true); }},
        {"MoveRangeCommand with collisions, redo", "MoveRangeCommand with collisions, undo",
         "MoveRangeCommand with collisions, redo again", Law::carriedThrough, collidingRange, true},
        {"StretchRangeCommand, redo", "StretchRangeCommand, undo", "StretchRangeCommand, redo again",
         Law::carriedThrough,
         [](Scene& s) {
             return new StretchRangeCommand(&s.markers(), frames(s), 2, 6, 12, true, StretchSide::end);
         }},
    };
    std::vector<FaultOperation> operations;
    const auto redo = [](Scene& s) { s.command->redo(); };
    const auto undo = [](Scene& s) { s.command->undo(); };
    for (const Kind& kind : kinds) {
        const auto build = [make = kind.build](Scene& s) { s.command.reset(make(s)); };
        const auto buildAndRedo = [=](Scene& s) {
            build(s);
            redo(s);
        };
        const auto buildRedoAndUndo = [=](Scene& s) {
            buildAndRedo(s);
            undo(s);
        };
        operations.push_back(
            {kind.redo, kind.law, [](Scene& /*s*/) {}, buildAndRedo, kind.build, kind.handsOverByException});
        operations.push_back(
            {kind.undo, kind.law, buildAndRedo, undo, kind.build, kind.handsOverByException});
        operations.push_back(
            {kind.redoAgain, kind.law, buildRedoAndUndo, redo, kind.build, kind.handsOverByException});
    }
    return operations;
}
