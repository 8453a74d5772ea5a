#pragma once

#include <QObject>
#include <QPointF>
#include <QString>

#include <memory>

class QUndoCommand;

namespace Editor {

class Document;
class DragKind;
class HistoryEntry;

/// Turns one gesture, from press to release, into one entry of the history. Curve view, timeline and arrow
/// keys share it.
///
/// Nothing is lost: a step that would push keys out of a curve, or in which a key that stays blocks one that
/// moves, is taken back. Keys then wait where the last good step had put them, and blocked() says why. What
/// was undone before the drag can be redone until the drag is finished.
///
/// What slots throw is thrown when all is in order. A step in which they throw is taken back as well; the
/// drag goes on from the last good one. finish() and cancel() end the drag in any case.
///
/// A drag finishes by itself before anything else changes the history, before what was saved becomes the
/// clean state, and before the animation is replaced.
class Drag : public QObject {
    Q_OBJECT

public:
    /// The document outlives it.
    explicit Drag(Document& document);
    /// Finishes a drag that is under way; says nothing, since who listened may be gone.
    ~Drag() override;

    bool isActive() const noexcept { return _kind != nullptr; }

    /// Finishes a drag that is under way. Where this throws, none is.
    void begin(std::unique_ptr<DragKind> kind);

    /// One mouse move, to @p distance from where the drag began: x in frames, rounded to whole ones for all
    /// but handles, y in value units. Nothing happens where it leads to the same place as the move before, or
    /// where a part of it is not finite.
    void moveTo(const QPointF& distance);

    /// The drag becomes an entry. A drag that has moved nothing leaves none.
    void finish();
    /// Gives back what was there when the drag began; the history is as it was.
    void cancel();

Q_SIGNALS:
    /// A step was taken back; the text says why. Empty when a later step went through.
    void blocked(const QString& why);
    /// A drag began, was finished or cancelled. An entry comes into the history right after this.
    void activeChanged(bool isActive);

private:
    void _step(const QPointF& distance);
    QString _add(std::unique_ptr<QUndoCommand> command);
    void _takeBack();
    void _say(const QString& why);
    void _forget();

    Document& _document;
    std::unique_ptr<DragKind> _kind;      ///< null when no drag is under way
    std::unique_ptr<HistoryEntry> _entry; ///< outside the history; null where the drag has changed nothing
    QPointF _tried;                       ///< where the last move led to, or would have without a block
    QPointF _lastGood;
    bool _isBlocked = false;
};

} // namespace Editor
