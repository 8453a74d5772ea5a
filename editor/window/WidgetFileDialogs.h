#pragma once

#include "window/FileDialogs.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

namespace Editor {

/// Asks in dialogs over a window.
class WidgetFileDialogs : public FileDialogs {
    Q_DECLARE_TR_FUNCTIONS(Editor::WidgetFileDialogs)

public:
    /// The window over which dialogs stand from now on.
    void setWindow(QWidget* window) { _window = window; }

    QString askOpenPath(const QString& near) override;
    QString askSavePath(const QString& suggestion) override;
    QString askPicturePath(const QString& suggestion) override;
    Unsaved askUnsaved(const QString& name) override;
    Recovery askRecovery(const LeftBehind& work) override;
    void showProblem(const QString& title, const QString& reason) override;

private:
    QPointer<QWidget> _window;
};

} // namespace Editor
