#pragma once

#include <QList>
#include <QObject>

class QAction;
class QMenu;
class QToolBar;
class QWidget;

namespace Editor {

class CurveView;

/// Which part of the curves is shown.
class ViewActions : public QObject {
    Q_OBJECT

public:
    /// @p curves must outlive the actions' use.
    ViewActions(CurveView& curves, QObject* parent);

    void addTo(QMenu& menu) const;
    void addTo(QToolBar& bar) const;
    /// What a click on a view offers.
    QList<QAction*> forViews() const;
    /// Lets the keys that are no command elsewhere work in @p view and the widgets in it.
    void listenIn(QWidget& view) const;

private:
    QAction* _fitAll; ///< QObject children
    QAction* _fitSelection;
};

} // namespace Editor
