#include "document/DragKind.h"

#include "base/math/Narrowing.h"
#include "commands/ChangeRangeCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "document/Document.h"
#include "model/AnimationMarkers.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace Editor {

namespace {

using ZT::EditableMotionCurveKey;
using Command = std::unique_ptr<QUndoCommand>;
using Frames = ZT::EditableMotionCurve::KeysIndexMap;

constexpr double lastFrame = std::numeric_limits<unsigned int>::max();

QString tr(const char* text, int count = -1) {
    return QCoreApplication::translate("Editor::DragKind", text, nullptr, count);
}

unsigned int movedBy(unsigned int frame, double distance) {
    return static_cast<unsigned int>(std::clamp(frame + std::round(distance), 0.0, lastFrame));
}

// Where a part of a distance leads; neither it nor what is not finite becomes infinite.
double inFloatRange(double value, double distance) {
    constexpr auto largest = double{std::numeric_limits<float>::max()};
    return std::isfinite(value) ? std::clamp(value + distance, -largest, largest) : value;
}

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

class KeysKind : public DragKind {
public:
    explicit KeysKind(const KeySelection::Keys& keys) {
        _origins.reserve(static_cast<std::size_t>(keys.size()));
        for (EditableMotionCurveKey* const key : keys) {
            if (key->getParentCurve() != nullptr) {
                _origins.push_back({key, ZT::index(key), key->getValue()});
            }
        }
        std::sort(_origins.begin(), _origins.end(),
                  [](const Origin& a, const Origin& b) { return std::less<>()(a.key, b.key); });
        for (const Origin& origin : _origins) {
            _first = std::min(_first, origin.frame);
            _last = std::max(_last, origin.frame);
        }
    }

    Command step(const QPointF& distance, bool isFinal) override {
        _frames = std::clamp(std::round(distance.x()), -static_cast<double>(_first), lastFrame - _last);
        if (_origins.empty() || (_frames == 0.0 && distance.y() == 0.0)) {
            return nullptr;
        }
        ZT::AnimCmd::MoveCurveKeysCommand::KeyPosMap targets;
        for (const Origin& origin : _origins) {
            targets.insert(targets.cend(), origin.key,
                           QPointF(origin.frame + _frames, inFloatRange(double{origin.value}, distance.y())));
        }
        return std::make_unique<ZT::AnimCmd::MoveCurveKeysCommand>(targets, isFinal);
    }

    QString problem(const QUndoCommand& /*command*/) const override {
        for (const Origin& origin : _origins) {
            const unsigned int target = movedBy(origin.frame, _frames);
            if (ZT::index(origin.key) != target) {
                const auto* const curve = origin.key->getParentCurve();
                const auto* const layer = curve != nullptr ? curve->getParentLayer() : nullptr;
                return tr("Frame %1 of %2 is taken by a key that is not dragged.")
                    .arg(QString::number(target), layer != nullptr ? layer->getActuatorName() : QString());
            }
        }
        return {};
    }

private:
    struct Origin {
        EditableMotionCurveKey* key;
        unsigned int frame;
        float value;
    };

    std::vector<Origin> _origins; ///< by address, as maps want them
    unsigned int _first = std::numeric_limits<unsigned int>::max();
    unsigned int _last = 0;
    double _frames = 0.0; ///< of the last step
};

class HandlesKind : public DragKind {
public:
    HandlesKind(KeySelection::Keys keys, const EditableMotionCurveKey& grabbed, ZT::TangentSide side)
        : _keys(std::move(keys))
        , _side(side)
        , _origin(toPoint(grabbed.getTangentOffset(side))) {}

    Command step(const QPointF& distance, bool isFinal) override {
        if (distance.isNull()) {
            return nullptr;
        }
        // A handle that points out of its segment would stand upright when the curve is drawn.
        const double x = inFloatRange(_origin.x(), distance.x());
        const double inside = _side == ZT::TangentSide::left ? std::min(x, 0.0) : std::max(x, 0.0);
        const double y = inFloatRange(_origin.y(), distance.y());
        return std::make_unique<ZT::AnimCmd::MoveTangentCommand>(_keys, _side, VQ::Math::toFloat(inside),
                                                                 VQ::Math::toFloat(y), isFinal);
    }

private:
    // A handle that is not finite is drawn without length, and grabbed there.
    static QPointF toPoint(const QPair<float, float>& offset) {
        const bool isFinite = std::isfinite(offset.first) && std::isfinite(offset.second);
        return isFinite ? QPointF(double{offset.first}, double{offset.second}) : QPointF();
    }

    KeySelection::Keys _keys;
    ZT::TangentSide _side;
    QPointF _origin;
};

class RangeKind : public DragKind {
public:
    explicit RangeKind(Document& document)
        : _document(document)
        , _start(document.markers().rangeStartIndex())
        , _end(document.markers().rangeEndIndex()) {}

    QString problem(const QUndoCommand& command) const override {
        const auto& range = dynamic_cast<const ZT::AnimCmd::ChangeRangeCommand&>(command);
        if (range.failedKeys().empty()) {
            return {};
        }
        return tr("%n key(s) would find no free frame.", static_cast<int>(range.failedKeys().size()));
    }

protected:
    Document& _document;
    unsigned int _start; ///< of the range when the drag began
    unsigned int _end;
};

class RangeMoveKind : public RangeKind {
public:
    using RangeKind::RangeKind;

    // From where the range and the keys are now: each step moves on what the one before has left.
    Command step(const QPointF& distance, bool isFinal) override {
        const double most = lastFrame - _end;
        const unsigned int newStart =
            movedBy(_start, std::clamp(distance.x(), -static_cast<double>(_start), most));
        if (newStart == _start) {
            return nullptr;
        }
        ZT::AnimationMarkers& markers = _document.markers();
        const unsigned int start = markers.rangeStartIndex();
        const unsigned int end = markers.rangeEndIndex();
        const unsigned int newEnd = newStart + (end - start);
        const Frames keys = keysBetween(_document, std::min(start, newStart), std::max(end, newEnd));
        return std::make_unique<ZT::AnimCmd::MoveRangeCommand>(&markers, keys, start, end, newStart, isFinal);
    }
};

class RangeEndKind : public RangeKind {
public:
    RangeEndKind(Document& document, ZT::AnimCmd::StretchSide side)
        : RangeKind(document)
        , _side(side)
        , _keys(keysBetween(document, _start, std::numeric_limits<unsigned int>::max())) {
        QHash<const ZT::EditableMotionCurve*, unsigned int> counts;
        for (auto key = _keys.cbegin(); key != _keys.cend(); ++key) {
            if (key.value() <= _end) {
                _mostKeys = std::max(_mostKeys, ++counts[key.key()->getParentCurve()]);
            }
            _last = std::max(_last, key.value());
        }
    }

    // Each step from what the drag began with.
    Command step(const QPointF& distance, bool isFinal) override {
        const bool isStart = _side == ZT::AnimCmd::StretchSide::start;
        const unsigned int old = isStart ? _start : _end;
        const bool isEmpty = _start == _end || _mostKeys == 0; // There is nothing to stretch.
        const unsigned int target = isStart ? _startAt(distance, isEmpty) : _endAt(distance, isEmpty);
        if (target == old) {
            return nullptr;
        }
        if (isEmpty) {
            return std::make_unique<ZT::AnimCmd::ChangeRangeCommand>(
                &_document.markers(), Frames(), isStart ? target : _start, isStart ? _end : target, isFinal);
        }
        return std::make_unique<ZT::AnimCmd::StretchRangeCommand>(&_document.markers(), _keys, _start, _end,
                                                                  target, isFinal, _side);
    }

private:
    // Each key in the range needs a frame of its own, and those behind it move along with its end.
    unsigned int _startAt(const QPointF& distance, bool isEmpty) const {
        return std::min(movedBy(_start, distance.x()), isEmpty ? _end : _end - (_mostKeys - 1U));
    }
    unsigned int _endAt(const QPointF& distance, bool isEmpty) const {
        const double room = isEmpty ? lastFrame : lastFrame - (std::max(_last, _end) - _end);
        const unsigned int moved = movedBy(_end, std::min(distance.x(), room - _end));
        return std::max(moved, isEmpty ? _start : _start + (_mostKeys - 1U));
    }

    ZT::AnimCmd::StretchSide _side;
    Frames _keys;               ///< with their frames when the drag began
    unsigned int _mostKeys = 0; ///< in the range on one curve
    unsigned int _last = 0;     ///< the frame of the last key
};

class NewRangeKind : public RangeKind {
public:
    NewRangeKind(Document& document, unsigned int frame)
        : RangeKind(document)
        , _frame(frame) {}

    Command step(const QPointF& distance, bool isFinal) override {
        const unsigned int other = movedBy(_frame, distance.x());
        if (other == _frame) {
            return nullptr;
        }
        return std::make_unique<ZT::AnimCmd::ChangeRangeCommand>(
            &_document.markers(), Frames(), std::min(_frame, other), std::max(_frame, other), isFinal);
    }

private:
    unsigned int _frame;
};

} // namespace

QString DragKind::problem(const QUndoCommand& /*command*/) const {
    return {};
}

std::unique_ptr<DragKind> dragKeys(const KeySelection::Keys& keys) {
    return std::make_unique<KeysKind>(keys);
}

std::unique_ptr<DragKind> dragHandles(const KeySelection::Keys& keys, const EditableMotionCurveKey& grabbed,
                                      ZT::TangentSide side) {
    return std::make_unique<HandlesKind>(keys, grabbed, side);
}

std::unique_ptr<DragKind> dragRange(Document& document) {
    return std::make_unique<RangeMoveKind>(document);
}

std::unique_ptr<DragKind> dragRangeEnd(Document& document, ZT::AnimCmd::StretchSide side) {
    return std::make_unique<RangeEndKind>(document, side);
}

std::unique_ptr<DragKind> dragNewRange(Document& document, unsigned int frame) {
    return std::make_unique<NewRangeKind>(document, frame);
}

} // namespace Editor
