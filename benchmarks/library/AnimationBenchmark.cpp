#include "base/animation/AnimationXml.h"
#include "library/LibraryAnimation.h"
#include "library/LibraryCurve.h"

#include <boost/property_tree/xml_parser.hpp>

#include <sstream>
#include <utility>

namespace {

namespace PropertyTree = boost::property_tree;
using Bench::Operation;
using Bench::Timed;

constexpr std::size_t layers = 200;
constexpr std::size_t keysPerLayer = 500;

VQ::Animation::Animation plainAnimation() {
    VQ::Animation::Animation animation;
    for (std::size_t i = 0; i < layers; ++i) {
        auto layer = std::make_unique<VQ::Animation::AnimationLayer>();
        layer->actuatorName = "actuator " + std::to_string(i);
        *layer->curve = Bench::plainCurve(keysPerLayer);
        animation.push_back(layer.release());
    }
    return animation;
}

Operation copyingBack() {
    const auto animation = std::make_shared<ZT::EditableAnimation>(plainAnimation());
    const auto copy = std::make_shared<VQ::Animation::Animation>();
    return {[=] { *copy = animation->baseAnimation(); }, [=] { copy->clear(); }};
}

Operation serializing() {
    const auto animation = std::make_shared<ZT::EditableAnimation>(plainAnimation());
    const auto tree = std::make_shared<PropertyTree::ptree>();
    return {[=] {
                PropertyTree::ptree fresh = animation->serialize();
                tree->swap(fresh);
            },
            [=] { tree->clear(); }};
}

// Built when the first row needs it.
const PropertyTree::ptree& treeOfAnimation() {
    static const PropertyTree::ptree tree = ZT::EditableAnimation(plainAnimation()).serialize();
    return tree;
}

const PropertyTree::ptree& documentOfAnimation() {
    static const PropertyTree::ptree document = [] {
        PropertyTree::ptree root;
        root.put_child("animation", treeOfAnimation());
        return root;
    }();
    return document;
}

Operation deserializing() {
    const auto animation = std::make_shared<ZT::EditableAnimation>();
    return {[=] { animation->deserialize(treeOfAnimation()); }, [animation] { animation->clear(); }};
}

Operation writing() {
    return {[] {
        std::ostringstream stream;
        VQ::Animation::writeAnimationXml(stream, treeOfAnimation());
    }};
}

Operation reading() {
    std::ostringstream stream;
    VQ::Animation::writeAnimationXml(stream, treeOfAnimation());
    return {[text = stream.str()] {
        std::istringstream source(text);
        VQ::Animation::readAnimationXml(source);
    }};
}

void write(std::ostream& stream, const PropertyTree::ptree& document) {
    PropertyTree::write_xml(stream, document, PropertyTree::xml_writer_make_settings<std::string>(' ', 2));
}

Operation writingByBoost() {
    return {[] {
        std::ostringstream stream;
        write(stream, documentOfAnimation());
    }};
}

Operation readingByBoost() {
    std::ostringstream stream;
    write(stream, documentOfAnimation());
    return {[text = stream.str()] {
        std::istringstream source(text);
        PropertyTree::ptree document;
        PropertyTree::read_xml(source, document, PropertyTree::xml_parser::trim_whitespace);
    }};
}

void add(const std::string& name, const std::function<Operation()>& make, Timed timed = Timed::there) {
    constexpr std::size_t keys = layers * keysPerLayer;
    Bench::addRow(name, std::to_string(layers) + " layers/" + std::to_string(keys), keys, make, timed);
}

} // namespace

int main(int argc, char** argv) {
    add("animation, wrap", [] { return Bench::wrapping(plainAnimation()); });
    add("animation, drag all", [] { return Bench::draggingAll(plainAnimation()); });
    add(
        "animation, undo", [] { return Bench::draggingAll(plainAnimation()); }, Timed::back);
    add("animation, baseAnimation", copyingBack);
    add("animation, serialize", serializing);
    add("animation, deserialize", deserializing);
    add("write XML", writing);
    add("read XML", reading);
    // What the XML rows are measured by.
    add("floor: write XML", writingByBoost);
    add("floor: read XML", readingByBoost);
    return Bench::runRows(argc, argv);
}
