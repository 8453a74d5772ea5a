#pragma once

#include "commands/StretchRangeCommand.h"
#include "document/DragKind.h"

#include <memory>

namespace Editor {

class Document;

/// Moves the user range with the keys of all editable layers in it.
std::unique_ptr<DragKind> dragRange(Document& document);
/// Moves one end of the user range and stretches the keys of all editable layers in it.
std::unique_ptr<DragKind> dragRangeEnd(Document& document, ZT::AnimCmd::StretchSide side);
/// Makes a user range from @p frame to where the pointer is. A range that was hidden is shown from the first
/// step on, and hidden again by undo.
std::unique_ptr<DragKind> dragNewRange(Document& document, unsigned int frame);
/// Hides the user range; its keys stay where they are. Does nothing where there is none.
void removeRange(Document& document);

} // namespace Editor
