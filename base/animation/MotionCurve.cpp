#include "base/animation/MotionCurve.h"

#include "base/animation/KeySerialization.h"
#include "base/animation/TreeItems.h"

#include <cassert>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace VQ::Animation {

using TreeItems::Tree;

MotionCurve::MotionCurve()
    : MotionCurve(KeyFunctions::plain) {}

MotionCurve::MotionCurve(const KeyFunctions& functions)
    : _functions(&functions) {}

MotionCurve::MotionCurve(const KeyFunctions& functions, const MotionCurve& other)
    : _settings(other._settings)
    , _functions(&functions) {}

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

// Swapping maps keeps iterators valid, so that each index follows its map as it stands.
void MotionCurve::_swapContents(MotionCurve& other) noexcept {
    std::swap(_settings, other._settings);
    std::swap(_functions, other._functions);
    _keys.base().swap(other._keys.base());
    _index.swap(other._index);
}

MotionCurve::iterator MotionCurve::begin() {
    return _keys.begin();
}
MotionCurve::iterator MotionCurve::end() {
    return _keys.end();
}
MotionCurve::const_iterator MotionCurve::begin() const {
    return _keys.begin();
}
MotionCurve::const_iterator MotionCurve::end() const {
    return _keys.end();
}
std::size_t MotionCurve::size() const noexcept {
    return _keys.size();
}
bool MotionCurve::empty() const noexcept {
    return _keys.empty();
}

MotionCurve::iterator MotionCurve::find(unsigned int frame) {
    return _keys.find(frame);
}
MotionCurve::const_iterator MotionCurve::find(unsigned int frame) const {
    return _keys.find(frame);
}

MotionCurve::iterator MotionCurve::findKey(const Key* key) {
    const auto entry = _index.find(key);
    return entry == _index.end() ? _keys.end() : iterator(entry->second);
}

MotionCurve::const_iterator MotionCurve::findKey(const Key* key) const {
    const auto entry = _index.find(key);
    return entry == _index.end() ? _keys.end() : const_iterator(entry->second);
}

MotionCurve::const_iterator MotionCurve::findAtOrBefore(unsigned int frame) const {
    auto position = _keys.upper_bound(frame);
    return position == _keys.begin() ? _keys.end() : --position;
}

MotionCurve::iterator MotionCurve::insert(unsigned int frame, Key* key) {
    if (key == nullptr) {
        throw std::invalid_argument("a motion curve holds no null keys");
    }
    const auto [entry, isNew] = _index.try_emplace(key);
    if (!isNew) {
        throw std::invalid_argument("the key is already in the motion curve");
    }
    try {
        const auto [place, isFree] = _keys.base().try_emplace(frame, key);
        if (!isFree) {
            throw std::invalid_argument("frame " + std::to_string(frame) + " already holds a key");
        }
        entry->second = place;
    } catch (...) {
        _index.erase(entry);
        throw;
    }
    return iterator(entry->second);
}

MotionCurve::DetachedKey MotionCurve::detach(iterator position) noexcept {
    DetachedKey detached;
    detached._entry = _index.extract(position->second);
    detached._place = _keys.base().extract(position.base());
    return detached;
}

MotionCurve::iterator MotionCurve::attach(DetachedKey&& detached, unsigned int frame) {
    detached._place.key() = frame;
    const auto entry = _index.insert(std::move(detached._entry)).position;
    const auto placed = _keys.base().insert(std::move(detached._place));
    assert(placed.inserted);
    entry->second = placed.position;
    return iterator(placed.position);
}

MotionCurve::Key* MotionCurve::DetachedKey::release() noexcept {
    Key* const released = key();
    _place = {};
    _entry = {};
    return released;
}

MotionCurve::iterator MotionCurve::erase(iterator position) {
    const auto behind = std::next(position.base());
    // The key leaves the curve before it dies: whoever watches its end finds the curve without it.
    _functions->destroy(detach(position).release());
    return iterator(behind);
}

void MotionCurve::clear() noexcept {
    KeyMap keys;
    keys.base().swap(_keys.base());
    _index.clear();
    for (auto element : keys) {
        _functions->destroy(element.second);
    }
}

MotionCurve::Key* MotionCurve::createCurveKey() const {
    return new Key;
}

Tree MotionCurve::serialize() const {
    Tree tree;
    TreeItems::putFraction(tree, "timeUnit", _settings.timeUnit);
    TreeItems::putNumber(tree, "minimum", _settings.valueLimits.first);
    TreeItems::putNumber(tree, "maximum", _settings.valueLimits.second);
    TreeItems::putNumber(tree, "maximumDerivative", _settings.maxAbsoluteDerivative);
    for (const auto element : *this) {
        Tree key = _functions->write(*element.second);
        TreeItems::putFrame(key, "frame", element.first);
        tree.push_back({"key", std::move(key)});
    }
    return tree;
}

void MotionCurve::_read(const Tree& tree) {
    MotionCurve fresh(*_functions);
    fresh._settings.timeUnit = TreeItems::getFraction(tree, "timeUnit");
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
            std::unique_ptr<Key, void (*)(Key*) noexcept> key(createCurveKey(), _functions->destroy);
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
