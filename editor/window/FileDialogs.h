#pragma once

#include <QString>

namespace Editor {

/// What the user is asked about files.
class FileDialogs {
public:
    /// What to do with unsaved work.
    enum class Unsaved { save, discard, cancel };

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
    /// Whether unsaved work on @p name that a crash left behind is wanted; otherwise it is thrown away.
    virtual bool askRecover(const QString& name) = 0;
    /// @p title says what did not work, @p reason why and where.
    virtual void showProblem(const QString& title, const QString& reason) = 0;
};

} // namespace Editor
