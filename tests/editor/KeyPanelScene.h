#pragma once

#include "WindowScene.h"

#include <QLineEdit>

/// The whole editor with the keys of one frame selected, and a hand on the fields of its key panel.
class PanelScene : public WindowScene {
public:
    explicit PanelScene(unsigned int frame) {
        if (!QTest::qWaitForWindowActive(&window)) {
            qFatal("the window does not become active");
        }
        TwoLayers::select(document(), frame);
        QTest::qWait(1); // Fields follow once for each turn of the event loop.
    }

    QLineEdit& field(const char* name) { return part<QLineEdit>(name); }

    /// As a user does it.
    void enter(const char* name, const QString& text) {
        QLineEdit& edit = field(name);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClicks(&edit, text);
        QTest::keyClick(&edit, Qt::Key_Return);
    }
};
