#pragma once

#include "ScriptedDialogs.h"
#include "TwoLayers.h"
#include "document/AnimationFile.h"
#include "document/KeyEdits.h"
#include "tests/support/Snapshot.h"
#include "window/FileSession.h"
#include "window/RecentFiles.h"

#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <boost/property_tree/ptree.hpp>

/// What the tests of a document's way from and to files share.
namespace FileScene {

/// A document in an empty folder, with settings and dialogs of the test's own.
class Scene {
public:
    Scene() = default;
    /// No copy of its work stays.
    ~Scene() { session.leave(); }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    QString path(const QString& name) const { return directory.filePath(name); }

    /// A file with TwoLayers, but for the value of a's first key.
    QString makeFile(const QString& name, float value) const {
        Editor::Document other;
        other.replace(TwoLayers::data(), QString());
        TwoLayers::key(other, 0, 0)->setValue(value);
        Editor::AnimationFile(path(name)).save(other.tree());
        return path(name);
    }

    QString write(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("no file could be written");
        }
        return path(name);
    }

    float value() const { return TwoLayers::key(document, 0, 0)->getValue(); }
    void edit(float value) { Editor::KeyEdits(document).setValue({TwoLayers::key(document, 0, 0)}, value); }
    QString state() const { return Snapshot::of(document.animation()); }

    QTemporaryDir directory;
    QSettings store{directory.filePath("settings.ini"), QSettings::IniFormat};
    Editor::RecentFiles recent{store};
    ScriptedDialogs dialogs;
    Editor::Document document;
    Editor::FileSession session{document, dialogs, recent};
};

/// Of the first key of a's in a file.
inline float valueIn(const QString& path) {
    Editor::Document document;
    document.replace(Editor::AnimationFile(path).load(), QString());
    return TwoLayers::key(document, 0, 0)->getValue();
}

} // namespace FileScene
