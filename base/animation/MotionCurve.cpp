#include "base/animation/MotionCurve.h"

#include "base/animation/KeySerialization.h"
#include "base/animation/TreeItems.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace VQ::Animation {

using TreeItems::Tree;

namespace {

[[maybe_unused]] constexpr std::size_t fewKeys = 100; // so many may be checked at each change

// As much as a place can hold; more than there will ever be.
constexpr std::uint64_t largestMapNumber = ~std::uint64_t{0} >> 1U;

std::uint64_t nextMapNumber() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

} // namespace

MotionCurve::MotionCurve()
    : MotionCurve(KeyFunctions::plain) {}

MotionCurve::MotionCurve(const KeyFunctions& functions)
    : _functions(&functions)
    , _mapNumber(nextMapNumber()) {}

MotionCurve::MotionCurve(const KeyFunctions& functions, const MotionCurve& other)
    : _settings(other._settings)
    , _functions(&functions)
    , _mapNumber(nextMapNumber()) {}

MotionCurve::MotionCurve(const MotionCurve& other)
    : MotionCurve(KeyFunctions::plain, other) {
    for (const auto element : other) {
        auto copy = std::make_unique<Key>(*element.second);
        insert(element.first, copy.get());
        static_cast<void>(copy.release()); // The curve owns it now.
    }
}

MotionCurve::MotionCurve(MotionCurve&& other) noexcept
    : MotionCurve(KeyFunctions::plain) {
    _swapContents(other);
}

MotionCurve& MotionCurve::operator=(MotionCurve other) noexcept {
    _swapContents(other);
    return *this;
}

MotionCurve::~MotionCurve() {
    MotionCurve::clear();
}

// Swapping maps keeps positions of elements valid.
void MotionCurve::_swapContents(MotionCurve& other) noexcept {
    std::swap(_settings, other._settings);
    std::swap(_functions, other._functions);
    _keys.base().swap(other._keys.base());
    std::swap(_mapNumber, other._mapNumber);
    _noteManyChanged();
    other._noteManyChanged();
}

void MotionCurve::_noteManyChanged() noexcept {
    _finger = _keys.base().end();
    ++_revision;
    assert(_keys.empty() || _placesAreRight(_keys.base().begin()));
}

MotionCurve::iterator MotionCurve::find(unsigned int frame) {
    return _keys.find(frame);
}
MotionCurve::const_iterator MotionCurve::find(unsigned int frame) const {
    return _keys.find(frame);
}

MotionCurve::const_iterator MotionCurve::findAtOrBefore(unsigned int frame) const {
    auto position = _keys.upper_bound(frame);
    return position == _keys.begin() ? _keys.end() : --position;
}

// The first place at or behind a frame: at once when it is the end or next to the given place, by search
// otherwise.
MotionCurve::Places::iterator MotionCurve::_lowerBound(unsigned int frame, Places::iterator beside) {
    Places& places = _keys.base();
    const auto last = places.end();
    if (places.empty() || std::prev(last)->first < frame) {
        return last;
    }
    if (beside != last && beside->first < frame) {
        const auto next = std::next(beside);
        if (next->first >= frame) {
            return next;
        }
    } else if (beside != last && (beside == places.begin() || std::prev(beside)->first < frame)) {
        return beside;
    }
    return places.lower_bound(frame);
}

void MotionCurve::_notePlaced(Places::iterator position) noexcept {
    if (_functions->place != nullptr) {
        KeyPlace& place = _functions->place(*static_cast<const Key*>(position->second));
        place.mapNumber = _mapNumber & largestMapNumber;
        place.frame = position->first;
        place.position = position;
        ++place.placings;
    }
    _finger = position;
    ++_revision;
    assert(_placesAreRight(position));
}

// Whether keys know their places. Of a small curve each is asked, of a large one the one at the given
// position: work on it would become quadratic.
bool MotionCurve::_placesAreRight(Places::iterator position) {
    const bool isSmall = size() <= fewKeys;
    const auto last = isSmall ? _keys.base().end() : std::next(position);
    return _functions->place == nullptr ||
           std::all_of(isSmall ? _keys.base().begin() : position, last, [&](const auto& element) {
               const KeyPlace& place = _functions->place(*static_cast<const Key*>(element.second));
               const bool isRight = place.frame == element.first && &*place.position == &element;
               return isHere(place) ? isRight : place.wasShared != 0;
           });
}

MotionCurve::iterator MotionCurve::_seek(const Key& key) {
    return std::find_if(begin(), end(), [&](const auto& element) { return element.second == &key; });
}

// A key that another curve took in stands there, although this curve holds it too.
void MotionCurve::_forgetPlace(Places::iterator position) noexcept {
    if (_functions->place != nullptr) {
        KeyPlace& place = _functions->place(*static_cast<const Key*>(position->second));
        place.mapNumber = isHere(place) ? 0 : place.mapNumber;
    }
}

MotionCurve::iterator MotionCurve::insert(unsigned int frame, Key* key) {
    if (key == nullptr) {
        throw std::invalid_argument("a motion curve holds no null keys");
    }
    if (_functions->place != nullptr && findKey(*key) != end()) {
        throw std::invalid_argument("the key is already in the motion curve");
    }
    const auto next = _lowerBound(frame, _finger);
    if (next != _keys.base().end() && next->first == frame) {
        throw std::invalid_argument("frame " + std::to_string(frame) + " already holds a key");
    }
    assert(_functions->place != nullptr || size() > fewKeys || _seek(*key) == end());
    const auto position = _keys.base().emplace_hint(next, frame, key);
    if (_functions->place != nullptr) {
        KeyPlace& place = _functions->place(*key);
        place.wasShared = place.mapNumber != 0 ? 1 : place.wasShared;
    }
    _notePlaced(position);
    return iterator(position);
}

MotionCurve::iterator MotionCurve::findBeside(unsigned int frame) {
    _finger = _lowerBound(frame, _finger);
    return _finger != _keys.base().end() && _finger->first == frame ? iterator(_finger) : end();
}

MotionCurve::DetachedKey MotionCurve::detach(iterator position) noexcept {
    const auto leaving = position.base();
    _forgetPlace(leaving);
    if (_finger == leaving) {
        ++_finger;
    }
    ++_revision;
    DetachedKey detached;
    detached._node = _keys.base().extract(leaving);
    assert(_keys.empty() || _placesAreRight(_keys.base().begin()));
    return detached;
}

bool MotionCurve::attach(DetachedKey& detached, unsigned int frame) {
    const auto next = _lowerBound(frame, _finger);
    if (next != _keys.base().end() && next->first == frame) {
        return false;
    }
    detached._node.key() = frame;
    _notePlaced(_keys.base().insert(next, std::move(detached._node)));
    return true;
}

bool MotionCurve::relocate(iterator position, unsigned int frame) {
    Places& places = _keys.base();
    const auto leaving = position.base();
    auto next = _lowerBound(frame, leaving);
    if (next != places.end() && next->first == frame) {
        return false;
    }
    if (next == leaving) {
        ++next;
    }
    auto node = places.extract(leaving);
    node.key() = frame;
    _notePlaced(places.insert(next, std::move(node)));
    return true;
}

MotionCurve::Key* MotionCurve::DetachedKey::release() noexcept {
    Key* const released = key();
    _node = {};
    return released;
}

MotionCurve::iterator MotionCurve::erase(iterator position) {
    const auto behind = std::next(position.base());
    // The key leaves the curve before it dies: whoever watches its end finds the curve without it.
    _functions->destroy(detach(position).release());
    return iterator(behind);
}

// No key is found any more when the first one dies.
void MotionCurve::clear() noexcept {
    KeyMap keys;
    keys.base().swap(_keys.base());
    _mapNumber = nextMapNumber();
    _noteManyChanged();
    for (auto element : keys) {
        _functions->destroy(element.second);
    }
}

void MotionCurve::setTimeUnit(const RationalSeconds& timeUnit) {
    if (timeUnit.count().numerator() < 1) {
        throw std::invalid_argument("a frame lasts longer than no time");
    }
    _settings.timeUnit = timeUnit;
}

MotionCurve::Key* MotionCurve::createCurveKey() const {
    return new Key;
}

Tree MotionCurve::serialize() const {
    Tree tree;
    TreeItems::putDuration(tree, "timeUnit", _settings.timeUnit);
    TreeItems::putNumber(tree, "minimum", _settings.valueLimits.first);
    TreeItems::putNumber(tree, "maximum", _settings.valueLimits.second);
    TreeItems::putNumber(tree, "maximumDerivative", _settings.maxAbsoluteDerivative);
    for (const auto element : *this) {
        Tree key = _functions->write(*element.second);
        TreeItems::putFrame(key, "frame", element.first);
        TreeItems::append(tree, "key", std::move(key));
    }
    return tree;
}

void MotionCurve::_read(const Tree& tree) {
    MotionCurve fresh(*_functions);
    fresh._settings.timeUnit = TreeItems::getDuration(tree, "timeUnit");
    fresh._settings.valueLimits = {TreeItems::getNumber(tree, "minimum"),
                                   TreeItems::getNumber(tree, "maximum")};
    fresh._settings.maxAbsoluteDerivative = TreeItems::getNumber(tree, "maximumDerivative");
    std::size_t position = 0;
    for (const auto& [name, node] : tree) {
        if (name != "key") {
            continue;
        }
        ++position;
        try {
            const unsigned int frame = TreeItems::getFrame(node, "frame");
            std::unique_ptr<Key, decltype(_functions->destroy)> key(createCurveKey(), _functions->destroy);
            if (!_functions->read(*key, node)) {
                deserializeMotionCurveKey(node); // Throws what the key could not be read for.
                throw std::invalid_argument("it cannot be read");
            }
            fresh.insert(frame, key.get());
            static_cast<void>(key.release()); // The curve owns it now.
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument("key " + std::to_string(position) + ": " + error.what());
        }
    }
    _swapContents(fresh);
}

bool MotionCurve::deserialize(const Tree& tree) {
    try {
        _read(tree);
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    }
}

std::string MotionCurve::problemIn(const Tree& tree) {
    try {
        MotionCurve()._read(tree);
        return {};
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

} // namespace VQ::Animation
