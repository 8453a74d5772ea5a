#pragma once

#include <boost/property_tree/ptree_fwd.hpp>

namespace VQ::Animation {

/// A record that can be written to and read from a property tree.
class SerializationInterface {
public:
    /// The record's own tree, without a tag of its own.
    virtual boost::property_tree::ptree serialize() const = 0;

    /// Reads a tree that serialize() wrote. Returns true on success; on false the object is unchanged.
    virtual bool deserialize(const boost::property_tree::ptree& tree) = 0;

protected:
    // Nothing is owned through this interface, so that the two operations are all of its table.
    ~SerializationInterface() = default;
};

} // namespace VQ::Animation
