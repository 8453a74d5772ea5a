#include "floor/FloorRecords.h"
#include "memory/MemoryOfCurves.h"

int main() {
    std::cout << "{\n";
    Memory::printMemoryOfCurves(Floor::recordsOf, [](const Floor::FloorCurve::Records& records) {
        return std::make_unique<Floor::FloorCurve>(records);
    });
    std::cout << "\n}\n";
}
