#pragma once

#include <QPointF>

#include <memory>

namespace Editor {

class Drag;
class DragKind;

/// A drag from beginning to end, as a key of the keyboard asks for it: moves by @p distance (frames, value
/// units) with one entry of the history, or says by Drag::blocked() why not. What
/// slots throw is thrown when the drag has ended.
void dragAtOnce(Drag& drag, std::unique_ptr<DragKind> kind, const QPointF& distance);

} // namespace Editor
