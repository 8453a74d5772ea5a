#pragma once

#include "tests/support/Snapshot.h"

#include <QString>

#include <algorithm>
#include <vector>

/// The whole state of an animation. Automatic handles are recomputed only where they are further than a
/// tolerance from their formula, so that two right ones may differ by twice as much; all else is compared bit
/// by bit.
class EditState {
public:
    explicit EditState(const ZT::EditableAnimation& animation)
        : _rest(Snapshot::of(*animation.getMarkers())) {
        for (const ZT::EditableAnimationLayer* const layer : animation) {
            _rest += "\ncurve";
            for (const auto element : *static_cast<const ZT::EditableMotionCurve*>(layer->getCurve())) {
                _rest +=
                    QString("\n%1: %2 ").arg(element.first).arg(reinterpret_cast<quintptr>(element.second));
                _add(*element.second);
            }
        }
    }

    bool operator==(const EditState& other) const {
        return _rest == other._rest &&
               std::equal(_automatic.begin(), _automatic.end(), other._automatic.begin(),
                          other._automatic.end(), [](const Handle& a, const Handle& b) {
                              return _text(a) == _text(b) || a.isNear(b, 2 * 0.0001F);
                          });
    }

    std::string text() const {
        QString result = _rest + "\nautomatic handles";
        for (const Handle& handle : _automatic) {
            result += _text(handle);
        }
        return result.toStdString();
    }

private:
    using Handle = VQ::Math::Position2D;

    static QString _text(const Handle& handle) {
        return QString(" (%1, %2)").arg(Snapshot::bits(handle.x), Snapshot::bits(handle.y));
    }

    void _add(const ZT::EditableMotionCurveKey& key) {
        const VQ::Math::Interpolation::Key record = key.baseMotionCurveKey();
        _rest += Snapshot::bits(record.value) + (key.isSmooth() ? " smooth" : "") +
                 (key.isSymmetrical() ? " symmetrical" : "");
        _addTangent(record.leftTangentType, record.leftTangentOffset);
        _addTangent(record.rightTangentType, record.rightTangentOffset);
    }

    void _addTangent(VQ::Math::Interpolation::InterpolationType type, const Handle& handle) {
        _rest += QString(" %1").arg(static_cast<int>(type));
        if (type == VQ::Math::Interpolation::InterpolationType::bezierAuto) {
            _automatic.push_back(handle);
        } else {
            _rest += _text(handle);
        }
    }

    QString _rest;
    std::vector<Handle> _automatic;
};
