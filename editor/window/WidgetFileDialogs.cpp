#include "window/WidgetFileDialogs.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

namespace Editor {

namespace {

QString askWritePath(QFileDialog& dialog, const QString& suggestion, const QString& suffix) {
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffix); // Before the question whether to replace a file, not behind it.
    dialog.selectFile(suggestion);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

QString WidgetFileDialogs::askOpenPath(const QString& near) {
    return QFileDialog::getOpenFileName(
        _window, tr("Open"), near,
        tr("Animations and imports (*.xml *.bvh *.csv);;Animations (*.xml);;"
           "Motion captures (*.bvh);;Joint trajectories (*.csv);;All files (*)"));
}

QString WidgetFileDialogs::askSavePath(const QString& suggestion) {
    QFileDialog dialog(_window, tr("Save As"), QString(), tr("Animations (*.xml)"));
    return askWritePath(dialog, suggestion, QStringLiteral("xml"));
}

QString WidgetFileDialogs::askPicturePath(const QString& suggestion) {
    QFileDialog dialog(_window, tr("Export Picture"), QString(), tr("Pictures (*.png *.svg)"));
    return askWritePath(dialog, suggestion, QStringLiteral("png"));
}

FileDialogs::Unsaved WidgetFileDialogs::askUnsaved(const QString& name) {
    QMessageBox box(QMessageBox::Warning, tr("Unsaved Work"), tr("%1 has unsaved changes.").arg(name),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, _window);
    box.setInformativeText(tr("They are lost if you do not save them."));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save:
        return Unsaved::save;
    case QMessageBox::Discard:
        return Unsaved::discard;
    default:
        return Unsaved::cancel;
    }
}

bool WidgetFileDialogs::askRecover(const QString& name) {
    QMessageBox box(QMessageBox::Question, tr("Unsaved Work Found"),
                    tr("Unsaved changes of %1 were left behind.").arg(name), QMessageBox::NoButton, _window);
    box.setInformativeText(
        tr("Recover opens them; they are unsaved until you save them. Otherwise they are deleted."));
    QAbstractButton* const recover = box.addButton(tr("&Recover"), QMessageBox::AcceptRole);
    box.addButton(tr("&Delete Them"), QMessageBox::DestructiveRole);
    box.setEscapeButton(recover); // Leaving the question must not cost any work.
    box.exec();
    return box.clickedButton() == recover;
}

void WidgetFileDialogs::showProblem(const QString& title, const QString& reason) {
    QMessageBox box(QMessageBox::Critical, QCoreApplication::applicationName(), title, QMessageBox::Ok,
                    _window);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(reason.toHtmlEscaped());
    box.exec();
}

} // namespace Editor
