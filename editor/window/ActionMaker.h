#pragma once

#include "window/Glyph.h"

#include <QAction>
#include <QKeySequence>
#include <QList>
#include <QString>

namespace Editor {

/// Gives an action its name, for whoever looks for it, and its looks. Its tool tip says its keys. Returns @p
/// action.
QAction* dress(QAction* action, const char* name, const QList<QKeySequence>& keys = {});
QAction* dress(QAction* action, const char* name, const QList<QKeySequence>& keys, Glyph glyph);

/// Has the tool tip say the action's text and its first keys, after either has changed.
void showKeys(QAction& action);

/// Keys without Ctrl or Alt mean the action only while the widgets that carry it have the focus: elsewhere
/// they type, or press a button.
void limitKeysToItsWidgets(QAction* action);

} // namespace Editor
