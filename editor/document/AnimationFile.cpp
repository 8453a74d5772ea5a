#include "document/AnimationFile.h"

#include "base/animation/AnimationXml.h"
#include "document/BvhImporter.h"
#include "document/CsvImporter.h"
#include "document/EditorAttributes.h"
#include "document/Translation.h"

#include <QFile>
#include <QSaveFile>

#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace Editor {

namespace {

[[noreturn]] void fail(const QString& what) {
    throw std::runtime_error(what.toStdString());
}

// An action on a file, and the file's name before what it throws.
template <class Action>
auto naming(const QString& path, Action action) {
    try {
        return action();
    } catch (const std::bad_alloc&) {
        fail(path + ": " + tr("there is not enough memory"));
    } catch (const std::exception& error) {
        fail(path + ": " + QString::fromUtf8(error.what()));
    }
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(file.errorString());
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        fail(file.errorString());
    }
    return bytes;
}

AnimationData withoutLooks(const VQ::Animation::Animation& animation) {
    AnimationData data;
    data.animation = std::make_unique<ZT::EditableAnimation>(animation);
    return data;
}

AnimationData readXml(std::istream& stream) {
    // The editable animation reads the tree itself: a plain one would lose the smooth and symmetrical flags.
    const auto tree = VQ::Animation::readAnimationXml(stream);
    AnimationData data;
    data.animation = std::make_unique<ZT::EditableAnimation>();
    if (!data.animation->deserialize(tree)) {
        throw std::runtime_error(ZT::EditableAnimation::problemIn(tree));
    }
    readEditorAttributes(tree, data);
    return data;
}

} // namespace

AnimationFile::AnimationFile(QString path)
    : _path(std::move(path)) {}

QStringList AnimationFile::readableSuffixes() {
    return {"xml", "bvh", "csv"};
}

bool AnimationFile::isWritable(const QString& path) {
    return AnimationFile(path)._hasSuffix("xml");
}

AnimationData AnimationFile::load() const {
    return naming(_path, [this] { return _load(); });
}

AnimationData AnimationFile::_load() const {
    const QStringList suffixes = readableSuffixes();
    if (std::none_of(suffixes.begin(), suffixes.end(),
                     [this](const auto& each) { return _hasSuffix(each); })) {
        fail(tr("the file is neither an animation (.xml) nor a motion capture (.bvh) nor a table (.csv)"));
    }
    std::istringstream stream(contentOf(_path).toStdString());
    if (_hasSuffix("bvh")) {
        return withoutLooks(BvhImporter(stream).read());
    }
    return _hasSuffix("csv") ? withoutLooks(readCsv(stream)) : readXml(stream);
}

void AnimationFile::save(const boost::property_tree::ptree& animation) const {
    naming(_path, [&] { _save(animation); });
}

void AnimationFile::_save(const boost::property_tree::ptree& animation) const {
    if (!isWritable(_path)) {
        fail(tr("an animation can only be saved as .xml"));
    }
    std::ostringstream stream;
    VQ::Animation::writeAnimationXml(stream, animation);
    const QByteArray bytes = QByteArray::fromStdString(stream.str());
    QSaveFile file(_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        fail(file.errorString());
    }
}

bool AnimationFile::_hasSuffix(const QString& suffix) const {
    return _path.endsWith('.' + suffix, Qt::CaseInsensitive);
}

} // namespace Editor
