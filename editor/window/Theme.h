#pragma once

#include <QPalette>

namespace Editor {

/// How the program looks.
enum class Theme {
    system, ///< as the desktop has it
    light,
    dark,
};

/// The colours of the light or the dark theme.
QPalette paletteOf(Theme theme);

/// Gives the whole application the theme. Needs a QApplication.
void applyTheme(Theme theme);

} // namespace Editor
