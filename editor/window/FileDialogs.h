#pragma once

#include <QDateTime>
#include <QString>

namespace Editor {

/// What the user is asked about files.
class FileDialogs {
public:
    /// What to do with unsaved work.
    enum class Unsaved { save, discard, cancel };
    /// What to do with unsaved work that another program left behind.
    enum class Recovery { recover, remove, later };
    /// What a user decides that by.
    struct LeftBehind {
        QString name;            ///< of what the work is on
        QDateTime written;       ///< when the work was written last
        QDateTime saved;         ///< when the file was; invalid where there is none
        bool mayBeInUse = false; ///< by a program of which nobody here can tell whether it runs
        QString host;            ///< the machine of that program, as far as it is known
    };

    FileDialogs() = default;
    FileDialogs(const FileDialogs&) = delete;
    FileDialogs& operator=(const FileDialogs&) = delete;
    virtual ~FileDialogs() = default;

    /// Which file to open, beginning in the folder of @p near; empty when the user wants none.
    virtual QString askOpenPath(const QString& near) = 0;
    /// Where to save, with @p suggestion filled in; empty when the user does not want to.
    virtual QString askSavePath(const QString& suggestion) = 0;
    /// Where a picture (.png or .svg) goes; empty when the user does not want one.
    virtual QString askPicturePath(const QString& suggestion) = 0;
    /// @p name is the document's.
    virtual Unsaved askUnsaved(const QString& name) = 0;
    /// Whoever gives no answer decides later, which changes nothing.
    virtual Recovery askRecovery(const LeftBehind& work) = 0;
    /// @p title says what did not work, @p reason why and where.
    virtual void showProblem(const QString& title, const QString& reason) = 0;
};

} // namespace Editor
