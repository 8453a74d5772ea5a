#include "floor/FloorOperations.h"

int main(int argc, char** argv) {
    const Floor::FloorCurveOperations curve;
    const Floor::FloorOneKeyOperations oneKey;
    const Floor::FloorDragOperations drag;
    Bench::addCurveRows(curve);
    Bench::addOneKeyRows(oneKey);
    Bench::addDragRows(drag);
    return Bench::runRows(argc, argv);
}
