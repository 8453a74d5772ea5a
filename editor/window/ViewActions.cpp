#include "window/ViewActions.h"

#include "curves/CurveView.h"
#include "curves/ViewAxis.h"
#include "timeline/FrameNavigator.h"
#include "window/ActionMaker.h"
#include "window/Workspace.h"

#include <QMenu>
#include <QToolBar>

#include <utility>

namespace Editor {

namespace {

constexpr double zoomStep = 1.2; ///< as by a notch of the wheel
constexpr double panStep = 0.2;  ///< of what is visible

void zoom(ViewAxis& axis, double factor) {
    axis.zoom(factor, 0.5 * (axis.first() + axis.last()));
}

void pan(ViewAxis& axis, double share) {
    axis.pan(share * axis.span());
}

} // namespace

ViewActions::ViewActions(Workspace& workspace, CurveView& curves, QObject* parent)
    : QObject(parent)
    , _fitAll(_add(tr("Fit &All"), "fitAll", {Qt::Key_A}, [&curves] { curves.fitAll(); }))
    , _fitSelection(
          _add(tr("&Fit Selection"), "fitSelection", {Qt::Key_F}, [&curves] { curves.fitSelection(); })) {
    _fitAll->setIcon(iconOf(Glyph::fitAll));
    _fitSelection->setIcon(iconOf(Glyph::fitSelection));
    ViewAxis& frames = *workspace.frames;
    ViewAxis& values = curves.values();
    Document& document = workspace.document;
    _frameActions = {
        _add(tr("Zoom &In Frames"), "zoomInFrames", {Qt::Key_Plus, Qt::Key_Equal},
             [&document, &frames] { FrameNavigator(document, frames).zoom(1.0 / zoomStep); }),
        _add(tr("Zoom &Out Frames"), "zoomOutFrames", {Qt::Key_Minus},
             [&document, &frames] { FrameNavigator(document, frames).zoom(zoomStep); }),
        _add(tr("Scroll to &Earlier Frames"), "scrollToEarlierFrames", {Qt::ALT | Qt::Key_Left},
             [&frames] { pan(frames, -panStep); }),
        _add(tr("Scroll to &Later Frames"), "scrollToLaterFrames", {Qt::ALT | Qt::Key_Right},
             [&frames] { pan(frames, panStep); }),
    };
    _valueActions = {
        _add(tr("&Zoom In Values"), "zoomInValues", {Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal},
             [&values] { zoom(values, 1.0 / zoomStep); }),
        _add(tr("Zoo&m Out Values"), "zoomOutValues", {Qt::CTRL | Qt::Key_Minus},
             [&values] { zoom(values, zoomStep); }),
        _add(tr("Scroll to &Higher Values"), "scrollToHigherValues", {Qt::Key_PageUp},
             [&values] { pan(values, panStep); }),
        _add(tr("Scroll to Lo&wer Values"), "scrollToLowerValues", {Qt::Key_PageDown},
             [&values] { pan(values, -panStep); }),
    };
    curves.addActions(_valueActions);
}

QAction* ViewActions::_add(const QString& text, const char* name, const QList<QKeySequence>& keys,
                           std::function<void()> show) {
    QAction* const action = dress(new QAction(text, this), name, keys);
    limitKeysToItsWidgets(action);
    connect(action, &QAction::triggered, this, std::move(show));
    return action;
}

void ViewActions::addTo(QMenu& menu) const {
    menu.addActions(forViews());
    menu.addSeparator();
    menu.addActions(_frameActions);
    menu.addSeparator();
    menu.addActions(_valueActions);
}

void ViewActions::addTo(QToolBar& bar) const {
    bar.addActions(forViews());
}

QList<QAction*> ViewActions::forViews() const {
    return {_fitAll, _fitSelection};
}

void ViewActions::listenIn(QWidget& view) const {
    view.addActions(forViews() + _frameActions);
}

} // namespace Editor
