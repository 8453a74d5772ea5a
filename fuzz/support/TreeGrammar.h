#pragma once

#include "fuzz/support/Bytes.h"

#include <boost/property_tree/ptree.hpp>

/// Any bytes as a property tree. Each step is one byte and its operands: open an element, close it, or add an
/// attribute or text, from tables of the words that matter or from raw bytes. Some steps open a whole sound
/// key, curve or layer, so that few bytes reach deep, and damage comes from what is added to it.
///
/// At most 64 levels and 1000 elements: a tree is destroyed by functions that call themselves, so that deeper
/// ones would show a limit of the tree and not of its readers.
boost::property_tree::ptree treeFromBytes(Bytes& bytes);
