#pragma once

#include "base/TangentSide.h"
#include "base/animation/KeyFunctions.h"
#include "base/animation/KeyPlace.h"
#include "base/animation/SerializationInterface.h"
#include "base/math/Interpolation.h"
#include "model/Export.h"
#include "model/TreeMetaType.h"

#include <QObject>
#include <QPair>
#include <QString>

#include <type_traits>
#include <utility>

namespace ZT {

class EditableMotionCurve;

/// One key of an editable motion curve: the plain record made observable, with two editing constraints.
///
/// A *smooth* key keeps its two handles on one line, a *symmetrical* key keeps them exact opposites;
/// symmetrical goes before smooth. The constraints act only while both tangents are "bezier"; otherwise they
/// are mere flags. A "bezier auto" tangent's handle is computed from the neighbouring keys.
///
/// A key belongs to the curve that holds it, and otherwise to whoever took it out of the curve or created it.
/// Every signal is emitted after the key's state is complete. What slots may do then, and what becomes of an
/// exception of theirs, EditableMotionCurve says; a key that is in no curve must outlive its own operation,
/// too.
class ZT_MODEL_EXPORT EditableMotionCurveKey : public QObject,
                                               private VQ::Math::Interpolation::Key,
                                               private VQ::Animation::SerializationInterface {
    Q_OBJECT

public:
    /// Value 0, both tangents "bezier auto" with handles (0, 0), neither smooth nor symmetrical, in no curve.
    EditableMotionCurveKey();

    /// A copy of @p key, neither smooth nor symmetrical, in no curve. Nothing is recomputed.
    EditableMotionCurveKey(const VQ::Math::Interpolation::Key& key);

    /// No curve may hold the key: one that does destroys it itself.
    ~EditableMotionCurveKey() override;

    /// A new key with the same record and flags. It is in no curve, even when this key is; the caller owns
    /// it.
    EditableMotionCurveKey* clone() const;

    /// A copy of the plain record.
    VQ::Math::Interpolation::Key baseMotionCurveKey() const;

    /// The curve that holds the key, or null.
    EditableMotionCurve* getParentCurve() const noexcept { return _parentCurve; }

    /// Stores the pointer. A curve that takes the key in or lets it go uses the next two.
    void _setParentCurve(EditableMotionCurve* curve) noexcept {
        _parentCurve = curve;
        _isHeardByOthers = true; // Who is connected cannot be known here.
    }

    /// Makes @p curve the parent and connects valueChanged(), tangentsChanged() and indexChanged() to its
    /// onKeysChanged().
    void _connectTo(EditableMotionCurve* curve);
    /// Makes the key parentless and takes these connections back.
    void _disconnectFrom(const EditableMotionCurve* curve);

    /// Emits indexChanged(): the curve has moved the key to @p frame.
    void _announceIndex(unsigned int frame);

    /// In value units.
    float getValue() const noexcept { return value; }

    /// "bezier auto" for a value that is no side.
    VQ::Math::Interpolation::InterpolationType getTangentType(ZT::TangentSide side) const noexcept;

    /// The end of the handle relative to the key: frames, then value units. (0, 0) for a value that is no
    /// side.
    QPair<float, float> getTangentOffset(ZT::TangentSide side) const noexcept;

    /// The flags themselves, whether or not the types let them act.
    ///@{
    bool isSmooth() const noexcept { return _smooth; }
    bool isSymmetrical() const noexcept { return _symmetrical; }
    ///@}

    /// The key's record as a tree, with the attributes "symmetrical" and "smooth", in this order, where true.
    boost::property_tree::ptree serialize() const override;

    /// Reads such a tree. The record is overwritten without a signal and without recomputing handles; then
    /// each flag is applied as setSymmetrical() and setSmooth() would, with their signals: a flag that does
    /// not change leaves the types as read. A flag that is missing or not a boolean counts as false. Returns
    /// false and changes nothing when the tree does not describe a key.
    bool deserialize(const boost::property_tree::ptree& tree) override;

    /// Turns an element of a curve's map, (frame, Key*), into (frame, EditableMotionCurveKey*), const as it
    /// comes. The record must be part of an editable key or null. Nothing is checked.
    template <class Element>
    static auto _toEditable(const Element& element) {
        return std::make_pair(static_cast<unsigned int>(element.first), _wholeKey(element.second));
    }

    /// The key's record, by which a curve's map holds it.
    ///@{
    VQ::Math::Interpolation::Key* _record() noexcept { return this; }
    const VQ::Math::Interpolation::Key* _record() const noexcept { return this; }
    ///@}

    /// Writes the handles of @p record past all rules, each where the tangent has the type that @p record
    /// says and the bits differ; an automatic handle only where it is the same within the tolerance. Used by
    /// undo for handles that no setter leads back to.
    /// Emits tangentsChanged() once if a handle was written and returns whether.
    bool _restoreHandles(const VQ::Math::Interpolation::Key& record);
    /// Whether _restoreHandles() would write anything.
    bool _handlesDifferFrom(const VQ::Math::Interpolation::Key& record) const noexcept;

    /// Writes a value whose bits differ, also where comparison calls it equal. Used by undo. Emits
    /// valueChanged() and returns true if it was written.
    bool _restoreValue(float pValue);

    /// Where the key stands; its curve's to write.
    ///@{
    VQ::Animation::KeyPlace& _placement() noexcept { return _place; }
    const VQ::Animation::KeyPlace& _placement() const noexcept { return _place; }
    ///@}

    /// How a curve destroys, writes, reads and finds keys of this class.
    static const VQ::Animation::KeyFunctions _keyFunctions;

Q_SIGNALS:
    /// setValue(), or an undo that restores bits, changed the value, in value units.
    void valueChanged(float pValue);
    /// A type or handle changed through a type or offset setter, an automatic handle was recomputed, or an
    /// undo restored a handle. Not emitted when a flag forces types and handles: listeners of the flags read
    /// the tangents again.
    void tangentsChanged();
    /// The flag changed, by its setter or by deserialize(). Where it was switched on, the types and handles
    /// that it forces are there already.
    ///@{
    void smoothChanged(bool pSmooth);
    void symmetricalChanged(bool pSymmetrical);
    ///@}
    /// Emitted by the curve, never by the key itself: the key stands at another frame now.
    void indexChanged(unsigned int);

public Q_SLOTS:
    /// Emits valueChanged() when @p pValue differs by IEEE comparison: NaN always does. No handle is
    /// recomputed.
    void setValue(float pValue);

    /// Changes a tangent's type and emits tangentsChanged(). Two "bezier" tangents are aligned by the
    /// constraints; otherwise automatic handles are recomputed, which may emit one more tangentsChanged()
    /// before.
    void setLeftTangentType(const VQ::Math::Interpolation::InterpolationType& pType);
    /// Sets the end of a "bezier" handle (frames, value units); other types ignore it. The opposite handle
    /// follows by the constraints where it is "bezier" too. Emits one tangentsChanged().
    void setLeftTangentOffset(const QPair<float, float>& pOffset);
    /// As setLeftTangentType().
    void setRightTangentType(const VQ::Math::Interpolation::InterpolationType& pType);
    /// As setLeftTangentOffset().
    void setRightTangentOffset(const QPair<float, float>& pOffset);

    /// Switching on makes both tangents "bezier" and aligns the handles. Emits smoothChanged() and nothing
    /// else.
    void setSmooth(bool pSmooth);
    /// Switching on makes both tangents "bezier" and the handles opposites. Emits symmetricalChanged() and
    /// nothing else.
    void setSymmetrical(bool pSymmetrical);

    /// As the setter of that side; does nothing for a value that is no side.
    void setTangentType(ZT::TangentSide side, VQ::Math::Interpolation::InterpolationType type);
    /// As the setter of that side; does nothing for a value that is no side.
    void setTangentOffset(ZT::TangentSide side, QPair<float, float> offset);

    /// Recomputes the handles of "bezier auto" tangents from the neighbouring keys. A handle within 0.0001 of
    /// its formula stays. Emits tangentsChanged() once and returns true if a handle changed; does nothing in
    /// no curve.
    bool updateBezierAutoTangents();

public:
    /// A key and the frame where it stands; null stands at frame 0.
    using Placed = std::pair<unsigned int, const EditableMotionCurveKey*>;

    /// The same for a key of which all that is known.
    bool _updateBezierAutoTangents(const Placed& previous, unsigned int frame, const Placed& next);

protected:
    /// Notes that somebody listens.
    void connectNotify(const QMetaMethod& signal) final;

private:
    static EditableMotionCurveKey* _wholeKey(VQ::Math::Interpolation::Key* record) noexcept {
        return static_cast<EditableMotionCurveKey*>(record);
    }
    static const EditableMotionCurveKey* _wholeKey(const VQ::Math::Interpolation::Key* record) noexcept {
        return static_cast<const EditableMotionCurveKey*>(record);
    }

    bool _isHeard() const;
    void _announceValue();
    void _announceTangents();
    bool _hasAutoTangents() const noexcept;
    bool _bothBezier() const noexcept;
    void _setType(VQ::Math::Interpolation::InterpolationType& type,
                  VQ::Math::Interpolation::InterpolationType newType);
    void _setOffset(ZT::TangentSide side, const QPair<float, float>& offset);
    bool _applyFlag(bool& flag, bool newFlag);
    void _onTangentTypeChanged();
    void _onTangentParamChanged(ZT::TangentSide side);

    VQ::Animation::KeyPlace _place;
    EditableMotionCurve* _parentCurve = nullptr;
    bool _smooth = false;
    bool _symmetrical = false;
    bool _isHeardByOthers = false; ///< others than the parent curve may listen; never taken back
};

/// The key's frame in its curve; 0 for null, for a key in no curve and for one that its curve does not hold.
/// O(1).
ZT_MODEL_EXPORT unsigned int index(const EditableMotionCurveKey* key);

/// The type's display name, translated in the context "QObject". A value that is no type reads "bezier auto".
ZT_MODEL_EXPORT QString interpolTypeToString(VQ::Math::Interpolation::InterpolationType type);

} // namespace ZT
