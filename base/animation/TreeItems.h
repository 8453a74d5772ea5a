#pragma once

#include "base/animation/RationalSeconds.h"
#include "base/math/Interpolation.h"

#include <boost/property_tree/ptree_fwd.hpp>

#include <string>

/// The small items that the record trees are made of: attributes holding numbers, durations, names.
///
/// Numbers are written in the shortest form that reads back to the same bits, with '.' as decimal point
/// whatever the locale says. Readers take the whole text or nothing and throw std::invalid_argument, naming
/// the item, when it is missing, stands twice or cannot be read.
namespace VQ::Animation::TreeItems {

using Tree = boost::property_tree::ptree;

/// Adds @p child as the last child, called @p name. The child's contents are taken: trees have no move of
/// their own, and copies at each level would make writing costly.
void append(Tree& tree, const char* name, Tree&& child);

/// Adds an attribute, which the element must not have yet; so do the others.
void putText(Tree& tree, const char* attribute, const std::string& text);
void putNumber(Tree& tree, const char* attribute, float number);
void putFrame(Tree& tree, const char* attribute, unsigned int frame);
void putDuration(Tree& tree, const char* attribute, const RationalSeconds& seconds);
/// A type outside the enumeration is written as "bezier auto", so that what was saved can be read.
void putType(Tree& tree, const char* attribute, Math::Interpolation::InterpolationType type);

const std::string& getText(const Tree& tree, const char* attribute);
float getNumber(const Tree& tree, const char* attribute);
unsigned int getFrame(const Tree& tree, const char* attribute);
/// Above zero: no frame lasts no time or runs backwards.
RationalSeconds getDuration(const Tree& tree, const char* attribute);
Math::Interpolation::InterpolationType getType(const Tree& tree, const char* attribute);

/// "true" and "false" and nothing else; an attribute that is missing counts as false.
bool getOptionalFlag(const Tree& tree, const char* attribute);

/// The one child called @p name.
const Tree& getChild(const Tree& tree, const char* name);

} // namespace VQ::Animation::TreeItems
