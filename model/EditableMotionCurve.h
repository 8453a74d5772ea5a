#pragma once

#include "base/TangentSide.h"
#include "base/animation/MotionCurve.h"
#include "base/animation/RationalSeconds.h"
#include "model/EditableMotionCurveKey.h"
#include "model/Export.h"
#include "model/MultiEntryMap.h"

#include <QMap>
#include <QMultiMap>
#include <QObject>
#include <QPair>
#include <QPointF>
#include <QSet>

#include <boost/iterator/transform_iterator.hpp>

#include <set>
#include <utility>
#include <vector>

namespace ZT {

class EditableAnimationLayer;
class FrameOrder;
class KeyTrail;

/// One actuator's motion curve made observable and editable: the owning map from frame to key, whose every
/// key is an EditableMotionCurveKey.
///
/// **Owners.** The curve owns the keys that it holds. A key that is released, displaced by
/// releaseAndInsertKeys() or could not be placed by reorganizeKeys() belongs to the caller; one that insert()
/// displaces, remove() or clear() takes out is destroyed.
///
/// **Batches.** A bulk operation raises the batch depth. While it is raised, signals of keys do not produce
/// keysChanged() and single operations do not check the greatest frame; the bulk operation announces both
/// once at its end. Deliberate: moveKeys() and the bulk edits of tangents and parameters leave the depth
/// raised for good when they are given nothing to do.
///
/// **Skipped keys.** Bulk operations skip keys that are null or belong to another curve without a word.
///
/// **Slots.** Every signal is emitted after the state that it announces is complete, and slots run inside the
/// operation. A slot may read everything at every signal. (At the indexChanged() of a key that
/// reorganizeKeys() takes in, the key does not name its curve yet.) It may edit, too: everything but
/// destroying the curve or a key that the running operation was given (releasing the key, or deleteLater(),
/// is as good), and taking a key in that the operation is handing to its caller. The operation goes on with
/// what it then finds: a key that has left is passed over, a frame that was taken meanwhile is taken. A key
/// that a slot moves when it is about to be removed stays; one that reorganizeKeys() has taken out and a slot
/// takes in again is where the slot put it. Where a slot fills the frame that was just made free for a key,
/// insert() and releaseAndInsertKeys() throw std::invalid_argument.
///
/// **Exceptions.** What a slot throws reaches the caller of the operation, which by then is over: carried
/// through for all other keys, with all its signals, as if the slot had returned. Only the slots that are
/// connected behind it do not hear the signal at which it threw; behind a slot that was connected before the
/// curve took the key in, that is the curve itself, which announces an edit of one key by such a signal. Of
/// several exceptions the first arrives. Two operations are taken back instead, since the keys that they
/// would have given to their caller must not be lost: release() and releaseAndInsertKeys(); the way back is
/// announced like the way there. And a single key that was to be displaced or removed stays when a slot
/// throws at keyAboutToBeRemoved(). reorganizeKeys() throws its own exception instead, as it hands over keys;
/// a slot that calls it catches that itself, since keys in an exception that is not the first have no owner.
/// The same holds for std::bad_alloc, except that insert() has destroyed the displaced key by then;
/// deserialize() and the constructors then change nothing.
///
/// Frames are counted from 0; no two keys stand at one frame. Looking a key up costs O(1), looking a frame up
/// O(log n), single edits O(log n), bulk operations O(n log n).
class ZT_MODEL_EXPORT EditableMotionCurve : public QObject, private VQ::Animation::MotionCurve {
    Q_OBJECT

    struct ToEditable {
        template <class Element>
        auto operator()(const Element& element) const {
            return EditableMotionCurveKey::_toEditable(element);
        }
    };

public:
    /// A frame, counted from 0.
    using Index = unsigned int;
    /// Steps both ways with `++` and `--`, in ascending frame order (std::prev takes it for an input iterator
    /// and must not be used); an element is the pair (frame, EditableMotionCurveKey*).
    ///@{
    using iterator = boost::iterators::transform_iterator<ToEditable, VQ::Animation::MotionCurve::iterator>;
    using const_iterator =
        boost::iterators::transform_iterator<ToEditable, VQ::Animation::MotionCurve::const_iterator>;
    ///@}
    /// Keys with frames, counted from 0.
    using KeysIndexMap = QMap<ZT::EditableMotionCurveKey*, unsigned int>;
    /// x is the frame, y the value.
    using KeyPosMap = QMap<ZT::EditableMotionCurveKey*, QPointF>;
    /// The same as a list.
    using KeyMoves = std::vector<std::pair<ZT::EditableMotionCurveKey*, QPointF>>;
    /// Keys that are all to be given the same.
    using KeysSet = QSet<ZT::EditableMotionCurveKey*>;
    /// Ends of handles relative to their key: frames, then value units.
    using TangentPosMap = QMap<ZT::EditableMotionCurveKey*, QPair<float, float>>;
    /// Tangents, named by key and side; a key may stand in it with both.
    using KeySideMap = QMultiMap<ZT::EditableMotionCurveKey*, ZT::TangentSide>;
    /// A type for the tangent of one side.
    using TypeOfSide = QPair<ZT::TangentSide, VQ::Math::Interpolation::InterpolationType>;
    /// May hold two entries for a key; then all are applied in the map's order.
    using TangentTypeMap = MultiEntryMap<ZT::EditableMotionCurveKey*, TypeOfSide>;
    /// Keys with the state of one flag, smooth or symmetrical.
    using KeyStateMap = QMap<ZT::EditableMotionCurveKey*, bool>;
    /// The length of a frame, exact.
    using RationalSeconds = VQ::Animation::RationalSeconds;
    /// Keys with the records that they had at some time.
    using KeyRecords = std::vector<std::pair<ZT::EditableMotionCurveKey*, VQ::Math::Interpolation::Key>>;
    /// Keys with values that they had at some time.
    using KeyValues = std::vector<std::pair<ZT::EditableMotionCurveKey*, float>>;

    /// An empty curve.
    EditableMotionCurve();

    /// Wraps a copy of @p curve: same settings, each key wrapped and connected, automatic handles recomputed.
    /// No signal of the curve is emitted. O(n).
    explicit EditableMotionCurve(const VQ::Animation::MotionCurve& curve);

    /// Destroys the keys. Emits nothing.
    ~EditableMotionCurve() override;

    /// A copy of the plain record, with plain keys. O(n).
    VQ::Animation::MotionCurve baseMotionCurve() const;

    /// The curve's tree; each key keeps its smooth and symmetrical flags.
    using VQ::Animation::MotionCurve::problemIn;
    using VQ::Animation::MotionCurve::serialize;

    /// The layer that holds the curve, or null.
    EditableAnimationLayer* getParentLayer() const noexcept { return _parentLayer; }
    /// Stores the pointer and nothing else. Only the layer calls it.
    void _setParentLayer(EditableAnimationLayer* layer) noexcept { _parentLayer = layer; }

    /// Minimum, then maximum, in value units.
    QPair<float, float> getValueLimits() const;
    using VQ::Animation::MotionCurve::getMaxAbsoluteDerivative;
    using VQ::Animation::MotionCurve::getTimeUnit;

    /// In ascending frame order. An iterator is valid until its key moves or leaves.
    ///@{
    iterator begin() { return _toEditableIterator(MotionCurve::begin()); }
    iterator end() { return _toEditableIterator(MotionCurve::end()); }
    const_iterator begin() const { return _toEditableIterator(MotionCurve::begin()); }
    const_iterator end() const { return _toEditableIterator(MotionCurve::end()); }
    ///@}
    using VQ::Animation::MotionCurve::empty;
    using VQ::Animation::MotionCurve::size;

    /// The key at @p index, or end().
    ///@{
    iterator find(unsigned int index);
    const_iterator find(unsigned int index) const;
    ///@}

    /// The key at @p index, or null.
    ///@{
    EditableMotionCurveKey* getKey(unsigned int index);
    const EditableMotionCurveKey* getKey(unsigned int index) const;
    ///@}

    /// Whether no key stands at @p index.
    bool isIndexAvailable(unsigned int index) const;

    /// The frame of the last key; 0 for an empty curve.
    unsigned int getGreaterIndex() const;

    /// All frames that hold a key, ascending. O(n).
    std::set<unsigned int> getIndexList() const;

    /// The key's frame. Throws EditableMotionCurveKeyNotFound when this curve does not hold it. The key must
    /// be alive, here as in the lookups below. O(1).
    unsigned int getIndexOf(const ZT::EditableMotionCurveKey* key) const;

    /// The key before the given one; null for the first key and for one that this curve does not hold. O(1).
    ///@{
    const EditableMotionCurveKey* getPreviousKey(const ZT::EditableMotionCurveKey* key) const;
    EditableMotionCurveKey* getPreviousKey(const ZT::EditableMotionCurveKey* key);
    ///@}
    /// The key behind the given one; null for the last key and for one that this curve does not hold. O(1).
    ///@{
    const EditableMotionCurveKey* getNextKey(const ZT::EditableMotionCurveKey* key) const;
    EditableMotionCurveKey* getNextKey(const ZT::EditableMotionCurveKey* key);
    ///@}

    /// Views the record of an editable curve as that curve; null stays null. Nothing is checked.
    static EditableMotionCurve* _toEditable(VQ::Animation::MotionCurve* curve) noexcept {
        return static_cast<EditableMotionCurve*>(curve);
    }

    /// The curve's value at @p frame, also between frames; see VQ::Animation::evaluate(). O(log n).
    float valueAt(double frame) const;

    /// The given key, which must be alive; end() for null and for a key that this curve does not hold. Never
    /// throws. O(1).
    ///@{
    iterator _find(const ZT::EditableMotionCurveKey* key) {
        if (key != nullptr && isHere(key->_placement())) {
            return _toEditableIterator(VQ::Animation::MotionCurve::iterator(key->_placement().position));
        }
        return _toEditableIterator(key != nullptr ? findKey(*key->_record()) : MotionCurve::end());
    }
    const_iterator _find(const ZT::EditableMotionCurveKey* key) const {
        return _toEditableIterator(key != nullptr ? findKey(*key->_record()) : MotionCurve::end());
    }
    ///@}

    /// The frame of the given key, which must be alive; 0 when this curve does not hold it. O(1).
    Index _frameOf(const ZT::EditableMotionCurveKey& key) const {
        if (isHere(key._placement())) {
            return key._placement().frame;
        }
        const auto position = _find(&key);
        return position == end() ? 0U : position->first;
    }

    /// Whether the given key, which must be alive, stands in this curve. O(1).
    bool _holds(const ZT::EditableMotionCurveKey* key) const { return _find(key) != end(); }

    /// The same position, whose element names the editable key; the iterator's base() leads back.
    ///@{
    iterator _toEditableIterator(VQ::Animation::MotionCurve::iterator position) {
        return iterator(position, ToEditable());
    }
    const_iterator _toEditableIterator(VQ::Animation::MotionCurve::const_iterator position) const {
        return const_iterator(position, ToEditable());
    }
    ///@}

    /// Whether a batch runs, or one was left raised: the curve ignores its keys' signals then.
    bool _isInBatch() const noexcept { return _batchDepth != 0; }

    /// Makes this curve the key's parent and connects the key's valueChanged(), tangentsChanged() and
    /// indexChanged() to onKeysChanged().
    void _connectKey(ZT::EditableMotionCurveKey* key) const;
    /// Makes the key parentless and takes the three connections back.
    void _disconnectKey(ZT::EditableMotionCurveKey* key) const;

    /// The same as moveKeys(); each key only once.
    void _moveKeys(const KeyMoves& moves);

    /// Takes in a key that is in no curve, at @p frame or, where that is taken, behind the last key. Emits as
    /// insert() does; what slots throw is dropped. For keys that were on their way to somebody who cannot be
    /// given them any more, since an exception is on its own way there, or whose keeper dies.
    void _putBack(ZT::EditableMotionCurveKey* key, Index frame);

    /// Writes the handles of keys of this curve back past all rules (see the key's function of that name) as
    /// one batch: the keys' signals, then one keysChanged(). Nothing is emitted when nothing differs. For
    /// undo.
    void _restoreHandles(const KeyRecords& records);

    /// The same for values, see the key's _restoreValue().
    void _restoreValues(const KeyValues& values);

    /// A new key with default values, connected to this curve but not in it; belongs to the caller.
    VQ::Math::Interpolation::Key* createCurveKey() const override;

Q_SIGNALS:
    /// Keys moved or changed. Once for each signal of a key outside bulk operations, once at the end of each
    /// of those.
    void keysChanged();
    /// Never emitted: the settings of an editable curve do not change.
    void timeUnitChanged();
    /// Never emitted: the settings of an editable curve do not change.
    void valueLimitsChanged(QPair<float, float> pValueLimits);
    /// Never emitted: the settings of an editable curve do not change.
    void maxAbsoluteDerivativeChanged(float pMaxAbsoluteDerivative);
    /// Before a key leaves the curve, while it still stands there; from reorganizeKeys(), after it has left.
    void keyAboutToBeRemoved(ZT::EditableMotionCurveKey* pKey);
    /// After a key was put in.
    void keyAdded(ZT::EditableMotionCurveKey* pKey);
    /// After clear() destroyed all keys.
    void curveCleared();
    /// The frame of the last key is another one, at the end of the operation that changed it.
    void greaterIndexChanged(unsigned int newGreater, unsigned int previousGreater);

public Q_SLOTS:
    /// Replaces settings and keys by those of @p tree and recomputes automatic handles in frame order. Emits
    /// no structural signal; each recomputed handle yields keysChanged(). On false the curve is unchanged.
    bool deserialize(const boost::property_tree::ptree& tree) override;

    /// Puts a key at @p pIndex and takes ownership. Another key that stands there is destroyed.
    ///
    /// Emits keyAboutToBeRemoved(displaced), keyAdded(pKey), greaterIndexChanged(), each only if it applies;
    /// for a key that this curve holds at another frame keyAboutToBeRemoved(displaced) and then as
    /// translateKey(). A key of another curve must be released there first. Null is ignored and answered with
    /// end().
    iterator insert(Index pIndex, EditableMotionCurveKey* pKey);

    /// Takes the keys of @p toRelease out, each only where that very key stands at the given frame, then puts
    /// the keys of @p toInsert in, each displacing whatever key stands at its frame. Returns every key that
    /// left with the frame that it left from; those belong to the caller. Keys to insert that stand in a
    /// curve already are skipped.
    ///
    /// Emits keyAboutToBeRemoved() for each key that leaves and keyAdded() for each that enters, in the maps'
    /// order; then recomputed handles' tangentsChanged(), keysChanged() and, if it applies,
    /// greaterIndexChanged().
    KeysIndexMap releaseAndInsertKeys(const KeysIndexMap& toRelease, const KeysIndexMap& toInsert);

    /// Takes the key out and destroys it; does nothing at end(). Emits keyAboutToBeRemoved() before, and
    /// afterwards greaterIndexChanged() if it applies.
    void remove(iterator pPosition);
    /// The same for the key at @p pIndex, if there is one.
    void remove(Index pIndex);

    /// Takes the key out and gives it to the caller; null when there is none at @p pIndex. Emits
    /// keyAboutToBeRemoved() before, and afterwards greaterIndexChanged() if it applies.
    EditableMotionCurveKey* release(Index pIndex);

    /// Destroys all keys. Emits curveCleared() and, if it applies, greaterIndexChanged().
    void clear();

    /// Moves a key of this curve to a free frame. Returns false and does nothing when the frame is taken or
    /// the key is not in this curve; true without a signal when it stands there. Emits the key's
    /// indexChanged(), keysChanged() and, if it applies, greaterIndexChanged().
    bool translateKey(EditableMotionCurveKey* pKey, Index pIndexFinal);

    /// Moves each key to a target position: value first, then frame (see frameFromPosition()). A frame that
    /// is taken when the key's turn comes leaves the key where it is, with its new value. The first key, by
    /// frame, decides the order: if it moves up, keys are moved from the last to the first, otherwise from
    /// the first to the last, so that keys which move together never meet:
    ///
    ///     before   1 2 3 . .
    ///     by +1    . 1 2 3 .      3 moves first, then 2, then 1
    ///     by -1    0 1 2 . .      1 moves first, then 2, then 3
    ///
    /// Emits the keys' valueChanged() and indexChanged(), recomputed handles' tangentsChanged(),
    /// keysChanged() and, if it applies, greaterIndexChanged(). Deliberate: an empty map leaves the batch
    /// depth raised.
    void moveKeys(const KeyPosMap& keysPos);

    /// Gives each key its new frame. All named keys leave their frames before any is placed, so they can
    /// exchange frames freely; keys in no curve are taken in. A key whose frame is taken, by a key not named
    /// or by one placed before it in the map's order, leaves the curve.
    ///
    ///     before   a b . c d
    ///     a, b, d  b a . c .      d was sent to c's frame and is out
    ///
    /// Emits, in the map's order, the key's indexChanged() (and keyAdded() for one taken in) or, after it has
    /// left, keyAboutToBeRemoved(); then recomputed handles' tangentsChanged(), keysChanged() and, if it
    /// applies, greaterIndexChanged(). Throws EditableMotionCurveReorganizedFail, after all that, when keys
    /// could not be placed; those from this curve then belong to the caller.
    void reorganizeKeys(const KeysIndexMap& keysPos);

    /// The nine bulk edits, with setKeysParam(): each applies the key's own setter to each entry and emits
    /// the keys' signals, then keysChanged() once. Offsets are ends of handles relative to their key: frames,
    /// then value units. Deliberate: an empty container leaves the batch depth raised.
    ///@{
    void moveTangents(const KeysSet& tangents, ZT::TangentSide side, QPair<float, float> offset);
    void moveTangents(const TangentPosMap& tangentsPos, ZT::TangentSide side);
    void setTangentsType(const KeySideMap& tangentsSide, VQ::Math::Interpolation::InterpolationType type);
    void setTangentsType(const TangentTypeMap& tangentsType);
    void setKeysSmooth(const KeysSet& keys, bool smooth);
    void setKeysSmooth(const KeyStateMap& keysSmooth);
    void setKeysSymmetrical(const KeysSet& keys, bool symmetrical);
    void setKeysSymmetrical(const KeyStateMap& keysSymmetrical);
    ///@}
    /// Gives each key the left type, the right type, smooth and symmetrical, in this order, as one of the
    /// nine bulk edits.
    void setKeysParam(const KeysSet& keys, VQ::Math::Interpolation::InterpolationType type, bool smooth,
                      bool symmetrical);

    /// Puts a saved state back: smooth, symmetrical, types, left handles, right handles, in this order, each
    /// as its bulk edit does. Emits the keys' signals and keysChanged() once.
    void restoreKeys(const TangentTypeMap& tangentsType, const TangentPosMap& leftTangentsOffset,
                     const TangentPosMap& rightTangentsOffset, const KeyStateMap& keysSmooth,
                     const KeyStateMap& keysSymmetrical);

    /// Deliberate: the settings are those of the record that the curve was built or read from; the six
    /// setters drop what they are given. See theSettingsSlotsChangeNothing().
    ///@{
    void setTimeUnit(const RationalSeconds& pTimeUnit);
    void setFps(int pFps);
    void setValueLimits(const QPair<float, float>& pLimits);
    void setMinValue(float pMin);
    void setMaxValue(float pMax);
    void setMaxAbsoluteDerivative(float pMaxAbsoluteDerivative);
    ///@}

    /// Recomputes the automatic handles of every key in frame order, outside any batch.
    void updateBezierAutoTangents();

private Q_SLOTS:
    void onKeysChanged();

private:
    friend class EditableAnimationLayer; // It holds the curve by its base record.
    class Batch;
    class BatchWithFrames;
    struct Placement;
    struct Exchange;

    iterator _takeIn(Index frame, ZT::EditableMotionCurveKey* key);
    void _takeBack(const Exchange& exchange);
    void _releaseKeys(Exchange& exchange);
    void _releaseScatteredKeys(Exchange& exchange);
    bool _releaseKey(Exchange& exchange, EditableMotionCurveKey* key, Index frame,
                     MotionCurve::iterator place);
    void _insertKeys(Exchange& exchange);
    static bool _isHeld(const EditableMotionCurveKey& key);
    bool _place(Placement& placement, Batch& batch);
    template <class Items, class KeyOf>
    void _fetchAhead(const Items& items, const FrameOrder& order, std::size_t i, KeyOf keyOf) const;
    void _note(const EditableMotionCurveKey& key, KeyTrail& trail) const noexcept;
    bool _translate(ZT::EditableMotionCurveKey* key, Index target);
    iterator _announceLeaving(iterator position);
    void _remove(iterator position);
    ZT::EditableMotionCurveKey* _release(iterator position);
    bool _edits(const EditableMotionCurveKey* key) const noexcept {
        return key != nullptr && key->getParentCurve() == this;
    }
    template <class Saved, class Restore>
    void _restoreEach(const Saved& saved, Restore restore);
    template <class Keys, class Action>
    void _editEach(const Keys& keys, Action action);
    void _updateBezierAutoTangents(KeyTrail& trail);
    void _checkGreaterIndexChanged(unsigned int previousGreater);

    EditableAnimationLayer* _parentLayer = nullptr;
    quint32 _batchDepth = 0;
};

} // namespace ZT
