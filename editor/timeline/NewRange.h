#pragma once

#include "document/DragKind.h"

#include <memory>

namespace Editor {

/// As dragNewRange(), for markers whose range may be hidden: it is shown from the first step on, and hidden
/// again by undo.
std::unique_ptr<DragKind> dragShownRange(Document& document, unsigned int frame);

} // namespace Editor
