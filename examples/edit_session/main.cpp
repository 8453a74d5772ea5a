// An editor's session without an editor: opens an animation, edits it with every undo command, undoes and
// redoes it all, saves it, and checks after each step that nothing is lost. Exits with 1 when anything
// differs.

#include "AnimationState.h"
#include "CurvePicture.h"
#include "EditSession.h"
#include "document/AnimationFile.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextStream>

#include <boost/property_tree/ptree.hpp>

#include <exception>
#include <stdexcept>

namespace {

using Objects = AnimationState::Objects;

void printHistory(QTextStream& out, const EditSession& session) {
    out << "  keys  signals  steps  history\n";
    for (const EditSession::Entry& entry : session.history()) {
        out << QString("%1%2%3  %4\n")
                   .arg(entry.keysTouched, 6)
                   .arg(entry.signalsReceived, 9)
                   .arg(entry.steps, 7)
                   .arg(entry.text);
    }
    out << session.undoCount() << " entries\n\n" << Qt::flush;
}

/// Throws when the states differ.
void check(QTextStream& out, const QString& what, const AnimationState& actual,
           const AnimationState& expected, Objects objects) {
    const AnimationState::Comparison result = actual.comparedWith(expected, objects);
    if (!result.differences.isEmpty()) {
        const QStringList first = result.differences.mid(0, 10);
        throw std::runtime_error(QString("%1: %2 differences\n  %3")
                                     .arg(what)
                                     .arg(result.differences.size())
                                     .arg(first.join("\n  "))
                                     .toStdString());
    }
    out << what << ": equal, " << result.keysCompared << " keys bit by bit";
    if (result.recomputed > 0) {
        out << ", but for " << result.recomputed
            << " automatic handles recomputed within their tolerance of 0.0001";
    }
    out << '\n' << Qt::flush;
}

void run(const QString& path, const QString& savePath, const QString& picturePath) {
    QTextStream out(stdout);
    const Editor::AnimationFile file(path);
    const auto animation = file.load().animation;
    const VQ::Animation::Animation recordBefore = animation->baseAnimation();
    const AnimationState before(*animation);
    out << path << ": " << animation->size() << " layers, last frame " << animation->getGreaterIndex()
        << "\n\n";

    EditSession session(*animation);
    session.play();
    const AnimationState after(*animation);
    const VQ::Animation::Animation recordAfter = animation->baseAnimation();
    printHistory(out, session);

    session.undoAll();
    check(out, "all undone, the same keys as opened", AnimationState(*animation), before, Objects::same);
    check(out, "all undone, the file read anew", AnimationState(*animation),
          AnimationState(*file.load().animation), Objects::any);
    session.redoAll();
    check(out, "all redone, the same keys as edited", AnimationState(*animation), after, Objects::same);

    const QTemporaryDir directory;
    const Editor::AnimationFile saved(savePath.isEmpty() ? directory.filePath("edited.xml") : savePath);
    saved.save(animation->serialize());
    const auto reloaded = saved.load().animation;
    check(out, "saved and read back", AnimationState(*reloaded), after.asReadBack(), Objects::any);

    if (!picturePath.isEmpty()) {
        const QString title = QFileInfo(path).fileName() + ", one editing session";
        if (!CurvePicture(recordBefore, recordAfter, title).draw().save(picturePath)) {
            throw std::runtime_error((picturePath + ": the picture could not be written").toStdString());
        }
        out << "picture: " << picturePath << '\n';
    }
}

} // namespace

int main(int argc, char** argv) {
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    // Nothing is shown, only painted into an image, which works without a display as well.
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY") &&
        !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
#endif
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName("edit_session");
    QGuiApplication::setApplicationVersion(EDIT_SESSION_VERSION);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Plays an editing session on an animation and checks that undo, redo and files "
        "lose nothing.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("FILE", "The animation (.xml) or motion capture (.bvh) to edit.", "[FILE]");
    const QCommandLineOption saveOption("save", "Save the edited animation as <OUT.xml>.", "OUT.xml");
    const QCommandLineOption pictureOption("picture", "Draw curves before and after as <OUT.png>.",
                                           "OUT.png");
    parser.addOptions({saveOption, pictureOption});
    parser.process(application);

    const QStringList files = parser.positionalArguments();
    if (files.size() > 1) {
        parser.showHelp(2);
    }
    try {
        run(files.value(0, EDIT_SESSION_FILE), parser.value(saveOption), parser.value(pictureOption));
        return 0;
    } catch (const std::exception& error) {
        QTextStream(stderr) << "edit_session: " << QString::fromUtf8(error.what()) << '\n';
        return 1;
    }
}
