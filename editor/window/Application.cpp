#include "window/Application.h"

#include "document/Attempt.h"

namespace Editor {

bool Application::notify(QObject* receiver, QEvent* event) {
    bool isHandled = false;
    const QString why = attempt([&] { isHandled = QApplication::notify(receiver, event); });
    if (!why.isEmpty()) {
        // Who listens may want for memory as well.
        (void)attempt([&] { Q_EMIT eventFailed(why); });
    }
    return isHandled;
}

} // namespace Editor
