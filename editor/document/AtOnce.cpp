#include "document/AtOnce.h"

#include "document/Drag.h"
#include "document/DragKind.h"

#include <utility>

namespace Editor {

void dragAtOnce(Drag& drag, std::unique_ptr<DragKind> kind, const QPointF& distance) {
    drag.begin(std::move(kind));
    drag.moveTo(distance);
    drag.finish();
}

} // namespace Editor
