#include "library/LibraryCurve.h"
#include "library/LibraryOperations.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

/// Reads something of a curve's middle key oneKeyRepetitions times.
template <class Read>
void addLookupRow(const char* name, Read read) {
    Bench::addOneKeyRow(name, [=](const Bench::Setting& setting) {
        const auto subject = std::make_shared<Bench::LibraryCurve>(setting);
        const auto readOften = [=] {
            const Bench::Key* key = subject->middleKey();
            for (std::size_t i = 0; i < Bench::oneKeyRepetitions; ++i) {
                benchmark::DoNotOptimize(key);
                benchmark::DoNotOptimize(read(subject->curve, key));
            }
        };
        return Bench::Operation{readOften};
    });
}

} // namespace

int main(int argc, char** argv) {
    using Bench::Curve;
    using Bench::Key;
    const Bench::LibraryCurveOperations curveOperations;
    const Bench::LibraryOneKeyOperations oneKeyOperations;
    Bench::addCurveRows(curveOperations);
    Bench::addOneKeyRows(oneKeyOperations);
    addLookupRow("getIndexOf", [](const Curve& curve, const Key* key) { return curve.getIndexOf(key); });
    addLookupRow("getPreviousKey",
                 [](const Curve& curve, const Key* key) { return curve.getPreviousKey(key); });
    addLookupRow("ZT::index", [](const Curve&, const Key* key) { return ZT::index(key); });
    return Bench::runRows(argc, argv);
}
