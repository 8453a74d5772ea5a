#pragma once

#include "model/EditableAnimation.h"

#include <QString>

#include <memory>

/// An animation on disk: read from the project's own XML or from motion capture, written as XML.
///
/// Whatever goes wrong is thrown as std::runtime_error whose UTF-8 text names the file, what is wrong and
/// where.
class AnimationFile {
public:
    explicit AnimationFile(QString path);

    /// Reads the file by its suffix, ".xml" or ".bvh".
    std::unique_ptr<ZT::EditableAnimation> load() const;

    /// Writes the animation to a file with the suffix ".xml". The file that stood there before is replaced
    /// when the new one is complete, and kept when anything fails.
    void save(const ZT::EditableAnimation& animation) const;

private:
    bool _hasSuffix(const char* suffix) const;
    [[noreturn]] void _fail(const QString& what) const;

    QString _path;
};
