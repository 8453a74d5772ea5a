#include "document/DragKind.h"

#include "base/math/Narrowing.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveTangentCommand.h"
#include "document/Frames.h"
#include "document/Translation.h"
#include "model/EditableAnimationLayer.h"

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

// Where a part of a distance leads; neither it nor what is not finite becomes infinite.
double inFloatRange(double value, double distance) {
    constexpr auto largest = double{std::numeric_limits<float>::max()};
    return std::isfinite(value) ? std::clamp(value + distance, -largest, largest) : value;
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
            _targets.insert(_targets.cend(), origin.key, QPointF());
        }
    }

    QPointF reach(const QPointF& distance) const override {
        if (_origins.empty()) {
            return {};
        }
        return {std::clamp(std::round(distance.x()), -static_cast<double>(_first),
                           double{lastPossibleFrame} - _last),
                distance.y()};
    }

    Command step(const QPointF& distance) override {
        const QPointF reached = reach(distance);
        _frames = reached.x();
        if (reached.isNull()) {
            return nullptr;
        }
        auto target = _targets.begin(); // In the order of the origins.
        for (const Origin& origin : _origins) {
            *target++ = QPointF(origin.frame + _frames, inFloatRange(double{origin.value}, reached.y()));
        }
        return std::make_unique<ZT::AnimCmd::MoveCurveKeysCommand>(_targets, false);
    }

    QString text() const override { return tr("Move %n key(s)", nullptr, static_cast<int>(_origins.size())); }

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

    std::vector<Origin> _origins;                          ///< by address, as maps want them
    ZT::AnimCmd::MoveCurveKeysCommand::KeyPosMap _targets; ///< of the last step; made once for all steps
    unsigned int _first = lastPossibleFrame;
    unsigned int _last = 0;
    double _frames = 0.0; ///< of the last step
};

class HandlesKind : public DragKind {
public:
    HandlesKind(KeySelection::Keys keys, const EditableMotionCurveKey& grabbed, ZT::TangentSide side)
        : _keys(std::move(keys))
        , _side(side)
        , _origin(toPoint(grabbed.getTangentOffset(side))) {}

    QPointF reach(const QPointF& distance) const override { return distance; }

    Command step(const QPointF& distance) override {
        if (distance.isNull()) {
            return nullptr;
        }
        // A handle that points out of its segment would stand upright when the curve is drawn.
        const double x = inFloatRange(_origin.x(), distance.x());
        const double inside = _side == ZT::TangentSide::left ? std::min(x, 0.0) : std::max(x, 0.0);
        const double y = inFloatRange(_origin.y(), distance.y());
        return std::make_unique<ZT::AnimCmd::MoveTangentCommand>(_keys, _side, VQ::Math::toFloat(inside),
                                                                 VQ::Math::toFloat(y), false);
    }

    QString text() const override {
        const auto count = std::count_if(_keys.cbegin(), _keys.cend(), [this](const auto* key) {
            return key->getTangentType(_side) == VQ::Math::Interpolation::InterpolationType::bezier;
        });
        return tr("Move %n handle(s)", nullptr, static_cast<int>(count));
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

} // namespace Editor
