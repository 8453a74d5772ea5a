#include "window/ViewActions.h"

#include "curves/CurveView.h"
#include "window/ActionMaker.h"

#include <QMenu>
#include <QToolBar>

namespace Editor {

ViewActions::ViewActions(CurveView& curves, QObject* parent)
    : QObject(parent)
    , _fitAll(dress(new QAction(tr("Fit &All"), this), "fitAll", {Qt::Key_A}, Glyph::fitAll))
    , _fitSelection(
          dress(new QAction(tr("&Fit Selection"), this), "fitSelection", {Qt::Key_F}, Glyph::fitSelection)) {
    limitKeysToItsWidgets(_fitAll);
    limitKeysToItsWidgets(_fitSelection);
    connect(_fitAll, &QAction::triggered, &curves, &CurveView::fitAll);
    connect(_fitSelection, &QAction::triggered, &curves, &CurveView::fitSelection);
}

void ViewActions::addTo(QMenu& menu) const {
    menu.addActions(forViews());
}

void ViewActions::addTo(QToolBar& bar) const {
    bar.addActions(forViews());
}

QList<QAction*> ViewActions::forViews() const {
    return {_fitAll, _fitSelection};
}

void ViewActions::listenIn(QWidget& view) const {
    view.addActions(forViews());
}

} // namespace Editor
