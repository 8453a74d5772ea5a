#pragma once

#include "base/animation/KeySerialization.h"

#include <stdexcept>
#include <string>

/// A plain key with the operations of the other plain records, so that one law serves all of them.
struct PlainKey : VQ::Math::Interpolation::Key {
    using Tree = boost::property_tree::ptree;

    Tree serialize() const { return VQ::Animation::serialize(*this); }

    bool deserialize(const Tree& tree) {
        try {
            static_cast<Key&>(*this) = VQ::Animation::deserializeMotionCurveKey(tree);
            return true;
        } catch (const std::invalid_argument&) {
            return false;
        }
    }

    static std::string problemIn(const Tree& tree) {
        try {
            VQ::Animation::deserializeMotionCurveKey(tree);
            return {};
        } catch (const std::invalid_argument& error) {
            return error.what();
        }
    }
};
