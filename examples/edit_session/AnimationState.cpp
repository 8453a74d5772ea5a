#include "AnimationState.h"

#include "base/math/BezierTangents.h"
#include "model/AnimationMarkers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <unordered_map>

using VQ::Math::Position2D;
using VQ::Math::Interpolation::InterpolationType;

namespace {

std::uint32_t bitsOf(float number) {
    std::uint32_t bits = 0;
    static_assert(sizeof bits == sizeof number);
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

bool sameBits(float a, float b) {
    return bitsOf(a) == bitsOf(b);
}

bool sameBits(const Position2D& a, const Position2D& b) {
    return sameBits(a.x, b.x) && sameBits(a.y, b.y);
}

QString show(double number) {
    return number == 0.0 && std::signbit(number) ? QString("-0") : QString::number(number, 'g', 9);
}

QString show(const Position2D& point) {
    return QString("(%1, %2)").arg(show(double{point.x}), show(double{point.y}));
}

} // namespace

AnimationState::AnimationState(const ZT::EditableAnimation& animation) {
    for (const ZT::EditableAnimationLayer* const layer : animation) {
        const ZT::EditableMotionCurve& curve = *layer->getCurve();
        const QPair<float, float> limits = curve.getValueLimits();
        _layers.push_back({layer->getActuatorName(),
                           layer->isMute(),
                           curve.getTimeUnit(),
                           {limits.first, limits.second, curve.getMaxAbsoluteDerivative()},
                           {}});
        _layers.back().keys.reserve(curve.size());
        for (const auto [frame, key] : curve) {
            _layers.back().keys.push_back(
                {frame, key, key->baseMotionCurveKey(), key->isSmooth(), key->isSymmetrical()});
        }
    }
    const ZT::AnimationMarkers& markers = *animation.getMarkers();
    _markers = {markers.selectedIndex(),   markers.startIndex(),    markers.endIndex(),
                markers.rangeStartIndex(), markers.rangeEndIndex(), markers.isRangeVisible() ? 1U : 0U};
}

bool AnimationState::_sameBits(const KeyState& a, const KeyState& b) {
    return a.frame == b.frame && sameBits(a.record.value, b.record.value) &&
           a.record.leftTangentType == b.record.leftTangentType &&
           a.record.rightTangentType == b.record.rightTangentType &&
           sameBits(a.record.leftTangentOffset, b.record.leftTangentOffset) &&
           sameBits(a.record.rightTangentOffset, b.record.rightTangentOffset) && a.smooth == b.smooth &&
           a.symmetrical == b.symmetrical;
}

/// What the formula gives. A missing neighbour counts as one of equal value: before the first key at frame 0,
/// behind the last key at that key's own frame.
std::pair<Position2D, Position2D> AnimationState::_automaticHandles(const Place& place) {
    const std::vector<KeyState>& keys = place.layer.keys;
    const KeyState& key = keys[place.position];
    const KeyState* const previous = place.position > 0 ? &keys[place.position - 1] : nullptr;
    const KeyState* const next = place.position + 1 < keys.size() ? &keys[place.position + 1] : nullptr;
    return VQ::Math::computeBezierKeyTangents(
        static_cast<float>(previous != nullptr ? key.frame - previous->frame : key.frame),
        static_cast<float>(next != nullptr ? next->frame - key.frame : 0U),
        previous != nullptr ? key.record.value - previous->record.value : 0.0F,
        next != nullptr ? next->record.value - key.record.value : 0.0F);
}

void AnimationState::_compareKeys(const Place& actual, const Place& expected, Objects objects,
                                  Comparison& result) {
    const KeyState& key = actual.layer.keys[actual.position];
    const KeyState& wanted = expected.layer.keys[expected.position];
    const auto differ = [&](const QString& what, const QString& is, const QString& shouldBe) {
        result.differences.append(QString("layer \"%1\", frame %2: %3 is %4 instead of %5")
                                      .arg(expected.layer.name)
                                      .arg(wanted.frame)
                                      .arg(what, is, shouldBe));
    };
    const auto differIf = [&](bool different, const char* what, double is, double shouldBe) {
        if (different) {
            differ(what, show(is), show(shouldBe));
        }
    };
    ++result.keysCompared;
    differIf(key.frame != wanted.frame, "the frame", key.frame, wanted.frame);
    differIf(!sameBits(key.record.value, wanted.record.value), "the value",
             static_cast<double>(key.record.value), static_cast<double>(wanted.record.value));
    differIf(key.smooth != wanted.smooth, "smooth", static_cast<double>(key.smooth),
             static_cast<double>(wanted.smooth));
    differIf(key.symmetrical != wanted.symmetrical, "symmetrical", static_cast<double>(key.symmetrical),
             static_cast<double>(wanted.symmetrical));
    if (objects == Objects::same && key.key != wanted.key) {
        differ("the key", "another object", "the same one");
    }

    const auto compareTangent = [&](const char* side, InterpolationType type, InterpolationType wantedType,
                                    const Position2D& handle, const Position2D& wantedHandle,
                                    const auto& formula) {
        differIf(type != wantedType, side, static_cast<int>(type), static_cast<int>(wantedType));
        if (sameBits(handle, wantedHandle)) {
            return;
        }
        if (type == InterpolationType::bezierAuto && handle.isNear(formula(actual), 0.0001F) &&
            wantedHandle.isNear(formula(expected), 0.0001F)) {
            ++result.recomputed;
        } else {
            differ(QString(side) + "'s handle", show(handle), show(wantedHandle));
        }
    };
    compareTangent("the left tangent", key.record.leftTangentType, wanted.record.leftTangentType,
                   key.record.leftTangentOffset, wanted.record.leftTangentOffset,
                   [](const Place& place) { return _automaticHandles(place).first; });
    compareTangent("the right tangent", key.record.rightTangentType, wanted.record.rightTangentType,
                   key.record.rightTangentOffset, wanted.record.rightTangentOffset,
                   [](const Place& place) { return _automaticHandles(place).second; });
}

AnimationState::Comparison AnimationState::comparedWith(const AnimationState& expected,
                                                        Objects objects) const {
    Comparison result;
    if (objects == Objects::same && _markers != expected._markers) {
        result.differences.append("the markers stand at other frames");
    }
    if (_layers.size() != expected._layers.size()) {
        result.differences.append(
            QString("%1 layers instead of %2").arg(_layers.size()).arg(expected._layers.size()));
        return result;
    }
    for (std::size_t i = 0; i < _layers.size(); ++i) {
        const LayerState& layer = _layers[i];
        const LayerState& wanted = expected._layers[i];
        const bool sameLimits = std::equal(layer.limits.begin(), layer.limits.end(), wanted.limits.begin(),
                                           [](float a, float b) { return sameBits(a, b); });
        if (layer.name != wanted.name || layer.mute != wanted.mute || layer.timeUnit != wanted.timeUnit ||
            !sameLimits) {
            result.differences.append(
                QString("layer \"%1\": name, mute flag, time unit or limits differ").arg(wanted.name));
        }
        if (layer.keys.size() != wanted.keys.size()) {
            result.differences.append(QString("layer \"%1\": %2 keys instead of %3")
                                          .arg(wanted.name)
                                          .arg(layer.keys.size())
                                          .arg(wanted.keys.size()));
            continue;
        }
        for (std::size_t position = 0; position < layer.keys.size(); ++position) {
            _compareKeys({layer, position}, {wanted, position}, objects, result);
        }
    }
    return result;
}

std::size_t AnimationState::keysTouchedSince(const AnimationState& before) const {
    std::unordered_map<const ZT::EditableMotionCurveKey*, const KeyState*> old;
    for (const LayerState& layer : before._layers) {
        for (const KeyState& key : layer.keys) {
            old.emplace(key.key, &key);
        }
    }
    std::size_t touched = 0;
    for (const LayerState& layer : _layers) {
        for (const KeyState& key : layer.keys) {
            const auto found = old.find(key.key);
            if (found == old.end()) {
                ++touched;
                continue;
            }
            touched += _sameBits(key, *found->second) ? 0U : 1U;
            old.erase(found);
        }
    }
    return touched + old.size(); // What is left over has left the animation.
}

AnimationState AnimationState::asReadBack() const {
    AnimationState state = *this;
    for (LayerState& layer : state._layers) {
        for (KeyState& key : layer.keys) {
            ZT::EditableMotionCurveKey read(key.record);
            read.setSymmetrical(key.symmetrical);
            read.setSmooth(key.smooth);
            key.record = read.baseMotionCurveKey();
        }
    }
    return state;
}
