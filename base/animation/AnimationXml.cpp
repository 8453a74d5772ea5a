#include "base/animation/AnimationXml.h"

#include "base/animation/XmlNesting.h"

#include <boost/property_tree/xml_parser.hpp>

#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

namespace VQ::Animation {

namespace PropertyTree = boost::property_tree;

// write_xml() wants a document with the root element in it, and so a copy of the whole tree, which costs as
// much as writing it. The element is written as that function would write it.
void writeAnimationXml(std::ostream& stream, const PropertyTree::ptree& animation) {
    const auto settings = PropertyTree::xml_writer_make_settings<std::string>(' ', 2);
    stream << "<?xml version=\"1.0\" encoding=\"" << settings.encoding << "\"?>\n";
    PropertyTree::xml_parser::write_xml_element(stream, std::string("animation"), animation, 0, settings);
    if (!stream.flush()) {
        throw std::runtime_error("the animation could not be written");
    }
}

PropertyTree::ptree readAnimationXml(std::istream& stream) {
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    if (stream.fail() || text.empty()) {
        throw std::runtime_error("there is nothing to read");
    }
    requireSoundNesting(text);
    PropertyTree::ptree document;
    try {
        std::istringstream source(text);
        PropertyTree::read_xml(source, document,
                               PropertyTree::xml_parser::trim_whitespace |
                                   PropertyTree::xml_parser::no_comments);
    } catch (const PropertyTree::xml_parser_error& error) {
        throw std::runtime_error("line " + std::to_string(error.line()) + ": " + error.message());
    }
    if (document.size() != 1 || document.front().first != "animation") {
        throw std::runtime_error("the root element is not \"animation\"");
    }
    PropertyTree::ptree animation;
    animation.swap(document.front().second);
    return animation;
}

} // namespace VQ::Animation
