#include "fuzz/support/TreeGrammar.h"

#include <boost/property_tree/ptree.hpp>

#include <array>
#include <string>
#include <vector>

namespace {

using Tree = boost::property_tree::ptree;

constexpr std::size_t deepest = 64;
constexpr int mostElements = 1000;

const std::array<const char*, 8> elements{"layer", "curve", "key", "left", "right", "<xmlattr>", "", "other"};

const std::array<const char*, 16> attributes{"value",
                                             "type",
                                             "dx",
                                             "dy",
                                             "frame",
                                             "smooth",
                                             "symmetrical",
                                             "name",
                                             "mute",
                                             "timeUnit",
                                             "minimum",
                                             "maximum",
                                             "maximumDerivative",
                                             "",
                                             "other",
                                             "<xmlattr>"};

const std::array<const char*, 40> values{"0",
                                         "1",
                                         "-0",
                                         "0.5",
                                         "-3.25",
                                         "1e-45",
                                         "3.4028235e38",
                                         "1e39",
                                         "-1e39",
                                         "inf",
                                         "-inf",
                                         "nan",
                                         "-nan",
                                         "nan(0x7fc00001)",
                                         "nan(0x0)",
                                         "nan(0xffffffff)",
                                         "nan(0x",
                                         "0x10",
                                         "+1",
                                         " 1",
                                         "1 ",
                                         "1,5",
                                         "",
                                         "4294967295",
                                         "4294967296",
                                         "-1",
                                         "true",
                                         "false",
                                         "True",
                                         "constant",
                                         "linear",
                                         "bezier",
                                         "bezier auto",
                                         "1/25",
                                         "0/1",
                                         "1/0",
                                         "-2147483648/2147483647",
                                         "2147483647/2",
                                         "-2147483648/1",
                                         "1/2147483648"};

class Grower {
public:
    explicit Grower(Bytes& bytes)
        : _bytes(bytes) {
        _open.push_back(&_root);
    }

    Tree grow() {
        while (!_bytes.isAtEnd() && _elements < mostElements) {
            _step();
        }
        Tree grown;
        grown.swap(_root);
        return grown;
    }

private:
    void _step() {
        switch (_bytes.below(12)) {
        case 0:
            return _close();
        case 1:
            return _openElement(_bytes.oneOf(elements));
        case 2:
            return _openElement(_bytes.text(8));
        case 3: {
            const char* const name = _bytes.oneOf(attributes);
            return _put(name, _bytes.oneOf(values));
        }
        case 4: {
            const char* const name = _bytes.oneOf(attributes);
            return _put(name, _bytes.text(40));
        }
        case 5: {
            const std::string name = _bytes.text(8);
            return _put(name, _bytes.oneOf(values));
        }
        case 6:
            _open.back()->data() += _bytes.text(16);
            return;
        case 7:
            _openElement("key");
            return _fillKey(std::to_string(_bytes.byte()));
        case 8:
            _openElement("key");
            return _fillKey(std::to_string(_bytes.word()));
        case 9:
            _openElement("curve");
            return _fillCurve();
        case 10:
            _openElement("layer");
            return _put("name", _bytes.text(8));
        default:
            return _fillAny();
        }
    }

    /// What makes the current element a sound one of some kind.
    void _fillAny() {
        switch (_bytes.below(3)) {
        case 0:
            return _fillKey(std::to_string(_bytes.byte()));
        case 1:
            return _fillCurve();
        default:
            return _put("name", _bytes.text(8));
        }
    }

    void _close() {
        if (_open.size() > 1) {
            _open.pop_back();
        }
    }

    /// A pointer to an element stays good while its later siblings are added: trees keep children in nodes.
    void _openElement(const std::string& name) {
        ++_elements;
        if (_open.size() < deepest) {
            _open.push_back(&_open.back()->push_back({name, Tree()})->second);
        }
    }

    void _put(const std::string& name, const std::string& value) {
        Tree& element = *_open.back();
        const auto found = element.find("<xmlattr>");
        Tree& all =
            found == element.not_found() ? element.push_back({"<xmlattr>", Tree()})->second : found->second;
        all.push_back({name, Tree(value)});
    }

    void _fillKey(const std::string& frame) {
        static const std::array<const char*, 4> types{"constant", "linear", "bezier", "bezier auto"};
        _put("frame", frame);
        _put("value", _bytes.oneOf(values));
        const unsigned int flags = _bytes.below(4);
        if ((flags & 1U) != 0) {
            _put("smooth", "true");
        }
        if ((flags & 2U) != 0) {
            _put("symmetrical", "true");
        }
        for (const char* const side : {"left", "right"}) {
            _openElement(side);
            _put("type", _bytes.oneOf(types));
            _put("dx", _number());
            _put("dy", _number());
            _close();
        }
    }

    void _fillCurve() {
        _put("timeUnit", "1/25");
        _put("minimum", _number());
        _put("maximum", _number());
        _put("maximumDerivative", _number());
    }

    /// The first values of the table are numbers.
    const char* _number() { return values.at(_bytes.below(7)); }

    Bytes& _bytes;
    Tree _root;
    std::vector<Tree*> _open;
    int _elements = 0;
};

} // namespace

boost::property_tree::ptree treeFromBytes(Bytes& bytes) {
    return Grower(bytes).grow();
}
