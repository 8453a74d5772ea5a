#include "commands/MergeableCommand.h"

namespace ZT {

MergeableCommand::~MergeableCommand() = default;

} // namespace ZT
