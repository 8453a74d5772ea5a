#pragma once

#include "model/AnimationMarkers.h"
#include "model/EditableMotionCurve.h"
#include "tests/base/Records.h"

#include <array>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// What curves and markers hold, down to the bits of each float and the identity of each key.
class AnimationState {
public:
    using Curve = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;
    using Keys = std::set<const Key*>;

    AnimationState(const std::vector<Curve*>& curves, const ZT::AnimationMarkers& markers)
        : _markers{markers.selectedIndex(),   markers.startIndex(),    markers.endIndex(),
                   markers.rangeStartIndex(), markers.rangeEndIndex(), markers.isRangeVisible() ? 1U : 0U} {
        for (std::size_t number = 0; number < curves.size(); ++number) {
            for (const auto element : std::as_const(*curves[number])) {
                const Key& key = *element.second;
                _keys.push_back({&key, number, element.first, key.baseMotionCurveKey(), key.isSmooth(),
                                 key.isSymmetrical()});
            }
        }
    }

    /// The first difference from the state that was expected; empty where there is none. Automatic handles
    /// are recomputed only where they are further than a tolerance from their formula, so that two right ones
    /// may differ by twice as much. Of the keys in @p loose, handles that are not automatic are not compared.
    std::string differenceFrom(const AnimationState& expected, const Keys& loose = {}) const {
        if (_markers != expected._markers) {
            return "markers: " + _markersText() + "instead of " + expected._markersText();
        }
        if (_keys.size() != expected._keys.size()) {
            return std::to_string(_keys.size()) + " keys instead of " + std::to_string(expected._keys.size());
        }
        for (std::size_t i = 0; i < _keys.size(); ++i) {
            const bool isLoose = loose.count(_keys[i].key) != 0;
            if (!_agree(_keys[i], expected._keys[i], isLoose)) {
                return _text(_keys[i]) + "\ninstead of\n" + _text(expected._keys[i]);
            }
        }
        return {};
    }

    /// Whether all automatic handles have the very same bits, where both states agree in everything else.
    bool hasSameAutomaticHandles(const AnimationState& other) const {
        for (std::size_t i = 0; i < _keys.size() && i < other._keys.size(); ++i) {
            const Record& a = _keys[i].record;
            const Record& b = other._keys[i].record;
            if ((a.leftTangentType == Type::bezierAuto && !_same(a.leftTangentOffset, b.leftTangentOffset)) ||
                (a.rightTangentType == Type::bezierAuto &&
                 !_same(a.rightTangentOffset, b.rightTangentOffset))) {
                return false;
            }
        }
        return true;
    }

    void addAutomaticKeys(Keys& keys) const {
        for (const KeyState& state : _keys) {
            if (state.record.leftTangentType == Type::bezierAuto ||
                state.record.rightTangentType == Type::bezierAuto) {
                keys.insert(state.key);
            }
        }
    }

private:
    using Record = VQ::Math::Interpolation::Key;
    using Type = VQ::Math::Interpolation::InterpolationType;
    using Handle = VQ::Math::Position2D;

    struct KeyState {
        const Key* key;
        std::size_t curve;
        unsigned int frame;
        Record record;
        bool smooth;
        bool symmetrical;
    };

    static bool _same(float a, float b) { return VQ::Math::floatBits(a) == VQ::Math::floatBits(b); }
    static bool _same(const Handle& a, const Handle& b) { return _same(a.x, b.x) && _same(a.y, b.y); }

    static bool _agree(Type type, const Handle& a, const Handle& b, bool isLoose) {
        return _same(a, b) || (type == Type::bezierAuto ? a.isNear(b, 2 * 0.0001F) : isLoose);
    }

    static bool _agree(const KeyState& a, const KeyState& b, bool isLoose) {
        const Record& ra = a.record;
        const Record& rb = b.record;
        return a.key == b.key && a.curve == b.curve && a.frame == b.frame && a.smooth == b.smooth &&
               a.symmetrical == b.symmetrical && _same(ra.value, rb.value) &&
               ra.leftTangentType == rb.leftTangentType && ra.rightTangentType == rb.rightTangentType &&
               _agree(ra.leftTangentType, ra.leftTangentOffset, rb.leftTangentOffset, isLoose) &&
               _agree(ra.rightTangentType, ra.rightTangentOffset, rb.rightTangentOffset, isLoose);
    }

    static std::string _text(const KeyState& state) {
        std::ostringstream text;
        text << "curve " << state.curve << " frame " << state.frame << " key " << state.key << ": "
             << Records::of(state.record).toStdString() << (state.smooth ? " smooth" : "")
             << (state.symmetrical ? " symmetrical" : "");
        return text.str();
    }

    std::string _markersText() const {
        std::string text;
        for (const unsigned int marker : _markers) {
            text += std::to_string(marker) + ' ';
        }
        return text;
    }

    std::array<unsigned int, 6> _markers;
    std::vector<KeyState> _keys; ///< curve by curve, in frame order
};
