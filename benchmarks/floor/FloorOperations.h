#pragma once

#include "support/CurveRows.h"

namespace Floor {

/// The operations of the rows, done by a FloorCurve.
class FloorCurveOperations : public Bench::CurveOperations {
public:
    Bench::Operation wrapping(const Bench::Setting& setting) const override;
    Bench::Operation building(const Bench::Setting& setting) const override;
    Bench::Operation movingByOneFrame(const Bench::Setting& setting) const override;
    Bench::Operation movingByAQuarterFrame(const Bench::Setting& setting) const override;
    Bench::Operation movingATenth(const Bench::Setting& setting) const override;
    Bench::Operation stretching(const Bench::Setting& setting) const override;
    Bench::Operation reorganizing(const Bench::Setting& setting) const override;
    Bench::Operation releasing(const Bench::Setting& setting) const override;
    Bench::Operation smoothing(const Bench::Setting& setting) const override;
    Bench::Operation changingTypes(const Bench::Setting& setting) const override;
    Bench::Operation movingTangents(const Bench::Setting& setting) const override;
    Bench::Operation restoring(const Bench::Setting& setting) const override;
};

class FloorOneKeyOperations : public Bench::OneKeyOperations {
public:
    Bench::Operation settingTheValue(const Bench::Setting& setting) const override;
    Bench::Operation translating(const Bench::Setting& setting) const override;
};

class FloorDragOperations : public Bench::DragOperations {
public:
    Bench::Operation dragging(const Bench::Setting& setting) const override;
    Bench::Operation draggingHeardKeys(const Bench::Setting& setting) const override;
};

} // namespace Floor
