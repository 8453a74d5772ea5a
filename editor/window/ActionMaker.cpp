#include "window/ActionMaker.h"

namespace Editor {

QAction* dress(QAction* action, const char* name, const QList<QKeySequence>& keys) {
    action->setObjectName(QLatin1String(name));
    action->setShortcuts(keys);
    if (!keys.isEmpty() && !keys.first().isEmpty()) {
        const QString text = action->text().remove('&').remove(QStringLiteral("..."));
        action->setToolTip(
            QStringLiteral("%1 (%2)").arg(text, keys.first().toString(QKeySequence::NativeText)));
    }
    return action;
}

QAction* dress(QAction* action, const char* name, const QList<QKeySequence>& keys, Glyph glyph) {
    action->setIcon(iconOf(glyph));
    return dress(action, name, keys);
}

void limitKeysToItsWidgets(QAction* action) {
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
}

} // namespace Editor
