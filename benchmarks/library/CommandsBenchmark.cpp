#include "commands/ChangeKeyParamCommand.h"
#include "commands/ChangeRangeCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "commands/StretchRangeCommand.h"
#include "library/LibraryCurve.h"
#include "library/LibraryDrag.h"
#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"

#include <QUndoStack>

#include <memory>
#include <string>

namespace {

using namespace ZT::AnimCmd;
using Bench::Curve;
using Bench::Key;
using VQ::Math::Interpolation::InterpolationType;
using ZT::TangentSide;

using Command = std::unique_ptr<QUndoCommand>;

/// A curve, with all that commands are given, ready before the time runs.
struct Subject {
    explicit Subject(const Bench::Setting& setting)
        : curve(setting)
        , frames(curve.frames())
        , targets(curve.targets([](unsigned int frame) { return frame + 1.0; }, 0.5))
        , keySet(curve.keySet())
        , keyList(curve.keys.cbegin(), curve.keys.cend())
        , bothSides(curve.bothSides())
        , first(ZT::index(curve.keys.front()))
        , last(ZT::index(curve.keys.back())) {}

    /// Other keys, @p by frames behind those of the curve, for a command that will own them.
    void makeNewKeys(unsigned int by) {
        newKeys.clear();
        Curve::KeysIndexMap& keys = newKeys[&curve.curve];
        for (Key* const key : curve.keys) {
            keys.insert(new Key(key->baseMotionCurveKey()), ZT::index(key) + by);
        }
    }

    Bench::LibraryCurve curve;
    ZT::EditableAnimation animation; ///< for its markers
    ZT::AnimationMarkers* markers = animation.getMarkers();
    Curve::KeysIndexMap frames;
    Curve::KeyPosMap targets;
    QSet<Key*> keySet;
    QList<Key*> keyList;
    QMultiMap<Key*, TangentSide> bothSides;
    unsigned int first;
    unsigned int last;
    QMap<Curve*, Curve::KeysIndexMap> newKeys;
    Command command; ///< dies before the curve
};

using MakeCommand = Command (*)(Subject&);

struct CommandRow {
    const char* name;
    MakeCommand make;
    void (*prepare)(Subject&) = [](Subject&) {};
};

constexpr CommandRow commandRows[] = {
    {"MoveCurveKeysCommand",
     [](Subject& s) -> Command { return std::make_unique<MoveCurveKeysCommand>(s.targets, true); }},
    {"MoveTangentCommand",
     [](Subject& s) -> Command {
         return std::make_unique<MoveTangentCommand>(s.keySet, TangentSide::right, 0.5F, 0.25F, true);
     },
     [](Subject& s) { s.curve.curve.setTangentsType(s.bothSides, InterpolationType::bezier); }},
    {"ReplaceCurveKeysCommand",
     [](Subject& s) -> Command { return std::make_unique<ReplaceCurveKeysCommand>(s.keyList, s.newKeys); },
     [](Subject& s) { s.makeNewKeys(0); }},
    {"AddCurveKeysCommand",
     [](Subject& s) -> Command { return std::make_unique<AddCurveKeysCommand>(s.newKeys); },
     [](Subject& s) { s.makeNewKeys(1); }},
    {"RemoveCurveKeysCommand",
     [](Subject& s) -> Command { return std::make_unique<RemoveCurveKeysCommand>(s.keyList); }},
    {"ChangeInterpTypeCommand",
     [](Subject& s) -> Command {
         return std::make_unique<ChangeInterpTypeCommand>(s.bothSides, InterpolationType::linear);
     }},
    {"ChangeTangentParamCommand",
     [](Subject& s) -> Command {
         return std::make_unique<ChangeTangentParamCommand>(s.keySet, InterpolationType::bezier, true, false);
     }},
    {"ChangeSmoothnessCommand",
     [](Subject& s) -> Command { return std::make_unique<ChangeSmoothnessCommand>(s.keySet, true); }},
    {"ChangeSymmetryCommand",
     [](Subject& s) -> Command { return std::make_unique<ChangeSymmetryCommand>(s.keySet, true); }},
    {"ChangeRangeCommand",
     [](Subject& s) -> Command {
         return std::make_unique<ChangeRangeCommand>(s.markers, s.frames, s.first, s.last, true);
     }},
    {"MoveRangeCommand",
     [](Subject& s) -> Command {
         return std::make_unique<MoveRangeCommand>(s.markers, s.frames, s.first, s.last, s.first + 1U, true);
     }},
    {"StretchRangeCommand",
     [](Subject& s) -> Command {
         return std::make_unique<StretchRangeCommand>(s.markers, s.frames, s.first, s.last, 2U * s.last, true,
                                                      StretchSide::end);
     }},
};

// The command of the turn before dies outside the time.
Bench::Operation operationOf(const CommandRow& row, const Bench::Setting& setting) {
    const auto subject = std::make_shared<Subject>(setting);
    return {[=] {
                subject->command = row.make(*subject);
                subject->command->redo();
            },
            [=] { subject->command->undo(); },
            [=] {
                subject->command.reset();
                row.prepare(*subject);
            }};
}

/// The step @p step of a drag, counted from 1, that an undo stack merges with the one before.
using MakeStep = Command (*)(Subject&, unsigned int step, bool isLast);

struct DragRow {
    const char* name;
    bool isFromTheBeginning; ///< steps are made from the frames that keys had then, not from those that they
                             ///< have
    MakeStep make;
    void (*begin)(Subject&) = [](Subject&) {};
};

constexpr DragRow dragRows[] = {
    {"MoveTangentCommand, drag step", true,
     [](Subject& s, unsigned int step, bool isLast) -> Command {
         const auto length = static_cast<float>(step) / 64.0F;
         return std::make_unique<MoveTangentCommand>(s.keySet, TangentSide::right, length, length, isLast);
     },
     [](Subject& s) { s.curve.curve.setTangentsType(s.bothSides, InterpolationType::bezier); }},
    {"MoveRangeCommand, drag step", false,
     [](Subject& s, unsigned int step, bool isLast) -> Command {
         return std::make_unique<MoveRangeCommand>(s.markers, s.frames, s.first + step - 1U,
                                                   s.last + step - 1U, s.first + step, isLast);
     }},
    {"StretchRangeCommand, drag step", true,
     [](Subject& s, unsigned int step, bool isLast) -> Command {
         return std::make_unique<StretchRangeCommand>(s.markers, s.frames, s.first, s.last,
                                                      s.last + step * 100U, isLast, StretchSide::end);
     }},
};

/// A drag of twenty steps after the other, each taken back at its end.
struct Drag {
    explicit Drag(const Bench::Setting& setting)
        : subject(setting) {}

    Subject subject;
    unsigned int step = 0;
    QUndoStack history;
};

Bench::Operation operationOf(const DragRow& row, const Bench::Setting& setting) {
    constexpr unsigned int steps = Bench::DragOperations::stepsOfADrag;
    const auto drag = std::make_shared<Drag>(setting);
    row.begin(drag->subject);
    return {[=] { drag->history.push(row.make(drag->subject, drag->step, drag->step == steps).release()); },
            [=] {
                if (drag->step == steps) {
                    drag->history.undo();
                    drag->history.clear();
                    drag->step = 0;
                }
            },
            [=] {
                ++drag->step;
                if (!row.isFromTheBeginning || drag->step == 1) {
                    drag->subject.frames = drag->subject.curve.frames();
                }
            }};
}

void addCommandRows() {
    for (const CommandRow& row : commandRows) {
        for (const std::size_t n : Bench::usualSizes) {
            const Bench::Setting setting{Bench::Layout::frameOrder, n};
            const auto make = [row, setting] { return operationOf(row, setting); };
            Bench::addRow(row.name + std::string(", construct and redo"), setting.text(), n, make,
                          Bench::Timed::there);
            Bench::addRow(row.name + std::string(", undo"), setting.text(), n, make, Bench::Timed::back);
        }
    }
    for (const DragRow& row : dragRows) {
        for (const std::size_t n : Bench::usualSizes) {
            const Bench::Setting setting{Bench::Layout::frameOrder, n};
            Bench::addRow(
                row.name, setting.text(), n, [row, setting] { return operationOf(row, setting); },
                Bench::Timed::there, Bench::DragOperations::stepsOfADrag);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    const Bench::LibraryDragOperations drag;
    Bench::addDragRows(drag);
    addCommandRows();
    return Bench::runRows(argc, argv);
}
