#pragma once

#include "document/CrashCopy.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <optional>

namespace Editor {

class Document;

/// Keeps a CrashCopy of unsaved work, written shortly after the last of some edits. The copy is there while
/// there is unsaved work, and goes when that is saved, undone, replaced or discarded: after a crash it is
/// found and offered.
class Autosave : public QObject {
    Q_OBJECT

public:
    static constexpr int delay = 1000; ///< milliseconds from an edit to the copy
    /// Milliseconds at most from an edit, or from a copy that failed, to the next copy: where edits follow
    /// upon each other, and where gestures do. Only a gesture that lasts longer is waited for.
    static constexpr int longestDelay = 10000;

    /// The document outlives it.
    explicit Autosave(Document& document);
    /// The copy of work that was neither saved nor discarded stays.
    ~Autosave() override;

    /// The copy at once, where there is unsaved work. Emits failed() where that is not possible.
    void write();
    /// The copy becomes that of the document, which holds the same: it goes when the work is safe. One that
    /// may be another program's stays as it is, and the document gets one of its own.
    void adopt(CrashCopy copy);
    /// The copy is not wanted any more.
    void discard();

public Q_SLOTS:
    /// While a gesture is under way no copy is written, since that takes time; the copy comes shortly after
    /// it.
    void setGestureActive(bool isActive);

Q_SIGNALS:
    /// The copy could not be written; said once until it can be again.
    void failed(const QString& why);

private:
    void _follow();
    void _start();
    void _write();

    Document& _document;
    QTimer _timer;
    QElapsedTimer _waiting; ///< since the first edit that no copy has, or since a copy failed; invalid while
                            ///< all have one
    std::optional<CrashCopy> _copy; ///< locked; nothing while no work is unsaved
    bool _isGestureActive = false;
    bool _hasFailed = false;
};

} // namespace Editor
