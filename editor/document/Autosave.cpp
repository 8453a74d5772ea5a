#include "document/Autosave.h"

#include "document/AnimationFile.h"
#include "document/Document.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <boost/property_tree/ptree.hpp>

#include <stdexcept>
#include <utility>

namespace Editor {

namespace {

// Not stale by age: an evening's work may rest. One whose program is gone is free all the same.
std::unique_ptr<QLockFile> lockOf(const QString& copy) {
    auto lock = std::make_unique<QLockFile>(copy + ".lock");
    lock->setStaleLockTime(0);
    return lock;
}

} // namespace

Autosave::Autosave(Document& document)
    : _document(document) {
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, &Autosave::write);
    connect(&document.history(), &QUndoStack::indexChanged, this, &Autosave::_follow);
    connect(&document, &Document::pathChanged, this, &Autosave::_follow);
}

Autosave::~Autosave() {
    _drop();
}

QString Autosave::copyOf(const QString& path) {
    if (path.isEmpty()) {
        return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation))
            .filePath("unsaved.xml");
    }
    const QFileInfo file(path);
    return file.absoluteDir().filePath('.' + file.fileName() + ".unsaved.xml");
}

bool Autosave::isLeftBehind(const QString& path) {
    const QString copy = copyOf(path);
    if (!QFile::exists(copy)) {
        return false;
    }
    const auto lock = lockOf(copy);
    return lock->tryLock(0) || lock->error() != QLockFile::LockFailedError;
}

void Autosave::write() {
    _timer.stop();
    _waiting.invalidate();
    if (!_document.isModified()) {
        return;
    }
    const QString copy = copyOf(_document.path());
    try {
        if (copy != _copy) {
            QDir().mkpath(QFileInfo(copy).absolutePath());
            if (!_lockFor(copy)) {
                throw std::runtime_error(
                    tr("%1: another program edits the same animation").arg(copy).toStdString());
            }
        }
        AnimationFile(copy).save(_document.tree());
        _copy = copy;
        _hasFailed = false;
    } catch (const std::runtime_error& error) {
        if (!std::exchange(_hasFailed, true)) {
            Q_EMIT failed(QString::fromUtf8(error.what()));
        }
    }
}

// The old copy goes before the new one is begun: the work is in the file that was just saved under the new
// path, or in memory as it is right after an edit.
bool Autosave::_lockFor(const QString& copy) {
    _drop();
    auto lock = lockOf(copy);
    if (!lock->tryLock(0) && lock->error() == QLockFile::LockFailedError) {
        return false;
    }
    _lock = std::move(lock);
    return true;
}

void Autosave::discard() {
    _drop();
    if (isLeftBehind(_document.path())) {
        QFile::remove(copyOf(_document.path()));
    }
}

void Autosave::_drop() {
    _timer.stop();
    _waiting.invalidate();
    if (!_copy.isEmpty()) {
        QFile::remove(std::exchange(_copy, QString()));
    }
    _lock.reset(); // Last: whoever gets the lock finds no copy.
}

void Autosave::_follow() {
    if (!_document.isModified()) {
        _drop();
        return;
    }
    if (!_waiting.isValid()) {
        _waiting.start();
    }
    if (!_timer.isActive() || _waiting.elapsed() < longestDelay - delay) {
        _timer.start(delay);
    }
}

} // namespace Editor
