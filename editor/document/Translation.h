#pragma once

#include <QCoreApplication>
#include <QString>

namespace Editor {

/// @p text in the user's language, with @p count for "%n" where it is given: for what no object of Qt's says.
/// Translations find it by the name of this namespace.
inline QString tr(const char* text, const char* comment = nullptr, int count = -1) {
    return QCoreApplication::translate("Editor", text, comment, count);
}

} // namespace Editor
