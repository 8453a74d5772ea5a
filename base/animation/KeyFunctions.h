#pragma once

#include "base/Export.h"
#include "base/math/Interpolation.h"

#include <boost/property_tree/ptree_fwd.hpp>

namespace VQ::Animation {

struct KeyPlace;

/// What a curve must know about the objects that its key records are part of.
///
/// A key record has no virtual functions, yet a curve may hold records that are the key part of a larger
/// object. The class that builds a curve's keys chooses one such table for it, so that erasing, clearing and
/// destroying always end the whole object and a written key keeps all that belongs to it.
struct KeyFunctions {
    /// Ends the whole object that the key is part of. No curve holds the key by then.
    void (*destroy)(Math::Interpolation::Key* key) noexcept;
    /// The tree of the whole object, without the frame, which the curve adds.
    boost::property_tree::ptree (*write)(const Math::Interpolation::Key& key);
    /// Returns false and leaves the key unchanged when the tree does not describe a key.
    bool (*read)(Math::Interpolation::Key& key, const boost::property_tree::ptree& tree);
    /// Where the object keeps its key's place; null for keys that do not keep it.
    KeyPlace& (*place)(const Math::Interpolation::Key& key);

    /// The table for keys that are plain records.
    VQ_EXPORT static const KeyFunctions plain;
};

} // namespace VQ::Animation
