#include "document/KeyEdits.h"

#include "base/math/Narrowing.h"
#include "commands/ChangeKeyParamCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "document/Document.h"
#include "document/KeyInsertion.h"
#include "document/Macro.h"

#include <cmath>
#include <memory>
#include <type_traits>
#include <utility>

namespace Editor {

namespace {

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;
using ZT::TangentSide;
using Type = KeyEdits::Type;
using Keys = KeySelection::Keys;

// NaN is what it is, and Qt's comparison of points would take different ones for equal.
bool isSame(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

template <class Value>
bool isSame(const std::optional<Value>& a, const std::optional<Value>& b) {
    if (!a || !b) {
        return a.has_value() == b.has_value();
    }
    if constexpr (std::is_same_v<Value, QPointF>) {
        return isSame(a->x(), b->x()) && isSame(a->y(), b->y());
    } else if constexpr (std::is_floating_point_v<Value>) {
        return isSame(double{*a}, double{*b});
    } else {
        return *a == *b;
    }
}

// What differs is common no more; what is not common any more is not asked for.
template <class Value, class ValueOf>
void keepIfSame(std::optional<Value>& common, ValueOf valueOf) {
    if (common && !isSame(std::optional<Value>(valueOf()), common)) {
        common.reset();
    }
}

std::optional<QPointF> handleOf(const EditableMotionCurveKey& key, TangentSide side) {
    const auto offset = key.getTangentOffset(side);
    return key.getTangentType(side) == Type::bezier
               ? std::optional(QPointF(double{offset.first}, double{offset.second}))
               : std::nullopt;
}

template <class Predicate>
Keys keysThat(const Keys& keys, Predicate predicate) {
    Keys found;
    for (EditableMotionCurveKey* const key : keys) {
        if (predicate(*key)) {
            found.insert(key);
        }
    }
    return found;
}

template <class Container>
int countOf(const Container& container) {
    return static_cast<int>(container.size());
}

// The library's own texts count curves.
void push(Document& document, std::unique_ptr<QUndoCommand> command, const QString& text) {
    command->setText(text);
    Macro::push(document.history(), std::move(command));
}

} // namespace

KeyEdits::KeyEdits(Document& document)
    : _document(document) {}

// One walk for everything: with thousands of keys each of them has to be fetched from memory.
KeyEdits::Common KeyEdits::commonOf(const Keys& keys) {
    if (keys.isEmpty()) {
        return {};
    }
    const EditableMotionCurveKey& first = **keys.begin();
    Common common{first.getTangentType(TangentSide::left),
                  first.getTangentType(TangentSide::right),
                  first.isSmooth(),
                  first.isSymmetrical(),
                  ZT::index(&first),
                  first.getValue(),
                  handleOf(first, TangentSide::left),
                  handleOf(first, TangentSide::right),
                  {},
                  {}};
    for (const EditableMotionCurveKey* const key : keys) {
        common.leftTypes.insert(key->getTangentType(TangentSide::left));
        common.rightTypes.insert(key->getTangentType(TangentSide::right));
        keepIfSame(common.leftType, [=] { return key->getTangentType(TangentSide::left); });
        keepIfSame(common.rightType, [=] { return key->getTangentType(TangentSide::right); });
        keepIfSame(common.isSmooth, [=] { return key->isSmooth(); });
        keepIfSame(common.isSymmetrical, [=] { return key->isSymmetrical(); });
        keepIfSame(common.frame, [=] { return ZT::index(key); });
        keepIfSame(common.value, [=] { return key->getValue(); });
        keepIfSame(common.leftHandle, [=] { return handleOf(*key, TangentSide::left); });
        keepIfSame(common.rightHandle, [=] { return handleOf(*key, TangentSide::right); });
    }
    return common;
}

EditableMotionCurveKey* KeyEdits::insert(EditableMotionCurve& curve, unsigned int frame) {
    if (!curve.isIndexAvailable(frame) || !_document.isEditable(&curve)) {
        return nullptr;
    }
    EditableMotionCurveKey* const key = KeyInsertion(curve, frame).push(_document.history());
    _document.selection().set({key});
    return key;
}

void KeyEdits::remove(const Keys& keys) {
    if (!keys.isEmpty()) {
        push(_document, std::make_unique<ZT::AnimCmd::RemoveCurveKeysCommand>(keys.values()),
             tr("Delete %n key(s)", nullptr, countOf(keys)));
    }
}

void KeyEdits::setType(const Keys& keys, Type type) {
    _setType(keys, {TangentSide::left, TangentSide::right}, type);
}

void KeyEdits::setType(const Keys& keys, TangentSide side, Type type) {
    _setType(keys, {side}, type);
}

void KeyEdits::_setType(const Keys& keys, std::initializer_list<TangentSide> sides, Type type) {
    QMultiMap<EditableMotionCurveKey*, TangentSide> others;
    for (EditableMotionCurveKey* const key : keys) {
        for (const TangentSide side : sides) {
            if (key->getTangentType(side) != type) {
                others.insert(key, side);
            }
        }
    }
    if (!others.isEmpty()) {
        push(_document, std::make_unique<ZT::AnimCmd::ChangeInterpTypeCommand>(others, type),
             tr("Set type of %n key(s) to %1", nullptr, countOf(others.uniqueKeys()))
                 .arg(ZT::interpolTypeToString(type)));
    }
}

void KeyEdits::setSmooth(const Keys& keys, bool isSmooth) {
    const Keys others = keysThat(keys, [&](const auto& key) { return key.isSmooth() != isSmooth; });
    if (!others.isEmpty()) {
        push(_document, std::make_unique<ZT::AnimCmd::ChangeSmoothnessCommand>(others, isSmooth),
             isSmooth ? tr("Make %n key(s) smooth", nullptr, countOf(others))
                      : tr("Make %n key(s) not smooth", nullptr, countOf(others)));
    }
}

void KeyEdits::setSymmetrical(const Keys& keys, bool isSymmetrical) {
    const Keys others = keysThat(keys, [&](const auto& key) { return key.isSymmetrical() != isSymmetrical; });
    if (!others.isEmpty()) {
        push(_document, std::make_unique<ZT::AnimCmd::ChangeSymmetryCommand>(others, isSymmetrical),
             isSymmetrical ? tr("Make %n key(s) symmetrical", nullptr, countOf(others))
                           : tr("Make %n key(s) not symmetrical", nullptr, countOf(others)));
    }
}

void KeyEdits::setValue(const Keys& keys, float value) {
    ZT::AnimCmd::MoveCurveKeysCommand::KeyPosMap targets;
    for (EditableMotionCurveKey* const key : keys) {
        if (std::isfinite(value) && key->getValue() != value) {
            targets.insert(key, QPointF(ZT::index(key), double{value}));
        }
    }
    if (!targets.isEmpty()) {
        push(_document, std::make_unique<ZT::AnimCmd::MoveCurveKeysCommand>(targets, true),
             tr("Set value of %n key(s)", nullptr, countOf(targets)));
    }
}

void KeyEdits::setHandle(const Keys& keys, TangentSide side, const QPointF& offset) {
    const float x = VQ::Math::toFloat(offset.x());
    const float y = VQ::Math::toFloat(offset.y());
    const Keys others = keysThat(keys, [&](const auto& key) {
        return key.getTangentType(side) == Type::bezier && key.getTangentOffset(side) != qMakePair(x, y);
    });
    if (!others.isEmpty() && std::isfinite(x) && std::isfinite(y)) {
        push(_document, std::make_unique<ZT::AnimCmd::MoveTangentCommand>(others, side, x, y, true),
             tr("Set handle of %n key(s)", nullptr, countOf(others)));
    }
}

} // namespace Editor
