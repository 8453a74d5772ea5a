#pragma once

#include "floor/FloorTangents.h"

#include <QObject>

#include <cstdint>

namespace Floor {

class FloorCurve;

enum class Type : std::int32_t { constant, linear, bezier, bezierAuto };

struct Record {
    float value = 0.0F;
    Type leftType = Type::bezierAuto;
    Point left;
    Type rightType = Type::bezierAuto;
    Point right;
};

/// A key's data in a QObject with a key's signals. All that is not a signal is public and inline.
class FloorKey : public QObject {
    Q_OBJECT

public:
    explicit FloorKey(const Record& pRecord)
        : record(pRecord) {}

    /// A new value and its signal, if it differs.
    void setValue(float value) {
        if (value != record.value) {
            record.value = value;
            Q_EMIT valueChanged(value);
        }
    }

    /// The automatic handles, and one signal if one of them changed.
    void setAutomaticHandles(const Handles& handles) {
        bool changed = false;
        if (record.leftType == Type::bezierAuto && !isNear(record.left, handles.left)) {
            record.left = handles.left;
            changed = true;
        }
        if (record.rightType == Type::bezierAuto && !isNear(record.right, handles.right)) {
            record.right = handles.right;
            changed = true;
        }
        if (changed) {
            Q_EMIT tangentsChanged();
        }
    }

    bool isAutomatic() const noexcept {
        return record.leftType == Type::bezierAuto || record.rightType == Type::bezierAuto;
    }

    /// The flag, with both types and the alignment of the handles, and one signal.
    void setSmooth(bool on) {
        if (on == smooth) {
            return;
        }
        smooth = on;
        if (on) {
            record.leftType = Type::bezier;
            record.rightType = Type::bezier;
            const Handles aligned = alignedHandles({record.left, record.right});
            record.left = aligned.left;
            record.right = aligned.right;
        }
        Q_EMIT smoothChanged(on);
    }

    /// The handle @p own of a "bezier" tangent, and its signal, if it differs. Not for constrained keys.
    void setHandle(Point& own, Type type, const Point& target) {
        if (type == Type::bezier && (own.x != target.x || own.y != target.y)) {
            own = target;
            Q_EMIT tangentsChanged();
        }
    }

    Record record;
    FloorCurve* curve = nullptr;
    bool smooth = false;
    bool symmetrical = false;

Q_SIGNALS:
    // A key's signals in a key's order: Qt's memory for connections depends on it.
    void valueChanged(float value);
    void tangentsChanged();
    void smoothChanged(bool smooth);
    void symmetricalChanged(bool symmetrical);
    void indexChanged(unsigned int frame);
};

} // namespace Floor
