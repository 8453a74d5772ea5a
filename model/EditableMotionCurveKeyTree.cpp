#include "model/EditableMotionCurveKey.h"

#include "base/animation/KeySerialization.h"
#include "model/FirstException.h"

#include <boost/optional.hpp>

#include <locale>
#include <memory>
#include <stdexcept>
#include <string>

namespace ZT {

using VQ::Math::Interpolation::Key;
using Tree = boost::property_tree::ptree;

namespace {

const char* const symmetricalAttribute = "symmetrical";
const char* const smoothAttribute = "smooth";

template <class Record>
auto* wholeKey(Record* record) {
    return EditableMotionCurveKey::_toEditable(std::make_pair(0U, record)).second;
}

void destroyKey(Key* key) noexcept {
    delete wholeKey(key);
}

Tree writeKey(const Key& key) {
    return wholeKey(&key)->serialize();
}

bool readKey(Key& key, const Tree& tree) {
    return wholeKey(&key)->deserialize(tree);
}

VQ::Animation::KeyPlace& placeOfKey(const Key& key) {
    return const_cast<EditableMotionCurveKey*>(wholeKey(&key))->_placement();
}

// In the classic locale whatever the global one is, so that "true" always reads as true.
using FlagTranslator =
    boost::property_tree::stream_translator<char, std::char_traits<char>, std::allocator<char>, bool>;

bool readFlag(const Tree& tree, const char* attribute) {
    return tree
        .get_optional<bool>(std::string("<xmlattr>.") + attribute, FlagTranslator(std::locale::classic()))
        .get_value_or(false);
}

// A path and a stream for each flag would cost more than all the rest of the key.
void writeFlag(Tree& tree, const char* attribute) {
    tree.find("<xmlattr>")->second.push_back({attribute, Tree("true")});
}

} // namespace

const VQ::Animation::KeyFunctions EditableMotionCurveKey::_keyFunctions{destroyKey, writeKey, readKey,
                                                                        placeOfKey};

Tree EditableMotionCurveKey::serialize() const {
    Tree tree = VQ::Animation::serialize(*this);
    if (_symmetrical) {
        writeFlag(tree, symmetricalAttribute);
    }
    if (_smooth) {
        writeFlag(tree, smoothAttribute);
    }
    return tree;
}

bool EditableMotionCurveKey::deserialize(const Tree& tree) {
    Key read;
    try {
        read = VQ::Animation::deserializeMotionCurveKey(tree);
    } catch (const std::invalid_argument&) {
        return false;
    }
    const bool symmetrical = readFlag(tree, symmetricalAttribute);
    const bool smooth = readFlag(tree, smoothAttribute);
    Key::operator=(read);
    FirstException thrown;
    thrown.guard([&] { setSymmetrical(symmetrical); });
    thrown.guard([&] { setSmooth(smooth); });
    thrown.rethrow();
    return true;
}

} // namespace ZT
