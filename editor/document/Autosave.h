#pragma once

#include <QElapsedTimer>
#include <QLockFile>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace Editor {

class Document;

/// Keeps a copy of unsaved work beside the document's file, or among the program's own data for one that has
/// no file yet, written shortly after the last of some edits. The copy is there exactly while there is
/// unsaved work, so that after a crash it is found and offered. It can be read as AnimationFile.
///
/// A lock beside the copy tells the work of a program that still runs from what one that died has left. Two
/// programs that edit one file share one copy: the second one says that it cannot write it.
class Autosave : public QObject {
    Q_OBJECT

public:
    static constexpr int delay = 1000;         ///< milliseconds from an edit to the copy
    static constexpr int longestDelay = 10000; ///< milliseconds, where edits follow upon each other

    /// The document outlives it.
    explicit Autosave(Document& document);
    /// The copy is gone where the document was left orderly.
    ~Autosave() override;

    /// Where the copy of a file is; with an empty path that of a document without file.
    static QString copyOf(const QString& path);
    /// Whether unsaved work on the file was left behind by a program that does not run any more.
    static bool isLeftBehind(const QString& path);

    /// The copy at once, where there is unsaved work. Emits failed() where that is not possible.
    void write();
    /// The copy is not wanted any more, nor one of the document's path that was left behind.
    void discard();

Q_SIGNALS:
    /// The copy could not be written; said once until it can be again.
    void failed(const QString& why);

private:
    void _follow();
    bool _lockFor(const QString& copy);
    void _drop();

    Document& _document;
    QTimer _timer;
    QElapsedTimer _waiting;           ///< since the first edit that no copy has
    QString _copy;                    ///< as it was last written; empty while there is none
    std::unique_ptr<QLockFile> _lock; ///< of _copy
    bool _hasFailed = false;
};

} // namespace Editor
