#pragma once

#include "commands/MoveCurveKeysCommand.h"

#include <QPointF>
#include <QUndoStack>
#include <QVector>

/// A drag of keys with the mouse, from press to release, as one entry of a history.
class KeyDrag {
public:
    /// What is dragged; its curve owns it.
    using Key = ZT::EditableMotionCurveKey;

    /// @p history owns the commands and outlives the drag.
    explicit KeyDrag(QUndoStack& history)
        : _history(history) {}

    /// Notes where the keys stand.
    void press(const QVector<Key*>& keys) {
        for (Key* const key : keys) {
            _origins.insert(key, QPointF(ZT::index(key), static_cast<double>(key->getValue())));
        }
    }

    /// @p distance is that from where the mouse was pressed: frames, value units.
    void move(const QPointF& distance) { _push(distance, false); }

    /// The final step closes the entry: the next drag of the same keys begins another one.
    void release(const QPointF& distance) {
        _push(distance, true);
        _origins.clear();
    }

private:
    void _push(const QPointF& distance, bool isFinal) {
        ZT::AnimCmd::MoveCurveKeysCommand::KeyPosMap targets;
        for (auto origin = _origins.cbegin(); origin != _origins.cend(); ++origin) {
            targets.insert(origin.key(), origin.value() + distance);
        }
        if (!targets.isEmpty()) { // moveKeys() of nothing would leave the batch open.
            _history.push(new ZT::AnimCmd::MoveCurveKeysCommand(targets, isFinal));
        }
    }

    QUndoStack& _history;
    QMap<Key*, QPointF> _origins;
};
