#pragma once

#include "model/EditableMotionCurveKey.h"

#include <QPointer>

#include <vector>

namespace ZT::AnimCmd {

/// The keys that a command holds outside curves. It owns each of them for as long as no curve holds it, and
/// deletes those when it dies.
///
/// The keys are watched, so that one which meanwhile went back into a curve and died with it is never
/// touched.
class DetachedKeys {
public:
    DetachedKeys() = default;
    DetachedKeys(const DetachedKeys&) = delete;
    DetachedKeys& operator=(const DetachedKeys&) = delete;
    ~DetachedKeys();

    /// Takes keys in, all of them or, where memory runs out, none; a key that a curve only made is parted
    /// from that curve either way. Null and keys that a curve holds are left out.
    void add(const std::vector<EditableMotionCurveKey*>& keys);

    /// Lets go of keys that a curve holds again.
    void letGoOfHeldKeys();

    /// Has addAll() of @p other find memory.
    void makeRoomFor(const DetachedKeys& other);
    /// Takes over all keys of @p other.
    void addAll(DetachedKeys& other);

private:
    void _add(EditableMotionCurveKey* key);

    std::vector<QPointer<EditableMotionCurveKey>> _keys;
};

} // namespace ZT::AnimCmd
