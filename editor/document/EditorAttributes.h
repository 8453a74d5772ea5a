#pragma once

#include "document/AnimationData.h"

#include <boost/property_tree/ptree_fwd.hpp>

#include <vector>

namespace Editor {

/// Writes what only the editor knows into an animation's tree, as attributes that the library skips:
/// "colour", "hidden" and "locked" of a layer, the markers' frames of the animation.
void writeEditorAttributes(boost::property_tree::ptree& animation, const std::vector<LayerLook>& looks,
                           const MarkerFrames& markers);

/// Reads them back into @p data. What is missing or makes no sense is left out.
void readEditorAttributes(const boost::property_tree::ptree& animation, AnimationData& data);

} // namespace Editor
