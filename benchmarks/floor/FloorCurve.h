#pragma once

#include "floor/FloorKey.h"

#include <QObject>

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace Floor {

/// What an ordered map of QObjects costs by itself: the same objects, connections, signals, relinked map
/// nodes and handle arithmetic as an editable curve needs, and nothing else.
///
/// It must stay as fast as it can be. What each operation does, and so may cost:
///
/// - The constructor from records walks their map. Each key: one object, one map node at the end, three
///   connections by known method numbers; then the automatic handles of all keys.
/// - add(): the same for one key, without handles, with keyAdded() and greaterIndexChanged().
/// - The destructor deletes the keys in frame order.
/// - move() walks the map once, against the direction of the move. Each key: its value with valueChanged();
///   its node out, and in again before the node behind it, with indexChanged(), where the frame differs.
/// - reorganize() takes nodes out of a map and puts each in at the end of another, with indexChanged(). For
///   keys in the order of addresses, known beforehand, it takes all out in frame order, then puts them in by
///   their frames.
/// - releaseAll(): keyAboutToBeRemoved(), the node out, three connections taken back for each key; it walks
///   the map or, in the order of addresses, a list of positions.
/// - insertAll(): a node, at the end of the map or, in the order of addresses, by the frame; three
///   connections and keyAdded() for each key.
/// - These four end with the automatic handles of all keys: one walk, the neighbours at hand, and
///   tangentsChanged() only where a handle changed; then keysChanged(), and greaterIndexChanged() if it
///   applies.
/// - setTypes() and restore() walk the map; setSmooth() and setRightHandles() walk a list, in the order of a
///   set, in which their signals come. Each key as in FloorKey; restore() writes the symmetrical flag without
///   a test. They end with keysChanged().
/// - translate(): one node out and in again before the node behind it, indexChanged(), keysChanged().
///
/// No key is ever looked up. Signals of keys run into onKeysChanged(), which does nothing while one of the
/// operations on all keys runs.
class FloorCurve : public QObject {
    Q_OBJECT

public:
    using Keys = std::map<unsigned int, FloorKey*>;
    using Frames = std::vector<std::pair<unsigned int, FloorKey*>>;
    /// A plain curve: what there is to wrap.
    using Records = std::map<unsigned int, std::unique_ptr<Record>>;

    FloorCurve();
    explicit FloorCurve(const Records& records);
    ~FloorCurve() override;

    Keys keys; ///< owned

    /// Adds a key behind all others.
    void add(unsigned int frame, FloorKey* key);

    /// Moves every @p stride-th key, from the first on. The target of a key on frame f is @p frameOf(f); its
    /// value grows by @p rise. Frames grow, or all of them fall or stay.
    template <class FrameOf>
    void move(std::size_t stride, float rise, bool framesGrow, FrameOf frameOf);

    /// Moves all keys by @p by frames; signals in frame order.
    void reorganize(unsigned int by);
    /// The same with signals in the order of the keys' addresses: @p ranks holds each key's place in it, in
    /// frame order.
    void reorganize(unsigned int by, const std::vector<std::size_t>& ranks);

    /// Fills @p left, which is large enough, with the keys and their frames.
    void releaseAll(Frames& left);
    /// The same in another order of keys.
    void releaseAll(const std::vector<Keys::iterator>& order, Frames& left);
    void insertAll(const Frames& entering, bool isInFrameOrder);

    void setSmooth(bool smooth, const std::vector<FloorKey*>& order);
    void setTypes(Type type);
    void setRightHandles(const Point& offset, const std::vector<FloorKey*>& order);
    /// Smooth, symmetrical, types, left handles, right handles, each in a walk of its own. @p records are in
    /// frame order; the flags are off.
    void restore(const std::vector<Record>& records);

    /// The automatic handles of all keys.
    void updateHandles() const;

    /// Moves the key at @p position alone; no key may stand between the two frames.
    void translate(Keys::iterator& position, unsigned int frame);

Q_SIGNALS:
    void keysChanged();
    void keyAdded(FloorKey* key);
    void keyAboutToBeRemoved(FloorKey* key);
    void greaterIndexChanged(unsigned int newGreater, unsigned int previousGreater);

private Q_SLOTS:
    void onKeysChanged();

private:
    unsigned int _greatest() const { return keys.empty() ? 0U : keys.rbegin()->first; }
    Keys::iterator _relink(Keys::iterator position, unsigned int frame);
    Keys::iterator _release(Keys::iterator position, Frames& left);
    void _connect(FloorKey* key);
    void _disconnect(FloorKey* key);
    void _setType(Type& own, Type type, Keys::const_iterator position);
    Handles _handlesAt(Keys::const_iterator position) const;
    void _endBatch();
    void _endBatchWithFrames(unsigned int previousGreatest);

    unsigned int _depth = 0;
};

template <class FrameOf>
void FloorCurve::move(std::size_t stride, float rise, bool framesGrow, FrameOf frameOf) {
    const unsigned int previousGreatest = _greatest();
    ++_depth;
    const std::size_t count = (keys.size() + stride - 1) / stride;
    const auto moveKey = [&](Keys::iterator position) {
        FloorKey* const key = position->second;
        key->setValue(key->record.value + rise);
        const unsigned int frame = frameOf(position->first);
        return frame == position->first ? position : _relink(position, frame);
    };
    if (framesGrow) {
        auto position = keys.end();
        std::advance(position, -static_cast<std::ptrdiff_t>(keys.size() - (count - 1) * stride));
        for (std::size_t i = count; i-- > 0;) {
            position = moveKey(position);
            std::advance(position, i == 0 ? 0 : -static_cast<std::ptrdiff_t>(stride));
        }
    } else {
        auto position = keys.begin();
        for (std::size_t i = 0; i < count; ++i) {
            position = moveKey(position);
            std::advance(position, i + 1 == count ? 0 : static_cast<std::ptrdiff_t>(stride));
        }
    }
    _endBatchWithFrames(previousGreatest);
}

} // namespace Floor
