#include "base/animation/AnimationXml.h"

#include "base/animation/XmlMarkup.h"
#include "base/animation/XmlText.h"

#include <boost/property_tree/xml_parser.hpp>

#include <algorithm>
#include <array>
#include <istream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace VQ::Animation {

namespace PropertyTree = boost::property_tree;
using Tree = PropertyTree::ptree;

namespace {

constexpr std::size_t chunkSize = std::size_t{1} << 16U;
constexpr std::size_t longestCharacter = 4; // bytes

constexpr std::string_view attributesName = "<xmlattr>";

// With and without byte order marks. The marks of one are no text of the other.
void requireNoWideCharacters(std::string_view text) {
    using namespace std::string_view_literals;
    constexpr std::array beginnings{"\xFE\xFF"sv, "\xFF\xFE"sv, "\0\0\xFE\xFF"sv,
                                    "<\0"sv,      "\0<"sv,      "\0\0\0<"sv};
    if (std::any_of(beginnings.begin(), beginnings.end(), [&](std::string_view beginning) {
            return text.compare(0, beginning.size(), beginning) == 0;
        })) {
        refuseXml(text, 0, "the text is UTF-16 or UTF-32; only UTF-8 is read");
    }
}

// Text is checked while it comes, so that little is read of what is no text at all.
std::string readText(std::istream& stream, std::size_t maximumSize) {
    if (stream.fail()) {
        throw std::runtime_error("there is nothing to read");
    }
    std::string text;
    std::size_t checked = 0;
    for (std::streamsize count = 1; count > 0;) {
        const std::size_t size = text.size();
        text.resize(size + chunkSize);
        count = stream.rdbuf()->sgetn(&text[size], static_cast<std::streamsize>(chunkSize));
        text.resize(size + static_cast<std::size_t>(count));
        if (size == 0) {
            requireNoWideCharacters(text);
        }
        const auto fault = findXmlTextFault(std::string_view(text).substr(checked));
        checked = fault ? checked + fault->position : text.size();
        // The beginning of a character whose rest is to come looks like a fault.
        if (fault && (count == 0 || text.size() - checked >= longestCharacter)) {
            refuseXml(text, checked, fault->what);
        }
        if (text.size() > maximumSize) {
            refuseXml(text, maximumSize, "the text is longer than " + std::to_string(maximumSize) + " bytes");
        }
    }
    return text;
}

// What is wrong with a text or a name in an element or its attributes, and where; empty when XML can hold
// all.
std::string problemWithTexts(const Tree& element) {
    if (const auto fault = findXmlTextFault(element.data())) {
        return "its text holds " + fault->what;
    }
    for (auto child = element.begin(); child != element.end(); ++child) {
        if (const auto fault = findXmlTextFault(child->first)) {
            return "an element's name holds " + fault->what;
        }
        if (child->first == attributesName) {
            for (const auto& [name, attribute] : child->second) {
                if (const auto fault = findXmlTextFault(name)) {
                    return "an attribute's name holds " + fault->what;
                }
                if (const auto fault = findXmlTextFault(attribute.data())) {
                    return "attribute \"" + name + "\" holds " + fault->what;
                }
            }
        } else if (const std::string problem = problemWithTexts(child->second); !problem.empty()) {
            const auto position = 1 + std::count_if(element.begin(), child, [&](const auto& other) {
                                      return other.first == child->first;
                                  });
            return child->first + ' ' + std::to_string(position) + ": " + problem;
        }
    }
    return {};
}

} // namespace

// write_xml() wants a document with the root element in it, and so a copy of the whole tree, which costs as
// much as writing it. The element is written as that function would write it.
//
// The file's text is checked rather than the tree's: a second walk over a large tree costs nearly as much as
// the first. In what serialize() makes there is markup between any two texts, so that halves of a character
// stay apart; and escaping changes no byte that XML cannot hold.
void writeAnimationXml(std::ostream& stream, const Tree& animation) {
    const auto settings = PropertyTree::xml_writer_make_settings<std::string>(' ', 2);
    std::ostringstream document;
    document.exceptions(std::ios::badbit); // Otherwise a text that memory is too short for would be cut off.
    document << "<?xml version=\"1.0\" encoding=\"" << settings.encoding << "\"?>\n";
    PropertyTree::xml_parser::write_xml_element(document, std::string("animation"), animation, 0, settings);
    const std::string text = document.str();
    if (findXmlTextFault(text)) {
        throw std::runtime_error(problemWithTexts(animation));
    }
    stream << text;
    if (!stream.flush()) {
        throw std::runtime_error("the animation could not be written");
    }
}

Tree readAnimationXml(std::istream& stream, const XmlLimits& limits) {
    std::istringstream source;
    {
        const std::string text = readText(stream, limits.bytes);
        requireSoundMarkup(text, limits);
        source.str(text);
    }
    Tree document;
    try {
        PropertyTree::read_xml(source, document,
                               PropertyTree::xml_parser::trim_whitespace |
                                   PropertyTree::xml_parser::no_comments);
    } catch (const PropertyTree::xml_parser_error& error) {
        throw std::runtime_error("line " + std::to_string(error.line()) + ": " + error.message());
    }
    Tree animation;
    animation.swap(document.front().second);
    return animation;
}

} // namespace VQ::Animation
