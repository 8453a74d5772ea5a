#pragma once

#include "document/History.h"
#include "document/LayerLook.h"
#include "model/EditableAnimation.h"

#include <QObject>
#include <QString>

#include <boost/property_tree/ptree_fwd.hpp>

#include <memory>
#include <utility>
#include <vector>

namespace Editor {

class KeySelection;
struct AnimationData;

/// What is being edited: the animation, its history, what is selected and where it is saved. Views observe
/// the document and ask it for edits; none keeps a copy of the model.
///
/// Every edit is a command in history(). Only the commands of layers call insertLayer(), takeLayer(),
/// moveLayer() and setLook(), since older entries of the history refer to layers and keys that must stay
/// alive.
class Document : public QObject {
    Q_OBJECT

public:
    /// An animation without layers.
    explicit Document(QObject* parent = nullptr);
    /// The history dies before the animation: its commands hold keys.
    ~Document() override;

    ZT::EditableAnimation& animation() noexcept { return *_animation; }
    const ZT::EditableAnimation& animation() const noexcept { return *_animation; }
    ZT::AnimationMarkers& markers() const noexcept { return *_animation->getMarkers(); }
    History& history() noexcept { return _history; }
    KeySelection& selection() noexcept { return *_selection; }

    /// Another animation, for New and Open: the history is emptied and the document is unmodified. @p path is
    /// empty for one that no file of the editor's own holds. Emits replaced(), then pathChanged().
    void replace(AnimationData data, const QString& path);
    /// What a file keeps: the animation's tree with attributes of the editor's in it, which the library skips
    /// when it reads them. O(keys).
    boost::property_tree::ptree tree() const;

    /// Where Save writes to; empty for a new and for an imported animation.
    QString path() const { return _path; }
    /// The animation is saved under @p path now. Emits pathChanged().
    void setSaved(const QString& path);
    /// There is something that no file holds. Emits pathChanged() when it changes the answer to isModified().
    void setUnsaved();
    /// What a drag under way has changed is in no entry yet, or is in one or taken back again. Emits
    /// pathChanged() as setUnsaved() does.
    void setDragged(bool isDragged);
    /// Whether there is work that would be lost: edits, and the start and end markers where they are not as
    /// in the file. Which frame is the current one is no work.
    bool isModified() const { return _isUnsaved || _isDragged || _isSpanMoved || !_history.isClean(); }

    int layerCount() const { return static_cast<int>(_animation->size()); }
    /// Null where there is none.
    ZT::EditableAnimationLayer* layer(int index) const;
    /// -1 when the animation does not hold it. O(layers).
    int indexOf(const ZT::EditableAnimationLayer* layer) const;
    LayerLook look(int index) const { return _looks.at(static_cast<std::size_t>(index)); }
    /// A colour that differs from those of the layers before, in hue and in lightness.
    static QColor colourAt(int index);
    /// Whether keys of the curve may be edited: its layer is neither locked nor hidden.
    bool isEditable(const ZT::EditableMotionCurve* curve) const;

    /// Of the first layer's time unit; 25 without layers.
    double framesPerSecond() const;

    // What slots throw at changes of the list is thrown on when the list has changed and all signals are out.

    /// The animation owns the layer then; @p layer keeps it where memory runs short before anything is
    /// changed or said. Emits layerAboutToBeInserted(), layerInserted() and changed().
    void insertLayer(int index, std::unique_ptr<ZT::EditableAnimationLayer>&& layer, const LayerLook& look);
    /// Gives the layer and its look to the caller's @p layer and @p look, which have them also where slots
    /// throw. Keys of it are selected no more. Emits layerAboutToBeRemoved(), layerRemoved() and changed().
    void takeLayer(int index, std::unique_ptr<ZT::EditableAnimationLayer>& layer, LayerLook& look);
    /// To the place @p to in the list without it. Emits layerAboutToBeMoved(), layerMoved() and changed().
    void moveLayer(int from, int to);
    /// Emits lookChanged() and changed() if it differs.
    void setLook(int index, const LayerLook& look);

Q_SIGNALS:
    /// The animation, and with it each layer, curve and key, is another one.
    void replaced();
    /// Something that a view shows of layers, keys or looks is other than it was: many times for one edit. A
    /// view marks itself to be painted and no more.
    void changed();
    void layerAboutToBeInserted(int index);
    void layerInserted(int index);
    void layerAboutToBeRemoved(int index);
    void layerRemoved(int index);
    void layerAboutToBeMoved(int from, int to);
    void layerMoved(int from, int to);
    void lookChanged(int index);
    /// Path or isModified() changed.
    void pathChanged();
    /// The start or the end marker moved, other than by replace().
    void spanChanged();

private:
    using Span = std::pair<unsigned int, unsigned int>;

    void _observe();
    void _makeRoom();
    void _keepSpan();
    void _compareSpan();
    Span _span() const;

    std::unique_ptr<ZT::EditableAnimation> _animation;
    std::vector<LayerLook> _looks; ///< one for each layer
    std::unique_ptr<KeySelection> _selection;
    History _history;
    QString _path;
    Span _savedSpan; ///< start and end marker in the file
    bool _isSpanMoved = false;
    bool _isUnsaved = false;
    bool _isDragged = false;
};

} // namespace Editor
