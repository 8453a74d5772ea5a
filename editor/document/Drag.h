#pragma once

#include <QObject>
#include <QPointF>
#include <QString>

#include <memory>

namespace Editor {

class Document;
class DragEntry;
class DragKind;

/// Turns one gesture, from press to release, into one entry of the history. Curve view, timeline and arrow
/// keys share it.
///
/// Nothing is lost: a step that would push keys out of a curve, or in which a key that stays blocks one that
/// moves, is taken back. Keys then wait where the last good step had put them, and blocked() says why.
///
/// A drag ends, as if finished, when anything else changes the history or the animation is saved, and is
/// forgotten when the animation is replaced.
class Drag : public QObject {
    Q_OBJECT

public:
    explicit Drag(Document& document);
    ~Drag() override;

    bool isActive() const noexcept { return _kind != nullptr; }

    /// Finishes a drag that is under way.
    void begin(std::unique_ptr<DragKind> kind);

    /// One mouse move, to @p distance from where the drag began: x in frames, rounded to whole ones for all
    /// but handles, y in value units. Nothing happens where a part of it is not finite.
    void moveTo(const QPointF& distance);

    /// The last step becomes final. A drag that has moved nothing leaves no entry.
    void finish();
    /// Gives back what was there when the drag began and leaves no entry.
    void cancel();

Q_SIGNALS:
    /// A step was taken back; the text says why. Empty when a later step went through.
    void blocked(const QString& why);
    /// A drag began, was finished or cancelled.
    void activeChanged(bool isActive);

private:
    void _step(const QPointF& distance, bool isFinal);
    void _takeStepBack();
    bool _isWhereItWasLast(const QPointF& distance) const;
    void _leave();
    void _forget();

    Document& _document;
    std::unique_ptr<DragKind> _kind; ///< null when no drag is under way
    DragEntry* _entry = nullptr; ///< in the history, which owns it; null where the drag has changed nothing
    QPointF _lastGood;
    int _number = 0; ///< of the drag
    bool _isBlocked = false;
    bool _isWriting = false; ///< the history changes by this drag's doing
};

} // namespace Editor
