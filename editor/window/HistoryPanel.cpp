#include "window/HistoryPanel.h"

#include "document/History.h"

#include <QItemSelectionModel>

namespace Editor {

// The view's own selection has QUndoStack jump, which passes by what History says before.
HistoryPanel::HistoryPanel(History& history, QWidget* parent)
    : QUndoView(&history, parent) {
    setEmptyLabel(tr("As opened"));
    setAccessibleName(tr("History"));
    auto* const current = new QItemSelectionModel(model(), this);
    const auto show = [this, current, &history] {
        current->setCurrentIndex(model()->index(history.index(), 0), QItemSelectionModel::ClearAndSelect);
    };
    setSelectionModel(current);
    show();
    connect(current, &QItemSelectionModel::currentChanged, this, [&history](const QModelIndex& entry) {
        if (entry.isValid() && entry.row() != history.index()) {
            history.setIndex(entry.row());
        }
    });
    connect(model(), &QAbstractItemModel::modelReset, this, show); // After each change.
}

} // namespace Editor
