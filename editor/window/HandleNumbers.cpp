#include "window/HandleNumbers.h"

#include "base/math/FloatBits.h"
#include "document/Document.h"
#include "document/KeyEdits.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Editor {

using ZT::EditableMotionCurveKey;

HandleNumbers::HandleNumbers(KeySelection::Keys keys, ZT::TangentSide side)
    : _keys(std::move(keys))
    , _side(side) {
    for (auto key = _keys.begin(); key != _keys.end();) {
        const bool hasHandle = (*key)->getTangentType(side) == KeyEdits::Type::bezier;
        key = hasHandle ? std::next(key) : _keys.erase(key);
    }
}

std::optional<float> HandleNumbers::common(Number number) const {
    if (_keys.isEmpty()) {
        return std::nullopt;
    }
    const float first = _get(**_keys.begin(), number);
    const bool isCommon =
        std::all_of(_keys.begin(), _keys.end(), [&](const auto* key) { return _get(*key, number) == first; });
    return isCommon ? std::optional(first) : std::nullopt;
}

void HandleNumbers::set(Number number, float to, Document& document, KeyEdits& edits) const {
    const Number other = number == Number::frames ? Number::value : Number::frames;
    QHash<quint32, KeySelection::Keys> groups; // By the bits of the other number, since NaN equals nothing.
    for (EditableMotionCurveKey* const key : _keys) {
        if (_get(*key, number) != to) {
            groups[VQ::Math::floatBits(_get(*key, other))].insert(key);
        }
    }
    if (groups.isEmpty()) {
        return;
    }
    if (groups.size() > 1) {
        document.history().beginMacro(QCoreApplication::translate("Editor::HandleNumbers", "Change handles"));
    }
    for (const KeySelection::Keys& keys : std::as_const(groups)) {
        const double kept = double{_get(**keys.begin(), other)};
        edits.setHandle(keys, _side,
                        number == Number::frames ? QPointF(double{to}, kept) : QPointF(kept, double{to}));
    }
    if (groups.size() > 1) {
        document.history().endMacro();
    }
}

float HandleNumbers::_get(const EditableMotionCurveKey& key, Number number) const {
    const auto offset = key.getTangentOffset(_side);
    return number == Number::frames ? offset.first : offset.second;
}

} // namespace Editor
