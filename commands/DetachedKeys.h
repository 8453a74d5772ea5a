#pragma once

#include "model/EditableMotionCurveKey.h"

#include <QMap>
#include <QPointer>

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace ZT::AnimCmd {

/// The keys that a command holds outside curves. It owns each of them until a curve takes it in, and deletes
/// those when it dies.
///
/// The keys are watched, so that one which meanwhile went back into a curve, and died with it or left it for
/// another owner, is never touched.
class DetachedKeys {
public:
    /// By curve, keys with their frames.
    using CurvesKeysMap = QMap<ZT::EditableMotionCurve*, QMap<ZT::EditableMotionCurveKey*, unsigned int>>;

    DetachedKeys() = default;
    DetachedKeys(const DetachedKeys&) = delete;
    DetachedKeys& operator=(const DetachedKeys&) = delete;
    ~DetachedKeys();

    /// Takes keys in, all of them or, where memory runs out, none; a key that a curve only made is parted
    /// from that curve either way. Null and keys that a curve holds are left out.
    void add(const std::vector<EditableMotionCurveKey*>& keys);

    /// Watches keys that are in no curve and belong to somebody else, until a curve takes them in.
    void watch(const std::vector<EditableMotionCurveKey*>& keys);

    /// Lets go of keys that have been in a curve since they came, wherever they are by now.
    void letGoOfTakenKeys();
    /// The same before the command works with the keys that @p maps name: those that died are taken out.
    void letGoOfTakenKeys(std::initializer_list<CurvesKeysMap*> maps);
    /// After work of the command that was taken back: lets go of keys that a curve holds. Those that have
    /// come and gone are still the command's.
    void letGoOfHeldKeys();

    /// The command's keys in the order of their addresses.
    std::vector<EditableMotionCurveKey*> keys() const;

    /// Has addAll() of @p other find memory.
    void makeRoomFor(const DetachedKeys& other);
    /// Takes over all keys of @p other.
    void addAll(DetachedKeys& other);

private:
    /// A key as it was when it came or when the command last worked.
    struct Detached {
        Detached(EditableMotionCurveKey* aKey, bool isToBeOwned);
        bool isOurs() const;
        bool isTaken() const;

        EditableMotionCurveKey* address; ///< to be compared, not read
        QPointer<EditableMotionCurveKey> key;
        std::uint32_t placings;
        bool isOwned;
    };

    void _add(EditableMotionCurveKey* key);

    std::vector<Detached> _keys;
};

} // namespace ZT::AnimCmd
