#pragma once

#include "base/Export.h"
#include "base/math/Interpolation.h"

#include <boost/property_tree/ptree.hpp>

namespace VQ::Animation {

/// The key as a tree: the attribute "value" and the elements "left" and "right", each with the attributes
/// "type", "dx" (frames) and "dy" (value units). Every float reads back to the same bits.
VQ_EXPORT boost::property_tree::ptree serialize(const Math::Interpolation::Key& key);

/// Reads such a tree; further attributes and elements are skipped. Throws std::invalid_argument, naming the
/// item, when the tree does not describe a key.
VQ_EXPORT Math::Interpolation::Key deserializeMotionCurveKey(const boost::property_tree::ptree& tree);

} // namespace VQ::Animation
