#pragma once

#include "base/Export.h"

#include <boost/property_tree/ptree.hpp>

#include <iosfwd>

namespace VQ::Animation {

/// Writes an animation's tree as an XML document with the root element "animation", indented by two blanks.
/// Throws std::runtime_error when the stream fails.
VQ_EXPORT void writeAnimationXml(std::ostream& stream, const boost::property_tree::ptree& animation);

/// Reads such a document and returns the animation's tree. Throws std::runtime_error, with the line where
/// there is one, when the text is not XML or has another root.
VQ_EXPORT boost::property_tree::ptree readAnimationXml(std::istream& stream);

} // namespace VQ::Animation
