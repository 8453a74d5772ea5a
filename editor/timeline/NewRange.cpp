#include "timeline/NewRange.h"

#include "commands/ChangeRangeCommand.h"
#include "document/Document.h"
#include "model/AnimationMarkers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Editor {

namespace {

class ShowRangeCommand : public ZT::AnimCmd::ChangeRangeCommand {
public:
    ShowRangeCommand(ZT::AnimationMarkers& markers, unsigned int start, unsigned int end, bool isFinal)
        : ChangeRangeCommand(&markers, {}, start, end, isFinal)
        , _markers(markers)
        , _wasVisible(markers.isRangeVisible()) {}

    void undo() override {
        ChangeRangeCommand::undo();
        _markers.setRangeVisible(_wasVisible);
    }

    void redo() override {
        ChangeRangeCommand::redo();
        _markers.setRangeVisible(true);
    }

private:
    ZT::AnimationMarkers& _markers;
    bool _wasVisible;
};

class ShownRangeKind : public DragKind {
public:
    ShownRangeKind(ZT::AnimationMarkers& markers, unsigned int frame)
        : _markers(markers)
        , _frame(frame) {}

    std::unique_ptr<QUndoCommand> step(const QPointF& distance, bool isFinal) override {
        constexpr double last = std::numeric_limits<unsigned int>::max();
        const auto other =
            static_cast<unsigned int>(std::clamp(_frame + std::round(distance.x()), 0.0, last));
        if (other == _frame) {
            return nullptr;
        }
        return std::make_unique<ShowRangeCommand>(_markers, std::min(_frame, other), std::max(_frame, other),
                                                  isFinal);
    }

private:
    ZT::AnimationMarkers& _markers;
    unsigned int _frame;
};

} // namespace

std::unique_ptr<DragKind> dragShownRange(Document& document, unsigned int frame) {
    return std::make_unique<ShownRangeKind>(document.markers(), frame);
}

} // namespace Editor
