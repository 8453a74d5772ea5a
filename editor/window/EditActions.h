#pragma once

#include "document/KeyClipboard.h"
#include "window/ActionSet.h"

namespace Editor {

/// History, clipboard and selection: what a menu "Edit" holds.
class EditActions : public ActionSet {
    Q_OBJECT

public:
    /// The curve of the current layer takes keys whose own layer is missing.
    EditActions(Workspace& ofWorkspace, CurrentCurve ofCurrentLayer, QObject* parent);

    void addTo(QMenu& menu) const override;
    void addTo(QToolBar& bar) const override;
    QList<QAction*> forKeys() const override;
    void listenIn(QWidget& view) const override;

private:
    void _copy();
    void _cut();
    void _paste();
    void _duplicate();
    void _remove();
    void _note(const KeyClipboard::Report& report);
    void _enable();
    void _enablePaste();

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
