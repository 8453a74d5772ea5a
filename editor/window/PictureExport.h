#pragma once

#include <QString>

class QWidget;

namespace Editor {

/// Writes what the widget shows to a file by its suffix, ".png" or ".svg". The file that stood there before
/// is replaced when the new one is complete. Throws std::runtime_error, naming the file and what is wrong.
void exportPicture(QWidget& widget, const QString& path);

} // namespace Editor
