#pragma once

#include "base/animation/Printing.h"
#include "model/Export.h"

#include <QDebug>
#include <QString>

#include <iosfwd>
#include <sstream>
#include <string>

// Objects of the model on one line, for qDebug() and failing tests. Including this header is all that QDebug,
// Qt Test (QCOMPARE of records, sides and types) and GoogleTest need.

namespace ZT {

class AnimationMarkers;
class EditableAnimation;
class EditableAnimationLayer;
class EditableMotionCurve;
class EditableMotionCurveKey;

/// "key at 12: 0.5, left bezier (-3, -0.25), right linear (1, 0), smooth"; "key in no curve: ..."; "no key"
/// for null.
ZT_MODEL_EXPORT QDebug operator<<(QDebug debug, const EditableMotionCurveKey* key);
/// "curve of 3 keys at 0 12 25"; "no curve" for null.
ZT_MODEL_EXPORT QDebug operator<<(QDebug debug, const EditableMotionCurve* curve);
/// "layer "elbow", muted, 3 keys at 0 12 25"; "no layer" for null.
ZT_MODEL_EXPORT QDebug operator<<(QDebug debug, const EditableAnimationLayer* layer);
/// "animation of 2 layers: elbow wrist"; "no animation" for null.
ZT_MODEL_EXPORT QDebug operator<<(QDebug debug, const EditableAnimation* animation);
/// "markers at 7, playing 1 to 25, range 3 to 9 hidden"; "no markers" for null.
ZT_MODEL_EXPORT QDebug operator<<(QDebug debug, const AnimationMarkers* markers);

/// GoogleTest's printers: the same lines.
///@{
ZT_MODEL_EXPORT void PrintTo(const EditableMotionCurveKey* key, std::ostream* stream);
ZT_MODEL_EXPORT void PrintTo(const EditableMotionCurve* curve, std::ostream* stream);
ZT_MODEL_EXPORT void PrintTo(const EditableAnimationLayer* layer, std::ostream* stream);
// GoogleTest's own printer of pointers would suit pointers to what may be changed better.
inline void PrintTo(EditableMotionCurveKey* key, std::ostream* stream) {
    PrintTo(static_cast<const EditableMotionCurveKey*>(key), stream);
}
inline void PrintTo(EditableMotionCurve* curve, std::ostream* stream) {
    PrintTo(static_cast<const EditableMotionCurve*>(curve), stream);
}
inline void PrintTo(EditableAnimationLayer* layer, std::ostream* stream) {
    PrintTo(static_cast<const EditableAnimationLayer*>(layer), stream);
}
///@}

/// Qt Test's printers give their text away: the caller deletes it.
template <class Record>
char* recordToTestString(const Record& record) {
    std::ostringstream text;
    text << record;
    return qstrdup(text.str().c_str());
}
/// For Qt Test; the caller deletes the text.
inline char* toString(TangentSide side) {
    return recordToTestString(side);
}

} // namespace ZT

namespace VQ::Math {

/// For Qt Test; the caller deletes the text.
inline char* toString(const Position2D& point) {
    return ZT::recordToTestString(point);
}

} // namespace VQ::Math

namespace VQ::Math::Interpolation {

/// For Qt Test; the caller deletes the text.
///@{
inline char* toString(InterpolationType type) {
    return ZT::recordToTestString(type);
}
inline char* toString(const Key& key) {
    return ZT::recordToTestString(key);
}
///@}

} // namespace VQ::Math::Interpolation
