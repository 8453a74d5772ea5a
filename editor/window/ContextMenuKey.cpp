#include "window/ContextMenuKey.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QShortcut>
#include <QWidget>

namespace Editor {

ContextMenuKey::ContextMenuKey(QWidget& window)
    : QObject(&window) {
    const auto* const shortcut = new QShortcut(Qt::SHIFT | Qt::Key_F10, &window);
    connect(shortcut, &QShortcut::activated, this, &ContextMenuKey::_open);
}

// Where the menu key would open it: at the cursor of a text or the current cell of a table.
void ContextMenuKey::_open() {
    if (QWidget* const widget = QApplication::focusWidget()) {
        const QPoint point = widget->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, point, widget->mapToGlobal(point));
        QApplication::sendEvent(widget, &event);
    }
}

} // namespace Editor
