#pragma once

#include "base/animation/Animation.h"
#include "model/EditableAnimationLayer.h"
#include "model/Export.h"

#include <QObject>
#include <QString>

#include <boost/iterator/transform_iterator.hpp>

#include <memory>

/// The editable model: the records as objects that announce their changes.
namespace ZT {

class AnimationMarkers;

/// The root of the editable model: an ordered, owning list of editable layers, and the animation's markers.
///
/// A view observes the whole animation through layersChanged() and greaterIndexChanged(). Changes of the list
/// itself emit nothing: whoever makes them tells the views.
///
/// Both signals come from within an edit of a layer or its curve, which goes on when the slots are done. A
/// slot may read everything and edit as EditableMotionCurve says; it must not destroy a layer or have its
/// curve replaced. What it throws reaches the caller of the edit, and slots that are connected behind it do
/// not hear the signal.
class ZT_MODEL_EXPORT EditableAnimation : public QObject, private VQ::Animation::Animation {
    Q_OBJECT

    struct ToEditable {
        EditableAnimationLayer* operator()(VQ::Animation::AnimationLayer& layer) const noexcept {
            return EditableAnimationLayer::_toEditable(layer);
        }
        const EditableAnimationLayer* operator()(const VQ::Animation::AnimationLayer& layer) const noexcept {
            return EditableAnimationLayer::_toEditable(layer);
        }
    };

public:
    /// In list order; *it is an EditableAnimationLayer*.
    using iterator = boost::iterators::transform_iterator<ToEditable, VQ::Animation::Animation::iterator>;
    /// In list order; *it is a const EditableAnimationLayer*.
    using const_iterator =
        boost::iterators::transform_iterator<ToEditable, VQ::Animation::Animation::const_iterator>;

    /// An animation without layers.
    explicit EditableAnimation(QObject* parent = nullptr);

    /// Wraps a copy of @p animation. Emits nothing. O(keys).
    explicit EditableAnimation(const VQ::Animation::Animation& animation, QObject* parent = nullptr);

    /// Deletes the layers, then the markers.
    ~EditableAnimation() override;

    /// In list order. Iterators are no longer valid when layers come or go.
    ///@{
    iterator begin();
    iterator end();
    const_iterator begin() const;
    const_iterator end() const;
    ///@}
    using VQ::Animation::Animation::empty;
    using VQ::Animation::Animation::size;

    /// The layer at position @p i, or null when there is none.
    ///@{
    EditableAnimationLayer* operator[](unsigned long i);
    const EditableAnimationLayer* operator[](unsigned long i) const;
    ///@}

    /// The first layer in list order of that actuator name, or null. O(layers).
    EditableAnimationLayer* getLayer(const QString& name);

    /// Never null; owned by the animation.
    ZT::AnimationMarkers* getMarkers() const noexcept { return _markers; }

    /// A copy of the plain record, with plain layers, curves and keys. O(keys).
    VQ::Animation::Animation baseAnimation() const;

    /// The animation's tree; each key keeps its smooth and symmetrical flags.
    using VQ::Animation::Animation::serialize;
    /// Replaces the layers by those of a tree; the old ones are destroyed with their curves and keys. Emits
    /// layersChanged() for each automatic handle that is recomputed in a new curve, while the old layers are
    /// still there, and also where a later layer cannot be read. On false the animation is unchanged.
    using VQ::Animation::Animation::deserialize;
    using VQ::Animation::Animation::problemIn;

    /// The greatest frame that holds a key in any layer; 0 without keys. O(layers).
    unsigned int getGreaterIndex() const;

    /// Takes the layer out of the list, with its curve and keys as they are, and gives it to the caller; null
    /// at end(). It speaks to this animation no more. Emits nothing.
    std::unique_ptr<EditableAnimationLayer> release(iterator position);

    /// A new layer connected to this animation but not in its list; belongs to the caller.
    VQ::Animation::AnimationLayer* createLayer() const override;

Q_SIGNALS:
    /// A layer's name or curve changed: once for each such signal of a layer.
    void layersChanged();
    /// The greatest frame over all curves may have changed; read it with getGreaterIndex(). Deliberate: after
    /// construction the first report of a curve is compared with 0, not with the true maximum.
    void greaterIndexChanged();

public Q_SLOTS:
    /// Appends the layer and takes ownership, also where memory runs out: it is destroyed then. Emits
    /// nothing. Throws boost::bad_pointer for null.
    void push_back(EditableAnimationLayer* pLayer);
    /// Inserts the layer before @p pBefore and takes ownership as push_back() does. Emits nothing. Returns
    /// the iterator to the layer.
    iterator insert(iterator pBefore, EditableAnimationLayer* pLayer);
    /// Removes and deletes the layer. Emits nothing. Returns the iterator behind it.
    iterator erase(iterator pPosition);
    /// Removes and deletes all layers. Emits nothing.
    void clear();

private Q_SLOTS:
    void _onGreaterCurveIndexChanged(unsigned int newGreater, unsigned int previousGreater);

private:
    void _adopt(EditableAnimationLayer* layer) const;
    void _connectLayer(EditableAnimationLayer* layer) const;
    void _disconnectLayer(EditableAnimationLayer* layer) const;
    iterator _toEditableIterator(VQ::Animation::Animation::iterator position);
    const_iterator _toEditableIterator(VQ::Animation::Animation::const_iterator position) const;

    unsigned int _greaterIndex = 0; ///< the greatest frame last announced
    ZT::AnimationMarkers* _markers; ///< a QObject child
};

} // namespace ZT
