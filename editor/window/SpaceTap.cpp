#include "window/SpaceTap.h"

#include <QKeyEvent>
#include <QWidget>

#include <utility>

namespace Editor {

SpaceTap::SpaceTap(QWidget& watched)
    : QObject(&watched) {
    watched.installEventFilter(this);
}

bool SpaceTap::eventFilter(QObject* object, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isKey) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool isSpace = key.key() == Qt::Key_Space && key.modifiers() == Qt::NoModifier;
        if (event->type() == QEvent::KeyRelease) {
            if (isSpace && !key.isAutoRepeat() && std::exchange(_isTap, false)) {
                Q_EMIT tapped();
            }
        } else if (!isSpace || !key.isAutoRepeat()) {
            _isTap = isSpace;
        }
    } else if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::FocusOut) {
        _isTap = false;
    }
    return QObject::eventFilter(object, event);
}

} // namespace Editor
