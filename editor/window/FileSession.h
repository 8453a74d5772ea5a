#pragma once

#include "document/Autosave.h"
#include "window/FileDialogs.h"

#include <QObject>
#include <QString>

namespace Editor {

class Document;
class RecentFiles;
struct AnimationData;

/// The way of a document from and to files. The open document stays until another one was read completely;
/// unsaved work is never dropped without asking.
class FileSession : public QObject {
    Q_OBJECT

public:
    /// All must outlive the session.
    FileSession(Document& document, FileDialogs& dialogs, RecentFiles& recent, QObject* parent = nullptr);

    /// What the document is called in titles: its file's name, or that of the file that it was imported from.
    QString name() const;
    /// Where Save As begins.
    QString suggestedPath() const;

    /// Opens an animation or imports another kind of file, unless unsaved work keeps the user from it. False
    /// when the document is the same as before. Imports have no path and are unsaved. Unsaved work on the
    /// file that was left behind is offered before.
    bool open(const QString& path);
    /// Whether the document may be left: it is saved, was saved now, or is not wanted.
    bool mayLeave();
    /// After the program's start: opens @p path, if it is not empty, then offers one after the other all
    /// unsaved work that programs which do not run any more left behind, of documents without file and of
    /// recent files.
    void start(const QString& path);
    /// The document is left for good: the copy of work that is not wanted goes.
    void leave();

public Q_SLOTS:
    void newAnimation();
    /// Asks which file.
    void openAsked();
    /// False when the document was not saved.
    bool save();
    /// Asks where.
    bool saveAs();
    /// No copy for a crash is written while a gesture is under way.
    void setGestureActive(bool isActive) { _autosave.setGestureActive(isActive); }

Q_SIGNALS:
    /// The document is saved next, or asked whether it is: what is being typed belongs to it.
    void aboutToSettle();
    /// name() may be another one.
    void nameChanged();
    /// The document is saved under its path now.
    void saved();
    /// There is a problem that needs no answer.
    void problem(const QString& what);

private:
    FileDialogs::Recovery _ask(CrashCopy& copy);
    bool _recover(CrashCopy copy);
    bool _read(const QString& from, AnimationData& data, const QString& title);
    bool _write(const QString& path);
    void _show(AnimationData data, const QString& path, const QString& importedName = {});

    Document& _document;
    FileDialogs& _dialogs;
    RecentFiles& _recent;
    Autosave _autosave;
    QString _importedName; ///< of the file that the document was imported from; empty otherwise
};

} // namespace Editor
