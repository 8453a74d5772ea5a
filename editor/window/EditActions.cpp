#include "window/EditActions.h"

#include "model/AnimationMarkers.h"
#include "window/ActionMaker.h"
#include "window/Workspace.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QToolBar>

#include <stdexcept>
#include <utility>

namespace Editor {

EditActions::EditActions(Workspace& workspace, std::function<ZT::EditableMotionCurve*()> currentCurve,
                         QObject* parent)
    : QObject(parent)
    , _workspace(workspace)
    , _currentCurve(std::move(currentCurve))
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
    , _duplicateAction(dress(new QAction(tr("D&uplicate"), this), "duplicate", {Qt::CTRL + Qt::Key_D}))
    , _removeAction(dress(new QAction(tr("&Delete"), this), "delete", {Qt::Key_Delete, Qt::Key_Backspace},
                          Glyph::remove))
    , _selectAll(dress(new QAction(tr("Select &All"), this), "selectAll",
                       QKeySequence::keyBindings(QKeySequence::SelectAll)))
    , _invert(dress(new QAction(tr("&Invert Selection"), this), "invertSelection", {Qt::CTRL + Qt::Key_I})) {
    limitKeysToItsWidgets(_removeAction);
    KeySelection& selection = workspace.document.selection();
    connect(_cutAction, &QAction::triggered, this, &EditActions::_cut);
    connect(_copyAction, &QAction::triggered, this, &EditActions::_copy);
    connect(_pasteAction, &QAction::triggered, this, &EditActions::_paste);
    connect(_duplicateAction, &QAction::triggered, this, &EditActions::_duplicate);
    connect(_removeAction, &QAction::triggered, this, &EditActions::_remove);
    connect(_selectAll, &QAction::triggered, &selection, &KeySelection::selectAll);
    connect(_invert, &QAction::triggered, &selection, &KeySelection::invert);
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
    if (auto data = KeyClipboard::copy(_workspace.document.selection().keys())) {
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
    try {
        const std::size_t left =
            _workspace.clipboard.paste(*data, _workspace.document.markers().selectedIndex(), _currentCurve());
        if (left > 0) {
            Q_EMIT refused(tr("Not pasted: %1 keys whose layer is missing, locked or hidden.").arg(left));
        }
    } catch (const std::runtime_error& error) {
        Q_EMIT refused(tr("Not pasted: %1.").arg(QString::fromUtf8(error.what())));
    }
}

void EditActions::_duplicate() {
    try {
        _workspace.clipboard.duplicate(_workspace.document.selection().keys());
    } catch (const std::runtime_error& error) {
        Q_EMIT refused(tr("Not duplicated: %1.").arg(QString::fromUtf8(error.what())));
    }
}

void EditActions::_remove() {
    _workspace.edits.remove(_workspace.document.selection().keys());
}

void EditActions::_enable() {
    const bool hasKeys = !_workspace.document.selection().isEmpty();
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
