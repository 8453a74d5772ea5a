#pragma once

#include "base/TangentSide.h"
#include "commands/StretchRangeCommand.h"
#include "document/KeySelection.h"

#include <QPointF>
#include <QString>

#include <memory>

class QUndoCommand;

namespace Editor {

class Document;

/// What is dragged, captured when the drag begins: makes the command of each step.
class DragKind {
public:
    DragKind() = default;
    DragKind(const DragKind&) = delete;
    DragKind& operator=(const DragKind&) = delete;
    virtual ~DragKind() = default;

    /// The command that leads to @p distance (whole frames, value units) from where the drag began; null
    /// where that is the beginning itself. Distances beyond the frames that there are are shortened.
    virtual std::unique_ptr<QUndoCommand> step(const QPointF& distance, bool isFinal) = 0;

    /// Why the step just done, as @p command or merged into it, must be taken back; empty when it need not.
    virtual QString problem(const QUndoCommand& command) const;
};

/// Moves @p keys.
std::unique_ptr<DragKind> dragKeys(const KeySelection::Keys& keys);
/// Moves the handle of @p grabbed; the handles of all of @p keys on that side get its offset.
std::unique_ptr<DragKind> dragHandles(const KeySelection::Keys& keys,
                                      const ZT::EditableMotionCurveKey& grabbed, ZT::TangentSide side);
/// Moves the user range with the keys of all editable layers in it.
std::unique_ptr<DragKind> dragRange(Document& document);
/// Moves one end of the user range and stretches the keys of all editable layers in it.
std::unique_ptr<DragKind> dragRangeEnd(Document& document, ZT::AnimCmd::StretchSide side);
/// Makes a user range from @p frame to where the pointer is.
std::unique_ptr<DragKind> dragNewRange(Document& document, unsigned int frame);

} // namespace Editor
