#include "window/EditActions.h"

#include "document/Drag.h"
#include "model/AnimationMarkers.h"
#include "window/ActionMaker.h"
#include "window/Workspace.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QToolBar>

#include <utility>

namespace Editor {

EditActions::EditActions(Workspace& ofWorkspace, CurrentCurve ofCurrentLayer, QObject* parent)
    : ActionSet(ofWorkspace, std::move(ofCurrentLayer), parent)
    , _undo(dress(workspace.document.history().createUndoAction(this, tr("&Undo")), "undo",
                  QKeySequence::keyBindings(QKeySequence::Undo), Glyph::undo))
    , _redo(dress(workspace.document.history().createRedoAction(this, tr("&Redo")), "redo",
                  QKeySequence::keyBindings(QKeySequence::Redo), Glyph::redo))
    , _cutAction(dress(new QAction(tr("Cu&t"), this), "cut", QKeySequence::keyBindings(QKeySequence::Cut),
                       Glyph::cut))
    , _copyAction(dress(new QAction(tr("&Copy"), this), "copy", QKeySequence::keyBindings(QKeySequence::Copy),
                        Glyph::copy))
    , _pasteAction(dress(new QAction(tr("&Paste at Current Frame"), this), "paste",
                         QKeySequence::keyBindings(QKeySequence::Paste), Glyph::paste))
    , _duplicateAction(dress(new QAction(tr("D&uplicate"), this), "duplicate", {Qt::CTRL | Qt::Key_D}))
    , _removeAction(dress(new QAction(tr("&Delete"), this), "delete", {Qt::Key_Delete, Qt::Key_Backspace},
                          Glyph::remove))
    , _selectAll(dress(new QAction(tr("Select &All"), this), "selectAll",
                       QKeySequence::keyBindings(QKeySequence::SelectAll)))
    , _invert(dress(new QAction(tr("&Invert Selection"), this), "invertSelection", {Qt::CTRL | Qt::Key_I})) {
    limitKeysToItsWidgets(_removeAction);
    // As QUndoStack connects its actions, Qt 5 calls the slot by its name, and so the one of History, Qt 6
    // that of QUndoStack, which does not say that it is about to change. Both let exceptions of commands
    // through Qt.
    History& history = workspace.document.history();
    disconnect(_undo, nullptr, &history, nullptr);
    disconnect(_redo, nullptr, &history, nullptr);
    connect(_undo, &QAction::triggered, this,
            [this, &history] { attemptTo([&history] { history.undo(); }); });
    connect(_redo, &QAction::triggered, this,
            [this, &history] { attemptTo([&history] { history.redo(); }); });
    // What is dragged can be undone before it is an entry.
    connect(&workspace.drag, &Drag::activeChanged, this,
            [this, &history](bool isActive) { _undo->setEnabled(isActive || history.canUndo()); });
    KeySelection& selection = workspace.document.selection();
    onTriggered(_cutAction, [this] { _cut(); });
    onTriggered(_copyAction, [this] { _copy(); });
    onTriggered(
        _pasteAction, [this] { _paste(); }, tr("Not pasted: %1."));
    onTriggered(
        _duplicateAction, [this] { _duplicate(); }, tr("Not duplicated: %1."));
    onTriggered(_removeAction, [this] { _remove(); });
    onTriggered(_selectAll, [&selection] { selection.selectAll(); });
    onTriggered(_invert, [&selection] { selection.invert(); });
    connect(&selection, &KeySelection::changed, this, &EditActions::_enable);
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &EditActions::_enablePaste);
    _enable();
    _enablePaste();
}

void EditActions::addTo(QMenu& menu) const {
    menu.addActions({_undo, _redo});
    menu.addSeparator();
    menu.addActions({_cutAction, _copyAction, _pasteAction, _duplicateAction, _removeAction});
    menu.addSeparator();
    menu.addActions({_selectAll, _invert});
}

void EditActions::addTo(QToolBar& bar) const {
    bar.addActions({_undo, _redo});
    bar.addSeparator();
    bar.addActions({_cutAction, _copyAction, _pasteAction, _removeAction});
}

QList<QAction*> EditActions::forKeys() const {
    return {_cutAction, _copyAction, _pasteAction, _duplicateAction, _removeAction};
}

void EditActions::listenIn(QWidget& view) const {
    view.addAction(_removeAction);
}

void EditActions::_copy() {
    if (auto data = KeyClipboard::copy(workspace.document.selection().keys())) {
        QApplication::clipboard()->setMimeData(data.release()); // The clipboard owns it.
    }
}

void EditActions::_cut() {
    _copy();
    _remove();
}

void EditActions::_paste() {
    const QMimeData* const data = QApplication::clipboard()->mimeData();
    if (data == nullptr || !KeyClipboard::canPaste(data)) {
        return;
    }
    _note(workspace.clipboard.paste(*data, workspace.document.markers().selectedIndex(), currentCurve()));
}

void EditActions::_duplicate() {
    _note(workspace.clipboard.duplicate(workspace.document.selection().keys()));
}

void EditActions::_note(const KeyClipboard::Report& report) {
    QStringList texts;
    if (report.leftOut > 0) {
        texts.append(tr("Not pasted: %n key(s) whose layer is missing, locked or hidden.", nullptr,
                        static_cast<int>(report.leftOut)));
    }
    if (report.replaced > 0) {
        texts.append(
            tr("%n key(s) stood there and were replaced.", nullptr, static_cast<int>(report.replaced)));
    }
    if (!texts.isEmpty()) {
        Q_EMIT noted(texts.join(' '));
    }
}

void EditActions::_remove() {
    workspace.edits.remove(workspace.document.selection().keys());
}

void EditActions::_enable() {
    const bool hasKeys = !workspace.document.selection().isEmpty();
    for (QAction* const action : {_cutAction, _copyAction, _duplicateAction, _removeAction}) {
        action->setEnabled(hasKeys);
    }
}

// Asking for the clipboard may mean asking another program: only where it has changed.
void EditActions::_enablePaste() {
    const QMimeData* const data = QApplication::clipboard()->mimeData();
    _pasteAction->setEnabled(data != nullptr && KeyClipboard::canPaste(data));
}

} // namespace Editor
