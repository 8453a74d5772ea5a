#include "document/EditorAttributes.h"

#include "document/Document.h"

#include <QString>

#include <boost/property_tree/ptree.hpp>

#include <string>

namespace Editor {

namespace {

using Tree = boost::property_tree::ptree;

// The library writes the attribute list in front where there is one.
Tree& attributesOf(Tree& element) {
    if (const auto found = element.find("<xmlattr>"); found != element.not_found()) {
        return found->second;
    }
    return element.push_front({"<xmlattr>", Tree()})->second;
}

void write(Tree& attributes, const char* name, const QString& value) {
    attributes.push_back({name, Tree(value.toStdString())});
}

std::optional<QString> read(const Tree& element, const char* name) {
    const auto text =
        element.get_optional<std::string>(Tree::path_type("<xmlattr>/" + std::string(name), '/'));
    return text ? std::optional(QString::fromStdString(*text)) : std::nullopt;
}

std::optional<unsigned int> readFrame(const Tree& element, const char* name) {
    bool isNumber = false;
    const auto text = read(element, name);
    const unsigned int frame = text ? text->toUInt(&isNumber) : 0U;
    return isNumber ? std::optional(frame) : std::nullopt;
}

// Invalid where none is named. Layers are opaque.
QColor colourOf(const Tree& element) {
    const QString name = read(element, "colour").value_or(QString());
    return QColor::isValidColor(name) ? QColor(QColor(name).rgb()) : QColor();
}

} // namespace

void writeEditorAttributes(Tree& animation, const std::vector<LayerLook>& looks,
                           const MarkerFrames& markers) {
    std::size_t i = 0;
    for (auto& [name, element] : animation) {
        if (name != "layer" || i == looks.size()) {
            continue;
        }
        const LayerLook& look = looks[i++];
        Tree& attributes = attributesOf(element);
        write(attributes, "colour", look.colour.name());
        if (!look.isVisible) {
            write(attributes, "hidden", "true");
        }
        if (look.isLocked) {
            write(attributes, "locked", "true");
        }
    }
    Tree& attributes = attributesOf(animation);
    write(attributes, "selectedFrame", QString::number(markers.selected));
    write(attributes, "startFrame", QString::number(markers.start));
    write(attributes, "endFrame", QString::number(markers.end));
    if (markers.isRangeVisible) {
        write(attributes, "rangeStart", QString::number(markers.rangeStart));
        write(attributes, "rangeEnd", QString::number(markers.rangeEnd));
    }
}

void readEditorAttributes(const Tree& animation, AnimationData& data) {
    for (const auto& [name, element] : animation) {
        if (name != "layer") {
            continue;
        }
        const auto isTrue = [&element = element](const char* flag) {
            return read(element, flag) == QString("true");
        };
        LayerLook look{colourOf(element), !isTrue("hidden"), isTrue("locked")};
        const bool isKnown = look.colour.isValid() || !look.isVisible || look.isLocked;
        if (!look.colour.isValid()) {
            look.colour = Document::colourAt(static_cast<int>(data.looks.size()));
        }
        data.looks.push_back(isKnown ? std::optional(look) : std::nullopt);
    }
    const auto selected = readFrame(animation, "selectedFrame");
    const auto start = readFrame(animation, "startFrame");
    const auto end = readFrame(animation, "endFrame");
    if (!selected || !start || !end || *start > *end) {
        return;
    }
    data.markers = MarkerFrames{*selected, *start, *end};
    const auto rangeStart = readFrame(animation, "rangeStart");
    const auto rangeEnd = readFrame(animation, "rangeEnd");
    if (rangeStart && rangeEnd && *rangeStart <= *rangeEnd) {
        data.markers->rangeStart = *rangeStart;
        data.markers->rangeEnd = *rangeEnd;
        data.markers->isRangeVisible = true;
    }
}

} // namespace Editor
