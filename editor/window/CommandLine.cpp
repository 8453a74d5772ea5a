#include "window/CommandLine.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace Editor {

namespace {

constexpr int mostPixels = 16384;

std::optional<QSize> sizeIn(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral("^([1-9][0-9]{0,4})x([1-9][0-9]{0,4})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const bool isUsable = match.hasMatch() && size.width() <= mostPixels && size.height() <= mostPixels;
    return isUsable ? std::optional(size) : std::nullopt;
}

} // namespace

CommandLine::CommandLine(const QStringList& arguments)
    : _render(QStringLiteral("render"), tr("Draw the window as it would open into <OUT.png>."),
              QStringLiteral("OUT.png"))
    , _size(QStringLiteral("size"), tr("The size of the window in the picture, 1280x720 by default."),
            QStringLiteral("WxH"))
    , _select(QStringLiteral("select"), tr("Select the keys of a layer in the picture."),
              QStringLiteral("LAYER"))
    , _theme(QStringLiteral("theme"), tr("The colours of the picture."), QStringLiteral("light|dark"))
    , _check(QStringLiteral("check"), tr("Say what FILE holds, or what is wrong with it and where."))
    , _convert(QStringLiteral("convert"), tr("Read FILE and write it as an animation to OUT.xml."))
    , _help(_parser.addHelpOption())
    , _version(_parser.addVersionOption()) {
    _parser.setApplicationDescription(
        tr("Edits the motion curves of animations (.xml). Imports motion captures (.bvh) and "
           "joint trajectories (.csv)."));
    _parser.addPositionalArgument(QStringLiteral("FILE"), tr("The animation to open or the file to import."),
                                  QStringLiteral("[FILE]"));
    _parser.addPositionalArgument(QStringLiteral("OUT"), tr("With --convert, the animation to write."),
                                  QStringLiteral("[OUT.xml]"));
    _parser.addOptions({_render, _size, _select, _theme, _check, _convert});
    if (!_parser.parse(arguments)) {
        _problem = _parser.errorText();
    }
    _decideTask();
    if (_problem.isEmpty()) {
        _readPictureOptions();
    }
    if (_problem.isEmpty()) {
        _countFiles();
    }
}

std::optional<QString> CommandLine::layer() const {
    return _parser.isSet(_select) ? std::optional(_parser.value(_select)) : std::nullopt;
}

void CommandLine::_decideTask() {
    const std::array<bool, 3> tasks{_parser.isSet(_render), _parser.isSet(_check), _parser.isSet(_convert)};
    const auto count = std::count(tasks.begin(), tasks.end(), true);
    if (_parser.isSet(_help)) {
        _task = Task::help;
    } else if (_parser.isSet(_version)) {
        _task = Task::version;
    } else if (count > 1) {
        _problem = tr("only one of --render, --check and --convert can be done at once");
    } else if (count == 1) {
        _task = _parser.isSet(_render) ? Task::render : _parser.isSet(_check) ? Task::check : Task::convert;
    }
}

void CommandLine::_readPictureOptions() {
    if (_task != Task::render) {
        if (_parser.isSet(_size) || _parser.isSet(_select) || _parser.isSet(_theme)) {
            _problem = tr("--size, --select and --theme are for --render");
        }
        return;
    }
    if (_parser.isSet(_size)) {
        const std::optional<QSize> size = sizeIn(_parser.value(_size));
        _windowSize = size.value_or(_windowSize);
        if (!size) {
            _problem = tr("--size is a width and a height up to %1, as in 1280x720").arg(mostPixels);
        }
    }
    if (const QString theme = _parser.value(_theme); theme == QLatin1String("light")) {
        _windowTheme = Theme::light;
    } else if (theme == QLatin1String("dark")) {
        _windowTheme = Theme::dark;
    } else if (_parser.isSet(_theme)) {
        _problem = tr("--theme is light or dark");
    }
}

void CommandLine::_countFiles() {
    const auto count = files().size();
    switch (_task) {
    case Task::edit:
        _problem = count > 1 ? tr("one file can be opened at a time") : QString();
        break;
    case Task::render:
    case Task::check:
        _problem = count != 1 ? tr("which FILE?") : QString();
        break;
    case Task::convert:
        _problem = count != 2 ? tr("--convert needs FILE and OUT.xml") : QString();
        break;
    case Task::help:
    case Task::version:
        break;
    }
}

} // namespace Editor
