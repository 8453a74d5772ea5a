#include "document/RangeDrags.h"

#include "commands/ChangeRangeCommand.h"
#include "commands/MoveRangeCommand.h"
#include "document/Document.h"
#include "document/Frames.h"
#include "document/Macro.h"
#include "document/Translation.h"
#include "model/AnimationMarkers.h"
#include "model/FirstException.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace Editor {

namespace {

using Command = std::unique_ptr<QUndoCommand>;
using Frames = ZT::EditableMotionCurve::KeysIndexMap;

constexpr double lastFrame = lastPossibleFrame;

// The keys of all layers that may be edited, from one frame to another.
Frames keysBetween(Document& document, unsigned int first, unsigned int last) {
    Frames frames;
    for (ZT::EditableAnimationLayer* const layer : document.animation()) {
        if (document.isEditable(layer->getCurve())) {
            for (const auto& [frame, key] : *layer->getCurve()) {
                if (frame >= first && frame <= last) {
                    frames.insert(key, frame);
                }
            }
        }
    }
    return frames;
}

class RangeKind : public DragKind {
public:
    explicit RangeKind(Document& document)
        : _document(document)
        , _start(document.markers().rangeStartIndex())
        , _end(document.markers().rangeEndIndex()) {}

    QPointF reach(const QPointF& distance) const override {
        return {static_cast<double>(target(distance)) - grabbed(), 0.0};
    }

    QString problem(const QUndoCommand& command) const override {
        const auto& range = dynamic_cast<const ZT::AnimCmd::ChangeRangeCommand&>(command);
        if (range.failedKeys().empty()) {
            return {};
        }
        return tr("%n key(s) would find no free frame.", nullptr,
                  static_cast<int>(range.failedKeys().size()));
    }

protected:
    /// The frame that moves along with the pointer, when the drag began.
    virtual unsigned int grabbed() const = 0;
    /// Where it goes.
    virtual unsigned int target(const QPointF& distance) const = 0;

    Document& _document;
    unsigned int _start; ///< of the range when the drag began
    unsigned int _end;
};

class RangeMoveKind : public RangeKind {
public:
    using RangeKind::RangeKind;

    // From where the range and the keys are now: each step moves on what the one before has left.
    Command step(const QPointF& distance) override {
        const unsigned int newStart = target(distance);
        if (newStart == _start) {
            return nullptr;
        }
        ZT::AnimationMarkers& markers = _document.markers();
        const unsigned int start = markers.rangeStartIndex();
        const unsigned int end = markers.rangeEndIndex();
        const unsigned int newEnd = newStart + (end - start);
        const Frames keys = keysBetween(_document, std::min(start, newStart), std::max(end, newEnd));
        return std::make_unique<ZT::AnimCmd::MoveRangeCommand>(&markers, keys, start, end, newStart, false);
    }

    QString text() const override { return tr("Move range"); }

protected:
    unsigned int grabbed() const override { return _start; }
    unsigned int target(const QPointF& distance) const override {
        return movedBy(_start, std::min(distance.x(), lastFrame - _end));
    }
};

class RangeEndKind : public RangeKind {
public:
    RangeEndKind(Document& document, ZT::AnimCmd::StretchSide side)
        : RangeKind(document)
        , _side(side)
        , _keys(keysBetween(document, _start, lastPossibleFrame)) {
        QHash<const ZT::EditableMotionCurve*, unsigned int> counts;
        for (auto key = _keys.cbegin(); key != _keys.cend(); ++key) {
            if (key.value() <= _end) {
                _mostKeys = std::max(_mostKeys, ++counts[key.key()->getParentCurve()]);
            }
            _last = std::max(_last, key.value());
        }
    }

    // Each step from what the drag began with.
    Command step(const QPointF& distance) override {
        const unsigned int moved = target(distance);
        if (moved == grabbed()) {
            return nullptr;
        }
        ZT::AnimationMarkers* const markers = &_document.markers();
        if (_isEmpty()) {
            return std::make_unique<ZT::AnimCmd::ChangeRangeCommand>(
                markers, Frames(), _isStart() ? moved : _start, _isStart() ? _end : moved, false);
        }
        return std::make_unique<ZT::AnimCmd::StretchRangeCommand>(markers, _keys, _start, _end, moved, false,
                                                                  _side);
    }

    QString text() const override { return tr("Stretch range"); }

protected:
    unsigned int grabbed() const override { return _isStart() ? _start : _end; }
    unsigned int target(const QPointF& distance) const override {
        return _isStart() ? _startAt(distance.x()) : _endAt(distance.x());
    }

private:
    bool _isStart() const { return _side == ZT::AnimCmd::StretchSide::start; }
    // There is nothing to stretch.
    bool _isEmpty() const { return _start == _end || _mostKeys == 0; }
    // Each key in the range needs a frame of its own, and those behind it move along with its end.
    unsigned int _startAt(double distance) const {
        return std::min(movedBy(_start, distance), _isEmpty() ? _end : _end - (_mostKeys - 1U));
    }
    unsigned int _endAt(double distance) const {
        const double room = _isEmpty() ? lastFrame : lastFrame - (std::max(_last, _end) - _end);
        const unsigned int moved = movedBy(_end, std::min(distance, room - _end));
        return std::max(moved, _isEmpty() ? _start : _start + (_mostKeys - 1U));
    }

    ZT::AnimCmd::StretchSide _side;
    Frames _keys;               ///< with their frames when the drag began
    unsigned int _mostKeys = 0; ///< in the range on one curve
    unsigned int _last = 0;     ///< the frame of the last key
};

class ShowRangeCommand : public ZT::AnimCmd::ChangeRangeCommand {
public:
    ShowRangeCommand(ZT::AnimationMarkers& markers, unsigned int start, unsigned int end, bool isVisible)
        : ChangeRangeCommand(&markers, {}, start, end, false)
        , _markers(markers)
        , _isVisible(isVisible)
        , _wasVisible(markers.isRangeVisible()) {}

    void undo() override {
        _then([this] { ChangeRangeCommand::undo(); }, _wasVisible);
    }

    void redo() override {
        _then([this] { ChangeRangeCommand::redo(); }, _isVisible);
    }

private:
    template <class Change>
    void _then(Change change, bool isVisible) {
        ZT::FirstException thrown;
        thrown.guard(change);
        thrown.guard([&] { _markers.setRangeVisible(isVisible); });
        thrown.rethrow();
    }

    ZT::AnimationMarkers& _markers;
    bool _isVisible;
    bool _wasVisible;
};

class NewRangeKind : public RangeKind {
public:
    NewRangeKind(Document& document, unsigned int frame)
        : RangeKind(document)
        , _frame(frame) {}

    Command step(const QPointF& distance) override {
        const unsigned int other = target(distance);
        if (other == _frame) {
            return nullptr;
        }
        return std::make_unique<ShowRangeCommand>(_document.markers(), std::min(_frame, other),
                                                  std::max(_frame, other), true);
    }

    QString text() const override { return tr("Make range"); }

protected:
    unsigned int grabbed() const override { return _frame; }
    unsigned int target(const QPointF& distance) const override { return movedBy(_frame, distance.x()); }

private:
    unsigned int _frame;
};

} // namespace

std::unique_ptr<DragKind> dragRange(Document& document) {
    return std::make_unique<RangeMoveKind>(document);
}

std::unique_ptr<DragKind> dragRangeEnd(Document& document, ZT::AnimCmd::StretchSide side) {
    return std::make_unique<RangeEndKind>(document, side);
}

std::unique_ptr<DragKind> dragNewRange(Document& document, unsigned int frame) {
    return std::make_unique<NewRangeKind>(document, frame);
}

void removeRange(Document& document) {
    const ZT::AnimationMarkers& markers = document.markers();
    if (markers.isRangeVisible()) {
        auto command = std::make_unique<ShowRangeCommand>(document.markers(), markers.rangeStartIndex(),
                                                          markers.rangeEndIndex(), false);
        command->setText(tr("Remove range"));
        Macro::push(document.history(), std::move(command));
    }
}

} // namespace Editor
