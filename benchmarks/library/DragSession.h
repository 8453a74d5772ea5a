#pragma once

#include "commands/MoveCurveKeysCommand.h"
#include "library/LibraryCurve.h"

#include <QUndoStack>

#include <vector>

namespace Bench {

/// All keys of a curve on their way, one frame and 0.05 in value further with each step.
class DragSession {
public:
    explicit DragSession(const Setting& setting)
        : _subject(setting)
        , _positions(_subject.positions())
        , _start(_positions.cbegin(), _positions.cend()) {}

    LibraryCurve& subject() { return _subject; }
    unsigned int step() const { return _step; }

    /// Puts the targets of the next step together, as the editor's mouse handler would.
    void prepareStep() {
        ++_step;
        auto start = _start.cbegin();
        for (QPointF& position : _positions) {
            position = *start++ + QPointF(1.0, 0.05) * _step;
        }
    }
    void doStep(bool isLast) { _history.push(new ZT::AnimCmd::MoveCurveKeysCommand(_positions, isLast)); }

    void takeBack() {
        _history.undo();
        _history.clear();
        _step = 0;
    }

private:
    LibraryCurve _subject;
    Curve::KeyPosMap _positions;
    std::vector<QPointF> _start; ///< in the order of _positions
    QUndoStack _history;
    unsigned int _step = 0;
};

} // namespace Bench
