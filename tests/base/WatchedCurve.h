#pragma once

#include "Records.h"
#include "base/animation/KeyPlace.h"
#include "base/animation/KeySerialization.h"

#include <exception>
#include <functional>
#include <set>
#include <utility>
#include <vector>

/// A curve whose keys are parts of larger objects that know when they die.
namespace Watched {

/// Thrown by a factory that refuses; of no kind that a library would catch by chance.
struct Refusal : std::exception {};

struct WatchedKey : Records::Key {
    int mark = 0; ///< what a plain record does not hold
    int serial = made()++;
    mutable VQ::Animation::KeyPlace place;

    /// How many were made, and which died, in order.
    static int& made() {
        static int count = 0;
        return count;
    }
    /// Called once, while the first key dies.
    static std::function<void(const WatchedKey&)>& onDeath() {
        static std::function<void(const WatchedKey&)> call;
        return call;
    }
    static std::vector<int>& dead() {
        static std::vector<int> serials;
        return serials;
    }
};

inline const VQ::Animation::KeyFunctions& functions() {
    static const VQ::Animation::KeyFunctions table{
        [](Records::Key* key) noexcept {
            if (const auto call = std::exchange(WatchedKey::onDeath(), nullptr)) {
                call(*static_cast<WatchedKey*>(key));
            }
            WatchedKey::dead().push_back(static_cast<WatchedKey*>(key)->serial);
            delete static_cast<WatchedKey*>(key);
        },
        [](const Records::Key& key) {
            Records::Tree tree = VQ::Animation::serialize(key);
            tree.put("<xmlattr>.mark", static_cast<const WatchedKey&>(key).mark);
            return tree;
        },
        [](Records::Key& key, const Records::Tree& tree) {
            if (!VQ::Animation::KeyFunctions::plain.read(key, tree)) {
                return false;
            }
            static_cast<WatchedKey&>(key).mark = tree.get("<xmlattr>.mark", 0);
            return true;
        },
        [](const Records::Key& key) -> VQ::Animation::KeyPlace& {
            return static_cast<const WatchedKey&>(key).place;
        }};
    return table;
}

class Curve : public Records::MotionCurve {
public:
    using MotionCurve::attach;
    using MotionCurve::detach;
    using MotionCurve::DetachedKey;
    using MotionCurve::findBeside;
    using MotionCurve::findKey;
    using MotionCurve::relocate;
    using MotionCurve::revision;

    /// A curve whose factory refuses after @p allowed keys.
    explicit Curve(std::size_t allowed = 1000000)
        : MotionCurve(functions())
        , _allowed(allowed) {}
    explicit Curve(const MotionCurve& settings)
        : MotionCurve(functions(), settings) {}

    Records::Key* createCurveKey() const override {
        if (_created.size() == _allowed) {
            throw Refusal();
        }
        _created.push_back(new WatchedKey);
        return _created.back();
    }

    const std::vector<Records::Key*>& created() const { return _created; }

    /// Whether each key is found where a walk meets it.
    bool findsEachKey() const {
        bool isRight = true;
        for (auto position = begin(); position != end(); ++position) {
            isRight = isRight && findKey(*position->second) == position;
        }
        return isRight;
    }

    /// Stores a new key; its serial number.
    int add(unsigned int frame, int mark = 0) {
        auto* const key = new WatchedKey;
        key->mark = mark;
        insert(frame, key);
        return key->serial;
    }

private:
    std::size_t _allowed = 1000000;
    mutable std::vector<Records::Key*> _created;
};

/// Starts anew for one test.
inline void forget() {
    WatchedKey::made() = 0;
    WatchedKey::dead().clear();
}

/// Whether every key that was made died, and none died twice.
inline bool everyKeyDiedOnce() {
    const auto& dead = WatchedKey::dead();
    const std::set<int> different(dead.begin(), dead.end());
    return different.size() == dead.size() && dead.size() == static_cast<std::size_t>(WatchedKey::made());
}

} // namespace Watched
