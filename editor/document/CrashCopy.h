#pragma once

#include <QDateTime>
#include <QLockFile>
#include <QString>

#include <memory>
#include <vector>

namespace Editor {

/// A file that holds unsaved work, in a place of its own: beside the file that the work is on, or among the
/// program's own data for work on no file yet. It can be read as AnimationFile.
///
/// A lock beside it tells the work of a program that runs from what one that died has left. Each document of
/// each program has a place of its own, in which nothing stood before, so that no copy is ever overwritten by
/// another one's. Copies can be moved, not copied.
class CrashCopy {
public:
    /// Who has the lock.
    enum class Holder {
        nobody,  ///< but for this object, where the place can be locked at all
        program, ///< runs on this machine
        unknown, ///< on another machine, or what the lock says cannot be read: it may run or not
    };

    /// A place without a copy, locked. @p file is the file's path; empty for work on no file. Makes the
    /// folder of the program's own data, no other one.
    static CrashCopy reserve(const QString& file);
    /// What stands beside @p file, or among the program's data for an empty path, by other programs than this
    /// one. O(files in the folder).
    static std::vector<CrashCopy> of(const QString& file);
    /// The place with that number, from 1 on.
    static QString pathOf(const QString& file, int number = 1);

    /// Where the copy is.
    QString path() const { return _path; }
    /// The file that the work is on; empty where it is on none.
    QString file() const { return _file; }
    Holder holder() const { return _holder; }
    /// The machine of a holder that is unknown; empty where the lock does not say.
    QString host() const { return _host; }
    /// When it was written last.
    QDateTime time() const;

    /// Deletes the copy, and the lock of a holder that is unknown. False where the copy is still there.
    bool remove();

private:
    CrashCopy(QString file, QString path);

    QString _file;
    QString _path;
    std::unique_ptr<QLockFile> _lock;
    Holder _holder = Holder::nobody;
    bool _isOurs = false; ///< another object of this program has the lock
    QString _host;
};

} // namespace Editor
