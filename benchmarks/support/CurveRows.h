#pragma once

#include "support/Measurement.h"
#include "support/Workload.h"

namespace Bench {

/// The operations on a whole curve that floor and library are compared by. Each builds a fresh curve of the
/// setting's size, with keys on gapFrame() unless it says otherwise, and waveValue()s, automatic tangents on
/// both sides.
class CurveOperations {
public:
    virtual ~CurveOperations() = default;

    /// There: a plain curve is wrapped. Back: it is destroyed.
    virtual Operation wrapping(const Setting& setting) const = 0;
    /// There: new keys are inserted one by one in ascending frames. Back: the curve is destroyed.
    virtual Operation building(const Setting& setting) const = 0;

    /// All keys by one frame and by 0.5 in value.
    virtual Operation movingByOneFrame(const Setting& setting) const = 0;
    /// All keys by a quarter of a frame, which is no frame, and by 0.5 in value.
    virtual Operation movingByAQuarterFrame(const Setting& setting) const = 0;
    /// Every tenth key by one frame and by 0.5 in value.
    virtual Operation movingATenth(const Setting& setting) const = 0;
    /// All keys from denseFrame() to twice their frame, and by 0.5 in value.
    virtual Operation stretching(const Setting& setting) const = 0;
    /// All keys by one frame, all leaving their places before any is placed; signals in order of address.
    virtual Operation reorganizing(const Setting& setting) const = 0;
    /// There: all keys leave the curve. Back: they enter it.
    virtual Operation releasing(const Setting& setting) const = 0;

    /// There: on. Back: off.
    virtual Operation smoothing(const Setting& setting) const = 0;
    /// There: "bezier" on both sides. Back: "bezier auto".
    virtual Operation changingTypes(const Setting& setting) const = 0;
    /// The right handles of "bezier" keys.
    virtual Operation movingTangents(const Setting& setting) const = 0;
    /// Both handles of "bezier" keys, with types and flags that are what they shall be.
    virtual Operation restoring(const Setting& setting) const = 0;
};

void addCurveRows(const CurveOperations& operations);

/// Edits of the key in the middle of a curve, oneKeyRepetitions times.
class OneKeyOperations {
public:
    virtual ~OneKeyOperations() = default;

    virtual Operation settingTheValue(const Setting& setting) const = 0;
    /// Into the gap behind the key, and back.
    virtual Operation translating(const Setting& setting) const = 0;
};

void addOneKeyRows(const OneKeyOperations& operations);
/// A row "one key, name" for each size.
void addOneKeyRow(const std::string& name, const std::function<Operation(const Setting&)>& make);

/// Steps of a drag of all keys, by one frame and 0.05 in value each.
class DragOperations {
public:
    static constexpr std::size_t stepsOfADrag = 20;

    virtual ~DragOperations() = default;

    /// There: the next step. Before the first step of the next drag all is as it was before this one.
    virtual Operation dragging(const Setting& setting) const = 0;
    /// The same with one more receiver of each key's valueChanged() and indexChanged().
    virtual Operation draggingHeardKeys(const Setting& setting) const = 0;
};

void addDragRows(const DragOperations& operations);

} // namespace Bench
