#include "window/Settings.h"

#include <QStringList>

namespace Editor {

namespace {

constexpr const char* undoLimitName = "undoLimit";
constexpr const char* themeName = "theme";

// In the order of the enumeration.
QStringList themeNames() {
    return {QStringLiteral("system"), QStringLiteral("light"), QStringLiteral("dark")};
}

} // namespace

Settings::Settings(QSettings& store)
    : _store(store) {}

int Settings::undoLimit() const {
    bool isNumber = false;
    const int limit = _store.value(undoLimitName, 0).toInt(&isNumber);
    return isNumber ? qBound(0, limit, mostUndoLimit) : 0;
}

void Settings::setUndoLimit(int limit) {
    if (limit != undoLimit()) {
        _set(undoLimitName, limit);
    }
}

Theme Settings::theme() const {
    const auto index = themeNames().indexOf(_store.value(themeName).toString());
    return index < 0 ? Theme::system : static_cast<Theme>(index);
}

void Settings::setTheme(Theme theme) {
    if (theme != this->theme()) {
        _set(themeName, themeNames().at(static_cast<int>(theme)));
    }
}

void Settings::_set(const QString& name, const QVariant& value) {
    _store.setValue(name, value);
    Q_EMIT changed();
}

} // namespace Editor
