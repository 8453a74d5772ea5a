#include "floor/FloorCurve.h"

#include <QMetaMethod>

#include <array>
#include <iterator>

namespace Floor {

namespace {

struct Connections {
    // The last signal first: Qt sizes its table of connections once.
    std::array<int, 3> signalIndices{QMetaMethod::fromSignal(&FloorKey::indexChanged).methodIndex(),
                                     QMetaMethod::fromSignal(&FloorKey::valueChanged).methodIndex(),
                                     QMetaMethod::fromSignal(&FloorKey::tangentsChanged).methodIndex()};
    int slotIndex = FloorCurve::staticMetaObject.indexOfSlot("onKeysChanged()");
};

const Connections& connections() {
    static const Connections indices;
    return indices;
}

} // namespace

FloorCurve::FloorCurve() = default;

FloorCurve::FloorCurve(const Records& records) {
    for (const auto& [frame, record] : records) {
        auto* const key = new FloorKey(*record);
        keys.emplace_hint(keys.end(), frame, key);
        _connect(key);
    }
    ++_depth;
    updateHandles();
    --_depth;
}

FloorCurve::~FloorCurve() {
    for (const auto& [frame, key] : keys) {
        delete key;
    }
}

void FloorCurve::add(unsigned int frame, FloorKey* key) {
    const unsigned int previousGreatest = _greatest();
    keys.emplace_hint(keys.end(), frame, key);
    _connect(key);
    Q_EMIT keyAdded(key);
    Q_EMIT greaterIndexChanged(frame, previousGreatest);
}

FloorCurve::Keys::iterator FloorCurve::_relink(Keys::iterator position, unsigned int frame) {
    const auto behind = std::next(position);
    auto node = keys.extract(position);
    node.key() = frame;
    const auto placed = keys.insert(behind, std::move(node));
    Q_EMIT placed->second->indexChanged(frame);
    return placed;
}

void FloorCurve::translate(Keys::iterator& position, unsigned int frame) {
    const unsigned int previousGreatest = _greatest();
    position = _relink(position, frame);
    if (_greatest() != previousGreatest) {
        Q_EMIT greaterIndexChanged(_greatest(), previousGreatest);
    }
}

void FloorCurve::reorganize(unsigned int by) {
    const unsigned int previousGreatest = _greatest();
    ++_depth;
    Keys leaving;
    leaving.swap(keys);
    while (!leaving.empty()) {
        auto node = leaving.extract(leaving.begin());
        node.key() += by;
        const auto placed = keys.insert(keys.end(), std::move(node));
        Q_EMIT placed->second->indexChanged(placed->first);
    }
    _endBatchWithFrames(previousGreatest);
}

void FloorCurve::reorganize(unsigned int by, const std::vector<std::size_t>& ranks) {
    const unsigned int previousGreatest = _greatest();
    ++_depth;
    std::vector<Keys::node_type> nodes(ranks.size());
    for (const std::size_t rank : ranks) {
        nodes[rank] = keys.extract(keys.begin());
    }
    for (Keys::node_type& node : nodes) {
        node.key() += by;
        const auto placed = keys.insert(std::move(node)).position;
        Q_EMIT placed->second->indexChanged(placed->first);
    }
    _endBatchWithFrames(previousGreatest);
}

FloorCurve::Keys::iterator FloorCurve::_release(Keys::iterator position, Frames& left) {
    left.push_back(*position);
    FloorKey* const key = position->second;
    Q_EMIT keyAboutToBeRemoved(key);
    const auto behind = keys.erase(position);
    _disconnect(key);
    return behind;
}

void FloorCurve::releaseAll(Frames& left) {
    const unsigned int previousGreatest = _greatest();
    ++_depth;
    left.clear();
    for (auto position = keys.begin(); position != keys.end();) {
        position = _release(position, left);
    }
    _endBatchWithFrames(previousGreatest);
}

void FloorCurve::releaseAll(const std::vector<Keys::iterator>& order, Frames& left) {
    const unsigned int previousGreatest = _greatest();
    ++_depth;
    left.clear();
    for (const Keys::iterator position : order) {
        _release(position, left);
    }
    _endBatchWithFrames(previousGreatest);
}

void FloorCurve::insertAll(const Frames& entering, bool isInFrameOrder) {
    const unsigned int previousGreatest = _greatest();
    ++_depth;
    for (const auto& [frame, key] : entering) {
        if (isInFrameOrder) {
            keys.emplace_hint(keys.end(), frame, key);
        } else {
            keys.emplace(frame, key);
        }
        _connect(key);
        Q_EMIT keyAdded(key);
    }
    _endBatchWithFrames(previousGreatest);
}

void FloorCurve::setSmooth(bool smooth, const std::vector<FloorKey*>& order) {
    ++_depth;
    for (FloorKey* const key : order) {
        key->setSmooth(smooth);
    }
    _endBatch();
}

void FloorCurve::_setType(Type& own, Type type, Keys::const_iterator position) {
    if (own == type) {
        return;
    }
    own = type;
    FloorKey* const key = position->second;
    if (key->isAutomatic()) {
        key->setAutomaticHandles(_handlesAt(position));
    }
    Q_EMIT key->tangentsChanged();
}

void FloorCurve::setTypes(Type type) {
    ++_depth;
    for (auto position = keys.cbegin(); position != keys.cend(); ++position) {
        _setType(position->second->record.leftType, type, position);
        _setType(position->second->record.rightType, type, position);
    }
    _endBatch();
}

void FloorCurve::setRightHandles(const Point& offset, const std::vector<FloorKey*>& order) {
    ++_depth;
    for (FloorKey* const key : order) {
        key->setHandle(key->record.right, key->record.rightType, offset);
    }
    _endBatch();
}

void FloorCurve::restore(const std::vector<Record>& records) {
    ++_depth;
    for (const auto& [frame, key] : keys) {
        key->setSmooth(false);
    }
    for (const auto& [frame, key] : keys) {
        key->symmetrical = false;
    }
    auto record = records.cbegin();
    for (auto position = keys.cbegin(); position != keys.cend(); ++position, ++record) {
        _setType(position->second->record.leftType, record->leftType, position);
        _setType(position->second->record.rightType, record->rightType, position);
    }
    record = records.cbegin();
    for (const auto& [frame, key] : keys) {
        key->setHandle(key->record.left, key->record.leftType, record++->left);
    }
    record = records.cbegin();
    for (const auto& [frame, key] : keys) {
        key->setHandle(key->record.right, key->record.rightType, record++->right);
    }
    _endBatch();
}

void FloorCurve::onKeysChanged() {
    if (_depth == 0) {
        Q_EMIT keysChanged();
    }
}

void FloorCurve::_connect(FloorKey* key) {
    key->curve = this;
    const Connections& indices = connections();
    for (const int signal : indices.signalIndices) {
        QMetaObject::connect(key, signal, this, indices.slotIndex);
    }
}

void FloorCurve::_disconnect(FloorKey* key) {
    key->curve = nullptr;
    const Connections& indices = connections();
    for (const int signal : indices.signalIndices) {
        QMetaObject::disconnect(key, signal, this, indices.slotIndex);
    }
}

// Before the first key the distance is the one to frame 0, behind the last there is none.
Handles FloorCurve::_handlesAt(Keys::const_iterator position) const {
    const auto& [frame, key] = *position;
    const auto next = std::next(position);
    float dxPrevious = static_cast<float>(frame);
    float dyPrevious = 0.0F;
    if (position != keys.cbegin()) {
        const auto previous = std::prev(position);
        dxPrevious = static_cast<float>(frame - previous->first);
        dyPrevious = key->record.value - previous->second->record.value;
    }
    const bool isLast = next == keys.cend();
    return automaticHandles(dxPrevious, isLast ? 0.0F : static_cast<float>(next->first - frame), dyPrevious,
                            isLast ? 0.0F : next->second->record.value - key->record.value);
}

void FloorCurve::updateHandles() const {
    if (keys.empty()) {
        return;
    }
    auto position = keys.cbegin();
    float dxPrevious = static_cast<float>(position->first);
    float dyPrevious = 0.0F;
    for (;;) {
        const auto [frame, key] = *position;
        const bool isLast = ++position == keys.cend();
        const float dxNext = isLast ? 0.0F : static_cast<float>(position->first - frame);
        const float dyNext = isLast ? 0.0F : position->second->record.value - key->record.value;
        if (key->isAutomatic()) {
            key->setAutomaticHandles(automaticHandles(dxPrevious, dxNext, dyPrevious, dyNext));
        }
        if (isLast) {
            return;
        }
        dxPrevious = dxNext;
        dyPrevious = dyNext;
    }
}

void FloorCurve::_endBatch() {
    --_depth;
    onKeysChanged();
}

void FloorCurve::_endBatchWithFrames(unsigned int previousGreatest) {
    updateHandles();
    _endBatch();
    if (_greatest() != previousGreatest) {
        Q_EMIT greaterIndexChanged(_greatest(), previousGreatest);
    }
}

} // namespace Floor
