#pragma once

#include "document/AnimationData.h"

#include <QString>
#include <QStringList>

#include <boost/property_tree/ptree_fwd.hpp>

namespace Editor {

/// An animation on disk: read from the library's own XML, from motion capture or from a table of joint
/// trajectories, written as XML.
///
/// Whatever goes wrong is thrown as std::runtime_error whose UTF-8 text names the file, what is wrong and
/// where.
class AnimationFile {
public:
    explicit AnimationFile(QString path);

    /// "xml", "bvh" and "csv", as load() knows them, without regard to case.
    static QStringList readableSuffixes();
    /// Whether save() writes to that path.
    static bool isWritable(const QString& path);

    /// Reads the file by its suffix. Looks and markers are those that the file names.
    AnimationData load() const;

    /// Writes an animation's tree, see Document::tree(), to a file with the suffix ".xml". The file that
    /// stood there before is replaced when the new one is complete, and kept when anything fails.
    void save(const boost::property_tree::ptree& animation) const;

private:
    AnimationData _load() const;
    void _save(const boost::property_tree::ptree& animation) const;
    bool _hasSuffix(const QString& suffix) const;

    QString _path;
};

} // namespace Editor
