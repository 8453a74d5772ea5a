#pragma once

#include "model/EditableAnimation.h"
#include "model/EditableMotionCurve.h"

#include <QObject>
#include <QString>
#include <QUndoStack>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

/// An editor's session on one animation: a realistic edit with each undo command, drags as twenty steps that
/// merge into one entry of the history.
///
/// Each edit looks for a layer that gives it room, starting behind the layer of the edit before; where no
/// layer does, the edit is left out and the history says why. What an undo command must be given is in the
/// edit's own function.
class EditSession {
public:
    struct Entry {
        QString text;  ///< as the user would see it, or why the edit was left out
        int steps = 0; ///< commands that were pushed; 0 for an edit that was left out
        std::size_t keysTouched = 0;
        int signalsReceived = 0; ///< at the animation, while the edit was made
    };

    /// The session edits @p animation, which must outlive it: the history holds keys and curves of it.
    explicit EditSession(ZT::EditableAnimation& animation);

    /// Makes all edits. Throws std::logic_error when a drag does not end as one entry of the history or a
    /// range command could not place a key.
    void play();

    /// Both throw std::logic_error when a range command could not place a key.
    void undoAll();
    void redoAll();

    const std::vector<Entry>& history() const noexcept { return _history; }
    int undoCount() const { return _stack.count(); }

private:
    using Key = ZT::EditableMotionCurveKey;
    using Curve = ZT::EditableMotionCurve;

    void _addKeys();
    void _replaceKeys();
    void _changeInterpolationType();
    void _changeTangentParameters();
    void _changeSmoothness();
    void _changeSymmetry();
    void _dragTangent();
    void _dragKeys();
    void _removeKeys();
    void _changeRange();
    void _dragRange();
    void _stretchRange();

    Curve* _nextCurve(const std::function<bool(Curve&)>& hasRoom);
    Curve::KeysIndexMap _allKeys() const;
    bool _hasRoomForRanges() const;

    void _edit(const std::function<void()>& push);
    void _drag(const std::function<QUndoCommand*(int step, bool isLast)>& makeStep);
    void _record(int steps, const std::function<void()>& push);
    void _leaveOut(const char* edit, const char* reason);
    void _checkPlacedKeys() const;

    ZT::EditableAnimation& _animation;
    QUndoStack _stack;
    QObject _listener; ///< ends the connections with the session
    std::vector<Entry> _history;
    std::size_t _nextLayer = 0;
    int _signalsReceived = 0;
};
