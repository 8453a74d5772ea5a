#pragma once

#include "fuzz/support/EditableState.h"
#include "fuzz/support/Law.h"
#include "fuzz/support/PlainState.h"

#include <boost/property_tree/ptree.hpp>

/// What must hold for every tree that is read into a plain record or an editable one.
namespace TreeLaws {

using Tree = boost::property_tree::ptree;

/// Reads into @p record, which has contents, and returns whether the tree was readable.
template <class Plain>
bool checkPlain(const Tree& tree, Plain record) {
    const std::string before = PlainState::of(record);
    const bool isReadable = record.deserialize(tree);
    requireLaw(isReadable == Plain::problemIn(tree).empty(), "a tree that cannot be read has a problem");
    if (!isReadable) {
        requireSame(PlainState::of(record), before, "a read that fails leaves the record alone");
        return false;
    }
    Plain again;
    requireLaw(again.deserialize(record.serialize()), "what was written can be read");
    requireSame(PlainState::of(again), PlainState::of(record), "a plain record comes back bit by bit");
    return true;
}

/// The same for @p filled, an editable record with contents.
template <class Editable>
void checkEditable(const Tree& tree, Editable& filled, bool isReadable) {
    const std::string before = EditableState::all(filled);
    requireLaw(filled.deserialize(tree) == isReadable, "plain and editable records read the same trees");
    if (!isReadable) {
        requireSame(EditableState::all(filled), before, "a read that fails leaves the object alone");
        return;
    }
    Editable first;
    requireLaw(first.deserialize(tree), "a tree can be read twice");
    Editable second;
    requireLaw(second.deserialize(first.serialize()), "what was written can be read");
    requireSame(EditableState::kept(second), EditableState::kept(first), "an editable record comes back");
}

} // namespace TreeLaws
