#pragma once

#include "base/TangentSide.h"
#include "base/math/Interpolation.h"
#include "document/KeySelection.h"

#include <QCoreApplication>
#include <QPointF>

#include <bitset>
#include <cstddef>
#include <initializer_list>
#include <optional>

namespace Editor {

class Document;

/// The edits of keys that are done at once, each one entry of the history. What would change nothing leaves
/// none. An entry's text counts the keys that it changes. Drags are Drag's.
class KeyEdits {
    Q_DECLARE_TR_FUNCTIONS(Editor::KeyEdits)

public:
    using Type = VQ::Math::Interpolation::InterpolationType;

    explicit KeyEdits(Document& document);

    /// A set of types, by their numbers.
    class Types {
    public:
        bool contains(Type type) const { return _bits.test(static_cast<std::size_t>(type)); }
        void insert(Type type) { _bits.set(static_cast<std::size_t>(type)); }

    private:
        std::bitset<4> _bits;
    };

    /// What all keys have in common; empty where they differ or there are none. And the types that occur.
    struct Common {
        std::optional<Type> leftType;
        std::optional<Type> rightType;
        std::optional<bool> isSmooth;
        std::optional<bool> isSymmetrical;
        std::optional<unsigned int> frame;
        std::optional<float> value;
        std::optional<QPointF> leftHandle; ///< frames, value units; of "bezier" tangents
        std::optional<QPointF> rightHandle;
        Types leftTypes; ///< those of any key
        Types rightTypes;
    };
    static Common commonOf(const KeySelection::Keys& keys);

    /// Puts a key on the curve at @p frame so that the curve keeps its shape, see KeyInsertion. Selects it.
    /// Returns null and does nothing where a key stands or the curve may not be edited.
    ZT::EditableMotionCurveKey* insert(ZT::EditableMotionCurve& curve, unsigned int frame);

    void remove(const KeySelection::Keys& keys);
    /// Both sides.
    void setType(const KeySelection::Keys& keys, Type type);
    void setType(const KeySelection::Keys& keys, ZT::TangentSide side, Type type);
    void setSmooth(const KeySelection::Keys& keys, bool isSmooth);
    void setSymmetrical(const KeySelection::Keys& keys, bool isSymmetrical);
    /// Gives all keys one value. Does nothing where it is not finite.
    void setValue(const KeySelection::Keys& keys, float value);
    /// The end of the handle relative to its key: frames, value units. Only "bezier" tangents have one to be
    /// set. Does nothing where it is not finite.
    void setHandle(const KeySelection::Keys& keys, ZT::TangentSide side, const QPointF& offset);

private:
    void _setType(const KeySelection::Keys& keys, std::initializer_list<ZT::TangentSide> sides, Type type);

    Document& _document;
};

} // namespace Editor
