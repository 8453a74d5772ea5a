#include "window/FileSession.h"

#include "document/AnimationData.h"
#include "document/AnimationFile.h"
#include "document/Attempt.h"
#include "document/Document.h"
#include "window/FileDialogs.h"
#include "window/RecentFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <boost/property_tree/ptree.hpp>

#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace Editor {

namespace {

AnimationData emptyAnimation() {
    AnimationData data;
    data.animation = std::make_unique<ZT::EditableAnimation>();
    return data;
}

} // namespace

FileSession::FileSession(Document& document, FileDialogs& dialogs, RecentFiles& recent, QObject* parent)
    : QObject(parent)
    , _document(document)
    , _dialogs(dialogs)
    , _recent(recent)
    , _autosave(document) {
    connect(&document, &Document::pathChanged, this, &FileSession::nameChanged);
    connect(&_autosave, &Autosave::failed, this, &FileSession::problem);
}

QString FileSession::name() const {
    if (!_document.path().isEmpty()) {
        return QFileInfo(_document.path()).fileName();
    }
    return _importedName.isEmpty() ? tr("Untitled") : _importedName;
}

QString FileSession::suggestedPath() const {
    if (!_document.path().isEmpty()) {
        return _document.path();
    }
    const QString folder = QFileInfo(_recent.paths().value(0)).absolutePath();
    const QString base =
        _importedName.isEmpty() ? tr("Untitled") : QFileInfo(_importedName).completeBaseName();
    return QDir(folder).filePath(base + QStringLiteral(".xml"));
}

bool FileSession::open(const QString& path) {
    if (!mayLeave()) {
        return false;
    }
    const QString absolute = QFileInfo(path).absoluteFilePath();
    const QString refusal = tr("%1 could not be opened.").arg(QFileInfo(absolute).fileName());
    std::vector<CrashCopy> copies;
    const QString problemThere = attempt([&] {
        if (AnimationFile::isWritable(absolute)) {
            copies = CrashCopy::of(absolute);
        }
    });
    if (!problemThere.isEmpty()) {
        _dialogs.showProblem(refusal, absolute + QStringLiteral(": ") + problemThere);
        return false;
    }
    for (CrashCopy& copy : copies) {
        if (copy.holder() == CrashCopy::Holder::program) {
            Q_EMIT problem(
                tr("Another program has unsaved changes of %1.").arg(QFileInfo(absolute).fileName()));
        }
        if (_ask(copy) == FileDialogs::Recovery::recover && _recover(std::move(copy))) {
            _recent.add(absolute);
            return true;
        }
    }
    AnimationData data;
    if (!_read(absolute, data, refusal)) {
        if (!QFileInfo::exists(absolute)) {
            _recent.remove(absolute);
        }
        return false;
    }
    if (AnimationFile::isWritable(absolute)) {
        _show(std::move(data), absolute);
    } else {
        _show(std::move(data), {}, QFileInfo(absolute).fileName());
        _document.setUnsaved();
    }
    _recent.add(absolute);
    return true;
}

bool FileSession::mayLeave() {
    Q_EMIT aboutToSettle();
    if (!_document.isModified()) {
        return true;
    }
    switch (_dialogs.askUnsaved(name())) {
    case FileDialogs::Unsaved::save:
        return save();
    case FileDialogs::Unsaved::discard:
        return true;
    case FileDialogs::Unsaved::cancel:
        break;
    }
    return false;
}

void FileSession::start(const QString& path) {
    QStringList files = _recent.paths();
    files.prepend(QString());
    if (!path.isEmpty()) {
        open(path); // Offers what belongs to it.
        files.removeAll(QFileInfo(path).absoluteFilePath());
    }
    for (const QString& file : std::as_const(files)) {
        for (CrashCopy& copy : CrashCopy::of(file)) {
            if (_ask(copy) == FileDialogs::Recovery::recover && mayLeave()) {
                _recover(std::move(copy));
            }
        }
    }
}

void FileSession::leave() {
    _autosave.discard();
}

void FileSession::newAnimation() {
    if (mayLeave()) {
        _show(emptyAnimation(), {});
    }
}

void FileSession::openAsked() {
    const QString path = _dialogs.askOpenPath(QFileInfo(suggestedPath()).absolutePath());
    if (!path.isEmpty()) {
        open(path);
    }
}

bool FileSession::save() {
    Q_EMIT aboutToSettle();
    return _document.path().isEmpty() ? saveAs() : _write(_document.path());
}

bool FileSession::saveAs() {
    Q_EMIT aboutToSettle();
    const QString path = _dialogs.askSavePath(suggestedPath());
    return !path.isEmpty() && _write(QFileInfo(path).absoluteFilePath());
}

// Work that a program is busy with is not offered.
FileDialogs::Recovery FileSession::_ask(CrashCopy& copy) {
    if (copy.holder() == CrashCopy::Holder::program) {
        return FileDialogs::Recovery::later;
    }
    const QString name =
        copy.file().isEmpty() ? tr("an untitled animation") : QFileInfo(copy.file()).fileName();
    const bool mayBeInUse = copy.holder() == CrashCopy::Holder::unknown;
    const QDateTime saved = copy.file().isEmpty() ? QDateTime() : QFileInfo(copy.file()).lastModified();
    const auto answer = _dialogs.askRecovery({name, copy.time(), saved, mayBeInUse, copy.host()});
    if (answer == FileDialogs::Recovery::remove && !copy.remove()) {
        _dialogs.showProblem(tr("The unsaved changes of %1 could not be deleted.").arg(name), copy.path());
    }
    return answer;
}

// Whether the unsaved work became the document. It stays where it is if it cannot be read.
bool FileSession::_recover(CrashCopy copy) {
    AnimationData data;
    if (!_read(copy.path(), data, tr("The unsaved changes could not be read. Their file is kept."))) {
        return false;
    }
    _show(std::move(data), copy.file());
    _document.setUnsaved();
    _autosave.adopt(std::move(copy));
    return true;
}

bool FileSession::_read(const QString& from, AnimationData& data, const QString& title) {
    try {
        data = AnimationFile(from).load();
        return true;
    } catch (const std::exception& error) { // Also where memory is short.
        _dialogs.showProblem(title, QString::fromUtf8(error.what()));
        return false;
    }
}

bool FileSession::_write(const QString& path) {
    try {
        AnimationFile(path).save(_document.tree());
    } catch (const std::exception& error) {
        _dialogs.showProblem(tr("%1 could not be saved.").arg(QFileInfo(path).fileName()),
                             QString::fromUtf8(error.what()));
        return false;
    }
    _importedName.clear();
    _document.setSaved(path);
    _recent.add(path);
    Q_EMIT saved();
    return true;
}

void FileSession::_show(AnimationData data, const QString& path, const QString& importedName) {
    _importedName = importedName;
    _document.replace(std::move(data), path);
}

} // namespace Editor
