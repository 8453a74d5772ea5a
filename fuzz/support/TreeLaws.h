#pragma once

#include "fuzz/support/EditableState.h"
#include "fuzz/support/Law.h"
#include "fuzz/support/TreeGrammar.h"

#include <boost/property_tree/ptree.hpp>

/// What must hold for every tree that is read into a plain record or an editable one.
namespace TreeLaws {

using EditableState::Extent;
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
    const std::string before = EditableState::of(filled, Extent::all);
    requireLaw(filled.deserialize(tree) == isReadable, "plain and editable records read the same trees");
    if (!isReadable) {
        requireSame(EditableState::of(filled, Extent::all), before,
                    "a read that fails leaves the object alone");
        return;
    }
    Editable first;
    requireLaw(first.deserialize(tree), "a tree can be read twice");
    requireSame(EditableState::of(filled, Extent::kept), EditableState::of(first, Extent::kept),
                "what was there before makes no difference");
    Editable second;
    requireLaw(second.deserialize(first.serialize()), "what was written can be read");
    requireSame(EditableState::of(second, Extent::kept), EditableState::of(first, Extent::kept),
                "an editable record comes back");
}

/// Both for the tree that the bytes make and a record with contents; the tree.
template <class Editable, class Plain>
Tree check(const std::uint8_t* data, std::size_t size, const Plain& filled) {
    Bytes bytes(data, size);
    Tree tree = treeFromBytes(bytes);
    const bool isReadable = checkPlain(tree, filled);
    Editable editable(filled);
    checkEditable(tree, editable, isReadable);
    return tree;
}

} // namespace TreeLaws
