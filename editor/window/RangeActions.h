#pragma once

#include "window/ActionSet.h"

#include <QPointF>

#include <memory>

namespace ZT {
class AnimationMarkers;
}

namespace Editor {

class DragKind;

/// The user range and the markers of the span that plays, set to the current frame: what a menu "Range"
/// holds. Each change of the range is one entry of the history; the markers are none.
class RangeActions : public ActionSet {
    Q_OBJECT

public:
    RangeActions(Workspace& ofWorkspace, QObject* parent);

    void addTo(QMenu& menu) const override;
    /// None: the timeline shows what can be dragged.
    void addTo(QToolBar& bar) const override;
    QList<QAction*> forKeys() const override;
    void listenIn(QWidget& view) const override;

private:
    QAction* _add(const QString& text, const char* name, const QKeySequence& keys,
                  void (RangeActions::*slot)());
    void _begin();
    void _end();
    void _spanSelection();
    void _show(unsigned int first, unsigned int last);
    void _move();
    void _stretchStart();
    void _stretchEnd();
    void _remove();
    void _drag(std::unique_ptr<DragKind> kind, unsigned int from);
    bool _hasRange();
    void _setStartMarker();
    void _setEndMarker();
    ZT::AnimationMarkers& _markers() const;

    QList<QAction*> _rangeActions; ///< all are QObject children
    QAction* _ofSelection;
    QList<QAction*> _keysActions; ///< which move the range's keys along
    QAction* _removeAction;
    QList<QAction*> _markerActions;
};

} // namespace Editor
