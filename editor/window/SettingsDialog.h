#pragma once

#include <QDialog>

class QComboBox;
class QSpinBox;

namespace Editor {

class Settings;

/// Shows the settings for a change; nothing changes before OK.
class SettingsDialog : public QDialog {
    Q_OBJECT

public:
    /// @p isHistoryEmpty decides what the dialog says about when the limit counts.
    SettingsDialog(Settings& settings, bool isHistoryEmpty, QWidget* parent = nullptr);

    void accept() override;

private:
    Settings& _settings;
    QSpinBox* _undoLimit; ///< QObject children
    QComboBox* _theme;
};

} // namespace Editor
