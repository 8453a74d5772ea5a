#include "base/animation/TreeItems.h"

#include "base/animation/Utf8.h"
#include "base/math/FloatBits.h"

#include <boost/property_tree/ptree.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string_view>

namespace VQ::Animation::TreeItems {

using Math::floatBits;
using Math::floatFromBits;
using Math::Interpolation::InterpolationType;

namespace {

const char* const attributesName = "<xmlattr>";

constexpr std::array<std::string_view, 4> typeNames{"constant", "linear", "bezier", "bezier auto"};

// What the ordinary texts "nan" and "-nan" stand for; other NaNs carry their bits along.
constexpr std::uint32_t positiveNan = 0x7fc00000U;
constexpr std::uint32_t negativeNan = 0xffc00000U;
constexpr std::string_view nanBitsOpen = "nan(0x";

template <class Number, class... Format>
std::string toText(Number number, Format... format) {
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, format...).ptr;
    return {buffer.data(), end};
}

template <class Number, class... Format>
bool fromText(std::string_view text, Number& number, Format... format) {
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number, format...);
    return error == std::errc() && end == last;
}

std::string nanToText(float number) {
    switch (const std::uint32_t bits = floatBits(number)) {
    case positiveNan:
        return "nan";
    case negativeNan:
        return "-nan";
    default:
        return std::string(nanBitsOpen) + toText(bits, 16) + ')';
    }
}

bool nanFromText(std::string_view text, float& number) {
    if (text == "nan" || text == "-nan") {
        number = floatFromBits(text == "nan" ? positiveNan : negativeNan);
        return true;
    }
    std::uint32_t bits = 0;
    if (text.size() <= nanBitsOpen.size() || text.substr(0, nanBitsOpen.size()) != nanBitsOpen ||
        text.back() != ')' ||
        !fromText(text.substr(nanBitsOpen.size(), text.size() - nanBitsOpen.size() - 1), bits, 16)) {
        return false;
    }
    number = floatFromBits(bits);
    return std::isnan(number);
}

bool numberFromText(std::string_view text, float& number) {
    return nanFromText(text, number) || (fromText(text, number) && !std::isnan(number));
}

[[noreturn]] void refuse(const std::string& what) {
    throw std::invalid_argument(what);
}

[[noreturn]] void refuseValue(const char* attribute, const std::string& text, const char* expected) {
    refuse(std::string("attribute \"") + attribute + "\" is " + inQuotes(text) + ", not " + expected);
}

// The one child of that name; null when there is none.
const Tree* findOne(const Tree& tree, const char* kind, const char* name) {
    const auto [first, last] = tree.equal_range(name);
    if (first == last) {
        return nullptr;
    }
    if (std::next(first) != last) {
        refuse(std::string(kind) + " \"" + name + "\" stands twice");
    }
    return &first->second;
}

const std::string* findText(const Tree& tree, const char* attribute) {
    const Tree* const attributes = findOne(tree, "element", attributesName);
    const Tree* const found = attributes == nullptr ? nullptr : findOne(*attributes, "attribute", attribute);
    return found == nullptr ? nullptr : &found->data();
}

} // namespace

void append(Tree& tree, const char* name, Tree&& child) {
    tree.push_back({name, Tree()})->second.swap(child);
}

void putText(Tree& tree, const char* attribute, const std::string& text) {
    const auto found = tree.find(attributesName);
    Tree& attributes =
        found == tree.not_found() ? tree.push_back({attributesName, Tree()})->second : found->second;
    attributes.push_back({attribute, Tree(text)});
}

void putNumber(Tree& tree, const char* attribute, float number) {
    putText(tree, attribute, std::isnan(number) ? nanToText(number) : toText(number));
}

void putFrame(Tree& tree, const char* attribute, unsigned int frame) {
    putText(tree, attribute, toText(frame));
}

void putDuration(Tree& tree, const char* attribute, const RationalSeconds& seconds) {
    const auto count = seconds.count();
    putText(tree, attribute, toText(count.numerator()) + '/' + toText(count.denominator()));
}

void putType(Tree& tree, const char* attribute, InterpolationType type) {
    const auto known = static_cast<std::uint32_t>(type) < typeNames.size();
    const auto position = static_cast<std::size_t>(known ? type : InterpolationType::bezierAuto);
    putText(tree, attribute, std::string(typeNames.at(position)));
}

const std::string& getText(const Tree& tree, const char* attribute) {
    const std::string* text = findText(tree, attribute);
    if (text == nullptr) {
        refuse(std::string("attribute \"") + attribute + "\" is missing");
    }
    return *text;
}

float getNumber(const Tree& tree, const char* attribute) {
    const std::string& text = getText(tree, attribute);
    float number = 0.0F;
    if (!numberFromText(text, number)) {
        refuseValue(attribute, text, "a number");
    }
    return number;
}

unsigned int getFrame(const Tree& tree, const char* attribute) {
    const std::string& text = getText(tree, attribute);
    unsigned int frame = 0;
    if (!fromText(text, frame)) {
        refuseValue(attribute, text, "a frame from 0 to 4294967295");
    }
    return frame;
}

RationalSeconds getDuration(const Tree& tree, const char* attribute) {
    const std::string& text = getText(tree, attribute);
    const auto slash = text.find('/');
    int numerator = 0;
    int denominator = 0;
    if (slash == std::string::npos || !fromText(std::string_view(text).substr(0, slash), numerator) ||
        !fromText(std::string_view(text).substr(slash + 1), denominator) || numerator < 1 ||
        denominator < 1) {
        refuseValue(attribute, text, "a fraction of whole numbers above zero");
    }
    return RationalSeconds(boost::rational<int>(numerator, denominator));
}

InterpolationType getType(const Tree& tree, const char* attribute) {
    const std::string& text = getText(tree, attribute);
    for (std::size_t type = 0; type < typeNames.size(); ++type) {
        if (text == typeNames.at(type)) {
            return static_cast<InterpolationType>(type);
        }
    }
    refuseValue(attribute, text, "an interpolation type");
}

bool getOptionalFlag(const Tree& tree, const char* attribute) {
    const std::string* text = findText(tree, attribute);
    if (text == nullptr || *text == "false") {
        return false;
    }
    if (*text != "true") {
        refuseValue(attribute, *text, "\"true\" or \"false\"");
    }
    return true;
}

const Tree& getChild(const Tree& tree, const char* name) {
    const Tree* const child = findOne(tree, "element", name);
    if (child == nullptr) {
        refuse(std::string("element \"") + name + "\" is missing");
    }
    return *child;
}

} // namespace VQ::Animation::TreeItems
