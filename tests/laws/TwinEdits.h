#pragma once

#include "CurveTwins.h"
#include "model/EditableMotionCurveExceptions.h"

#include <algorithm>

/// Random edits, each made on both twins. What an edit returns must be the same too.
class TwinEdits {
public:
    using Curve = CurveTwins::Curve;
    using Key = CurveTwins::Key;
    using Point = SimpleCurve::Point;
    template <class Value>
    using Edits = SimpleCurve::Edits<Value>;

    explicit TwinEdits(CurveTwins& twins)
        : _twins(twins)
        , _curve(twins.curve)
        , _simple(twins.simple) {
        for (int count = Draw::size(12); count > 0; --count) {
            _insert();
        }
    }

    void makeOne() {
        switch (Draw::below(11)) {
        case 0:
        case 1:
            return _insert();
        case 2:
        case 3:
            return _changeKey();
        case 4:
            return _changeStructure();
        case 5:
            return _moveKeys();
        case 6:
            return _reorganize();
        case 7:
            return _releaseAndInsert();
        case 8:
            return _changeTangents();
        case 9:
            return _changeFlags();
        default:
            return _restore();
        }
    }

private:
    using Offset = QPair<float, float>;
    using TypeOfSide = QPair<Draw::Side, Draw::Type>;

    // Values that the two twins spell differently.
    static unsigned int _plain(unsigned int frame) { return frame; }
    static bool _plain(bool state) { return state; }
    static Draw::Side _plain(Draw::Side side) { return side; }
    static Point _plain(const Offset& offset) { return {offset.first, offset.second}; }
    static std::pair<double, double> _plain(const QPointF& point) { return {point.x(), point.y()}; }
    static std::pair<Draw::Side, Draw::Type> _plain(const TypeOfSide& type) {
        return {type.first, type.second};
    }

    /// What a container holds, in its order.
    template <class Map>
    auto _edits(const Map& map) const {
        Edits<decltype(_plain(map.cbegin().value()))> edits;
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            edits.emplace_back(_twins.numberOf(entry.key()), _plain(entry.value()));
        }
        return edits;
    }
    auto _edits(const Curve::KeysSet& set) const {
        Edits<bool> edits;
        for (const Key* const key : set) {
            edits.emplace_back(_twins.numberOf(key), true);
        }
        return edits;
    }

    static unsigned int _frame() { return Draw::rarely(12) ? Draw::frame() : Draw::below(16U); }
    /// Now and then one that is no side, or no type.
    static Draw::Side _side() { return Draw::rarely(16) ? static_cast<Draw::Side>(2) : Draw::side(); }
    static Draw::Type _type() { return Draw::rarely(32) ? static_cast<Draw::Type>(7) : Draw::type(); }
    static Offset _offset() { return {Draw::number(), Draw::number()}; }
    static QPointF _position() {
        const double x = Draw::rarely(3) ? Draw::position() : 0.5 * Draw::below(32);
        const double y = Draw::rarely(24) ? 1e300 * (Draw::below(3) - 1) : double{Draw::number()};
        return {x, y};
    }

    std::size_t _any(bool withForeign) const {
        const std::vector<std::size_t> numbers = _twins.living(withForeign);
        return numbers.empty() ? SimpleCurve::none : Draw::oneOf(numbers);
    }

    /// Some keys with a value each; now and then none at all, null, or a key of another curve.
    template <class Map, class MakeValue>
    Map _some(MakeValue makeValue) const {
        Map map;
        for (int count = Draw::rarely(100) ? 0 : 1 + Draw::below(8); count > 0; --count) {
            map.insert(_twins.key(Draw::rarely(20) ? SimpleCurve::none : _any(true)), makeValue());
        }
        return map;
    }

    Curve::KeysSet _someKeys() const {
        const auto map = _some<Curve::KeyStateMap>([] { return true; });
        return {map.keyBegin(), map.keyEnd()};
    }

    Curve::KeyStateMap _someStates() const { return _some<Curve::KeyStateMap>(Draw::yesOrNo); }
    Curve::TangentPosMap _someOffsets() const { return _some<Curve::TangentPosMap>(_offset); }
    /// Often both sides of a key, as commands that restore keys have it.
    Curve::TangentTypeMap _someTypes() const {
        return _some<QMultiMap<Key*, TypeOfSide>>([] { return TypeOfSide(_side(), _type()); });
    }

    void _insert() {
        const std::size_t number = _any(false);
        if (number == SimpleCurve::none) {
            return;
        }
        const unsigned int frame = _frame();
        const auto position = _curve.insert(frame, _twins.key(number));
        _simple.insert(frame, number);
        RC_ASSERT(position == _curve.find(frame));
        RC_ASSERT(_twins.numberOf(position->second) == number);
    }

    void _changeKey() {
        const std::size_t number = _any(false);
        if (number == SimpleCurve::none) {
            return;
        }
        Key& key = *_twins.key(number);
        switch (Draw::below(6)) {
        case 0: {
            const float value = Draw::number();
            key.setValue(value);
            return _simple.setValue(number, value);
        }
        case 1: {
            const Draw::Side side = _side();
            const Draw::Type type = _type();
            _setType(key, side, type);
            return _simple.setType(number, side, type);
        }
        case 2: {
            const Draw::Side side = _side();
            const Offset offset = _offset();
            _setOffset(key, side, offset);
            return _simple.setOffset(number, side, _plain(offset));
        }
        case 3: {
            const bool smooth = Draw::yesOrNo();
            key.setSmooth(smooth);
            return _simple.setSmooth(number, smooth);
        }
        case 4: {
            const bool symmetrical = Draw::yesOrNo();
            key.setSymmetrical(symmetrical);
            return _simple.setSymmetrical(number, symmetrical);
        }
        default:
            RC_ASSERT(key.updateBezierAutoTangents() == _simple.updateTangents(number));
        }
    }

    /// By the setter of all sides or by that of one.
    static void _setType(Key& key, Draw::Side side, Draw::Type type) {
        if (side == Draw::Side::left && Draw::yesOrNo()) {
            return key.setLeftTangentType(type);
        }
        if (side == Draw::Side::right && Draw::yesOrNo()) {
            return key.setRightTangentType(type);
        }
        key.setTangentType(side, type);
    }
    static void _setOffset(Key& key, Draw::Side side, const Offset& offset) {
        if (side == Draw::Side::left && Draw::yesOrNo()) {
            return key.setLeftTangentOffset(offset);
        }
        if (side == Draw::Side::right && Draw::yesOrNo()) {
            return key.setRightTangentOffset(offset);
        }
        key.setTangentOffset(side, offset);
    }

    void _changeStructure() {
        const unsigned int frame = _frame();
        switch (Draw::below(8)) {
        case 0:
            RC_ASSERT(_twins.numberOf(_curve.release(frame)) == _simple.release(frame));
            return;
        case 1:
            _curve.remove(frame);
            return _simple.remove(frame);
        case 2:
            _curve.remove(_curve.find(frame));
            return _simple.remove(frame);
        case 3:
            _curve.updateBezierAutoTangents();
            return _simple.updateAllTangents();
        case 4:
            if (Draw::rarely(4)) {
                _curve.clear();
                _simple.clear();
            }
            return;
        default:
            const std::size_t number = _any(true);
            if (number != SimpleCurve::none) {
                RC_ASSERT(_curve.translateKey(_twins.key(number), frame) == _simple.translate(number, frame));
            }
        }
    }

    void _moveKeys() {
        const auto drawn = _some<Curve::KeyPosMap>(_position);
        // Of several keys at the lowest frame, which are null or belong elsewhere, any may be the one that
        // decides the direction: one of them stays.
        Curve::KeyPosMap positions;
        unsigned int lowest = std::numeric_limits<unsigned int>::max();
        for (auto entry = drawn.cbegin(); entry != drawn.cend(); ++entry) {
            lowest = std::min(lowest, CurveTwins::frameOf(entry.key()));
        }
        bool hasLowest = false;
        for (auto entry = drawn.cbegin(); entry != drawn.cend(); ++entry) {
            const bool isLowest = CurveTwins::frameOf(entry.key()) == lowest;
            if (!isLowest || !hasLowest) {
                positions.insert(entry.key(), entry.value());
            }
            hasLowest = hasLowest || isLowest;
        }
        _curve.moveKeys(positions);
        _simple.moveKeys(_edits(positions));
    }

    void _reorganize() {
        // Often an exchange of frames that keys have.
        const auto frames = _some<Curve::KeysIndexMap>(
            [this] { return Draw::yesOrNo() ? _frame() : CurveTwins::frameOf(_twins.key(_any(true))); });
        const Edits<unsigned int> edits = _edits(frames);
        std::vector<std::size_t> failed;
        bool isThrown = false;
        try {
            _curve.reorganizeKeys(frames);
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            isThrown = true;
            for (const Key* const key : failure.failedKeys) {
                failed.push_back(_twins.numberOf(key));
            }
        }
        RC_ASSERT(_simple.reorganize(edits) == failed);
        RC_ASSERT(isThrown == !failed.empty());
    }

    void _releaseAndInsert() {
        Curve::KeysIndexMap toRelease;
        for (Key* const key : _someKeys()) {
            toRelease.insert(key, Draw::rarely(4) ? _frame() : CurveTwins::frameOf(key));
        }
        const auto toInsert = _some<Curve::KeysIndexMap>(_frame);
        Edits<unsigned int> left = _edits(_curve.releaseAndInsertKeys(toRelease, toInsert));
        std::sort(left.begin(), left.end());
        RC_ASSERT(_simple.releaseAndInsert(_edits(toRelease), _edits(toInsert)) == left);
    }

    void _changeTangents() {
        const Draw::Side side = _side();
        const Draw::Type type = _type();
        switch (Draw::below(4)) {
        case 0: {
            const Curve::KeysSet keys = _someKeys();
            const Offset offset = _offset();
            _curve.moveTangents(keys, side, offset);
            return _simple.editEach(
                _edits(keys), [&](std::size_t key, bool) { _simple.setOffset(key, side, _plain(offset)); });
        }
        case 1: {
            const Curve::TangentPosMap offsets = _someOffsets();
            _curve.moveTangents(offsets, side);
            return _simple.editEach(_edits(offsets), [&](std::size_t key, const Point& offset) {
                _simple.setOffset(key, side, offset);
            });
        }
        case 2: {
            const auto sides = _some<Curve::KeySideMap>(_side);
            _curve.setTangentsType(sides, type);
            return _simple.editEach(
                _edits(sides), [&](std::size_t key, Draw::Side own) { _simple.setType(key, own, type); });
        }
        default:
            const Curve::TangentTypeMap types = _someTypes();
            _curve.setTangentsType(types);
            return _simple.editEach(_edits(types), [&](std::size_t key, const auto& own) {
                _simple.setType(key, own.first, own.second);
            });
        }
    }

    void _changeFlags() {
        const auto setSmooth = [this](std::size_t key, bool state) { _simple.setSmooth(key, state); };
        const auto setSymmetrical = [this](std::size_t key, bool state) {
            _simple.setSymmetrical(key, state);
        };
        const Curve::KeysSet keys = _someKeys();
        const Curve::KeyStateMap states = _someStates();
        const bool state = Draw::yesOrNo();
        switch (Draw::below(5)) {
        case 0:
            _curve.setKeysSmooth(keys, state);
            return _simple.editEach(_edits(keys), [&](std::size_t key, bool) { setSmooth(key, state); });
        case 1:
            _curve.setKeysSmooth(states);
            return _simple.editEach(_edits(states), setSmooth);
        case 2:
            _curve.setKeysSymmetrical(keys, state);
            return _simple.editEach(_edits(keys), [&](std::size_t key, bool) { setSymmetrical(key, state); });
        case 3:
            _curve.setKeysSymmetrical(states);
            return _simple.editEach(_edits(states), setSymmetrical);
        default:
            const Draw::Type type = _type();
            const bool symmetrical = Draw::yesOrNo();
            _curve.setKeysParam(keys, type, state, symmetrical);
            return _simple.editEach(_edits(keys), [&](std::size_t key, bool) {
                _simple.setType(key, Draw::Side::left, type);
                _simple.setType(key, Draw::Side::right, type);
                setSmooth(key, state);
                setSymmetrical(key, symmetrical);
            });
        }
    }

    void _restore() {
        const Curve::TangentTypeMap types = _someTypes();
        const Curve::TangentPosMap left = _someOffsets();
        const Curve::TangentPosMap right = _someOffsets();
        const Curve::KeyStateMap smooth = _someStates();
        const Curve::KeyStateMap symmetrical = _someStates();
        _curve.restoreKeys(types, left, right, smooth, symmetrical);
        _simple.restore(_edits(types), _edits(left), _edits(right), _edits(smooth), _edits(symmetrical));
    }

    CurveTwins& _twins;
    Curve& _curve;
    SimpleCurve& _simple;
};
