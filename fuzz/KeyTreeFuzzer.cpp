#include "fuzz/support/FilledRecords.h"
#include "fuzz/support/TreeLaws.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TreeLaws::check<ZT::EditableMotionCurveKey>(data, size, FilledRecords::key());
    return 0;
}
