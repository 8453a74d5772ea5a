#pragma once

#include "floor/FloorCurve.h"
#include "support/Workload.h"

#include <cstddef>
#include <memory>

namespace Floor {

/// The i-th key's record: waveValue(), automatic tangents on both sides.
inline Record recordOf(std::size_t i) {
    Record record;
    record.value = Bench::waveValue(i);
    return record;
}

/// n such records on gapFrame().
inline FloorCurve::Records recordsOf(std::size_t n) {
    FloorCurve::Records records;
    for (std::size_t i = 0; i < n; ++i) {
        records.emplace(Bench::gapFrame(i), std::make_unique<Record>(recordOf(i)));
    }
    return records;
}

} // namespace Floor
