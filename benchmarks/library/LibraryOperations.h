#pragma once

#include "support/CurveRows.h"

namespace Bench {

/// The operations of the rows, done by an editable curve.
class LibraryCurveOperations : public CurveOperations {
public:
    Operation wrapping(const Setting& setting) const override;
    Operation building(const Setting& setting) const override;
    Operation movingByOneFrame(const Setting& setting) const override;
    Operation movingByAQuarterFrame(const Setting& setting) const override;
    Operation movingATenth(const Setting& setting) const override;
    Operation stretching(const Setting& setting) const override;
    Operation reorganizing(const Setting& setting) const override;
    Operation releasing(const Setting& setting) const override;
    Operation smoothing(const Setting& setting) const override;
    Operation changingTypes(const Setting& setting) const override;
    Operation movingTangents(const Setting& setting) const override;
    Operation restoring(const Setting& setting) const override;
};

class LibraryOneKeyOperations : public OneKeyOperations {
public:
    Operation settingTheValue(const Setting& setting) const override;
    Operation translating(const Setting& setting) const override;
};

} // namespace Bench
