#pragma once

#include "base/animation/AnimationXml.h"

#include <QString>

#include <sstream>
#include <stdexcept>
#include <string>

/// Reading and writing XML from and to texts.
namespace XmlFiles {

using Tree = boost::property_tree::ptree;

inline std::string toXml(const Tree& tree) {
    std::ostringstream stream;
    VQ::Animation::writeAnimationXml(stream, tree);
    return stream.str();
}

inline Tree fromXml(const std::string& text) {
    std::istringstream stream(text);
    return VQ::Animation::readAnimationXml(stream);
}

/// Why a text cannot be read; empty when it can.
inline QString problemOf(const std::string& text, const VQ::Animation::XmlLimits& limits = {}) {
    std::istringstream stream(text);
    try {
        VQ::Animation::readAnimationXml(stream, limits);
        return {};
    } catch (const std::runtime_error& error) {
        return QString::fromStdString(error.what());
    }
}

} // namespace XmlFiles
