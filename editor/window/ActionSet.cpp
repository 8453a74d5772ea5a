#include "window/ActionSet.h"

#include "document/Attempt.h"
#include "window/Workspace.h"

#include <QAction>

#include <utility>

namespace Editor {

ActionSet::ActionSet(Workspace& ofWorkspace, CurrentCurve ofCurrentLayer, QObject* parent)
    : QObject(parent)
    , workspace(ofWorkspace)
    , currentCurve(std::move(ofCurrentLayer)) {}

void ActionSet::onTriggered(QAction* action, std::function<void()> edit, const QString& problem) {
    connect(action, &QAction::triggered, this, [this, edit = std::move(edit), problem] {
        if (!workspace.drag.isActive()) {
            attemptTo(edit, problem);
        }
    });
}

void ActionSet::attemptTo(const std::function<void()>& action, const QString& problem) {
    if (const QString why = attempt(action); !why.isEmpty()) {
        Q_EMIT noted((problem.isEmpty() ? tr("Not done: %1.") : problem).arg(why));
    }
}

} // namespace Editor
