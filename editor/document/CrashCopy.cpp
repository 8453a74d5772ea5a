#include "document/CrashCopy.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QSysInfo>

#include <utility>

namespace Editor {

namespace {

QFileInfo placeOf(const QString& file) {
    const QDir own(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    return QFileInfo(file.isEmpty() ? own.filePath(QStringLiteral("untitled")) : file);
}

// Every place begins so, and goes on with its number and the suffix.
QString beginOf(const QFileInfo& place) {
    return '.' + place.fileName() + QStringLiteral(".unsaved.");
}

QString nameOf(const QFileInfo& place, int number) {
    return beginOf(place) + (number == 1 ? QString() : QString::number(number) + '.') + QStringLiteral("xml");
}

bool isNameOf(const QFileInfo& place, const QString& name) {
    const int number = name.mid(beginOf(place).size()).section('.', 0, 0).toInt();
    return name == nameOf(place, 1) || (number > 1 && name == nameOf(place, number));
}

} // namespace

CrashCopy::CrashCopy(QString file, QString path)
    : _file(std::move(file))
    , _path(std::move(path))
    , _lock(std::make_unique<QLockFile>(_path + QStringLiteral(".lock"))) {
    // Not stale by age: an evening's work may rest. One whose program is gone is free all the same.
    _lock->setStaleLockTime(0);
    if (_lock->tryLock(0) || _lock->error() != QLockFile::LockFailedError) {
        return;
    }
    qint64 id = 0;
    QString program;
    const bool isHere = _lock->getLockInfo(&id, &_host, &program) && _host == QSysInfo::machineHostName();
    _holder = isHere ? Holder::program : Holder::unknown;
    _isOurs = isHere && id == QCoreApplication::applicationPid();
}

CrashCopy CrashCopy::reserve(const QString& file) {
    if (file.isEmpty()) {
        QDir().mkpath(placeOf(file).absolutePath());
    }
    for (int number = 1;; ++number) {
        CrashCopy copy(file, pathOf(file, number));
        // Looked for under the lock: whoever had the place before has written or removed the copy by then.
        if (copy.holder() == Holder::nobody && !QFileInfo::exists(copy.path())) {
            return copy;
        }
    }
}

std::vector<CrashCopy> CrashCopy::of(const QString& file) {
    const QFileInfo place = placeOf(file);
    std::vector<CrashCopy> copies;
    for (const QString& name : place.absoluteDir().entryList(QDir::Files | QDir::Hidden, QDir::Time)) {
        if (!isNameOf(place, name)) {
            continue;
        }
        CrashCopy copy(file, place.absoluteDir().filePath(name));
        if (!copy._isOurs && QFileInfo::exists(copy.path())) {
            copies.push_back(std::move(copy));
        }
    }
    return copies;
}

QString CrashCopy::pathOf(const QString& file, int number) {
    const QFileInfo place = placeOf(file);
    return place.absoluteDir().filePath(nameOf(place, number));
}

QDateTime CrashCopy::time() const {
    return QFileInfo(_path).lastModified();
}

bool CrashCopy::remove() {
    const bool isGone = QFile::remove(_path) || !QFileInfo::exists(_path);
    if (isGone && _holder == Holder::unknown) {
        QFile::remove(_path + QStringLiteral(".lock"));
    }
    return isGone;
}

} // namespace Editor
