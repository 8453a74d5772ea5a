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

Q_SIGNALS:
    /// A jump was not done to its end; @p why is for the status bar.
    void refused(const QString& why);
};

} // namespace Editor
