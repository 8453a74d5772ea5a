#pragma once

class QImage;

namespace Editor {

class CommandLine;

/// The window as it would open a file, without showing it: what CommandLine::Task::render asks for. Neither
/// settings nor unsaved work left behind have a part in it. Throws std::runtime_error when the file cannot be
/// read or has no such layer.
QImage windowPicture(const CommandLine& line);

} // namespace Editor
