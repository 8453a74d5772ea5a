#pragma once

#include <QObject>
#include <QSettings>
#include <QStringList>

namespace Editor {

/// The files that were opened or saved last, the latest one first.
class RecentFiles : public QObject {
    Q_OBJECT

public:
    static constexpr int most = 8;

    /// @p store must outlive the list.
    explicit RecentFiles(QSettings& store);

    /// Absolute paths.
    QStringList paths() const;
    /// Puts the file in front. Emits changed().
    void add(const QString& path);
    /// Emits changed() if the file was in the list.
    void remove(const QString& path);

Q_SIGNALS:
    void changed();

private:
    void _set(const QStringList& paths);

    QSettings& _store;
};

} // namespace Editor
