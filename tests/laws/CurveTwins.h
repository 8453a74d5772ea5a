#pragma once

#include "Draw.h"
#include "SignalLog.h"
#include "SimpleCurve.h"

#include <QPointer>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// A curve and a SimpleCurve with the same keys: some stand in the curve, some in no curve, three in another
/// curve. Somebody listens to some of the keys, nobody to the others.
class CurveTwins {
public:
    using Curve = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;

    CurveTwins() {
        for (std::size_t number = 0; number < keyCount; ++number) {
            const bool isElsewhere = number % 7U == 3U;
            // Keys of the other curve are of a type that no neighbour changes.
            const Draw::Record record = isElsewhere ? _linear() : Draw::record();
            _keys.emplace_back(new Key(record));
            SimpleKey twin;
            twin.name = "k" + std::to_string(number);
            twin.isHeard = Draw::yesOrNo();
            twin.record = record;
            log.setName(_keys.back(), twin.name);
            if (twin.isHeard) { // Before the curve listens, so that its own signals come behind the key's.
                log.listenTo(*_keys.back(), twin.name);
            }
            if (isElsewhere) {
                twin.home = SimpleKey::Home::elsewhere;
                twin.frame = static_cast<unsigned int>(number);
                _other.insert(twin.frame, _keys.back());
            }
            simple.keys.push_back(twin);
        }
        log.listenTo(curve);
    }
    CurveTwins(const CurveTwins&) = delete;
    CurveTwins& operator=(const CurveTwins&) = delete;
    ~CurveTwins() {
        for (const QPointer<Key>& key : _keys) {
            if (!key.isNull() && key->getParentCurve() == nullptr) {
                delete key.data();
            }
        }
    }

    /// The living key of that number; null for none and for one that died.
    Key* key(std::size_t number) const {
        return number == SimpleCurve::none ? nullptr : _keys[number].data();
    }

    std::size_t numberOf(const Key* key) const {
        for (std::size_t number = 0; number < keyCount; ++number) {
            if (key != nullptr && _keys[number] == key) {
                return number;
            }
        }
        return SimpleCurve::none;
    }

    /// Numbers of living keys; in the other curve only if foreign ones will do.
    std::vector<std::size_t> living(bool withForeign) const {
        std::vector<std::size_t> numbers;
        for (std::size_t number = 0; number < keyCount; ++number) {
            const SimpleKey::Home home = simple.keys[number].home;
            if (home != SimpleKey::Home::dead && (withForeign || home != SimpleKey::Home::elsewhere)) {
                numbers.push_back(number);
            }
        }
        return numbers;
    }

    /// The frame at which a key stands, in whatever curve; 0 in none.
    static unsigned int frameOf(const Key* key) { return ZT::index(key); }

    /// Both agree in their keys, to the bit, and in the signals since the last time, one for one.
    void requireAgreement() {
        RC_ASSERT(log.entries == simple.heard);
        log.entries.clear();
        simple.heard.clear();
        RC_ASSERT(_realState() == _simpleState());
        RC_ASSERT(curve.getGreaterIndex() == simple.greatest());
    }

    static constexpr std::size_t keyCount = 24;

    SignalLog log;
    SimpleCurve simple;
    Curve curve;

private:
    static Draw::Record _linear() {
        Draw::Record record;
        record.leftTangentType = Draw::Type::linear;
        record.rightTangentType = Draw::Type::linear;
        return record;
    }

    /// Of the NaNs that arithmetic makes, sign and payload are the processor's affair.
    static std::string _handle(const VQ::Math::Position2D& handle) {
        const auto text = [](float number) {
            return std::isnan(number) ? std::string("nan") : SimpleCurve::bits(number);
        };
        return text(handle.x) + ' ' + text(handle.y);
    }

    static std::string _text(const std::string& name, unsigned int frame, const Draw::Record& record,
                             bool smooth, bool symmetrical) {
        std::ostringstream text;
        text << frame << ' ' << name << ' ' << SimpleCurve::bits(record.value) << " ("
             << static_cast<int>(record.leftTangentType) << ' ' << _handle(record.leftTangentOffset) << ") ("
             << static_cast<int>(record.rightTangentType) << ' ' << _handle(record.rightTangentOffset) << ')'
             << (smooth ? " smooth" : "") << (symmetrical ? " symmetrical" : "") << '\n';
        return text.str();
    }

    const char* _homeOf(const Key* key) const {
        return key == nullptr                     ? "dead "
               : key->getParentCurve() == &curve  ? "here "
               : key->getParentCurve() == &_other ? "elsewhere "
               : key->getParentCurve() == nullptr ? "nowhere "
                                                  : "lost ";
    }

    static const char* _homeOf(const SimpleKey& key) {
        switch (key.home) {
        case SimpleKey::Home::here:
            return "here ";
        case SimpleKey::Home::elsewhere:
            return "elsewhere ";
        case SimpleKey::Home::nowhere:
            return "nowhere ";
        case SimpleKey::Home::dead:
            break;
        }
        return "dead ";
    }

    std::string _realState() const {
        std::string text;
        for (const auto element : curve) {
            text += std::to_string(element.first) + ' ' + std::to_string(numberOf(element.second)) + '\n';
        }
        for (std::size_t number = 0; number < keyCount; ++number) {
            const Key* const real = _keys[number].data();
            text += _homeOf(real);
            if (real != nullptr) {
                text += _text(simple.keys[number].name, frameOf(real), real->baseMotionCurveKey(),
                              real->isSmooth(), real->isSymmetrical());
            }
        }
        return text;
    }

    std::string _simpleState() const {
        std::string text;
        for (const std::size_t number : simple.inFrameOrder()) {
            text += std::to_string(simple.keys[number].frame) + ' ' + std::to_string(number) + '\n';
        }
        for (const SimpleKey& key : simple.keys) {
            text += _homeOf(key);
            if (key.home != SimpleKey::Home::dead) {
                const unsigned int frame = key.home == SimpleKey::Home::nowhere ? 0U : key.frame;
                text += _text(key.name, frame, key.record, key.smooth, key.symmetrical);
            }
        }
        return text;
    }

    Curve _other;
    std::vector<QPointer<Key>> _keys;
};
