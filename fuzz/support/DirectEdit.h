#pragma once

#include "fuzz/support/EditScene.h"

#include <QUndoStack>

/// Edits past the history, as other code of an editor makes them.
namespace DirectEdit {

/// One that keeps all keys in their curves, so that the history may stay.
void gentle(EditScene& scene);

/// One that takes keys away. The history names keys, so that it is cleared first.
void destructive(EditScene& scene, QUndoStack& history);

} // namespace DirectEdit
