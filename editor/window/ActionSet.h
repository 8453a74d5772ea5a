#pragma once

#include <QList>
#include <QObject>

#include <functional>

class QAction;
class QMenu;
class QToolBar;
class QWidget;

namespace ZT {
class EditableMotionCurve;
}

namespace Editor {

struct Workspace;

/// Commands that edit, shared by menus, tool bar and context menus.
class ActionSet : public QObject {
    Q_OBJECT

public:
    /// Gives the curve of the current layer, or null.
    using CurrentCurve = std::function<ZT::EditableMotionCurve*()>;

    virtual void addTo(QMenu& menu) const = 0;
    virtual void addTo(QToolBar& bar) const = 0;
    /// What a click on keys offers.
    virtual QList<QAction*> forKeys() const = 0;
    /// Lets the keys that are no command elsewhere work in @p view and the widgets in it.
    virtual void listenIn(QWidget& view) const = 0;

Q_SIGNALS:
    /// An action could not be done, or did more than was asked; @p text is for the status bar.
    void noted(const QString& text);

protected:
    /// @p ofWorkspace must outlive the set.
    ActionSet(Workspace& ofWorkspace, CurrentCurve ofCurrentLayer, QObject* parent);

    /// Has @p action do @p edit. An exception goes no further: noted() says it in the place of %1 in @p
    /// problem, or in a sentence that fits all. In the midst of a drag, where a key of the keyboard may
    /// trigger it, the action does nothing.
    void onTriggered(QAction* action, std::function<void()> edit, const QString& problem = {});
    /// Does @p action; exceptions as above.
    void attemptTo(const std::function<void()>& action, const QString& problem = {});

    Workspace& workspace;
    const CurrentCurve currentCurve;
};

} // namespace Editor
