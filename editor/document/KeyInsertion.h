#pragma once

#include "base/TangentSide.h"
#include "document/SegmentDivision.h"
#include "model/EditableMotionCurve.h"

#include <QMultiMap>
#include <QSet>

namespace Editor {

class History;

/// Puts a key on a curve so that the curve passes through it as it did before, within what rounding of its
/// numbers to floats allows. A cubic is divided, see divideSegment() for handles that reach too far; on a
/// constant or straight segment, and outside the keys, the new key is of that type.
///
/// What the keys beside it have becomes free only where it would change the shape: automatic handles, which
/// would be computed anew, become "bezier" as they stand; a linear side of a cubic too. A symmetrical key is
/// so no more where its handles would be made opposites, a smooth one where one of its handles would be
/// turned.
class KeyInsertion {
public:
    /// @p frame is free.
    KeyInsertion(ZT::EditableMotionCurve& curve, unsigned int frame);

    /// One entry of the history. Returns the key, which the curve holds then.
    ZT::EditableMotionCurveKey* push(History& history);

private:
    using Key = ZT::EditableMotionCurveKey;

    void _shape();
    void _free(Key* neighbour, ZT::TangentSide facing);
    bool _isTurned(const Key& neighbour, ZT::TangentSide facing, bool isFreed) const;

    ZT::EditableMotionCurve& _curve;
    unsigned int _frame;
    Key* _left = nullptr;  ///< the key before, or null
    Key* _right = nullptr; ///< the key behind, or null
    SegmentDivision _division;
    bool _isCubic = false;

    QSet<Key*> _symmetricalNoMore;
    QSet<Key*> _smoothNoMore;
    QMultiMap<Key*, ZT::TangentSide> _bezierNow;
};

} // namespace Editor
