#pragma once

#include "memory/HeapCounter.h"
#include "support/Workload.h"

#include <array>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <memory>
#include <vector>

namespace Memory {

/// Prints the members "heap bytes per key" and "resident bytes per key" of a JSON object, each with one
/// figure for each number of keys. @p makePlain(n) gives what a curve is wrapped from, @p wrap the curve.
///
/// Nothing is freed in between, so that each curve stands in memory that nobody had before.
template <class MakePlain, class Wrap>
void printMemoryOfCurves(MakePlain makePlain, Wrap wrap) {
    constexpr auto sizes = Bench::usualSizes;
    std::vector<decltype(makePlain(std::size_t{}))> plains;
    plains.reserve(sizes.size());
    for (const std::size_t n : sizes) {
        plains.push_back(makePlain(n));
    }
    wrap(makePlain(1)); // What the first curve sets up for all others is not its own.

    std::vector<decltype(wrap(plains.front()))> curves;
    curves.reserve(sizes.size());
    std::array<double, sizes.size()> heap{};
    std::array<double, sizes.size()> resident{};
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const std::size_t heapBefore = heapBytes();
        const std::size_t residentBefore = residentBytes();
        curves.push_back(wrap(plains[i]));
        heap[i] = static_cast<double>(heapBytes() - heapBefore) / static_cast<double>(sizes[i]);
        resident[i] = static_cast<double>(residentBytes() - residentBefore) / static_cast<double>(sizes[i]);
    }
    const auto print = [&](const char* name, const std::array<double, sizes.size()>& figures) {
        std::cout << "  \"" << name << "\": {" << std::fixed << std::setprecision(1);
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            std::cout << (i == 0 ? "" : ", ") << '"' << sizes[i] << "\": " << figures[i];
        }
        std::cout << '}';
    };
    print("heap bytes per key", heap);
    std::cout << ",\n";
    print("resident bytes per key", resident);
}

} // namespace Memory
