#include "document/AtOnce.h"

#include "document/Drag.h"
#include "document/DragKind.h"
#include "model/FirstException.h"

#include <utility>

namespace Editor {

void dragAtOnce(Drag& drag, std::unique_ptr<DragKind> kind, const QPointF& distance) {
    drag.begin(std::move(kind));
    ZT::FirstException thrown;
    thrown.guard([&] { drag.moveTo(distance); });
    thrown.guard([&] { drag.finish(); }); // A step that has thrown is none.
    thrown.rethrow();
}

} // namespace Editor
