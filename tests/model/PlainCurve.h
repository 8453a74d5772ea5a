#pragma once

#include "PlainKey.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// A curve as a list of structs, each step as plain as it can be written: what the curve is compared with.
/// Keys stand in the list in ascending order of their addresses; one that is held has a frame.
class PlainCurve {
public:
    using Key = PlainKey;
    using Home = Key::Home;
    using Point = Key::Point;
    using Side = Key::Side;
    using Type = Key::Type;
    template <class Value>
    using Entries = std::vector<std::pair<Key*, Value>>;

    std::vector<Key> keys;

    /// The frames that are taken and all keys that live, as text.
    static std::string describe(const std::vector<unsigned int>& frames, const std::vector<Key>& keys) {
        std::string lines;
        for (const unsigned int frame : frames) {
            lines += std::to_string(frame) + ' ';
        }
        for (const Key& key : keys) {
            if (key.home != Home::destroyed) {
                lines += '\n' + key.text();
            }
        }
        return lines;
    }
    std::string state() {
        std::vector<unsigned int> frames;
        for (const Key* const key : inFrameOrder()) {
            frames.push_back(key->frame);
        }
        return describe(frames, keys);
    }

    std::string takeSignals() { return std::exchange(_signals, {}); }

    Key* at(unsigned int frame) {
        for (Key& key : keys) {
            if (key.home == Home::here && key.frame == frame) {
                return &key;
            }
        }
        return nullptr;
    }

    void setValue(Key& key, float value) {
        if (key.record.value != value) {
            key.record.value = value;
            emitFrom(key, "valueChanged(" + text(value) + ')');
        }
    }

    void setType(Key& key, Side side, Type type) {
        if (key.type(side) != type) {
            key.type(side) = type;
            onTypes(key);
            emitFrom(key, "tangentsChanged()");
        }
    }

    void setOffset(Key& key, Side side, Point offset) {
        if (key.type(side) == Type::bezier && key.handle(side) != offset) {
            key.setHandle(side, offset);
            emitFrom(key, "tangentsChanged()");
        }
    }

    void setSmooth(Key& key, bool smooth) { setFlag(key, key.smooth, smooth, "smooth"); }
    void setSymmetrical(Key& key, bool symmetrical) {
        setFlag(key, key.symmetrical, symmetrical, "symmetrical");
    }

    void updateTangents() {
        for (Key* const key : inFrameOrder()) {
            updateTangents(*key);
        }
    }

    void insert(unsigned int frame, Key& key) {
        unsigned int previous = greatest();
        Key* const occupant = at(frame);
        if (occupant == &key) {
            return;
        }
        if (occupant != nullptr) {
            emitKey("keyAboutToBeRemoved", *occupant);
            occupant->home = Home::destroyed;
        }
        if (key.home == Home::here) {
            translate(key, frame);
            return;
        }
        take(key, frame);
        emitKey("keyAdded", key);
        checkGreatest(previous);
    }

    bool translate(Key& key, unsigned int frame) {
        if (key.home != Home::here) {
            return false;
        }
        if (key.frame == frame) {
            return true;
        }
        if (at(frame) != nullptr) {
            return false;
        }
        const unsigned int previous = greatest();
        key.frame = frame;
        emitFrom(key, "indexChanged(" + std::to_string(frame) + ')');
        checkGreatest(previous);
        return true;
    }

    Key* leave(unsigned int frame, Home to) {
        const unsigned int previous = greatest();
        Key* const key = at(frame);
        if (key != nullptr) {
            emitKey("keyAboutToBeRemoved", *key);
            key->home = to;
            checkGreatest(previous);
        }
        return key;
    }

    void clear() {
        const unsigned int previous = greatest();
        for (Key& key : keys) {
            key.home = key.home == Home::here ? Home::destroyed : key.home;
        }
        emitText("curve.curveCleared()");
        checkGreatest(previous);
    }

    void moveKeys(Entries<std::pair<double, double>> targets) {
        const unsigned int previous = greatest();
        ++_depth;
        if (targets.empty()) {
            return;
        }
        std::sort(targets.begin(), targets.end(),
                  [](const auto& a, const auto& b) { return frameOf(a.first) < frameOf(b.first); });
        if (frameOf(targets.front().first) < truncated(targets.front().second.first)) {
            std::reverse(targets.begin(), targets.end());
        }
        for (const auto& [key, target] : targets) {
            if (isHeld(key)) {
                setValue(*key, static_cast<float>(target.second));
                if (target.first != static_cast<double>(key->frame)) {
                    translate(*key, truncated(target.first));
                }
            }
        }
        endBatch(previous);
    }

    std::vector<Key*> reorganize(const Entries<unsigned int>& targets) {
        const unsigned int previous = greatest();
        ++_depth;
        std::vector<Key*> leavers;
        for (const auto& [key, frame] : targets) {
            if (isHeld(key)) {
                key->home = Home::nowhere;
                leavers.push_back(key);
            }
        }
        std::vector<Key*> failed;
        for (const auto& [key, frame] : targets) {
            if (key == nullptr || key->home != Home::nowhere) {
                continue;
            }
            const bool wasHere = std::find(leavers.begin(), leavers.end(), key) != leavers.end();
            if (at(frame) != nullptr) {
                failed.push_back(key);
                if (wasHere) {
                    emitKey("keyAboutToBeRemoved", *key);
                }
                continue;
            }
            take(*key, frame);
            emitFrom(*key, "indexChanged(" + std::to_string(frame) + ')');
            if (!wasHere) {
                emitKey("keyAdded", *key);
            }
        }
        endBatch(previous);
        return failed;
    }

    std::map<Key*, unsigned int> releaseAndInsert(const Entries<unsigned int>& toRelease,
                                                  const Entries<unsigned int>& toInsert) {
        const unsigned int previous = greatest();
        ++_depth;
        std::map<Key*, unsigned int> left;
        for (const auto& [key, frame] : toRelease) {
            if (key != nullptr && at(frame) == key) {
                left[leave(frame, Home::nowhere)] = frame;
            }
        }
        for (const auto& [key, frame] : toInsert) {
            if (key == nullptr) {
                continue;
            }
            Key* const displaced = leave(frame, Home::nowhere);
            take(*key, frame);
            emitKey("keyAdded", *key);
            if (displaced != nullptr) {
                left[displaced] = frame;
            }
        }
        endBatch(previous);
        return left;
    }

    /// Each of the nine bulk edits.
    template <class Value, class Action>
    void editEach(const Entries<Value>& entries, Action action) {
        ++_depth;
        if (entries.empty()) {
            return;
        }
        for (const auto& [key, value] : entries) {
            if (isHeld(key)) {
                action(*key, value);
            }
        }
        if (--_depth == 0) {
            emitText("curve.keysChanged()");
        }
    }

    void restore(const Entries<std::pair<Side, Type>>& types, const Entries<Point>& leftOffsets,
                 const Entries<Point>& rightOffsets, const Entries<bool>& smooth,
                 const Entries<bool>& symmetrical) {
        ++_depth;
        editEach(smooth, [this](Key& key, bool state) { setSmooth(key, state); });
        editEach(symmetrical, [this](Key& key, bool state) { setSymmetrical(key, state); });
        editEach(types, [this](Key& key, const auto& type) { setType(key, type.first, type.second); });
        editEach(leftOffsets, [this](Key& key, Point offset) { setOffset(key, Side::left, offset); });
        editEach(rightOffsets, [this](Key& key, Point offset) { setOffset(key, Side::right, offset); });
        if (--_depth == 0) {
            emitText("curve.keysChanged()");
        }
    }

private:
    static std::string text(float value) {
        std::ostringstream stream;
        stream << value;
        return stream.str();
    }

    static bool isHeld(const Key* key) { return key != nullptr && key->home == Home::here; }

    static unsigned int frameOf(const Key* key) { return key != nullptr ? key->index() : 0; }

    static unsigned int truncated(double x) {
        return std::abs(x) < 1e18 ? static_cast<unsigned int>(static_cast<long long>(x)) : 0U;
    }

    void emitText(const std::string& signal) { _signals += _signals.empty() ? signal : ", " + signal; }
    void emitKey(const std::string& signal, const Key& key) {
        emitText("curve." + signal + '(' + key.name + ')');
    }
    void emitFrom(const Key& key, const std::string& signal) {
        emitText(key.name + '.' + signal);
        if (key.home == Home::here && _depth == 0) {
            emitText("curve.keysChanged()");
        }
    }

    static void take(Key& key, unsigned int frame) {
        key.home = Home::here;
        key.frame = frame;
    }

    std::vector<Key*> inFrameOrder() {
        std::vector<Key*> held;
        for (Key& key : keys) {
            if (key.home == Home::here) {
                held.push_back(&key);
            }
        }
        std::sort(held.begin(), held.end(), [](const Key* a, const Key* b) { return a->frame < b->frame; });
        return held;
    }

    unsigned int greatest() {
        const std::vector<Key*> held = inFrameOrder();
        return held.empty() ? 0 : held.back()->frame;
    }

    void checkGreatest(unsigned int previous) {
        if (_depth == 0 && greatest() != previous) {
            emitText("curve.greaterIndexChanged(" + std::to_string(greatest()) + ", " +
                     std::to_string(previous) + ')');
        }
    }

    void endBatch(unsigned int previous) {
        updateTangents();
        if (--_depth == 0) {
            emitText("curve.keysChanged()");
        }
        checkGreatest(previous);
    }

    void setFlag(Key& key, bool& flag, bool value, const std::string& name) {
        if (flag == value) {
            return;
        }
        flag = value;
        if (value) {
            key.type(Side::left) = Type::bezier;
            key.type(Side::right) = Type::bezier;
            onTypes(key);
        }
        emitText(key.name + '.' + name + "Changed(" + (value ? "true" : "false") + ')');
    }

    void onTypes(Key& key) {
        if (key.type(Side::left) == Type::bezier && key.type(Side::right) == Type::bezier) {
            key.alignHandles();
        } else {
            updateTangents(key);
        }
    }

    void updateTangents(Key& key) {
        if (key.home != Home::here) {
            return;
        }
        const std::vector<Key*> held = inFrameOrder();
        const auto place = std::find(held.begin(), held.end(), &key);
        const Key* const before = place == held.begin() ? nullptr : *(place - 1);
        const Key* const behind = place + 1 == held.end() ? nullptr : *(place + 1);
        if (key.updateHandles(before, behind)) {
            emitFrom(key, "tangentsChanged()");
        }
    }

    unsigned int _depth = 0;
    std::string _signals;
};
