#include "library/DragSession.h"
#include "memory/MemoryOfCurves.h"

namespace {

constexpr unsigned int steps = 1000;

/// The heap that a curve of 10 000 keys and its history take after the first, the second and the last step of
/// a drag. The second is the first that is merged into another.
void printMemoryOfADrag() {
    const std::size_t before = Memory::heapBytes();
    Bench::DragSession drag({Bench::Layout::frameOrder, 10000});
    std::cout << "  \"heap bytes after drag steps\": {";
    for (unsigned int step = 1; step <= steps; ++step) {
        drag.prepareStep();
        drag.doStep(step == steps);
        if (step <= 2 || step == steps) {
            std::cout << (step == 1 ? "" : ", ") << '"' << step << "\": " << Memory::heapBytes() - before;
        }
    }
    std::cout << '}';
}

} // namespace

int main() {
    std::cout << "{\n";
    Memory::printMemoryOfCurves(Bench::plainCurve, [](const VQ::Animation::MotionCurve& plain) {
        return std::make_unique<Bench::Curve>(plain);
    });
    std::cout << ",\n";
    printMemoryOfADrag();
    std::cout << "\n}\n";
}
