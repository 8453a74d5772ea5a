#pragma once

#include "window/Theme.h"

#include <QObject>
#include <QSettings>

namespace Editor {

/// What the user has chosen for all documents. What a settings file says that makes no sense counts as not
/// said.
class Settings : public QObject {
    Q_OBJECT

public:
    static constexpr int mostUndoLimit = 100000;

    /// @p store must outlive the settings.
    explicit Settings(QSettings& store);

    /// How many entries a history keeps; 0, the default, for all.
    int undoLimit() const;
    /// Emits changed() if it differs.
    void setUndoLimit(int limit);

    /// Theme::system by default.
    Theme theme() const;
    /// Emits changed() if it differs.
    void setTheme(Theme theme);

    /// For what is kept beside the choices: window places, recent files.
    QSettings& store() const noexcept { return _store; }

Q_SIGNALS:
    void changed();

private:
    void _set(const QString& name, const QVariant& value);

    QSettings& _store;
};

} // namespace Editor
