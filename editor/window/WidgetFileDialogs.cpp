#include "window/WidgetFileDialogs.h"

#include <QFileDialog>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>

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
    box.setTextFormat(Qt::PlainText);
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

FileDialogs::Recovery WidgetFileDialogs::askRecovery(const LeftBehind& work) {
    const auto show = [](const QDateTime& time) {
        return QLocale().toString(time.toLocalTime(), QLocale::LongFormat);
    };
    QStringList lines{tr("The changes were written on %1.").arg(show(work.written))};
    if (work.saved.isValid()) {
        lines.append(tr("The file was saved on %1.").arg(show(work.saved)));
    }
    if (work.mayBeInUse) {
        lines.append(work.host.isEmpty()
                         ? tr("The program that wrote them may still be running.")
                         : tr("They belong to a program on %1, which may still be running.").arg(work.host));
    }
    lines.append(tr("Recover opens them; they are unsaved until you save them."));
    QMessageBox box(QMessageBox::Question, tr("Unsaved Work Found"),
                    tr("Unsaved changes of %1 were left behind.").arg(work.name), QMessageBox::NoButton,
                    _window);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Qt::convertFromPlainText(lines.join('\n')));
    QPushButton* const recover = box.addButton(tr("&Recover"), QMessageBox::AcceptRole);
    const QAbstractButton* const remove = box.addButton(tr("&Delete Them"), QMessageBox::DestructiveRole);
    QPushButton* const later = box.addButton(tr("Decide &Later"), QMessageBox::RejectRole);
    box.setDefaultButton(recover);
    box.setEscapeButton(later);
    box.exec();
    if (box.clickedButton() == recover) {
        return Recovery::recover;
    }
    return box.clickedButton() == remove ? Recovery::remove : Recovery::later;
}

void WidgetFileDialogs::showProblem(const QString& title, const QString& reason) {
    QMessageBox box(QMessageBox::Critical, QCoreApplication::applicationName(), title, QMessageBox::Ok,
                    _window);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Qt::convertFromPlainText(reason)); // It knows no plain text.
    box.exec();
}

} // namespace Editor
