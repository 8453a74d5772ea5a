#pragma once

#include "ScriptedDialogs.h"
#include "TwoLayers.h"
#include "tests/support/Snapshot.h"
#include "window/MainWindow.h"
#include "window/Settings.h"
#include "window/Workspace.h"

#include <QAction>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

/// The whole editor, with settings and dialogs of the test's own, over TwoLayers.
class WindowScene {
public:
    WindowScene() {
        workspace.document.replace(TwoLayers::data(), QString());
        window.show();
        window.activateWindow();
        QCoreApplication::processEvents(); // Everything finds its place.
    }

    /// No copy of its work stays.
    ~WindowScene() { window.session().leave(); }
    WindowScene(const WindowScene&) = delete;
    WindowScene& operator=(const WindowScene&) = delete;

    /// The command of that name; the test fails where there is none.
    QAction& action(const char* name) {
        auto* const found = window.findChild<QAction*>(name);
        if (found == nullptr) {
            qFatal("there is no action %s", name);
        }
        return *found;
    }

    template <class Widget>
    Widget& part(const char* name) {
        auto* const found = window.findChild<Widget*>(name);
        if (found == nullptr) {
            qFatal("there is no widget %s", name);
        }
        return *found;
    }

    Editor::Document& document() { return workspace.document; }
    Editor::History& history() { return workspace.document.history(); }
    QString state() const { return Snapshot::of(std::as_const(workspace.document).animation()); }

    QTemporaryDir directory;
    QSettings store{directory.filePath("settings.ini"), QSettings::IniFormat};
    Editor::Settings settings{store};
    ScriptedDialogs dialogs;
    Editor::Workspace workspace;
    Editor::MainWindow window{workspace, settings, dialogs};
};
