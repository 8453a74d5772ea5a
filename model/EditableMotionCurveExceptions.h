#pragma once

#include "model/Export.h"

#include <stdexcept>
#include <vector>

namespace ZT {

class EditableMotionCurveKey;

/// A key was looked up in a curve that does not hold it.
class ZT_MODEL_EXPORT EditableMotionCurveKeyNotFound : public std::logic_error {
public:
    EditableMotionCurveKeyNotFound();
};

/// A reorganisation of keys found some target frames taken. Thrown after everything else is done.
class ZT_MODEL_EXPORT EditableMotionCurveReorganizedFail : public std::logic_error {
public:
    /// @p keys become failedKeys; the exception deletes none of them.
    explicit EditableMotionCurveReorganizedFail(std::vector<EditableMotionCurveKey*> keys);

    /// The keys that could not be placed. They are in no curve and belong to whoever catches the exception;
    /// keys that were in no curve before still belong to whoever named them.
    std::vector<EditableMotionCurveKey*> failedKeys;
};

} // namespace ZT
