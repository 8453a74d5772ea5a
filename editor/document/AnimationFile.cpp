#include "document/AnimationFile.h"

#include "base/animation/AnimationXml.h"
#include "document/BvhImporter.h"
#include "document/CsvImporter.h"
#include "document/EditorAttributes.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace Editor {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("Editor::AnimationFile", text);
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
    const QStringList suffixes = readableSuffixes();
    if (std::none_of(suffixes.begin(), suffixes.end(),
                     [this](const auto& each) { return _hasSuffix(each); })) {
        _fail(tr("the file is neither an animation (.xml) nor a motion capture (.bvh) nor a table (.csv)"));
    }
    std::istringstream stream(_read().toStdString());
    try {
        if (_hasSuffix("bvh")) {
            return withoutLooks(BvhImporter(stream).read());
        }
        return _hasSuffix("csv") ? withoutLooks(readCsv(stream)) : readXml(stream);
    } catch (const std::runtime_error& error) {
        _fail(QString::fromUtf8(error.what()));
    }
}

void AnimationFile::save(const boost::property_tree::ptree& animation) const {
    if (!isWritable(_path)) {
        _fail(tr("an animation can only be saved as .xml"));
    }
    std::ostringstream stream;
    try {
        VQ::Animation::writeAnimationXml(stream, animation);
    } catch (const std::runtime_error& error) {
        _fail(QString::fromUtf8(error.what()));
    }
    const QByteArray bytes = QByteArray::fromStdString(stream.str());

    QSaveFile file(_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        _fail(file.errorString());
    }
}

QByteArray AnimationFile::_read() const {
    QFile file(_path);
    if (!file.open(QIODevice::ReadOnly)) {
        _fail(file.errorString());
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        _fail(file.errorString());
    }
    return bytes;
}

bool AnimationFile::_hasSuffix(const QString& suffix) const {
    return _path.endsWith('.' + suffix, Qt::CaseInsensitive);
}

void AnimationFile::_fail(const QString& what) const {
    throw std::runtime_error((_path + ": " + what).toStdString());
}

} // namespace Editor
