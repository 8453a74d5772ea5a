#include "floor/FloorCurve.h"
#include "memory/MemoryOfCurves.h"
#include "support/Workload.h"

int main() {
    const auto makePlain = [](std::size_t n) {
        Floor::FloorCurve::Records records(n);
        for (std::size_t i = 0; i < n; ++i) {
            records[i].first = Bench::gapFrame(i);
            records[i].second.value = Bench::waveValue(i);
        }
        return records;
    };
    std::cout << "{\n";
    Memory::printMemoryOfCurves(makePlain, [](const Floor::FloorCurve::Records& records) {
        return std::make_unique<Floor::FloorCurve>(records);
    });
    std::cout << "\n}\n";
}
