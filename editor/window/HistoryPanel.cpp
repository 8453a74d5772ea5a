#include "window/HistoryPanel.h"

namespace Editor {

HistoryPanel::HistoryPanel(QUndoStack& history, QWidget* parent)
    : QUndoView(&history, parent) {
    setEmptyLabel(tr("As opened"));
    setAccessibleName(tr("History"));
}

} // namespace Editor
