#include "model/EditableMotionCurve.h"

#include "base/animation/CurveEvaluation.h"
#include "model/EditableMotionCurveExceptions.h"
#include "model/FirstException.h"
#include "model/KeyTrail.h"
#include "model/MetaTypes.h"
#include "model/Prefetch.h"

#include <memory>

namespace ZT {

using VQ::Math::Interpolation::Key;

namespace {

// Here, so that a static library brings it along with the curve.
const bool metaTypesAreRegistered = registerMetaTypes();

} // namespace

EditableMotionCurve::EditableMotionCurve()
    : MotionCurve(EditableMotionCurveKey::_keyFunctions) {}

EditableMotionCurve::EditableMotionCurve(const VQ::Animation::MotionCurve& curve)
    : MotionCurve(EditableMotionCurveKey::_keyFunctions, curve) {
    for (const auto element : curve) {
        auto key = std::make_unique<EditableMotionCurveKey>(*element.second);
        MotionCurve::insert(element.first, key->_record());
        _connectKey(key.release()); // The curve owns it now.
    }
    ++_batchDepth; // Nobody can listen yet.
    updateBezierAutoTangents();
    --_batchDepth;
}

EditableMotionCurve::~EditableMotionCurve() = default;

VQ::Animation::MotionCurve EditableMotionCurve::baseMotionCurve() const {
    return *this;
}

QPair<float, float> EditableMotionCurve::getValueLimits() const {
    const auto limits = MotionCurve::getValueLimits();
    return {limits.first, limits.second};
}

EditableMotionCurve::iterator EditableMotionCurve::find(unsigned int index) {
    return _toEditableIterator(MotionCurve::find(index));
}
EditableMotionCurve::const_iterator EditableMotionCurve::find(unsigned int index) const {
    return _toEditableIterator(MotionCurve::find(index));
}

EditableMotionCurveKey* EditableMotionCurve::getKey(unsigned int index) {
    const auto position = find(index);
    return position == end() ? nullptr : position->second;
}
const EditableMotionCurveKey* EditableMotionCurve::getKey(unsigned int index) const {
    const auto position = find(index);
    return position == end() ? nullptr : position->second;
}

bool EditableMotionCurve::isIndexAvailable(unsigned int index) const {
    return find(index) == end();
}

unsigned int EditableMotionCurve::getGreaterIndex() const {
    if (empty()) {
        return 0U;
    }
    auto last = end();
    return (--last)->first;
}

std::set<unsigned int> EditableMotionCurve::getIndexList() const {
    std::set<unsigned int> frames;
    for (const auto element : *this) {
        frames.insert(frames.end(), element.first);
    }
    return frames;
}

unsigned int EditableMotionCurve::getIndexOf(const EditableMotionCurveKey* key) const {
    const auto position = _find(key);
    if (position == end()) {
        throw EditableMotionCurveKeyNotFound();
    }
    return position->first;
}

const EditableMotionCurveKey* EditableMotionCurve::getPreviousKey(const EditableMotionCurveKey* key) const {
    auto position = _find(key);
    return position == end() || position == begin() ? nullptr : (--position)->second;
}
EditableMotionCurveKey* EditableMotionCurve::getPreviousKey(const EditableMotionCurveKey* key) {
    return const_cast<EditableMotionCurveKey*>(std::as_const(*this).getPreviousKey(key));
}

const EditableMotionCurveKey* EditableMotionCurve::getNextKey(const EditableMotionCurveKey* key) const {
    auto position = _find(key);
    return position == end() || ++position == end() ? nullptr : position->second;
}
EditableMotionCurveKey* EditableMotionCurve::getNextKey(const EditableMotionCurveKey* key) {
    return const_cast<EditableMotionCurveKey*>(std::as_const(*this).getNextKey(key));
}

float EditableMotionCurve::valueAt(double frame) const {
    return VQ::Animation::evaluate(*this, frame);
}

void EditableMotionCurve::_connectKey(EditableMotionCurveKey* key) const {
    key->_connectTo(const_cast<EditableMotionCurve*>(this));
}

void EditableMotionCurve::_disconnectKey(EditableMotionCurveKey* key) const {
    key->_disconnectFrom(this);
}

void EditableMotionCurve::onKeysChanged() {
    if (_batchDepth == 0) {
        Q_EMIT keysChanged();
    }
}

void EditableMotionCurve::_checkGreaterIndexChanged(unsigned int previousGreater) {
    if (_batchDepth != 0) {
        return;
    }
    const unsigned int newGreater = getGreaterIndex();
    if (newGreater != previousGreater) {
        Q_EMIT greaterIndexChanged(newGreater, previousGreater);
    }
}

Key* EditableMotionCurve::createCurveKey() const {
    auto key = std::make_unique<EditableMotionCurveKey>();
    _connectKey(key.get());
    return key.release()->_record();
}

bool EditableMotionCurve::deserialize(const boost::property_tree::ptree& tree) {
    const bool read = MotionCurve::deserialize(tree);
    if (read) {
        updateBezierAutoTangents();
    }
    return read;
}

void EditableMotionCurve::updateBezierAutoTangents() {
    KeyTrail none;
    _updateBezierAutoTangents(none);
}

void EditableMotionCurve::_updateBezierAutoTangents(KeyTrail& trail) {
    using Placed = EditableMotionCurveKey::Placed;
    // A slot may move a key on and on: the pass ends where the curve ended at first.
    const unsigned int greatest = getGreaterIndex();
    Placed previous;
    FirstException thrown;
    // Otherwise the map itself is walked ahead.
    const bool hasTrail = trail.size() > size() / 2;
    PrefetchAhead ahead(hasTrail ? 0 : size(), begin(), end(),
                        [](auto position) { return position->second; });
    for (auto position = begin(); position != end() && position->first <= greatest;) {
        const auto [frame, key] = *position;
        ahead.step();
        if (hasTrail) {
            trail.follow(key);
        }
        const Placed next = ++position != end() ? Placed(*position) : Placed();
        const std::size_t before = revision();
        thrown.guard([&, frame = frame, key = key] {
            if (_edits(key)) {
                key->_updateBezierAutoTangents(previous, frame, next);
            } else {
                key->updateBezierAutoTangents(); // It asks its own parent.
            }
        });
        previous = {frame, key};
        if (revision() != before) {
            // A slot moved keys: on behind this frame, wherever keys stand now.
            const auto last = std::as_const(*this).findAtOrBefore(frame);
            const bool isFirst = last == std::as_const(*this).MotionCurve::end();
            position = isFirst ? begin() : find(last->first);
            previous = isFirst ? Placed() : Placed(*position++);
            ahead.restartAt(position);
        }
    }
    thrown.rethrow();
}

EditableMotionCurve::iterator EditableMotionCurve::insert(Index pIndex, EditableMotionCurveKey* pKey) {
    if (pKey == nullptr) {
        return end();
    }
    const unsigned int previousGreater = getGreaterIndex();
    const auto occupied = _toEditableIterator(findBeside(pIndex));
    if (occupied != end()) {
        if (occupied->second == pKey) {
            return occupied;
        }
        _remove(occupied);
    }
    if (_holds(pKey)) {
        // Deliberate: the only check of the greatest frame is the one inside, measured after the occupant is
        // gone; see insertingAHeldKeyComparesTheGreatestFrameAfterTheOccupantIsGone().
        translateKey(pKey, pIndex);
        return find(pIndex);
    }
    iterator position = end();
    FirstException thrown;
    const bool isIn = thrown.guard([&] { position = _takeIn(pIndex, pKey); });
    const std::size_t inserted = revision();
    if (isIn) {
        thrown.guard([&] { Q_EMIT keyAdded(pKey); });
    }
    thrown.guard([&] { _checkGreaterIndexChanged(previousGreater); });
    thrown.rethrow();
    return revision() == inserted ? position : find(pIndex);
}

// The key is connected and in the map, or, where memory is out, as it was. A key that createCurveKey() made
// is connected already; twice would count its signals twice.
EditableMotionCurve::iterator EditableMotionCurve::_takeIn(Index frame, EditableMotionCurveKey* key) {
    const bool isConnected = key->getParentCurve() == this;
    const auto position = MotionCurve::insert(frame, key->_record());
    FirstException thrown;
    if (!isConnected && !thrown.guard([&] { _connectKey(key); })) {
        detach(position).release();
        _disconnectKey(key);
        thrown.rethrow();
    }
    return _toEditableIterator(position);
}

bool EditableMotionCurve::translateKey(EditableMotionCurveKey* pKey, Index pIndexFinal) {
    const unsigned int previousGreater = getGreaterIndex();
    bool isThere = false;
    FirstException thrown;
    thrown.guard([&] { isThere = _translate(pKey, pIndexFinal); });
    thrown.guard([&] { _checkGreaterIndexChanged(previousGreater); });
    thrown.rethrow();
    return isThere;
}

bool EditableMotionCurve::_translate(EditableMotionCurveKey* key, Index target) {
    const auto position = _find(key);
    if (position == end()) {
        return false;
    }
    if (position->first == target) {
        return true;
    }
    if (!relocate(position.base(), target)) {
        return false;
    }
    key->_announceIndex(target);
    return true;
}

EditableMotionCurveKey* EditableMotionCurve::release(Index pIndex) {
    const auto position = findBeside(pIndex);
    return position == MotionCurve::end() ? nullptr : _release(_toEditableIterator(position));
}

EditableMotionCurveKey* EditableMotionCurve::_release(iterator position) {
    const unsigned int previousGreater = getGreaterIndex();
    const auto [frame, key] = *position;
    position = _announceLeaving(position);
    if (position == end()) {
        return nullptr;
    }
    detach(position.base()).release();
    _disconnectKey(key);
    FirstException thrown;
    if (!thrown.guard([&] { _checkGreaterIndexChanged(previousGreater); })) {
        if (key->getParentCurve() == nullptr) { // No slot took it.
            _putBack(key, frame);
        }
        thrown.rethrow();
    }
    return key;
}

void EditableMotionCurve::_putBack(EditableMotionCurveKey* key, Index frame) {
    const unsigned int previousGreater = getGreaterIndex();
    Index target = frame;
    if (!isIndexAvailable(target)) {
        target = previousGreater; // Behind it is room, behind the last possible frame comes the first one.
    }
    while (!isIndexAvailable(target)) {
        ++target;
    }
    _takeIn(target, key);
    FirstException dropped;
    dropped.guard([&] { Q_EMIT keyAdded(key); });
    dropped.guard([&] { _checkGreaterIndexChanged(previousGreater); });
}

// A slot may move the key or destroy it: only where it still stands at its frame is it touched again.
EditableMotionCurve::iterator EditableMotionCurve::_announceLeaving(iterator position) {
    const auto [frame, key] = *position;
    const std::size_t before = revision();
    Q_EMIT keyAboutToBeRemoved(key);
    if (revision() == before) {
        return position;
    }
    const auto standing = find(frame);
    return standing != end() && standing->second == key ? standing : end();
}

void EditableMotionCurve::_remove(iterator position) {
    if (const auto standing = _announceLeaving(position); standing != end()) {
        MotionCurve::erase(standing.base());
    }
}

void EditableMotionCurve::remove(iterator pPosition) {
    if (pPosition == end()) {
        return;
    }
    const unsigned int previousGreater = getGreaterIndex();
    _remove(pPosition);
    _checkGreaterIndexChanged(previousGreater);
}

void EditableMotionCurve::remove(Index pIndex) {
    remove(find(pIndex));
}

void EditableMotionCurve::clear() {
    const unsigned int previousGreater = getGreaterIndex();
    MotionCurve::clear();
    FirstException thrown;
    thrown.guard([&] { Q_EMIT curveCleared(); });
    thrown.guard([&] { _checkGreaterIndexChanged(previousGreater); });
    thrown.rethrow();
}

} // namespace ZT
