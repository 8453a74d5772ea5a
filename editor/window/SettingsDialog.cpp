#include "window/SettingsDialog.h"

#include "window/Settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>

namespace Editor {

SettingsDialog::SettingsDialog(Settings& settings, bool isHistoryEmpty, QWidget* parent)
    : QDialog(parent)
    , _settings(settings)
    , _undoLimit(new QSpinBox(this))
    , _theme(new QComboBox(this)) {
    setWindowTitle(tr("Settings"));
    _theme->setObjectName(QStringLiteral("themeBox"));
    _theme->addItem(tr("As the system"), static_cast<int>(Theme::system));
    _theme->addItem(tr("Light"), static_cast<int>(Theme::light));
    _theme->addItem(tr("Dark"), static_cast<int>(Theme::dark));
    _theme->setCurrentIndex(_theme->findData(static_cast<int>(settings.theme())));
    _undoLimit->setObjectName(QStringLiteral("undoLimitBox"));
    _undoLimit->setRange(0, Settings::mostUndoLimit);
    _undoLimit->setSpecialValueText(tr("Unlimited"));
    _undoLimit->setSuffix(tr(" entries"));
    _undoLimit->setValue(settings.undoLimit());

    auto* const form = new QFormLayout(this);
    form->addRow(tr("&Theme"), _theme);
    form->addRow(tr("&Undo history"), _undoLimit);
    auto* const note = new QLabel(
        isHistoryEmpty ? tr("Keys always snap to whole frames.")
                       : tr("The new length of the history counts from the next animation on: the history "
                            "of this one has begun. Keys always snap to whole frames."),
        this);
    note->setWordWrap(true);
    form->addRow(note);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);
}

void SettingsDialog::accept() {
    _settings.setTheme(static_cast<Theme>(_theme->currentData().toInt()));
    _settings.setUndoLimit(_undoLimit->value());
    QDialog::accept();
}

} // namespace Editor
