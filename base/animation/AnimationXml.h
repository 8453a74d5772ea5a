#pragma once

#include "base/Export.h"

#include <boost/property_tree/ptree.hpp>

#include <cstddef>
#include <iosfwd>

namespace VQ::Animation {

/// How much an XML file may hold, so that a damaged or hostile one costs bounded time and memory: what goes
/// beyond is refused before more is read or built. Who trusts a file may set larger limits.
struct XmlLimits {
    std::size_t bytes = std::size_t{512} << 20U; ///< of text
    std::size_t items = std::size_t{1} << 25U; ///< elements, attributes, comments; three million keys' worth
    std::size_t depth = 64;                    ///< of elements within elements
};

/// Writes an animation's tree, as its serialize() made it, as an XML document in UTF-8 with the root element
/// "animation", indented by two blanks.
///
/// Throws std::runtime_error when a text in the tree, such as an actuator's name, is not UTF-8 or holds a
/// character that XML cannot hold, naming the layer; nothing has been written then. Also when the stream
/// fails. There is no limit: a larger file than the usual limits of reading is written too.
VQ_EXPORT void writeAnimationXml(std::ostream& stream, const boost::property_tree::ptree& animation);

/// Reads such a document, with or without byte order mark, and returns the animation's tree.
///
/// Throws std::runtime_error "line N: what is wrong there" when the text is not XML, not UTF-8 or declared as
/// something else, has another root, a reference that stands for no character, declarations of entities or
/// elements, or goes beyond @p limits. Time is O(n log n) in the size of the text. Memory is some five bytes
/// for each byte of text and 500 for each piece of markup.
VQ_EXPORT boost::property_tree::ptree readAnimationXml(std::istream& stream, const XmlLimits& limits = {});

} // namespace VQ::Animation
