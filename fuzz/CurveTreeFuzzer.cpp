#include "fuzz/support/FilledRecords.h"
#include "fuzz/support/TreeGrammar.h"
#include "fuzz/support/TreeLaws.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const boost::property_tree::ptree tree = treeFromBytes(bytes);
    const bool isReadable = TreeLaws::checkPlain(tree, FilledRecords::curve());
    ZT::EditableMotionCurve filled(FilledRecords::curve());
    TreeLaws::checkEditable(tree, filled, isReadable);
    return 0;
}
