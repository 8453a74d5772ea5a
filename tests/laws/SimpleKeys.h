#pragma once

#include "SimpleKey.h"
#include "base/math/BezierTangents.h"
#include "base/math/FloatBits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

/// The keys that a SimpleCurve is told of, in it or not, and what each does by itself. Keys are named by
/// their number in the vector.
class SimpleKeys {
public:
    using Point = VQ::Math::Position2D;
    using Side = ZT::TangentSide;
    using Type = VQ::Math::Interpolation::InterpolationType;
    using Home = SimpleKey::Home;
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    std::vector<SimpleKey> keys;
    std::vector<std::string> heard; ///< the signals so far

    void setValue(std::size_t key, float value) {
        if (!(keys[key].record.value == value)) {
            keys[key].record.value = value;
            _sayOfKey(key, "valueChanged " + bits(value));
        }
    }

    void setType(std::size_t key, Side side, Type type) {
        if (side != Side::left && side != Side::right) {
            return;
        }
        Type& own = _type(key, side);
        if (own != type) {
            own = type;
            _onTypes(key);
            _sayOfKey(key, "tangentsChanged");
        }
    }

    void setOffset(std::size_t key, Side side, Point offset) {
        if ((side != Side::left && side != Side::right) || _type(key, side) != Type::bezier) {
            return;
        }
        Point& own = _handle(key, side);
        if (own.x == offset.x && own.y == offset.y) {
            return;
        }
        own = offset;
        const Side otherSide = side == Side::left ? Side::right : Side::left;
        Point& other = _handle(key, otherSide);
        if (_type(key, otherSide) == Type::bezier && keys[key].symmetrical) {
            other = Point(-own.x, -own.y);
        } else if (_type(key, otherSide) == Type::bezier && keys[key].smooth) {
            const float length = other.norm();
            if (side == Side::left) {
                const float angle = std::atan2(-own.y, -own.x);
                other = Point(std::cos(angle) * length, std::sin(angle) * length);
            } else {
                const float angle = std::atan2(own.y, own.x);
                other = Point(-std::cos(angle) * length, -std::sin(angle) * length);
            }
        }
        _sayOfKey(key, "tangentsChanged");
    }

    void setSmooth(std::size_t key, bool smooth) {
        if (keys[key].smooth != smooth) {
            keys[key].smooth = smooth;
            _onFlag(key, smooth, "smoothChanged");
        }
    }

    void setSymmetrical(std::size_t key, bool symmetrical) {
        if (keys[key].symmetrical != symmetrical) {
            keys[key].symmetrical = symmetrical;
            _onFlag(key, symmetrical, "symmetricalChanged");
        }
    }

    bool updateTangents(std::size_t key) {
        SimpleKey& own = keys[key];
        const bool isLeftAuto = own.record.leftTangentType == Type::bezierAuto;
        const bool isRightAuto = own.record.rightTangentType == Type::bezierAuto;
        if (own.home != Home::here || (!isLeftAuto && !isRightAuto)) {
            return false;
        }
        const SimpleKey* const before = _neighbour(own, [](unsigned int a, unsigned int b) { return a < b; });
        const SimpleKey* const behind = _neighbour(own, [](unsigned int a, unsigned int b) { return a > b; });
        const auto [left, right] = VQ::Math::computeBezierKeyTangents(
            static_cast<float>(own.frame - (before != nullptr ? before->frame : 0)),
            behind != nullptr ? static_cast<float>(behind->frame - own.frame) : 0.0F,
            before != nullptr ? own.record.value - before->record.value : 0.0F,
            behind != nullptr ? behind->record.value - own.record.value : 0.0F);
        bool isChanged = false;
        if (isLeftAuto && !_isNear(own.record.leftTangentOffset, left)) {
            own.record.leftTangentOffset = left;
            isChanged = true;
        }
        if (isRightAuto && !_isNear(own.record.rightTangentOffset, right)) {
            own.record.rightTangentOffset = right;
            isChanged = true;
        }
        if (isChanged) {
            _sayOfKey(key, "tangentsChanged");
        }
        return isChanged;
    }

    static std::string bits(float number) { return std::to_string(VQ::Math::floatBits(number)); }

protected:
    bool _isHere(std::size_t key) const { return key != none && keys[key].home == Home::here; }

    void _say(const std::string& signal) { heard.push_back(signal); }
    void _sayWithKey(const std::string& signal, std::size_t key) { _say(signal + ' ' + keys[key].name); }
    /// The curve hears its keys only where no batch runs.
    void _sayOfKey(std::size_t key, const std::string& signal) {
        if (keys[key].isHeard) {
            _say(keys[key].name + '.' + signal);
        }
        if (_isHere(key) && _depth == 0) {
            _say("keysChanged");
        }
    }

    unsigned int _depth = 0; ///< of batches

private:
    Type& _type(std::size_t key, Side side) {
        return side == Side::left ? keys[key].record.leftTangentType : keys[key].record.rightTangentType;
    }
    Point& _handle(std::size_t key, Side side) {
        return side == Side::left ? keys[key].record.leftTangentOffset : keys[key].record.rightTangentOffset;
    }

    static bool _isNear(Point a, Point b) {
        return std::hypot(double{a.x} - double{b.x}, double{a.y} - double{b.y}) <= double{0.0001F};
    }

    template <class Before>
    const SimpleKey* _neighbour(const SimpleKey& key, Before isBefore) const {
        const SimpleKey* nearest = nullptr;
        for (const SimpleKey& other : keys) {
            if (other.home == Home::here && isBefore(other.frame, key.frame) &&
                (nearest == nullptr || isBefore(nearest->frame, other.frame))) {
                nearest = &other;
            }
        }
        return nearest;
    }

    void _onFlag(std::size_t key, bool state, const std::string& signal) {
        if (state) {
            _type(key, Side::left) = Type::bezier;
            _type(key, Side::right) = Type::bezier;
            _onTypes(key);
        }
        if (keys[key].isHeard) {
            _say(keys[key].name + '.' + signal + (state ? " true" : " false"));
        }
    }

    void _onTypes(std::size_t key) {
        Point& left = _handle(key, Side::left);
        Point& right = _handle(key, Side::right);
        if (_type(key, Side::left) != Type::bezier || _type(key, Side::right) != Type::bezier) {
            updateTangents(key);
        } else if (keys[key].symmetrical) {
            const Point half((right.x - left.x) * 0.5F, (right.y - left.y) * 0.5F);
            left = Point(-half.x, -half.y);
            right = half;
        } else if (keys[key].smooth) {
            const float angle = (std::atan2(-left.y, -left.x) + std::atan2(right.y, right.x)) * 0.5F;
            const float leftLength = left.norm();
            const float rightLength = right.norm();
            left = Point(-std::cos(angle) * leftLength, -std::sin(angle) * leftLength);
            right = Point(std::cos(angle) * rightLength, std::sin(angle) * rightLength);
        }
    }
};
