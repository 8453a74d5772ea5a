#include "model/EditableMotionCurveExceptions.h"

#include <utility>

namespace ZT {

EditableMotionCurveKeyNotFound::EditableMotionCurveKeyNotFound()
    : std::logic_error("Editable motion curve key not found in the editable motion curve.") {}

EditableMotionCurveReorganizedFail::EditableMotionCurveReorganizedFail(
    std::vector<EditableMotionCurveKey*> keys)
    : std::logic_error("Editable motion curve: reorganization failed")
    , failedKeys(std::move(keys)) {}

} // namespace ZT
