#include "AnimationFile.h"

#include "BvhImporter.h"
#include "base/animation/AnimationXml.h"

#include <QByteArray>
#include <QFile>
#include <QSaveFile>

#include <sstream>
#include <stdexcept>
#include <utility>

AnimationFile::AnimationFile(QString path)
    : _path(std::move(path)) {}

std::unique_ptr<ZT::EditableAnimation> AnimationFile::load() const {
    if (!_hasSuffix(".xml") && !_hasSuffix(".bvh")) {
        _fail("the file is neither an animation (.xml) nor a motion capture (.bvh)");
    }
    QFile file(_path);
    if (!file.open(QIODevice::ReadOnly)) {
        _fail(file.errorString());
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        _fail(file.errorString());
    }
    std::istringstream stream(bytes.toStdString());
    try {
        if (_hasSuffix(".bvh")) {
            return std::make_unique<ZT::EditableAnimation>(BvhImporter(stream).read());
        }
        // The editable animation reads the tree itself: a plain one would lose the smooth and symmetrical
        // flags.
        const auto tree = VQ::Animation::readAnimationXml(stream);
        auto animation = std::make_unique<ZT::EditableAnimation>();
        if (!animation->deserialize(tree)) {
            throw std::runtime_error(ZT::EditableAnimation::problemIn(tree));
        }
        return animation;
    } catch (const std::runtime_error& error) {
        _fail(QString::fromUtf8(error.what()));
    }
}

void AnimationFile::save(const ZT::EditableAnimation& animation) const {
    if (!_hasSuffix(".xml")) {
        _fail("an animation can only be saved as .xml");
    }
    std::ostringstream stream;
    try {
        VQ::Animation::writeAnimationXml(stream, animation.serialize());
    } catch (const std::runtime_error& error) {
        _fail(QString::fromUtf8(error.what()));
    }
    const QByteArray bytes = QByteArray::fromStdString(stream.str());

    QSaveFile file(_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        _fail(file.errorString());
    }
}

bool AnimationFile::_hasSuffix(const char* suffix) const {
    return _path.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
}

void AnimationFile::_fail(const QString& what) const {
    throw std::runtime_error((_path + ": " + what).toStdString());
}
