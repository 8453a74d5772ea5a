#include "library/LibraryDrag.h"

#include "library/DragSession.h"
#include "support/KeyListener.h"

#include <memory>

namespace Bench {

namespace {

Operation dragOf(const std::shared_ptr<DragSession>& drag) {
    const auto isLast = [=] { return drag->step() == DragOperations::stepsOfADrag; };
    const auto takeBackWhenDone = [=] {
        if (isLast()) {
            drag->takeBack();
        }
    };
    return {[=] { drag->doStep(isLast()); }, takeBackWhenDone, [=] { drag->prepareStep(); }};
}

} // namespace

Operation LibraryDragOperations::dragging(const Setting& setting) const {
    return dragOf(std::make_shared<DragSession>(setting));
}

Operation LibraryDragOperations::draggingHeardKeys(const Setting& setting) const {
    const auto drag = std::make_shared<DragSession>(setting);
    const auto listener = std::make_shared<KeyListener>();
    for (Key* const key : drag->subject().keys) {
        listener->listenTo(key);
    }
    Operation operation = dragOf(drag);
    operation.before = [drag, listener] { drag->prepareStep(); };
    return operation;
}

} // namespace Bench
