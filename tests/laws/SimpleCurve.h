#pragma once

#include "SimpleKeys.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

/// An editable curve made as plainly as it can be: structs in a vector, each search a walk, no Qt. It says
/// which signals a curve and its keys emit, in order, and is what the real curve is compared with.
///
/// A list of edits has the order of the container that the real curve is given; in it, none is the null key.
class SimpleCurve : public SimpleKeys {
public:
    template <class Value>
    using Edits = std::vector<std::pair<std::size_t, Value>>;

    std::size_t at(unsigned int frame) const {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (keys[i].home == Home::here && keys[i].frame == frame) {
                return i;
            }
        }
        return none;
    }

    unsigned int greatest() const {
        unsigned int result = 0;
        for (const SimpleKey& key : keys) {
            result = key.home == Home::here ? std::max(result, key.frame) : result;
        }
        return result;
    }

    std::vector<std::size_t> inFrameOrder() const {
        std::vector<std::size_t> result;
        for (std::size_t key = 0; key < keys.size(); ++key) {
            if (_isHere(key)) {
                result.push_back(key);
            }
        }
        std::sort(result.begin(), result.end(),
                  [this](std::size_t a, std::size_t b) { return keys[a].frame < keys[b].frame; });
        return result;
    }

    void updateAllTangents() {
        for (const std::size_t key : inFrameOrder()) {
            updateTangents(key);
        }
    }

    void insert(unsigned int frame, std::size_t key) {
        const unsigned int previous = greatest();
        const std::size_t occupant = at(frame);
        if (occupant == key) {
            return;
        }
        if (occupant != none) {
            _sayWithKey("keyAboutToBeRemoved", occupant);
            keys[occupant].home = Home::dead;
        }
        if (keys[key].home == Home::here) {
            translate(key, frame);
            return;
        }
        _place(key, frame);
        _sayWithKey("keyAdded", key);
        _checkGreatest(previous);
    }

    bool translate(std::size_t key, unsigned int frame) {
        if (keys[key].home != Home::here) {
            return false;
        }
        if (keys[key].frame == frame) {
            return true;
        }
        if (at(frame) != none) {
            return false;
        }
        const unsigned int previous = greatest();
        keys[key].frame = frame;
        _sayOfKey(key, "indexChanged " + std::to_string(frame));
        _checkGreatest(previous);
        return true;
    }

    std::size_t release(unsigned int frame) { return _leave(frame, Home::nowhere); }
    void remove(unsigned int frame) { _leave(frame, Home::dead); }

    void clear() {
        const unsigned int previous = greatest();
        for (SimpleKey& key : keys) {
            key.home = key.home == Home::here ? Home::dead : key.home;
        }
        _say("curveCleared");
        _checkGreatest(previous);
    }

    // Bulk edits. Those that move keys are said first.

    void moveKeys(Edits<std::pair<double, double>> targets) {
        const unsigned int previous = greatest();
        ++_depth;
        if (targets.empty()) {
            return;
        }
        std::stable_sort(targets.begin(), targets.end(), [this](const auto& a, const auto& b) {
            return _indexOf(a.first) < _indexOf(b.first);
        });
        if (_indexOf(targets.front().first) < truncated(targets.front().second.first)) {
            std::reverse(targets.begin(), targets.end());
        }
        for (const auto& [key, target] : targets) {
            if (!_isHere(key)) {
                continue;
            }
            setValue(key, narrowed(target.second));
            if (target.first != static_cast<double>(keys[key].frame)) {
                translate(key, truncated(target.first));
            }
        }
        _endMoving(previous);
    }

    /// The keys that could not be placed, in the order of the targets.
    std::vector<std::size_t> reorganize(const Edits<unsigned int>& targets) {
        const unsigned int previous = greatest();
        ++_depth;
        std::vector<bool> wasHere(keys.size(), false);
        for (const auto& [key, frame] : targets) {
            if (_isHere(key)) {
                wasHere[key] = true;
                keys[key].home = Home::nowhere;
            }
        }
        std::vector<std::size_t> failed;
        for (const auto& [key, frame] : targets) {
            if (key == none || keys[key].home != Home::nowhere) {
                continue;
            }
            if (at(frame) == none) {
                _place(key, frame);
                _sayOfKey(key, "indexChanged " + std::to_string(frame));
                if (!wasHere[key]) {
                    _sayWithKey("keyAdded", key);
                }
            } else {
                failed.push_back(key);
                if (wasHere[key]) {
                    _sayWithKey("keyAboutToBeRemoved", key);
                }
            }
        }
        _endMoving(previous);
        return failed;
    }

    /// The keys that left, each with the frame that it left last; in the order of their numbers.
    Edits<unsigned int> releaseAndInsert(const Edits<unsigned int>& toRelease,
                                         const Edits<unsigned int>& toInsert) {
        const unsigned int previous = greatest();
        ++_depth;
        Edits<unsigned int> left;
        for (const auto& [key, frame] : toRelease) {
            if (key != none && at(frame) == key) {
                _noteLeft(left, release(frame), frame);
            }
        }
        for (const auto& [key, frame] : toInsert) {
            if (key == none || keys[key].home != Home::nowhere) {
                continue;
            }
            const std::size_t displaced = release(frame);
            _place(key, frame);
            _sayWithKey("keyAdded", key);
            if (displaced != none) {
                _noteLeft(left, displaced, frame);
            }
        }
        _endMoving(previous);
        std::sort(left.begin(), left.end());
        return left;
    }

    /// Any of the bulk edits of tangents and flags.
    template <class Value, class Edit>
    void editEach(const Edits<Value>& edits, Edit edit) {
        ++_depth;
        if (edits.empty()) {
            return;
        }
        for (const auto& [key, value] : edits) {
            if (_isHere(key)) {
                edit(key, value);
            }
        }
        _endBatch();
    }

    void restore(const Edits<std::pair<Side, Type>>& types, const Edits<Point>& left,
                 const Edits<Point>& right, const Edits<bool>& smooth, const Edits<bool>& symmetrical) {
        ++_depth;
        editEach(smooth, [this](std::size_t key, bool state) { setSmooth(key, state); });
        editEach(symmetrical, [this](std::size_t key, bool state) { setSymmetrical(key, state); });
        editEach(types, [this](std::size_t key, const auto& type) { setType(key, type.first, type.second); });
        editEach(left, [this](std::size_t key, Point offset) { setOffset(key, Side::left, offset); });
        editEach(right, [this](std::size_t key, Point offset) { setOffset(key, Side::right, offset); });
        _endBatch();
    }

    /// The frame of a position: towards zero, and what does not fit into a frame wraps around.
    static unsigned int truncated(double x) {
        constexpr double farthest = 9e18;
        return x > -farthest && x < farthest ? static_cast<unsigned int>(static_cast<long long>(x)) : 0U;
    }

    static float narrowed(double y) {
        const double largest = std::numeric_limits<float>::max();
        return std::abs(y) > largest
                   ? std::copysign(std::numeric_limits<float>::infinity(), static_cast<float>(y > 0 ? 1 : -1))
                   : static_cast<float>(y);
    }

private:
    unsigned int _indexOf(std::size_t key) const {
        const bool isHeld = _isHere(key) || (key != none && keys[key].home == Home::elsewhere);
        return isHeld ? keys[key].frame : 0U;
    }

    void _place(std::size_t key, unsigned int frame) {
        keys[key].home = Home::here;
        keys[key].frame = frame;
    }

    std::size_t _leave(unsigned int frame, Home to) {
        const unsigned int previous = greatest();
        const std::size_t key = at(frame);
        if (key != none) {
            _sayWithKey("keyAboutToBeRemoved", key);
            keys[key].home = to;
            _checkGreatest(previous);
        }
        return key;
    }

    static void _noteLeft(Edits<unsigned int>& left, std::size_t key, unsigned int frame) {
        const auto isKey = [key](const auto& entry) { return entry.first == key; };
        left.erase(std::remove_if(left.begin(), left.end(), isKey), left.end());
        left.emplace_back(key, frame);
    }

    void _checkGreatest(unsigned int previous) {
        if (_depth == 0 && greatest() != previous) {
            _say("greaterIndexChanged " + std::to_string(greatest()) + ' ' + std::to_string(previous));
        }
    }

    void _endBatch() {
        if (--_depth == 0) {
            _say("keysChanged");
        }
    }

    void _endMoving(unsigned int previous) {
        updateAllTangents();
        _endBatch();
        _checkGreatest(previous);
    }
};
