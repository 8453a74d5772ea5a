#include "window/HandleNumbers.h"

#include "base/math/FloatBits.h"
#include "commands/MoveTangentCommand.h"
#include "document/Document.h"
#include "document/KeyEdits.h"
#include "document/Macro.h"
#include "document/Translation.h"

#include <QHash>

#include <cmath>
#include <memory>
#include <utility>

namespace Editor {

using ZT::EditableMotionCurveKey;

// One walk: with thousands of keys each of them has to be fetched from memory.
HandleNumbers::HandleNumbers(const KeySelection::Keys& keys, ZT::TangentSide side)
    : _keys(keys)
    , _side(side) {
    for (const EditableMotionCurveKey* const key : keys) {
        if (_hasHandle(*key)) {
            _keepIfSame(_frames, _get(*key, Number::frames));
            _keepIfSame(_value, _get(*key, Number::value));
            _isEmpty = false;
            if (!_frames && !_value) {
                break;
            }
        }
    }
}

std::optional<float> HandleNumbers::common(Number number) const {
    return number == Number::frames ? _frames : _value;
}

void HandleNumbers::_keepIfSame(std::optional<float>& common, float own) const {
    if (_isEmpty && !std::isnan(own)) {
        common = own;
    } else if (common != own) {
        common.reset();
    }
}

void HandleNumbers::set(Number number, float to, Document& document) const {
    const Number other = number == Number::frames ? Number::value : Number::frames;
    QHash<quint32, KeySelection::Keys> groups; // By the bits of the other number, since NaN equals nothing.
    for (EditableMotionCurveKey* const key : _keys) {
        if (_hasHandle(*key) && std::isfinite(_get(*key, other)) && _get(*key, number) != to) {
            groups[VQ::Math::floatBits(_get(*key, other))].insert(key);
        }
    }
    if (groups.isEmpty() || !std::isfinite(to)) {
        return;
    }
    Macro macro(document.history(), tr("Change handles"));
    for (const KeySelection::Keys& keys : std::as_const(groups)) {
        const float kept = _get(**keys.begin(), other);
        const bool isFrames = number == Number::frames;
        macro.add(std::make_unique<ZT::AnimCmd::MoveTangentCommand>(keys, _side, isFrames ? to : kept,
                                                                    isFrames ? kept : to, true));
    }
    macro.commit();
}

bool HandleNumbers::_hasHandle(const EditableMotionCurveKey& key) const {
    return key.getTangentType(_side) == KeyEdits::Type::bezier;
}

float HandleNumbers::_get(const EditableMotionCurveKey& key, Number number) const {
    const auto offset = key.getTangentOffset(_side);
    return number == Number::frames ? offset.first : offset.second;
}

} // namespace Editor
