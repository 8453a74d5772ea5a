#pragma once

#include "Choices.h"
#include "PlainCurve.h"
#include "tests/support/SignalRecorder.h"

#include <QPointF>
#include <QPointer>

#include <rapidcheck.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Keys and their plain counterparts, and what random edits name of them. Three keys stand in another curve
/// than the one that is edited.
class TwinKeys {
    using C = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;
    using Offset = QPair<float, float>;
    using Side = ZT::TangentSide;
    using Type = VQ::Math::Interpolation::InterpolationType;

public:
    enum class Strangers { none, all };
    template <class Value>
    using With = std::vector<std::pair<Key*, Value>>;

    TwinKeys(PlainCurve& plain, SignalRecorder& recorder)
        : _plain(plain) {
        for (int i = 0; i < 20; ++i) {
            _keys.emplace_back(new Key);
        }
        std::sort(_keys.begin(), _keys.end(), [](Key* a, Key* b) { return std::less<>()(a, b); });
        for (std::size_t i = 0; i < _keys.size(); ++i) {
            _plain.keys.push_back({std::string(1, static_cast<char>('a' + i)), {}, 0, {}, false, false});
            // Heard before the curve hears it, however often the key comes and goes.
            recorder.watch(*_keys[i], QString::fromStdString(_plain.keys[i].name));
        }
        for (const unsigned int frame : {2U, 5U, 9U}) {
            // Spread over the addresses, so that the other curve's keys come first, between and last.
            const std::size_t i = frame * 2;
            _other.insert(frame, _keys[i]);
            _plain.keys[i].home = PlainKey::Home::elsewhere;
            _plain.keys[i].frame = frame;
        }
    }
    TwinKeys(const TwinKeys&) = delete;
    TwinKeys& operator=(const TwinKeys&) = delete;
    ~TwinKeys() {
        for (const QPointer<Key>& key : _keys) {
            if (key != nullptr && key->getParentCurve() == nullptr) {
                delete key;
            }
        }
    }

    template <class Value>
    static Value plainOf(const Value& value) {
        return value;
    }
    static std::pair<double, double> plainOf(const QPointF& point) { return {point.x(), point.y()}; }
    static PlainKey::Point plainOf(const Offset& pair) { return {pair.first, pair.second}; }
    static std::pair<Side, Type> plainOf(const QPair<Side, Type>& pair) { return {pair.first, pair.second}; }

    PlainKey* plain(const Key* key) const {
        for (std::size_t i = 0; i < _keys.size(); ++i) {
            if (key != nullptr && _keys[i] == key) {
                return &_plain.keys[i];
            }
        }
        return nullptr;
    }

    /// What a container holds, in its own order.
    template <class Map>
    auto entries(const Map& map) const {
        PlainCurve::Entries<std::decay_t<decltype(plainOf(map.cbegin().value()))>> result;
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            result.emplace_back(plain(entry.key()), plainOf(entry.value()));
        }
        return result;
    }
    auto entries(const C::KeysSet& set) const {
        PlainCurve::Entries<bool> result;
        for (Key* const key : set) {
            result.emplace_back(plain(key), true);
        }
        return result;
    }

    /// The keys that live, as they show themselves; those of the curve stand here.
    std::vector<PlainKey> asSeenFrom(const C& curve) const {
        std::vector<PlainKey> seen;
        for (std::size_t i = 0; i < _keys.size(); ++i) {
            if (const Key* const key = _keys[i]) {
                const auto home = key->getParentCurve() == &curve    ? PlainKey::Home::here
                                  : key->getParentCurve() == &_other ? PlainKey::Home::elsewhere
                                                                     : PlainKey::Home::nowhere;
                seen.push_back({_plain.keys[i].name, home, ZT::index(key), key->baseMotionCurveKey(),
                                key->isSmooth(), key->isSymmetrical()});
            }
        }
        return seen;
    }

    /// A key that still lives.
    Key* any(Strangers strangers) const {
        std::vector<Key*> living;
        for (const QPointer<Key>& key : _keys) {
            if (key != nullptr && (strangers == Strangers::all || key->getParentCurve() != &_other)) {
                living.push_back(key);
            }
        }
        return living.empty() ? nullptr : living[*rc::gen::inRange<std::size_t>(0, living.size())];
    }

    /// Different keys with a value each; seldom none at all or the null key among them.
    template <class Value, class MakeValue>
    With<Value> some(MakeValue makeValue) const {
        With<Value> result;
        const int count = Choices::pick(40) == 39 ? 0 : 1 + Choices::pick(5);
        for (int i = 0; i < count; ++i) {
            Key* const key = Choices::pick(20) == 19 ? nullptr : any(Strangers::all);
            const bool isNew = std::none_of(result.begin(), result.end(),
                                            [&](const auto& entry) { return entry.first == key; });
            if (isNew) {
                result.emplace_back(key, makeValue());
            }
        }
        return result;
    }

    C::KeysSet aSet() const {
        C::KeysSet set;
        for (const auto& [key, ignored] : some<bool>([] { return true; })) {
            set.insert(key);
        }
        return set;
    }

    C::KeysIndexMap someFrames() const { return toMap<C::KeysIndexMap>(some<unsigned int>(Choices::aFrame)); }
    C::TangentPosMap someOffsets() const { return toMap<C::TangentPosMap>(some<Offset>(Choices::anOffset)); }
    C::KeyStateMap someStates() const { return toMap<C::KeyStateMap>(some<bool>(Choices::yesOrNo)); }

    C::TangentTypeMap someTypes() const {
        QMultiMap<Key*, QPair<Side, Type>> map;
        for (const auto& [key, type] : some<Type>(Choices::aType)) {
            map.insert(key, {Side::left, type});
            map.insert(key, {Side::right, Choices::aType()});
        }
        return map;
    }

    template <class Map, class Value>
    static Map toMap(const With<Value>& keys) {
        Map map;
        for (const auto& [key, value] : keys) {
            map.insert(key, value);
        }
        return map;
    }

private:
    PlainCurve& _plain;
    std::vector<QPointer<Key>> _keys;
    C _other;
};
