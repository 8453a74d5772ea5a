#pragma once

#include <QUndoView>

namespace Editor {

class History;

/// The history as a list; a click on an entry goes to the state behind it.
class HistoryPanel : public QUndoView {
    Q_OBJECT

public:
    /// @p history must outlive the panel.
    explicit HistoryPanel(History& history, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {200, 120}; }
};

} // namespace Editor
