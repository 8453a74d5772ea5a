#pragma once

#include "model/EditableMotionCurve.h"

#include <QUndoCommand>

/// A command of one's own, beside the library's: scales the values of a curve's keys.
///
/// What undo needs is captured when the command is built, not computed back: 1 / factor would not give the
/// same bits, and a factor of 0 nothing at all.
class ScaleValuesCommand : public QUndoCommand {
public:
    /// Captures all keys that @p curve holds.
    ScaleValuesCommand(ZT::EditableMotionCurve& curve, float factor)
        : _curve(curve)
        , _factor(static_cast<double>(factor)) {
        for (const auto& [frame, key] : curve) {
            _before.insert(key, QPointF(frame, static_cast<double>(key->getValue())));
        }
        setText(QStringLiteral("Scale values"));
    }

    /// From the captured values, so that doing it again never scales twice.
    void redo() override {
        ZT::EditableMotionCurve::KeyPosMap scaled;
        for (auto entry = _before.cbegin(); entry != _before.cend(); ++entry) {
            scaled.insert(entry.key(), QPointF(entry->x(), entry->y() * _factor));
        }
        _move(scaled);
    }

    /// Puts frames and values back where they were captured.
    void undo() override { _move(_before); }

private:
    // One bulk edit: however many keys, views hear keysChanged() once.
    void _move(const ZT::EditableMotionCurve::KeyPosMap& positions) {
        if (!positions.isEmpty()) {
            _curve.moveKeys(positions);
        }
    }

    ZT::EditableMotionCurve& _curve; ///< outlives the history
    ZT::EditableMotionCurve::KeyPosMap _before;
    double _factor;
};
