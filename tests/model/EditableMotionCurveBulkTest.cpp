#include "base/math/BezierTangents.h"
#include "model/EditableMotionCurveExceptions.h"
#include "tests/support/SignalRecorder.h"

#include <QPointer>
#include <QtTest>

#include <rapidcheck.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using VQ::Math::Interpolation::InterpolationType;
using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;
using ZT::TangentSide;

namespace {

/// A curve with linear keys, whose handles are never recomputed, so that signals are those of the moves
/// alone. Keys are named a, b, c, ... in ascending order of their addresses: the order in which bulk
/// operations take them.
struct Curve {
    explicit Curve(const std::vector<unsigned int>& frames) {
        std::vector<EditableMotionCurveKey*> created;
        for (std::size_t i = 0; i < frames.size(); ++i) {
            created.push_back(newKey());
        }
        std::sort(created.begin(), created.end(), std::less<>());
        for (std::size_t i = 0; i < frames.size(); ++i) {
            curve.insert(frames[i], created[i]);
            keys.push_back(created[i]);
            recorder.watch(*created[i], QString(QChar('a' + static_cast<int>(i))));
        }
        recorder.watch(curve);
    }

    static EditableMotionCurveKey* newKey() {
        VQ::Math::Interpolation::Key record;
        record.leftTangentType = InterpolationType::linear;
        record.rightTangentType = InterpolationType::linear;
        return new EditableMotionCurveKey(record);
    }

    /// "a@1 b@5": the keys in frame order.
    QString layout() const {
        QStringList parts;
        for (const auto element : curve) {
            const auto found = std::find(keys.begin(), keys.end(), element.second);
            parts.append(
                QString("%1@%2").arg(QChar('a' + static_cast<int>(found - keys.begin()))).arg(element.first));
        }
        return parts.join(' ');
    }

    EditableMotionCurveKey* operator[](std::size_t i) const { return keys[i]; }

    EditableMotionCurve curve;
    std::vector<EditableMotionCurveKey*> keys;
    SignalRecorder recorder;
};

/// Whether a change of a key reaches keysChanged(): it does not while the batch depth is raised.
bool isListening(EditableMotionCurve& curve) {
    EditableMotionCurveKey* const probe = Curve::newKey();
    curve.insert(4000000000U, probe);
    int count = 0;
    const auto connection =
        QObject::connect(&curve, &EditableMotionCurve::keysChanged, [&count] { ++count; });
    probe->setValue(probe->getValue() + 1.0F);
    QObject::disconnect(connection);
    curve.remove(4000000000U);
    return count == 1;
}

/// The curve as a list of structs, each step as plain as it can be written: what the curve is compared with.
/// Keys stand in the list in ascending order of their addresses; one that is held has a frame.
class PlainCurve {
public:
    using Record = VQ::Math::Interpolation::Key;
    using Point = VQ::Math::Position2D;
    enum class Home { nowhere, here, elsewhere, destroyed };

    struct Key {
        std::string name;
        Home home = Home::nowhere;
        unsigned int frame = 0;
        Record record;
        bool smooth = false;
        bool symmetrical = false;
    };
    template <class Value>
    using Entries = std::vector<std::pair<Key*, Value>>;

    std::vector<Key> keys;

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

    void setType(Key& key, TangentSide side, InterpolationType type) {
        InterpolationType& own =
            side == TangentSide::left ? key.record.leftTangentType : key.record.rightTangentType;
        if (own != type) {
            own = type;
            onTypes(key);
            emitFrom(key, "tangentsChanged()");
        }
    }

    void setOffset(Key& key, TangentSide side, Point offset) {
        const bool isLeft = side == TangentSide::left;
        Record& r = key.record;
        Point& own = isLeft ? r.leftTangentOffset : r.rightTangentOffset;
        Point& other = isLeft ? r.rightTangentOffset : r.leftTangentOffset;
        if ((isLeft ? r.leftTangentType : r.rightTangentType) != InterpolationType::bezier || own == offset) {
            return;
        }
        own = offset;
        if ((isLeft ? r.rightTangentType : r.leftTangentType) == InterpolationType::bezier) {
            if (key.symmetrical) {
                other = Point(-own.x, -own.y);
            } else if (key.smooth) {
                const float a = isLeft ? std::atan2(-own.y, -own.x) : std::atan2(own.y, own.x);
                const float length = isLeft ? other.norm() : -other.norm();
                other = Point(std::cos(a) * length, std::sin(a) * length);
            }
        }
        emitFrom(key, "tangentsChanged()");
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

    void restore(const Entries<std::pair<TangentSide, InterpolationType>>& types,
                 const Entries<Point>& leftOffsets, const Entries<Point>& rightOffsets,
                 const Entries<bool>& smooth, const Entries<bool>& symmetrical) {
        ++_depth;
        editEach(smooth, [this](Key& key, bool state) { setSmooth(key, state); });
        editEach(symmetrical, [this](Key& key, bool state) { setSymmetrical(key, state); });
        editEach(types, [this](Key& key, const auto& type) { setType(key, type.first, type.second); });
        editEach(leftOffsets, [this](Key& key, Point offset) { setOffset(key, TangentSide::left, offset); });
        editEach(rightOffsets,
                 [this](Key& key, Point offset) { setOffset(key, TangentSide::right, offset); });
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

    static unsigned int frameOf(const Key* key) {
        return key != nullptr && (key->home == Home::here || key->home == Home::elsewhere) ? key->frame : 0;
    }

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
            key.record.leftTangentType = InterpolationType::bezier;
            key.record.rightTangentType = InterpolationType::bezier;
            onTypes(key);
        }
        emitText(key.name + '.' + name + "Changed(" + (value ? "true" : "false") + ')');
    }

    void onTypes(Key& key) {
        Point& l = key.record.leftTangentOffset;
        Point& r = key.record.rightTangentOffset;
        if (key.record.leftTangentType != InterpolationType::bezier ||
            key.record.rightTangentType != InterpolationType::bezier) {
            updateTangents(key);
        } else if (key.symmetrical) {
            r = Point((r.x - l.x) * 0.5F, (r.y - l.y) * 0.5F);
            l = Point(-r.x, -r.y);
        } else if (key.smooth) {
            const float a = (std::atan2(-l.y, -l.x) + std::atan2(r.y, r.x)) * 0.5F;
            const float leftLength = l.norm();
            const float rightLength = r.norm();
            l = Point(-std::cos(a) * leftLength, -std::sin(a) * leftLength);
            r = Point(std::cos(a) * rightLength, std::sin(a) * rightLength);
        }
    }

    void updateTangents(Key& key) {
        const bool isLeft = key.record.leftTangentType == InterpolationType::bezierAuto;
        const bool isRight = key.record.rightTangentType == InterpolationType::bezierAuto;
        if (key.home != Home::here || (!isLeft && !isRight)) {
            return;
        }
        const std::vector<Key*> held = inFrameOrder();
        const auto place = std::find(held.begin(), held.end(), &key);
        const Key* const before = place == held.begin() ? nullptr : *(place - 1);
        const Key* const behind = place + 1 == held.end() ? nullptr : *(place + 1);
        const auto handles =
            VQ::Math::computeBezierKeyTangents(static_cast<float>(key.frame - (before ? before->frame : 0)),
                                               static_cast<float>(behind ? behind->frame - key.frame : 0),
                                               before ? key.record.value - before->record.value : 0.0F,
                                               behind ? behind->record.value - key.record.value : 0.0F);
        bool changed = false;
        if (isLeft && !key.record.leftTangentOffset.isNear(handles.first, 0.0001F)) {
            key.record.leftTangentOffset = handles.first;
            changed = true;
        }
        if (isRight && !key.record.rightTangentOffset.isNear(handles.second, 0.0001F)) {
            key.record.rightTangentOffset = handles.second;
            changed = true;
        }
        if (changed) {
            emitFrom(key, "tangentsChanged()");
        }
    }

    unsigned int _depth = 0;
    std::string _signals;
};

/// A curve and its plain counterpart, edited side by side at random. Some keys stand in the curve, some in no
/// curve and three ("x", "y", "z") in another one.
class Twins {
    using Key = EditableMotionCurveKey;
    using C = EditableMotionCurve;

    template <class Value>
    static Value plainOf(const Value& value) {
        return value;
    }
    static std::pair<double, double> plainOf(const QPointF& point) { return {point.x(), point.y()}; }
    static VQ::Math::Position2D plainOf(const QPair<float, float>& pair) { return {pair.first, pair.second}; }
    static std::pair<TangentSide, InterpolationType>
    plainOf(const QPair<TangentSide, InterpolationType>& pair) {
        return {pair.first, pair.second};
    }

    PlainCurve::Key* plain(const Key* key) {
        for (std::size_t i = 0; i < _keys.size(); ++i) {
            if (key != nullptr && _keys[i] == key) {
                return &_plain.keys[i];
            }
        }
        return nullptr;
    }

    /// What a container holds, in its own order.
    template <class Map>
    auto entries(const Map& map) {
        PlainCurve::Entries<std::decay_t<decltype(plainOf(map.cbegin().value()))>> result;
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            result.emplace_back(plain(entry.key()), plainOf(entry.value()));
        }
        return result;
    }
    auto entries(const C::KeysSet& set) {
        PlainCurve::Entries<bool> result;
        for (Key* const key : set) {
            result.emplace_back(plain(key), true);
        }
        return result;
    }

public:
    Twins() {
        for (int i = 0; i < 20; ++i) {
            _keys.emplace_back(new Key);
        }
        std::sort(_keys.begin(), _keys.end(), [](Key* a, Key* b) { return std::less<>()(a, b); });
        for (std::size_t i = 0; i < _keys.size(); ++i) {
            _plain.keys.push_back({std::string(1, static_cast<char>('a' + i)), {}, 0, {}, false, false});
            // Heard before the curve hears it, however often the key comes and goes.
            _recorder.watch(*_keys[i], QString::fromStdString(_plain.keys[i].name));
        }
        for (const unsigned int frame : {2U, 5U, 9U}) {
            // Spread over the addresses, so that the other curve's keys come first, between and last.
            const std::size_t i = frame * 2;
            _other.insert(frame, _keys[i]);
            _plain.keys[i].home = PlainCurve::Home::elsewhere;
            _plain.keys[i].frame = frame;
        }
        _recorder.watch(_curve);
    }
    Twins(const Twins&) = delete;
    Twins& operator=(const Twins&) = delete;
    ~Twins() {
        for (const QPointer<Key>& key : _keys) {
            if (key != nullptr && key->getParentCurve() == nullptr) {
                delete key;
            }
        }
    }

    void edit() {
        switch (pick(22)) {
        case 0:
        case 1:
            if (Key* const key = any(Strangers::none)) {
                const unsigned int frame = aFrame();
                const auto position = _curve.insert(frame, key);
                _plain.insert(frame, *plain(key));
                RC_ASSERT(position->second == key);
            }
            break;
        case 2:
        case 3: {
            KeysWith<QPointF> targets =
                some<QPointF>(Strangers::all, [] { return QPointF(aPosition(), 0.5 * pick(-6, 7)); });
            // Which of two keys at one frame decides the direction is open: only one of them is moved.
            for (auto entry = targets.begin(); entry != targets.end();) {
                const bool isTie = std::any_of(targets.begin(), entry, [&](const auto& earlier) {
                    return ZT::index(earlier.first) == ZT::index(entry->first);
                });
                entry = isTie ? targets.erase(entry) : std::next(entry);
            }
            const C::KeyPosMap map = toMap<C::KeyPosMap>(targets);
            _curve.moveKeys(map);
            _plain.moveKeys(entries(map));
            break;
        }
        case 4:
        case 5: {
            const auto map = toMap<C::KeysIndexMap>(some<unsigned int>(Strangers::all, aFrame));
            std::vector<Key*> failed;
            try {
                _curve.reorganizeKeys(map);
            } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
                RC_ASSERT(!failure.failedKeys.empty());
                failed = failure.failedKeys;
            }
            std::vector<PlainCurve::Key*> plainFailed;
            for (Key* const key : failed) {
                plainFailed.push_back(plain(key));
            }
            RC_ASSERT(_plain.reorganize(entries(map)) == plainFailed);
            break;
        }
        case 6:
        case 7:
            replace();
            break;
        case 8:
            if (Key* const key = any(Strangers::all)) {
                const unsigned int frame = aFrame();
                RC_ASSERT(_curve.translateKey(key, frame) == _plain.translate(*plain(key), frame));
            }
            break;
        case 9: {
            const unsigned int frame = aFrame();
            RC_ASSERT(plain(_curve.release(frame)) == _plain.leave(frame, PlainCurve::Home::nowhere));
            break;
        }
        case 10: {
            const auto set = aSet();
            const auto type = aType();
            const bool smooth = pick(2) == 1;
            const bool symmetrical = pick(2) == 1;
            _curve.setKeysParam(set, type, smooth, symmetrical);
            _plain.editEach(entries(set), [&](PlainCurve::Key& key, bool) {
                _plain.setType(key, TangentSide::left, type);
                _plain.setType(key, TangentSide::right, type);
                _plain.setSmooth(key, smooth);
                _plain.setSymmetrical(key, symmetrical);
            });
            break;
        }
        case 11: {
            const auto set = aSet();
            const auto side = aSide();
            const auto offset = anOffset();
            _curve.moveTangents(set, side, offset);
            _plain.editEach(entries(set), [&](PlainCurve::Key& key, bool) {
                _plain.setOffset(key, side, plainOf(offset));
            });
            break;
        }
        case 12: {
            const auto map = toMap<C::TangentPosMap>(some<QPair<float, float>>(Strangers::all, anOffset));
            const auto side = aSide();
            _curve.moveTangents(map, side);
            _plain.editEach(entries(map), [&](PlainCurve::Key& key, const auto& offset) {
                _plain.setOffset(key, side, offset);
            });
            break;
        }
        case 13: {
            C::KeySideMap map;
            for (const auto& [key, side] : some<TangentSide>(Strangers::all, aSide)) {
                map.insert(key, side);
                map.insert(key, aSide());
            }
            const auto type = aType();
            _curve.setTangentsType(map, type);
            _plain.editEach(entries(map),
                            [&](PlainCurve::Key& key, TangentSide side) { _plain.setType(key, side, type); });
            break;
        }
        case 14: {
            const auto map = someTypes();
            _curve.setTangentsType(map);
            _plain.editEach(entries(map), [&](PlainCurve::Key& key, const auto& type) {
                _plain.setType(key, type.first, type.second);
            });
            break;
        }
        case 15: {
            const bool state = pick(2) == 1;
            const auto set = aSet();
            _curve.setKeysSmooth(set, state);
            _plain.editEach(entries(set), [&](PlainCurve::Key& key, bool) { _plain.setSmooth(key, state); });
            const auto map = someStates();
            _curve.setKeysSmooth(map);
            _plain.editEach(entries(map), [&](PlainCurve::Key& key, bool s) { _plain.setSmooth(key, s); });
            break;
        }
        case 16: {
            const bool state = pick(2) == 1;
            const auto set = aSet();
            _curve.setKeysSymmetrical(set, state);
            _plain.editEach(entries(set),
                            [&](PlainCurve::Key& key, bool) { _plain.setSymmetrical(key, state); });
            const auto map = someStates();
            _curve.setKeysSymmetrical(map);
            _plain.editEach(entries(map),
                            [&](PlainCurve::Key& key, bool s) { _plain.setSymmetrical(key, s); });
            break;
        }
        case 17: {
            const auto types = someTypes();
            const auto left = toMap<C::TangentPosMap>(some<QPair<float, float>>(Strangers::all, anOffset));
            const auto right = toMap<C::TangentPosMap>(some<QPair<float, float>>(Strangers::all, anOffset));
            const auto smooth = someStates();
            const auto symmetrical = someStates();
            _curve.restoreKeys(types, left, right, smooth, symmetrical);
            _plain.restore(entries(types), entries(left), entries(right), entries(smooth),
                           entries(symmetrical));
            break;
        }
        case 18:
            if (Key* const key = any(Strangers::none)) {
                const auto value = static_cast<float>(pick(-6, 7));
                const auto side = aSide();
                const auto type = aType();
                const auto offset = anOffset();
                key->setValue(value);
                _plain.setValue(*plain(key), value);
                key->setTangentType(side, type);
                _plain.setType(*plain(key), side, type);
                key->setTangentOffset(side, offset);
                _plain.setOffset(*plain(key), side, plainOf(offset));
            }
            break;
        case 19:
            _curve.updateBezierAutoTangents();
            _plain.updateTangents();
            break;
        case 20: {
            const unsigned int frame = aFrame();
            _curve.remove(frame);
            _plain.leave(frame, PlainCurve::Home::destroyed);
            break;
        }
        default:
            if (pick(6) == 5) {
                _curve.clear();
                _plain.clear();
            }
        }
    }

    void compare() {
        RC_ASSERT(_recorder.take().toStdString() == _plain.takeSignals());
        RC_ASSERT(stateOfCurve() == stateOfPlain());
    }

private:
    enum class Strangers { none, all };
    template <class Value>
    using KeysWith = std::vector<std::pair<Key*, Value>>;

    static int pick(int count) { return *rc::gen::inRange(0, count); }
    static int pick(int first, int behind) { return *rc::gen::inRange(first, behind); }
    static unsigned int aFrame() { return *rc::gen::inRange(0U, 12U); }
    static TangentSide aSide() { return static_cast<TangentSide>(pick(2)); }
    static InterpolationType aType() { return static_cast<InterpolationType>(3 - pick(4)); }
    static QPair<float, float> anOffset() {
        return {0.5F * static_cast<float>(pick(-6, 7)), 0.5F * static_cast<float>(pick(-6, 7))};
    }
    static double aPosition() {
        const double rare[] = {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, -1e19,
                               4294967298.5};
        return pick(30) == 29 ? rare[pick(5)] : 0.25 * pick(-6, 52);
    }

    void replace() {
        const auto toRelease = toMap<C::KeysIndexMap>(some<unsigned int>(Strangers::all, aFrame));
        C::KeysIndexMap held;
        for (auto entry = toRelease.cbegin(); entry != toRelease.cend(); ++entry) {
            held.insert(entry.key(), pick(4) == 3 ? entry.value() : ZT::index(entry.key()));
        }
        // Only keys that will be in no curve by then may be inserted.
        C::KeysIndexMap toInsert = toMap<C::KeysIndexMap>(some<unsigned int>(Strangers::all, aFrame));
        for (auto entry = toInsert.begin(); entry != toInsert.end();) {
            Key* const key = entry.key();
            const bool isFree = key == nullptr || key->getParentCurve() == nullptr ||
                                (held.contains(key) && _curve.getKey(held[key]) == key);
            entry = isFree ? std::next(entry) : toInsert.erase(entry);
        }
        std::map<PlainCurve::Key*, unsigned int> left;
        const C::KeysIndexMap result = _curve.releaseAndInsertKeys(held, toInsert);
        for (auto entry = result.cbegin(); entry != result.cend(); ++entry) {
            left[plain(entry.key())] = entry.value();
        }
        RC_ASSERT(_plain.releaseAndInsert(entries(held), entries(toInsert)) == left);
    }

    /// A key that still lives.
    Key* any(Strangers strangers) {
        std::vector<Key*> living;
        for (const QPointer<Key>& key : _keys) {
            if (key != nullptr && (strangers == Strangers::all || key->getParentCurve() != &_other)) {
                living.push_back(key);
            }
        }
        return living.empty() ? nullptr
                              : living[static_cast<std::size_t>(pick(static_cast<int>(living.size())))];
    }

    /// Different keys with a value each; seldom none at all or the null key among them.
    template <class Value, class MakeValue>
    KeysWith<Value> some(Strangers strangers, MakeValue makeValue) {
        KeysWith<Value> result;
        const int count = pick(40) == 39 ? 0 : 1 + pick(5);
        for (int i = 0; i < count; ++i) {
            Key* const key = pick(20) == 19 ? nullptr : any(strangers);
            const bool isNew = std::none_of(result.begin(), result.end(),
                                            [&](const auto& entry) { return entry.first == key; });
            if (isNew) {
                result.emplace_back(key, makeValue());
            }
        }
        return result;
    }

    C::KeysSet aSet() {
        C::KeysSet set;
        for (const auto& [key, ignored] : some<bool>(Strangers::all, [] { return true; })) {
            set.insert(key);
        }
        return set;
    }

    C::KeyStateMap someStates() {
        return toMap<C::KeyStateMap>(some<bool>(Strangers::all, [] { return pick(2) == 1; }));
    }

    C::TangentTypeMap someTypes() {
        QMultiMap<Key*, QPair<TangentSide, InterpolationType>> map;
        for (const auto& [key, type] : some<InterpolationType>(Strangers::all, aType)) {
            map.insert(key, {TangentSide::left, type});
            map.insert(key, {TangentSide::right, aType()});
        }
        return map;
    }

    template <class Map, class Value>
    static Map toMap(const KeysWith<Value>& keys) {
        Map map;
        for (const auto& [key, value] : keys) {
            map.insert(key, value);
        }
        return map;
    }

    static void describe(std::ostream& out, const std::string& name, const char* home, unsigned int frame,
                         const VQ::Math::Interpolation::Key& record, bool smooth, bool symmetrical) {
        out << name << ' ' << home << ' ' << frame << ": " << record.value << " ("
            << static_cast<int>(record.leftTangentType) << ' ' << record.leftTangentOffset.x << ' '
            << record.leftTangentOffset.y << ") (" << static_cast<int>(record.rightTangentType) << ' '
            << record.rightTangentOffset.x << ' ' << record.rightTangentOffset.y << ')'
            << (smooth ? " smooth" : "") << (symmetrical ? " symmetrical" : "") << '\n';
    }

    std::string stateOfCurve() const {
        std::ostringstream out;
        for (const auto element : std::as_const(_curve)) {
            out << element.first << ' ';
        }
        out << '\n';
        for (std::size_t i = 0; i < _keys.size(); ++i) {
            if (const Key* const key = _keys[i]) {
                const char* const home = key->getParentCurve() == &_curve   ? "here"
                                         : key->getParentCurve() == &_other ? "elsewhere"
                                                                            : "nowhere";
                describe(out, _plain.keys[i].name, home, ZT::index(key), key->baseMotionCurveKey(),
                         key->isSmooth(), key->isSymmetrical());
            }
        }
        return out.str();
    }

    std::string stateOfPlain() const {
        std::ostringstream out;
        std::set<unsigned int> frames;
        for (const PlainCurve::Key& key : _plain.keys) {
            if (key.home == PlainCurve::Home::here) {
                frames.insert(key.frame);
            }
        }
        for (const unsigned int frame : frames) {
            out << frame << ' ';
        }
        out << '\n';
        for (const PlainCurve::Key& key : _plain.keys) {
            const bool isHeld = key.home != PlainCurve::Home::nowhere;
            if (key.home != PlainCurve::Home::destroyed) {
                describe(out, key.name,
                         key.home == PlainCurve::Home::here        ? "here"
                         : key.home == PlainCurve::Home::elsewhere ? "elsewhere"
                                                                   : "nowhere",
                         isHeld ? key.frame : 0, key.record, key.smooth, key.symmetrical);
            }
        }
        return out.str();
    }

    SignalRecorder _recorder;
    std::vector<QPointer<Key>> _keys;
    PlainCurve _plain;
    C _other;
    C _curve;
};

} // namespace

class EditableMotionCurveBulkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The keys' places are known beforehand when their addresses are not in the order of their frames.
    void aSlotMayClearTheCurveWhileItsKeysAreReleased() {
        Curve c({30, 20, 10});
        const EditableMotionCurve::KeysIndexMap all{{c[0], 30U}, {c[1], 20U}, {c[2], 10U}};
        QObject::connect(&c.curve, &EditableMotionCurve::keyAboutToBeRemoved, [&c] { c.curve.clear(); });
        QVERIFY(c.curve.releaseAndInsertKeys(all, {}).isEmpty());
        QVERIFY(c.curve.empty());
    }

    void movingUpMovesTheLastKeyFirst() {
        Curve c({1, 2, 3});
        c.curve.moveKeys({{c[0], {2, 0}}, {c[1], {3, 0}}, {c[2], {4, 0}}});
        QCOMPARE(c.layout(), QString("a@2 b@3 c@4"));
        QCOMPARE(c.recorder.take(), QString("c.indexChanged(4), b.indexChanged(3), a.indexChanged(2), "
                                            "curve.keysChanged(), curve.greaterIndexChanged(4, 3)"));
    }

    void movingDownMovesTheFirstKeyFirst() {
        Curve c({1, 2, 3});
        c.curve.moveKeys({{c[0], {0, 0}}, {c[1], {1, 0}}, {c[2], {2, 0}}});
        QCOMPARE(c.layout(), QString("a@0 b@1 c@2"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(0), b.indexChanged(1), c.indexChanged(2), "
                                            "curve.keysChanged(), curve.greaterIndexChanged(2, 3)"));
    }

    void theValueIsSetBeforeTheFrame() {
        Curve c({1});
        c.curve.moveKeys({{c[0], {7, 2.5}}});
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(2.5), a.indexChanged(7), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(7, 1)"));
    }

    void movingOntoAKeyThatStaysChangesOnlyTheValue() {
        Curve c({1, 2});
        c.curve.moveKeys({{c[0], {2, 5}}});
        QCOMPARE(c.layout(), QString("a@1 b@2"));
        QCOMPARE(c[0]->getValue(), 5.0F);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(5), curve.keysChanged()"));
    }

    // The first key alone decides: b and c, which move up, then meet in ascending order.
    void theDirectionIsChosenFromTheFirstKeyAlone() {
        Curve c({5, 6, 7});
        c.curve.moveKeys({{c[0], {4, 0}}, {c[1], {7, 0}}, {c[2], {8, 0}}});
        QCOMPARE(c.layout(), QString("a@4 b@6 c@8"));
    }

    void targetsAreTruncated_data() {
        QTest::addColumn<double>("target");
        QTest::addColumn<unsigned int>("frame");
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("4.99") << 4.99 << 4U;
        QTest::newRow("-0.5") << -0.5 << 0U;
        QTest::newRow("-1") << -1.0 << 4294967295U;
        QTest::newRow("2^32 + 3") << 4294967299.0 << 3U;
        QTest::newRow("NaN") << std::nan("") << 0U;
        QTest::newRow("infinity") << infinity << 0U;
        QTest::newRow("-infinity") << -infinity << 0U;
        QTest::newRow("1e300") << 1e300 << 0U;
        QTest::newRow("2^63") << 9223372036854775808.0 << 0U;
        QTest::newRow("-2^63") << -9223372036854775808.0 << 0U;
    }
    void targetsAreTruncated() {
        QFETCH(double, target);
        QFETCH(unsigned int, frame);
        Curve c({10});
        c.curve.moveKeys({{c[0], {target, 0}}});
        QCOMPARE(ZT::index(c[0]), frame);
    }

    void aValueBeyondFloatBecomesInfinite() {
        Curve c({10});
        c.curve.moveKeys({{c[0], {10, -1e300}}});
        QCOMPARE(c[0]->getValue(), -std::numeric_limits<float>::infinity());
    }

    void aFractionOfTheCurrentFrameCountsAsAMoveToItself() {
        Curve c({4});
        c.curve.moveKeys({{c[0], {4.5, 0}}});
        QCOMPARE(c.layout(), QString("a@4"));
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
    }

    void movingNullAndForeignKeysDoesNothingToThem() {
        Curve c({1});
        Curve other({1});
        c.curve.moveKeys({{nullptr, {9, 9}}, {other[0], {9, 9}}});
        QCOMPARE(other.recorder.take(), QString());
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(other.layout(), QString("a@1"));
    }

    void movingNothingLeavesTheBatchDepthRaised() {
        Curve c({1});
        c.curve.moveKeys({});
        QCOMPARE(c.recorder.take(), QString());
        c[0]->setValue(3.0F);
        c.curve.translateKey(c[0], 20);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(3), a.indexChanged(20)"));
        QVERIFY(!isListening(c.curve));
    }

    void otherOperationsLeaveTheDepthAsTheyFoundIt() {
        Curve c({1, 2});
        c.curve.moveKeys({{c[0], {5, 0}}});
        QVERIFY(isListening(c.curve));
        c.curve.reorganizeKeys({});
        QVERIFY(isListening(c.curve));
        c.curve.releaseAndInsertKeys({}, {});
        QVERIFY(isListening(c.curve));
    }

    void emptyReorganisationAndReplacementRunTheirBatchEnd() {
        Curve c({1});
        c.curve.reorganizeKeys({});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        c.curve.releaseAndInsertKeys({}, {});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
    }

    void automaticHandlesAreRecomputedBeforeTheBatchEnds() {
        EditableMotionCurve curve;
        auto* const low = new EditableMotionCurveKey;
        auto* const high = new EditableMotionCurveKey;
        curve.insert(0, low);
        curve.insert(30, high);
        SignalRecorder recorder;
        recorder.watch(*low, "low");
        recorder.watch(*high, "high");
        recorder.watch(curve);
        curve.moveKeys({{high, {60, 0}}});
        QCOMPARE(recorder.take(),
                 QString("high.indexChanged(60), low.tangentsChanged(), high.tangentsChanged(), "
                         "curve.keysChanged(), curve.greaterIndexChanged(60, 30)"));
        QCOMPARE(low->getTangentOffset(ZT::TangentSide::right), qMakePair(20.0F, 0.0F));
    }

    void twoKeysExchangeTheirFrames() {
        Curve c({3, 8});
        c.curve.reorganizeKeys({{c[0], 8}, {c[1], 3}});
        QCOMPARE(c.layout(), QString("b@3 a@8"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(8), b.indexChanged(3), curve.keysChanged()"));
    }

    void aKeyPlacedWhereItStoodIsAnnouncedToo() {
        Curve c({3});
        c.curve.reorganizeKeys({{c[0], 3}});
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(3), curve.keysChanged()"));
    }

    void aKeyWhoseFrameIsTakenLeavesTheCurveAndIsReported() {
        Curve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> failed(c[0]);
        bool wasHeldWhenAnnounced = true;
        EditableMotionCurve* parentWhenAnnounced = &c.curve;
        QObject::connect(&c.curve, &EditableMotionCurve::keyAboutToBeRemoved, [&] {
            wasHeldWhenAnnounced = c.curve._find(failed.get()) != c.curve.end();
            parentWhenAnnounced = failed->getParentCurve();
        });
        try {
            c.curve.reorganizeKeys({{c[0], 8}});
            QFAIL("the reorganisation was not refused");
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            QCOMPARE(QString(failure.what()), QString("Editable motion curve: reorganization failed"));
            QCOMPARE(failure.failedKeys, std::vector<EditableMotionCurveKey*>{c[0]});
        }
        QVERIFY(!wasHeldWhenAnnounced);
        QCOMPARE(parentWhenAnnounced, nullptr);
        QCOMPARE(failed->getParentCurve(), nullptr);
        QCOMPARE(c.layout(), QString("b@8"));
        QCOMPARE(c.recorder.take(), QString("curve.keyAboutToBeRemoved(a), curve.keysChanged()"));
        failed->setValue(4.0F);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(4)"));
        QVERIFY(isListening(c.curve));
    }

    void ofTwoKeysSentToOneFrameTheFirstByAddressWins() {
        Curve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> failed(c[1]);
        QVERIFY_EXCEPTION_THROWN(c.curve.reorganizeKeys({{c[0], 5}, {c[1], 5}}),
                                 ZT::EditableMotionCurveReorganizedFail);
        QCOMPARE(c.layout(), QString("a@5"));
        QCOMPARE(c.recorder.take(),
                 QString("a.indexChanged(5), curve.keyAboutToBeRemoved(b), curve.keysChanged(), "
                         "curve.greaterIndexChanged(5, 8)"));
    }

    void aNewcomerIsTakenIn() {
        Curve c({3});
        EditableMotionCurveKey* const newcomer = Curve::newKey();
        c.recorder.watch(*newcomer, "new");
        c.curve.reorganizeKeys({{newcomer, 9}});
        QCOMPARE(c.recorder.take(), QString("new.indexChanged(9), curve.keyAdded(new), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(9, 3)"));
        QCOMPARE(newcomer->getParentCurve(), &c.curve);
        newcomer->setValue(1.0F);
        QCOMPARE(c.recorder.take(), QString("new.valueChanged(1), curve.keysChanged()"));
    }

    void aNewcomerThatFailsIsLeftAsItWas() {
        Curve c({3});
        const std::unique_ptr<EditableMotionCurveKey> newcomer(Curve::newKey());
        try {
            c.curve.reorganizeKeys({{newcomer.get(), 3}});
            QFAIL("the reorganisation was not refused");
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            QCOMPARE(failure.failedKeys, std::vector<EditableMotionCurveKey*>{newcomer.get()});
        }
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(newcomer->getParentCurve(), nullptr);
    }

    void reorganisingSkipsNullAndForeignKeys() {
        Curve c({3});
        Curve other({5});
        c.curve.reorganizeKeys({{nullptr, 9}, {other[0], 9}});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(c.layout(), QString("a@3"));
        QCOMPARE(other.layout(), QString("a@5"));
    }

    void replacingReleasesFirstAndThenInserts() {
        Curve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> gone(c[0]);
        EditableMotionCurveKey* const added = Curve::newKey();
        c.recorder.watch(*added, "new");
        const auto left = c.curve.releaseAndInsertKeys({{c[0], 3}}, {{added, 12}});
        QCOMPARE(left, (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(gone->getParentCurve(), nullptr);
        QCOMPARE(c.recorder.take(),
                 QString("curve.keyAboutToBeRemoved(a), curve.keyAdded(new), curve.keysChanged(), "
                         "curve.greaterIndexChanged(12, 8)"));
    }

    void aKeyNamedAtAWrongFrameIsNotReleased() {
        Curve c({3, 8});
        QVERIFY(c.curve.releaseAndInsertKeys({{c[0], 8}, {c[1], 5}}, {}).isEmpty());
        QCOMPARE(c.layout(), QString("a@3 b@8"));
    }

    void aDisplacedKeyIsGivenBackWithItsFrame() {
        Curve c({3});
        const std::unique_ptr<EditableMotionCurveKey> displaced(c[0]);
        EditableMotionCurveKey* const added = Curve::newKey();
        QCOMPARE(c.curve.releaseAndInsertKeys({}, {{added, 3}}),
                 (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(c.curve.getKey(3), added);
        QCOMPARE(displaced->getParentCurve(), nullptr);
    }

    void ofTwoKeysInsertedAtOneFrameTheSecondDisplacesTheFirst() {
        Curve c({});
        std::unique_ptr<EditableMotionCurveKey> first(Curve::newKey());
        std::unique_ptr<EditableMotionCurveKey> second(Curve::newKey());
        if (std::less<>()(second.get(), first.get())) {
            first.swap(second);
        }
        const auto left = c.curve.releaseAndInsertKeys({}, {{first.get(), 3}, {second.get(), 3}});
        QCOMPARE(left, (EditableMotionCurve::KeysIndexMap{{first.get(), 3}}));
        QCOMPARE(c.curve.getKey(3), second.release());
    }

    void nullAndHeldKeysAreNotInserted() {
        Curve c({3});
        Curve other({5});
        const auto left =
            c.curve.releaseAndInsertKeys({{nullptr, 3}}, {{nullptr, 3}, {c[0], 7}, {other[0], 3}});
        QVERIFY(left.isEmpty());
        QCOMPARE(c.layout(), QString("a@3"));
        QCOMPARE(other.layout(), QString("a@5"));
    }

    void aBatchStartedFromASlotIsAnnouncedWithTheOuterOne() {
        Curve c({1, 2});
        bool isNested = false;
        QObject::connect(c[0], &EditableMotionCurveKey::valueChanged, [&] {
            isNested = true;
            c.curve.moveKeys({{c[1], {9, 0}}});
        });
        c.curve.moveKeys({{c[0], {1, 5}}});
        QVERIFY(isNested);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(5), b.indexChanged(9), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(9, 2)"));
    }

    void anExceptionFromASlotLowersTheBatchDepth() {
        Curve c({1});
        const auto connection = QObject::connect(c[0], &EditableMotionCurveKey::valueChanged,
                                                 [] { throw std::runtime_error("slot"); });
        QVERIFY_EXCEPTION_THROWN(c.curve.moveKeys({{c[0], {1, 5}}}), std::runtime_error);
        QObject::disconnect(connection);
        QVERIFY(isListening(c.curve));
    }

    void aHundredThousandKeysMoveAtOnce() {
        EditableMotionCurve curve;
        EditableMotionCurve::KeyPosMap targets;
        for (unsigned int i = 0; i < 100000; ++i) {
            targets.insert(curve.insert(i, Curve::newKey())->second, QPointF(i + 1.0, 0.25));
        }
        curve.moveKeys(targets);
        QCOMPARE(curve.begin()->first, 1U);
        QCOMPARE(curve.getGreaterIndex(), 100000U);
    }

    void valuesAreNotClampedToTheCurvesLimits() {
        VQ::Animation::MotionCurve plain;
        plain.setValueLimits({-1.0F, 1.0F});
        plain.insert(3, new VQ::Math::Interpolation::Key);
        EditableMotionCurve curve(plain);
        EditableMotionCurveKey* const key = curve.getKey(3);
        curve.moveKeys({{key, {3, 50}}});
        QCOMPARE(key->getValue(), 50.0F);
    }

    // The null key counts as standing at frame 0: sent up it turns the order, sent nowhere it does not.
    void aSkippedKeyCanDecideTheDirection_data() {
        QTest::addColumn<double>("target");
        QTest::addColumn<QString>("layout");
        QTest::newRow("up") << 5.0 << "a@2 b@3";
        QTest::newRow("nowhere") << 0.0 << "a@1 b@3";
    }
    void aSkippedKeyCanDecideTheDirection() {
        QFETCH(double, target);
        QFETCH(QString, layout);
        Curve c({1, 2});
        c.curve.moveKeys({{nullptr, {target, 0}}, {c[0], {2, 0}}, {c[1], {3, 0}}});
        QCOMPARE(c.layout(), layout);
    }

    void aKeyOfAnotherCurveCanDecideTheDirection() {
        Curve c({5, 6});
        Curve other({1});
        c.curve.moveKeys({{other[0], {0, 0}}, {c[0], {6, 0}}, {c[1], {7, 0}}});
        QCOMPARE(c.layout(), QString("a@5 b@7"));
        QCOMPARE(other.layout(), QString("a@1"));
    }

    void framesAreComparedWithoutSign() {
        Curve c({2147483647U, 2147483648U});
        c.curve.moveKeys({{c[0], {2147483648.0, 0}}, {c[1], {2147483649.0, 0}}});
        QCOMPARE(c.layout(), QString("a@2147483648 b@2147483649"));
    }

    void aTargetThatIsNoNumberStillMeetsTheKeyAtFrameZero() {
        Curve c({0, 7});
        c.curve.moveKeys({{c[1], {std::nan(""), 4}}});
        QCOMPARE(c.layout(), QString("a@0 b@7"));
        QCOMPARE(c[1]->getValue(), 4.0F);
    }

    void namedKeysHaveLeftBeforeTheFirstIsPlaced() {
        Curve c({1, 2, 3});
        bool wasFree = false;
        bool wasHeld = true;
        QObject::connect(c[0], &EditableMotionCurveKey::indexChanged, [&] {
            wasFree = c.curve.isIndexAvailable(1) && c.curve.isIndexAvailable(2);
            wasHeld = c.curve._find(c[1]) != c.curve.end();
        });
        c.curve.reorganizeKeys({{c[0], 9}, {c[1], 1}});
        QVERIFY(wasFree);
        QVERIFY(!wasHeld);
        QCOMPARE(c.layout(), QString("b@1 c@3 a@9"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(9), b.indexChanged(1), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(9, 3)"));
    }

    void allFailuresAreReportedTogetherAfterAllSignals() {
        Curve c({1, 2, 3, 4});
        std::vector<EditableMotionCurveKey*> expected{c[0], c[2]};
        std::unique_ptr<EditableMotionCurveKey> newcomer(Curve::newKey());
        c.recorder.watch(*newcomer, "new");
        expected.push_back(newcomer.get());
        std::sort(expected.begin(), expected.end(), std::less<>());
        try {
            c.curve.reorganizeKeys({{c[0], 2}, {c[2], 2}, {c[3], 8}, {newcomer.get(), 2}});
            QFAIL("the reorganisation was not refused");
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            QCOMPARE(c.recorder.take(), QString("curve.keyAboutToBeRemoved(a), curve.keyAboutToBeRemoved(c), "
                                                "d.indexChanged(8), curve.keysChanged(), "
                                                "curve.greaterIndexChanged(8, 4)"));
            QCOMPARE(failure.failedKeys, expected);
        }
        QCOMPARE(c.layout(), QString("b@2 d@8"));
        QVERIFY(isListening(c.curve));
        delete c[0];
        delete c[2];
    }

    void aKeyTakenOutAndPutBackIsStillReportedAsGone() {
        Curve c({3});
        QCOMPARE(c.curve.releaseAndInsertKeys({{c[0], 3}}, {{c[0], 9}}),
                 (EditableMotionCurve::KeysIndexMap{{c[0], 3}}));
        QCOMPARE(c.layout(), QString("a@9"));
        QCOMPARE(c[0]->getParentCurve(), &c.curve);
        QCOMPARE(c.recorder.take(), QString("curve.keyAboutToBeRemoved(a), curve.keyAdded(a), "
                                            "curve.keysChanged(), curve.greaterIndexChanged(9, 3)"));
        c[0]->setValue(1.0F);
        QCOMPARE(c.recorder.count("curve.keysChanged()"), 1);
    }

    void aKeyIsReportedWithTheFrameThatItLeftLast() {
        Curve c({3, 4});
        const std::unique_ptr<EditableMotionCurveKey> displaced(c[0]);
        QCOMPARE(c.curve.releaseAndInsertKeys({{c[0], 3}, {c[1], 4}}, {{c[0], 9}, {c[1], 9}}),
                 (EditableMotionCurve::KeysIndexMap{{c[0], 9}, {c[1], 4}}));
        QCOMPARE(c.layout(), QString("b@9"));
    }

    void singleEditsFromASlotLeaveTheirChecksToTheBatch() {
        Curve c({1, 2});
        EditableMotionCurveKey* const added = Curve::newKey();
        c.recorder.watch(*added, "new");
        QObject::connect(c[0], &EditableMotionCurveKey::valueChanged, [&] { c.curve.insert(50, added); });
        c.curve.moveKeys({{c[0], {1, 5}}});
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(5), curve.keyAdded(new), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(50, 2)"));
    }

    void aBatchStartedWhileAnotherIsAnnouncedIsAnnouncedInsideIt() {
        Curve c({1});
        QObject context;
        QObject::connect(&c.curve, &EditableMotionCurve::keysChanged, &context, [&] {
            if (ZT::index(c[0]) == 5) {
                c.curve.moveKeys({{c[0], {9, 0}}});
            }
        });
        c.curve.moveKeys({{c[0], {5, 0}}});
        QCOMPARE(c.recorder.take(),
                 QString("a.indexChanged(5), curve.keysChanged(), a.indexChanged(9), curve.keysChanged(), "
                         "curve.greaterIndexChanged(9, 5), curve.greaterIndexChanged(9, 1)"));
    }

    void aDepthRaisedWhileABatchIsAnnouncedHidesItsGreatestFrame() {
        Curve c({1});
        QObject::connect(&c.curve, &EditableMotionCurve::keysChanged, [&] { c.curve.moveKeys({}); });
        c.curve.moveKeys({{c[0], {5, 0}}});
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(5), curve.keysChanged()"));
    }

    void aRaisedDepthSilencesBulkOperationsToo() {
        Curve c({1});
        c.curve.moveKeys({});
        c.curve.moveKeys({{c[0], {5, 0}}});
        c.curve.reorganizeKeys({{c[0], 6}});
        c.curve.releaseAndInsertKeys({{c[0], 6}}, {{c[0], 7}});
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(5), a.indexChanged(6), "
                                            "curve.keyAboutToBeRemoved(a), curve.keyAdded(a)"));
    }

    void anySequenceOfEditsDoesWhatAPlainListDoes() {
        QVERIFY(rc::check("state and signals are those of a plain list of keys", [] {
            Twins twins;
            for (int count = *rc::gen::inRange(1, 80); count > 0; --count) {
                twins.edit();
                twins.compare();
            }
        }));
    }
};

QTEST_GUILESS_MAIN(EditableMotionCurveBulkTest)
#include "EditableMotionCurveBulkTest.moc"
