#include "window/CommandLine.h"
#include "TwoLayers.h"
#include "document/AnimationFile.h"
#include "tests/support/Snapshot.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <boost/property_tree/ptree.hpp>

using Editor::CommandLine;
using Task = CommandLine::Task;

namespace {

const char* const wave = EA_SOURCE_DIR "/examples/wave.xml";

struct Result {
    int exitCode = -1;
    QString output;
    QString errors;
};

Result runProgram(const QStringList& arguments, const QString& scale = "1") {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        environment.remove(variable);
    }
    environment.insert("QT_SCALE_FACTOR", scale);
    // Qt's platform without a display never frees its screen, which a leak checker would report as ours.
    environment.insert("ASAN_OPTIONS", "detect_leaks=0");
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationDirPath() + "/../../editor/curve-editor", arguments);
    if (!program.waitForFinished(120000) || program.exitStatus() != QProcess::NormalExit) {
        return {-1, program.readAllStandardOutput(), program.errorString()};
    }
    return {program.exitCode(), program.readAllStandardOutput(), program.readAllStandardError()};
}

/// How many pixels have about that colour.
int count(const QImage& image, const QColor& colour) {
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            const int distance = std::abs(pixel.red() - colour.red()) +
                                 std::abs(pixel.green() - colour.green()) +
                                 std::abs(pixel.blue() - colour.blue());
            found += distance <= 12 ? 1 : 0;
        }
    }
    return found;
}

} // namespace

class CommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTaskIsReadFromTheArguments_data();
    void theTaskIsReadFromTheArguments();
    void wrongArgumentsAreSaid_data();
    void wrongArgumentsAreSaid();
    void pictureOptionsAreRead();
    void checkingSaysWhatAFileHolds();
    void checkingABadFileFailsWithOneLine();
    void convertingWritesAnAnimation();
    void convertingToAnotherFormatFails();
    void aPictureIsDrawnWithoutADisplay_data();
    void aPictureIsDrawnWithoutADisplay();
    void theSelectedLayerIsSeenInThePicture();
    void aPictureOfWhatIsNotThereFails();
    void helpAndVersionNeedNoDisplay();
    void wrongArgumentsEndTheProgram();
};

void CommandLineTest::theTaskIsReadFromTheArguments_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("task");
    QTest::addColumn<QStringList>("files");
    const auto add = [](const char* name, const QStringList& arguments, Task task, const QStringList& files) {
        QTest::newRow(name) << arguments << static_cast<int>(task) << files;
    };
    add("nothing", {}, Task::edit, {});
    add("a file", {"a.xml"}, Task::edit, {"a.xml"});
    add("a file like an option", {"--", "--check"}, Task::edit, {"--check"});
    add("render", {"--render", "out.png", "a.xml"}, Task::render, {"a.xml"});
    add("check", {"--check", "a.xml"}, Task::check, {"a.xml"});
    add("convert", {"--convert", "a.bvh", "b.xml"}, Task::convert, {"a.bvh", "b.xml"});
    add("help", {"--help"}, Task::help, {});
    add("version", {"--version"}, Task::version, {});
}

void CommandLineTest::theTaskIsReadFromTheArguments() {
    QFETCH(QStringList, arguments);
    QFETCH(int, task);
    QFETCH(QStringList, files);
    const CommandLine line(QStringList("curve-editor") + arguments);
    QCOMPARE(line.problem(), QString());
    QCOMPARE(static_cast<int>(line.task()), task);
    QCOMPARE(line.files(), files);
}

void CommandLineTest::wrongArgumentsAreSaid_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("an unknown option") << QStringList{"--paint"};
    QTest::newRow("two files") << QStringList{"a.xml", "b.xml"};
    QTest::newRow("two tasks") << QStringList{"--check", "--convert", "a.xml", "b.xml"};
    QTest::newRow("nothing to check") << QStringList{"--check"};
    QTest::newRow("nowhere to convert to") << QStringList{"--convert", "a.xml"};
    QTest::newRow("no picture") << QStringList{"--render"};
    QTest::newRow("a picture of nothing") << QStringList{"--render", "out.png"};
    QTest::newRow("a size of a word") << QStringList{"--render", "out.png", "--size", "large", "a.xml"};
    QTest::newRow("no width") << QStringList{"--render", "out.png", "--size", "0x100", "a.xml"};
    QTest::newRow("too high") << QStringList{"--render", "out.png", "--size", "100x20000", "a.xml"};
    QTest::newRow("beyond integers") << QStringList{"--render", "out.png", "--size", "9999999999x1", "a.xml"};
    QTest::newRow("a theme that there is not")
        << QStringList{"--render", "out.png", "--theme", "red", "a.xml"};
    QTest::newRow("a size without picture") << QStringList{"--size", "10x10", "a.xml"};
}

void CommandLineTest::wrongArgumentsAreSaid() {
    QFETCH(QStringList, arguments);
    QVERIFY(!CommandLine(QStringList("curve-editor") + arguments).problem().isEmpty());
}

void CommandLineTest::pictureOptionsAreRead() {
    const CommandLine plain({"curve-editor", "--render", "out.png", "a.xml"});
    QCOMPARE(plain.picturePath(), QString("out.png"));
    QCOMPARE(plain.size(), QSize(1280, 720));
    QVERIFY(plain.theme() == Editor::Theme::system);
    QVERIFY(!plain.layer());
    const CommandLine full({"curve-editor", "--render", "out.png", "--size", "1600x900", "--select", "",
                            "--theme", "dark", "a.xml"});
    QCOMPARE(full.problem(), QString());
    QCOMPARE(full.size(), QSize(1600, 900));
    QVERIFY(full.theme() == Editor::Theme::dark);
    QCOMPARE(full.layer(), std::optional<QString>("")); // A layer may be named so.
}

void CommandLineTest::checkingSaysWhatAFileHolds() {
    const Result result = runProgram({"--check", wave});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.output.contains("8 layers"), qPrintable(result.output));
    QVERIFY2(result.output.contains("wrist pitch"), qPrintable(result.output));
    QCOMPARE(result.errors, QString());
}

void CommandLineTest::checkingABadFileFailsWithOneLine() {
    const QTemporaryDir directory;
    QFile file(directory.filePath("bad.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("<animation><layer") > 0);
    file.close();
    for (const QString& path : {file.fileName(), directory.filePath("missing.xml")}) {
        const Result result = runProgram({"--check", path});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.output, QString());
        QVERIFY2(result.errors.startsWith("curve-editor: " + path + ": "), qPrintable(result.errors));
        QCOMPARE(result.errors.count('\n'), 1);
        QVERIFY(result.errors.endsWith('\n'));
    }
}

void CommandLineTest::convertingWritesAnAnimation() {
    const QTemporaryDir directory;
    QFile file(directory.filePath("arm.csv"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("frame,a\n0,1.5\n10,2\n") > 0);
    file.close();
    const QString out = directory.filePath("arm.xml");
    const Result result = runProgram({"--convert", file.fileName(), out});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    const Editor::AnimationData data = Editor::AnimationFile(out).load();
    QCOMPARE(data.animation->size(), std::size_t{1});
    QCOMPARE(data.animation->getLayer("a")->getCurve()->getKey(0)->getValue(), 1.5F);
    QCOMPARE(Snapshot::frames(*data.animation->getLayer("a")->getCurve()), QString("0 10"));
}

void CommandLineTest::convertingToAnotherFormatFails() {
    const QTemporaryDir directory;
    const QString out = directory.filePath("wave.bvh");
    const Result result = runProgram({"--convert", wave, out});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errors.startsWith("curve-editor: " + out + ": "), qPrintable(result.errors));
    QVERIFY(!QFile::exists(out));
}

void CommandLineTest::aPictureIsDrawnWithoutADisplay_data() {
    QTest::addColumn<QString>("theme");
    QTest::addColumn<QString>("scale");
    QTest::addColumn<QSize>("size");
    QTest::newRow("light") << "light"
                           << "1" << QSize(1000, 700);
    QTest::newRow("dark") << "dark"
                          << "1" << QSize(1000, 700);
    QTest::newRow("twice as large") << "dark"
                                    << "2" << QSize(2000, 1400);
}

void CommandLineTest::aPictureIsDrawnWithoutADisplay() {
    QFETCH(QString, theme);
    QFETCH(QString, scale);
    QFETCH(QSize, size);
    const QTemporaryDir directory;
    const QString out = directory.filePath("window.png");
    const Result result = runProgram({"--render", out, "--size", "1000x700", "--theme", theme, wave}, scale);
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    const QImage image(out);
    QCOMPARE(image.size(), size);
    // Much of it is ground, and each layer's colour is there.
    const QPalette palette = Editor::paletteOf(theme == "dark" ? Editor::Theme::dark : Editor::Theme::light);
    QVERIFY(count(image, palette.color(QPalette::Window)) > size.width() * size.height() / 20);
    for (int i = 0; i < 8; ++i) {
        const QColor colour = Editor::Document::colourAt(i);
        QVERIFY2(count(image, colour) > 20, qPrintable(colour.name()));
    }
}

void CommandLineTest::theSelectedLayerIsSeenInThePicture() {
    const QTemporaryDir directory;
    const QString plain = directory.filePath("plain.png");
    const QString selected = directory.filePath("selected.png");
    QCOMPARE(runProgram({"--render", plain, "--theme", "light", wave}).exitCode, 0);
    QCOMPARE(runProgram({"--render", selected, "--theme", "light", "--select", "elbow", wave}).exitCode, 0);
    QVERIFY(QImage(plain) != QImage(selected));
}

void CommandLineTest::aPictureOfWhatIsNotThereFails() {
    const QTemporaryDir directory;
    const QString out = directory.filePath("window.png");
    const Result layer = runProgram({"--render", out, "--select", "nose", wave});
    QCOMPARE(layer.exitCode, 1);
    QVERIFY2(layer.errors.contains("\"nose\""), qPrintable(layer.errors));
    const Result file = runProgram({"--render", out, directory.filePath("missing.xml")});
    QCOMPARE(file.exitCode, 1);
    QVERIFY2(file.errors.contains("missing.xml: "), qPrintable(file.errors));
    const Result folder = runProgram({"--render", directory.filePath("missing/window.png"), wave});
    QCOMPARE(folder.exitCode, 1);
    QVERIFY2(folder.errors.contains("missing/window.png: "), qPrintable(folder.errors));
    QVERIFY(!QFile::exists(out));
}

void CommandLineTest::helpAndVersionNeedNoDisplay() {
    const Result help = runProgram({"--help"});
    QCOMPARE(help.exitCode, 0);
    for (const char* const option : {"--render", "--size", "--select", "--theme", "--check", "--convert"}) {
        QVERIFY2(help.output.contains(option), option);
    }
    const Result version = runProgram({"--version"});
    QCOMPARE(version.exitCode, 0);
    QVERIFY(version.output.startsWith("curve-editor "));
}

void CommandLineTest::wrongArgumentsEndTheProgram() {
    const Result result = runProgram({"--paint"});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errors.contains("paint"), qPrintable(result.errors));
}

QTEST_GUILESS_MAIN(CommandLineTest)
#include "CommandLineTest.moc"
