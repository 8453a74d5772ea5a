#pragma once

#include "document/Autosave.h"

#include <QObject>
#include <QString>

namespace Editor {

class Document;
class FileDialogs;
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
    /// when the document is the same as before. Imports have no path and are unsaved.
    bool open(const QString& path);
    /// Whether the document may be left: it is saved, was saved now, or is not wanted.
    bool mayLeave();
    /// After the start: offers what a crash left behind of a document that had no file.
    void offerRecovery();
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

Q_SIGNALS:
    /// name() may be another one.
    void nameChanged();
    /// The document is saved under its path now.
    void saved();
    /// There is a problem that needs no answer.
    void problem(const QString& what);

private:
    bool _recover(const QString& path);
    bool _read(const QString& from, AnimationData& data);
    bool _write(const QString& path);
    void _show(AnimationData data, const QString& path, const QString& importedName = {});

    Document& _document;
    FileDialogs& _dialogs;
    RecentFiles& _recent;
    Autosave _autosave;
    QString _importedName; ///< of the file that the document was imported from; empty otherwise
};

} // namespace Editor
