#pragma once

#include "Records.h"

#include <QtTest>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

/// Every way in which a record's tree can fail to describe the record. Each level knows its own ways and
/// those of what stands inside it.
namespace Damages {

using Records::Tree;

struct Damage {
    std::string name;
    std::function<void(Tree&)> apply;
    std::vector<std::string> mentions; ///< what the description of the problem must name
};

using List = std::vector<Damage>;

inline void append(List& list, const List& more) {
    list.insert(list.end(), more.begin(), more.end());
}

inline Tree& attributesOf(Tree& tree) {
    return tree.get_child("<xmlattr>");
}

inline void setAttribute(Tree& tree, const std::string& item, const std::string& text) {
    attributesOf(tree).get_child(item).data() = text;
}

inline void erase(Tree& tree, const std::string& item) {
    if (tree.erase(item) != 1) {
        throw std::logic_error("a written record has no item " + item);
    }
}

inline void repeat(Tree& tree, const std::string& item) {
    const Tree copy = tree.get_child(item);
    tree.push_back({item, copy});
}

inline Tree& child(Tree& tree, const std::string& name, int position) {
    for (auto& [childName, node] : tree) {
        if (childName == name && --position == 0) {
            return node;
        }
    }
    throw std::logic_error("a written record has no such " + name);
}

inline List ofOptionalAttribute(const std::string& item, const std::vector<std::string>& texts) {
    List list{{item + " twice", [=](Tree& tree) { repeat(attributesOf(tree), item); }, {item}}};
    for (const std::string& text : texts) {
        list.push_back(
            {item + "=\"" + text + '"', [=](Tree& tree) { setAttribute(tree, item, text); }, {item}});
    }
    return list;
}

inline List ofAttribute(const std::string& item, const std::vector<std::string>& texts) {
    List list = ofOptionalAttribute(item, texts);
    list.push_back({item + " missing", [=](Tree& tree) { erase(attributesOf(tree), item); }, {item}});
    return list;
}

inline List ofElement(const std::string& name) {
    return {{name + " missing", [=](Tree& tree) { erase(tree, name); }, {name}},
            {name + " twice", [=](Tree& tree) { repeat(tree, name); }, {name}}};
}

/// The damages of what stands inside an element, at its @p position from 1 among those of its name.
inline List inside(const std::string& element, int position, const std::string& mention, List list) {
    for (Damage& damage : list) {
        damage.name.insert(0, mention + ", ");
        damage.mentions.push_back(mention);
        damage.apply = [=, inner = damage.apply](Tree& tree) { inner(child(tree, element, position)); };
    }
    return list;
}

inline const std::vector<std::string> badNumbers{"",
                                                 " ",
                                                 "x",
                                                 "1x",
                                                 "1 ",
                                                 " 1",
                                                 "1,5",
                                                 "1.234,5",
                                                 "1.5.2",
                                                 "--1",
                                                 "0x10",
                                                 "1e",
                                                 "1e39",
                                                 "-1e999",
                                                 "infx",
                                                 "nanx",
                                                 "nan(",
                                                 "nan(0x)",
                                                 "nan)",
                                                 "1nan",
                                                 "nan(7)",
                                                 "nan(0x7f800000)",
                                                 "nan(0x100000000)",
                                                 "nan(0x7fc00001",
                                                 "nan[0x7fc00001)",
                                                 "man(0x7fc00001)",
                                                 "0x7fc00001)",
                                                 "1\n2",
                                                 "-",
                                                 ".",
                                                 "1;2",
                                                 "nan(0x7fc00001)x"};

inline List ofKey() {
    List tangent =
        ofAttribute("type", {"", "Bezier", "bezier ", " bezier", "bezierauto", "3", "bezier,auto"});
    append(tangent, ofAttribute("dx", badNumbers));
    append(tangent, ofAttribute("dy", badNumbers));
    List list = ofAttribute("value", badNumbers);
    for (const char* const side : {"left", "right"}) {
        append(list, ofElement(side));
        append(list, inside(side, 1, side, tangent));
    }
    list.push_back({"nothing at all", [](Tree& tree) { tree = Tree(); }, {}});
    list.push_back({"text only", [](Tree& tree) { tree = Tree("1"); }, {}});
    list.push_back({"no attributes", [](Tree& tree) { erase(tree, "<xmlattr>"); }, {"missing"}});
    return list;
}

/// Of a curve with at least two keys.
inline List ofCurve() {
    List key = ofKey();
    append(key, ofAttribute("frame", {"", "x", "4294967296", "99999999999999999999", "-1", "1.5", "1e3", "7 ",
                                      " 7", "0x7", "7,", "1.000", "nan", "inf"}));
    List list = ofAttribute("timeUnit", {"",
                                         "1",
                                         "/",
                                         "1/",
                                         "/25",
                                         "1/0",
                                         "1/-25",
                                         "1/25 ",
                                         " 1/25",
                                         "1 /25",
                                         "1/2/5",
                                         "0.04",
                                         "1/2.5",
                                         "x/y",
                                         "1/4294967296",
                                         "-2147483649/1",
                                         "0/1",
                                         "-1/25",
                                         "-2147483648/1",
                                         "-2147483648/3"});
    for (const char* const item : {"minimum", "maximum", "maximumDerivative"}) {
        append(list, ofAttribute(item, badNumbers));
    }
    append(list, inside("key", 2, "key 2", key));
    list.push_back({"two keys at one frame",
                    [](Tree& tree) {
                        const std::string frame =
                            attributesOf(child(tree, "key", 1)).get<std::string>("frame");
                        setAttribute(child(tree, "key", 2), "frame", frame);
                    },
                    {"key 2", "frame"}});
    list.push_back({"nothing at all", [](Tree& tree) { tree = Tree(); }, {}});
    return list;
}

/// Of a mute layer with a curve of at least two keys.
inline List ofLayer() {
    List list = ofOptionalAttribute("mute", {"", "yes", "1", "0", "TRUE", "true ", " false", "truefalse"});
    append(list, ofAttribute("name", {}));
    append(list, ofElement("curve"));
    append(list, inside("curve", 1, "curve", ofCurve()));
    list.push_back({"nothing at all", [](Tree& tree) { tree = Tree(); }, {}});
    return list;
}

/// Adds a row for each damage; the test finds its own with @p list[index].
inline void addRows(const List& list) {
    QTest::addColumn<int>("index");
    for (std::size_t index = 0; index < list.size(); ++index) {
        const QString name = QString::fromStdString(list[index].name).replace('\n', "\\n");
        QTest::newRow(qPrintable(name)) << static_cast<int>(index);
    }
}

/// An item that a newer version may have added, at every level of a record's tree.
inline void addUnknownItems(Tree& tree) {
    for (auto& [name, node] : tree) {
        if (name != "<xmlattr>") {
            addUnknownItems(node);
        }
    }
    tree.put("<xmlattr>.future", "unknown");
    tree.push_back({"future", Tree("text")});
    tree.push_front({"future", Tree("more text")});
}

} // namespace Damages
