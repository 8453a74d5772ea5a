#pragma once

#include "window/Theme.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace Editor {

/// What the program is told to do when it is started.
class CommandLine {
    Q_DECLARE_TR_FUNCTIONS(Editor::CommandLine)

public:
    enum class Task {
        edit,    ///< files(): none, or one to open
        render,  ///< files(): one to draw
        check,   ///< files(): one to look at
        convert, ///< files(): one to read, one to write
        help,
        version,
    };

    /// @p arguments begin with the program's name. Needs no application.
    explicit CommandLine(const QStringList& arguments);

    Task task() const noexcept { return _task; }
    /// What is wrong with the arguments; empty where nothing is.
    QString problem() const { return _problem; }
    QStringList files() const { return _parser.positionalArguments(); }

    /// Where the picture goes.
    QString picturePath() const { return _parser.value(_render); }
    /// Of the window in the picture, in pixels that the scale factor is not yet applied to.
    QSize size() const noexcept { return _windowSize; }
    /// The name of the layer whose keys are selected in the picture; nothing for none.
    std::optional<QString> layer() const;
    /// In the picture; nothing for the system's.
    Theme theme() const noexcept { return _windowTheme; }

    /// Needs an application.
    QString helpText() const { return _parser.helpText(); }

private:
    void _decideTask();
    void _readPictureOptions();
    void _countFiles();

    QCommandLineParser _parser;
    QCommandLineOption _render;
    QCommandLineOption _size;
    QCommandLineOption _select;
    QCommandLineOption _theme;
    QCommandLineOption _check;
    QCommandLineOption _convert;
    QCommandLineOption _help;
    QCommandLineOption _version;
    Task _task = Task::edit;
    QSize _windowSize{1280, 720};
    Theme _windowTheme = Theme::system;
    QString _problem;
};

} // namespace Editor
