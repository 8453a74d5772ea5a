#pragma once

#include <QList>
#include <QObject>

#include <functional>

class QAction;
class QKeySequence;
class QMenu;
class QToolBar;
class QWidget;

namespace Editor {

class CurveView;
struct Workspace;

/// Which part of the curves and of the frames is shown: what a menu "View" holds.
class ViewActions : public QObject {
    Q_OBJECT

public:
    /// @p workspace and @p curves must outlive the actions' use.
    ViewActions(Workspace& workspace, CurveView& curves, QObject* parent);

    void addTo(QMenu& menu) const;
    void addTo(QToolBar& bar) const;
    /// What a click on a view offers.
    QList<QAction*> forViews() const;
    /// Lets the keys that are no command elsewhere work in @p view and the widgets in it, as far as they are
    /// about frames.
    void listenIn(QWidget& view) const;

private:
    QAction* _add(const QString& text, const char* name, const QList<QKeySequence>& keys,
                  std::function<void()> show);

    QAction* _fitAll; ///< all are QObject children
    QAction* _fitSelection;
    QList<QAction*> _frameActions;
    QList<QAction*> _valueActions;
};

} // namespace Editor
