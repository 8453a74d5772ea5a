#include "window/ActionMaker.h"

namespace Editor {

QAction* dress(QAction* action, const char* name, const QList<QKeySequence>& keys) {
    action->setObjectName(QLatin1String(name));
    action->setShortcuts(keys);
    showKeys(*action);
    return action;
}

QAction* dress(QAction* action, const char* name, const QList<QKeySequence>& keys, Glyph glyph) {
    action->setIcon(iconOf(glyph));
    return dress(action, name, keys);
}

void showKeys(QAction& action) {
    const QString text = action.text().remove('&').remove(QStringLiteral("..."));
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    action.setToolTip(keys.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, keys));
}

void limitKeysToItsWidgets(QAction* action) {
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
}

} // namespace Editor
