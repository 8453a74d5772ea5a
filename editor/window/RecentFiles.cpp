#include "window/RecentFiles.h"

#include <QFileInfo>

namespace Editor {

namespace {

constexpr const char* name = "recentFiles";

} // namespace

RecentFiles::RecentFiles(QSettings& store)
    : _store(store) {}

QStringList RecentFiles::paths() const {
    return _store.value(name).toStringList().mid(0, most);
}

void RecentFiles::add(const QString& path) {
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList all = paths();
    all.removeAll(absolute);
    all.prepend(absolute);
    _set(all.mid(0, most));
}

void RecentFiles::remove(const QString& path) {
    QStringList all = paths();
    if (all.removeAll(QFileInfo(path).absoluteFilePath()) > 0) {
        _set(all);
    }
}

void RecentFiles::_set(const QStringList& paths) {
    _store.setValue(name, paths);
    Q_EMIT changed();
}

} // namespace Editor
