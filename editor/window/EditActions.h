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

/// History, clipboard and selection: what a menu "Edit" holds.
class EditActions : public QObject {
    Q_OBJECT

public:
    /// @p currentCurve gives the curve that takes keys whose own layer is missing, or null.
    EditActions(Workspace& workspace, std::function<ZT::EditableMotionCurve*()> currentCurve,
                QObject* parent);

    void addTo(QMenu& menu) const;
    void addTo(QToolBar& bar) const;
    /// What a click on keys offers.
    QList<QAction*> forKeys() const;
    /// Lets the keys that are no command elsewhere work in @p view and the widgets in it.
    void listenIn(QWidget& view) const;

Q_SIGNALS:
    /// An action could not be done; @p why is for the status bar.
    void refused(const QString& why);

private:
    void _copy();
    void _cut();
    void _paste();
    void _duplicate();
    void _remove();
    void _enable();
    void _enablePaste();

    Workspace& _workspace;
    std::function<ZT::EditableMotionCurve*()> _currentCurve;
    QAction* _undo; ///< all are QObject children
    QAction* _redo;
    QAction* _cutAction;
    QAction* _copyAction;
    QAction* _pasteAction;
    QAction* _duplicateAction;
    QAction* _removeAction;
    QAction* _selectAll;
    QAction* _invert;
};

} // namespace Editor
