#include "document/BvhImporter.h"
#include "library/LibraryAnimation.h"

#include <fstream>
#include <iostream>
#include <sstream>

namespace {

VQ::Animation::Animation import(const std::string& text) {
    std::istringstream source(text);
    return Editor::BvhImporter(source).read();
}

void addCapture(const std::string& name) {
    const std::string path = std::string(EA_SHARED_DATA "/") + name + ".bvh";
    std::ifstream file(path);
    if (!file) {
        std::cerr << "SKIPPED: no file " << path << '\n';
        return;
    }
    const std::string text(std::istreambuf_iterator<char>(file), {});
    const VQ::Animation::Animation plain = import(text);
    const std::size_t keys = Bench::keysIn(plain);
    const std::string size = std::to_string(plain.size()) + " layers/" + std::to_string(keys);
    const auto add = [&](const std::string& what, const std::function<Bench::Operation()>& make,
                         Bench::Timed timed = Bench::Timed::there) {
        Bench::addRow(name + ".bvh, " + what, size, keys, make, timed);
    };
    add("import", [=] { return Bench::Operation{[=] { import(text); }}; });
    add("wrap", [=] { return Bench::wrapping(plain); });
    add("drag all", [=] { return Bench::draggingAll(plain); });
    add(
        "undo", [=] { return Bench::draggingAll(plain); }, Bench::Timed::back);
}

} // namespace

int main(int argc, char** argv) {
    addCapture("dance");
    addCapture("walk");
    return Bench::runRows(argc, argv);
}
