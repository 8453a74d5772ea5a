#include "floor/FloorCurve.h"
#include "memory/MemoryOfCurves.h"
#include "support/Workload.h"

int main() {
    const auto makePlain = [](std::size_t n) {
        Floor::FloorCurve::Records records;
        for (std::size_t i = 0; i < n; ++i) {
            auto record = std::make_unique<Floor::Record>();
            record->value = Bench::waveValue(i);
            records.emplace(Bench::gapFrame(i), std::move(record));
        }
        return records;
    };
    std::cout << "{\n";
    Memory::printMemoryOfCurves(makePlain, [](const Floor::FloorCurve::Records& records) {
        return std::make_unique<Floor::FloorCurve>(records);
    });
    std::cout << "\n}\n";
}
