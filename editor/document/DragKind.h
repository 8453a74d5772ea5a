#pragma once

#include "base/TangentSide.h"
#include "document/KeySelection.h"

#include <QPointF>
#include <QString>

#include <memory>

class QUndoCommand;

namespace Editor {

/// What is dragged, captured when the drag begins: makes the command of each step.
class DragKind {
public:
    DragKind() = default;
    DragKind(const DragKind&) = delete;
    DragKind& operator=(const DragKind&) = delete;
    virtual ~DragKind() = default;

    /// Where a drag to @p distance (frames, value units; finite) from where it began leads to: whole frames,
    /// no further than there is room. What leads to the same place is the same step.
    virtual QPointF reach(const QPointF& distance) const = 0;
    /// The command that leads from the step before to reach() of @p distance; null where the drag began
    /// there. Never a final one: the commands merge inside the drag's entry, and an entry that has left the
    /// drag merges with none.
    virtual std::unique_ptr<QUndoCommand> step(const QPointF& distance) = 0;
    /// What the entry in the history says.
    virtual QString text() const = 0;

    /// Why @p command, the step just done, must be taken back; empty when it need not.
    virtual QString problem(const QUndoCommand& command) const;
};

/// Moves @p keys.
std::unique_ptr<DragKind> dragKeys(const KeySelection::Keys& keys);
/// Moves the handle of @p grabbed; the handles of all of @p keys on that side get its offset.
std::unique_ptr<DragKind> dragHandles(const KeySelection::Keys& keys,
                                      const ZT::EditableMotionCurveKey& grabbed, ZT::TangentSide side);

} // namespace Editor
