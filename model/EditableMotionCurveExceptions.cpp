#include "model/EditableMotionCurveExceptions.h"

namespace ZT {

EditableMotionCurveKeyNotFound::EditableMotionCurveKeyNotFound()
    : std::logic_error("Editable motion curve key not found in the editable motion curve.") {}

EditableMotionCurveReorganizedFail::EditableMotionCurveReorganizedFail(
    const std::vector<EditableMotionCurveKey*>& keys)
    : std::logic_error("Editable motion curve: reorganization failed")
    , failedKeys(keys) {}

} // namespace ZT
