// The reference editor's command line.

#include "document/AnimationData.h"
#include "document/AnimationFile.h"
#include "document/AnimationSummary.h"
#include "window/Application.h"
#include "window/CommandLine.h"
#include "window/MainWindow.h"
#include "window/Settings.h"
#include "window/WidgetFileDialogs.h"
#include "window/WindowPicture.h"
#include "window/Workspace.h"

#include <QImage>
#include <QSaveFile>
#include <QTextStream>
#include <QTimer>

#include <boost/property_tree/ptree.hpp>

#include <exception>
#include <stdexcept>

namespace {

using Editor::CommandLine;
using Task = CommandLine::Task;

constexpr int badFile = 1;
constexpr int badArguments = 2;

int complain(int code, const QString& what) {
    QTextStream(stderr) << "curve-editor: " << what.simplified() << '\n';
    return code;
}

void check(const QString& path) {
    const Editor::AnimationData data = Editor::AnimationFile(path).load();
    QTextStream(stdout) << Editor::AnimationSummary(*data.animation).text();
}

void convert(const QString& from, const QString& to) {
    Editor::Document document;
    document.replace(Editor::AnimationFile(from).load(), QString());
    Editor::AnimationFile(to).save(document.tree());
}

void render(const CommandLine& line) {
    const QImage picture = Editor::windowPicture(line);
    QSaveFile file(line.picturePath());
    if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.commit()) {
        throw std::runtime_error((line.picturePath() + ": " + file.errorString()).toStdString());
    }
}

int edit(const CommandLine& line) {
    QSettings store;
    Editor::Settings settings(store);
    Editor::WidgetFileDialogs dialogs;
    Editor::Workspace workspace;
    Editor::MainWindow window(workspace, settings, dialogs);
    dialogs.setWindow(&window);
    window.show();
    // Later, since questions about a file belong in front of the window.
    QTimer::singleShot(0, &window, [&] { window.session().start(line.files().value(0)); });
    return Editor::Application::exec();
}

int run(const CommandLine& line) {
    if (!line.problem().isEmpty()) {
        return complain(badArguments, line.problem());
    }
    try {
        switch (line.task()) {
        case Task::edit:
            return edit(line);
        case Task::render:
            render(line);
            break;
        case Task::check:
            check(line.files().at(0));
            break;
        case Task::convert:
            convert(line.files().at(0), line.files().at(1));
            break;
        case Task::help:
            QTextStream(stdout) << line.helpText();
            break;
        case Task::version:
            QTextStream(stdout) << QCoreApplication::applicationName() << ' '
                                << QCoreApplication::applicationVersion() << '\n';
            break;
        }
        return 0;
    } catch (const std::exception& error) {
        return complain(badFile, QString::fromUtf8(error.what()));
    }
}

// A picture needs no display, and neither does a complaint.
void doWithoutDisplay() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY") &&
        !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
#endif
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication::setOrganizationName(QStringLiteral("curve-editor"));
    QCoreApplication::setApplicationName(QStringLiteral("curve-editor"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CURVE_EDITOR_VERSION));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0) // Qt 6 always does both.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif

    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    const CommandLine first(arguments); // Options of Qt's own are still in it, and a problem of this one.
    const Task task = first.task();
    if (first.problem().isEmpty() && task != Task::edit && task != Task::render) {
        const QCoreApplication application(argc, argv);
        return run(first);
    }
    if (task != Task::edit || !first.problem().isEmpty()) {
        doWithoutDisplay();
    }
    const Editor::Application application(argc, argv);
    return run(CommandLine(QCoreApplication::arguments()));
}
