#include "window/HistoryPanel.h"

#include "document/Attempt.h"
#include "document/History.h"

#include <QItemSelectionModel>
#include <QTimer>

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
    // What the view goes on to select after a jump that fails is put right when it has done so.
    auto* const later = new QTimer(this);
    later->setSingleShot(true);
    connect(later, &QTimer::timeout, this, show);
    connect(current, &QItemSelectionModel::currentChanged, this,
            [this, later, &history](const QModelIndex& entry) {
                if (!entry.isValid() || entry.row() == history.index()) {
                    return;
                }
                if (const QString why = attempt([&] { history.setIndex(entry.row()); }); !why.isEmpty()) {
                    later->start(0);
                    (void)attempt([&] { Q_EMIT refused(tr("Not done: %1.").arg(why)); });
                }
            });
    connect(model(), &QAbstractItemModel::modelReset, this, show); // After each change.
}

} // namespace Editor
