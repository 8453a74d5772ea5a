#pragma once

#include "document/Drag.h"
#include "document/DragKind.h"
#include "tests/editor/support/Scene.h"

#include <QList>
#include <QStringList>

namespace EditorScene {

/// A drag of a scene, and what it says.
struct Gesture {
    explicit Gesture(Scene& scene)
        : drag(scene.document) {
        QObject::connect(&drag, &Editor::Drag::blocked, &drag,
                         [this](const QString& why) { blocked.append(why); });
        QObject::connect(&drag, &Editor::Drag::activeChanged, &drag,
                         [this](bool isActive) { active.append(isActive); });
    }

    Editor::Drag drag;
    QStringList blocked;
    QList<bool> active;
};

} // namespace EditorScene
