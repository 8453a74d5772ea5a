#include "AnimationState.h"
#include "EditSession.h"
#include "document/AnimationFile.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using Objects = AnimationState::Objects;

namespace {

const QString shippedFile = QString(EA_SOURCE_DIR) + "/examples/wave.xml";

struct Result {
    int exitCode = -1;
    QString output;
    QString errors;
};

Result runProgram(const QStringList& arguments, const QProcessEnvironment& environment) {
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(EDIT_SESSION_PROGRAM, arguments);
    if (!program.waitForFinished(280000) || program.exitStatus() != QProcess::NormalExit) {
        return {-1, program.readAllStandardOutput(), program.errorString()};
    }
    return {program.exitCode(), program.readAllStandardOutput(), program.readAllStandardError()};
}

Result runProgram(const QStringList& arguments) {
    // Qt's "offscreen" platform never frees its screen, which a leak checker would report as ours.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "minimal");
    return runProgram(arguments, environment);
}

/// An animation of one layer with "bezier auto" keys of value 1 at the given frames.
QByteArray animationWithKeys(const QList<unsigned int>& frames) {
    QByteArray text = R"(<animation><layer name="only"><curve timeUnit="1/25" minimum="-inf" maximum="inf")"
                      R"( maximumDerivative="inf">)";
    for (const unsigned int frame : frames) {
        text += R"(<key value="1" frame=")" + QByteArray::number(frame) +
                R"("><left type="bezier auto" dx="0" dy="0"/>)"
                R"(<right type="bezier auto" dx="0" dy="0"/></key>)";
    }
    return text + "</curve></layer></animation>";
}

} // namespace

class EditSessionProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theProgramPlaysItsSessionOn_data();
    void theProgramPlaysItsSessionOn();
    void theProgramSavesAndDraws();
    void theProgramRefusesWhatItCannotRead_data();
    void theProgramRefusesWhatItCannotRead();
    void theProgramFailsWhereItCannotWrite_data();
    void theProgramFailsWhereItCannotWrite();
    void theProgramNeedsNoDisplay();
};

void EditSessionProgramTest::theProgramPlaysItsSessionOn_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("entries");
    QTest::newRow("the shipped file") << QString() << QByteArray() << 12;
    QTest::newRow("a walk") << QString(EA_SHARED_DATA "/walk.bvh") << QByteArray() << 12;
    QTest::newRow("a dance") << QString(EA_SHARED_DATA "/dance.bvh") << QByteArray() << 12;
    QTest::newRow("a single key") << QString("one.xml") << animationWithKeys({7}) << 12;
    QTest::newRow("a single key at the last frame")
        << QString("end.xml") << animationWithKeys({4294967295U}) << 6;
    QTest::newRow("no key") << QString("none.xml") << animationWithKeys({}) << 0;
    QTest::newRow("no layer") << QString("empty.xml") << QByteArray("<animation/>") << 0;
}

void EditSessionProgramTest::theProgramPlaysItsSessionOn() {
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QFETCH(int, entries);
    const QTemporaryDir directory;
    if (!content.isEmpty()) {
        path = directory.filePath(path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64{content.size()});
    } else if (!path.isEmpty() && !QFile::exists(path)) { // The captures are not part of the repository.
        QSKIP(qPrintable(path + " is missing"));
    }
    const Result result = runProgram(path.isEmpty() ? QStringList() : QStringList(path));
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors.right(4000)));
    QVERIFY2(result.output.contains(QString("\n%1 entries\n").arg(entries)), qPrintable(result.output));
    QCOMPARE(result.output.count("(left out: "), 12 - entries);
    for (const char* const check :
         {"all undone, the same keys as opened: equal", "the file read anew: equal",
          "all redone, the same keys as edited: equal", "saved and read back: equal"}) {
        QVERIFY2(result.output.contains(check), check);
    }
}

void EditSessionProgramTest::theProgramSavesAndDraws() {
    const QTemporaryDir directory;
    const QString saved = directory.filePath("saved.xml");
    const QString picture = directory.filePath("picture.png");
    const Result result = runProgram({shippedFile, "--save", saved, "--picture", picture});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors.right(4000)));

    // The session made by hand ends in the same animation.
    const auto animation = Editor::AnimationFile(shippedFile).load().animation;
    EditSession session(*animation);
    session.play();
    const auto reloaded = Editor::AnimationFile(saved).load().animation;
    const AnimationState expected = AnimationState(*animation).asReadBack();
    QCOMPARE(AnimationState(*reloaded).comparedWith(expected, Objects::any).differences, QStringList());

    const QImage image(picture);
    QCOMPARE(image.size(), QSize(1280, 720));
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            colors.insert(image.pixel(x, y));
        }
    }
    // One colour for the curves of each panel.
    for (const QRgb color : {0xff5ac8fa, 0xffffb347, 0xff8ee07a, 0xfff27fb2}) {
        QVERIFY2(colors.contains(color), qPrintable(QString::number(color, 16)));
    }
}

void EditSessionProgramTest::theProgramRefusesWhatItCannotRead_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");
    QTest::newRow("a damaged capture") << "a.bvh" << QByteArray("HIERARCHY\nROOT\n{\n")
                                       << "line 3: \"{\" stands where a joint's name should stand";
    QTest::newRow("a damaged animation")
        << "a.xml" << animationWithKeys({5}).replace("frame=\"5\"", "") << "attribute \"frame\" is missing";
    QTest::newRow("no XML") << "a.xml" << QByteArray("HIERARCHY") << "a.xml: ";
    QTest::newRow("another kind of file")
        << "a.txt" << QByteArray("text") << "neither an animation (.xml) nor a motion capture (.bvh)";
}

void EditSessionProgramTest::theProgramRefusesWhatItCannotRead() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, problem);
    const QTemporaryDir directory;
    QFile file(directory.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64{content.size()});
    file.close();
    const Result result = runProgram({file.fileName()});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errors.contains("edit_session: " + file.fileName() + ": "), qPrintable(result.errors));
    QVERIFY2(result.errors.contains(problem), qPrintable(result.errors));
}

void EditSessionProgramTest::theProgramFailsWhereItCannotWrite_data() {
    QTest::addColumn<QString>("option");
    QTest::newRow("--save") << "--save";
    QTest::newRow("--picture") << "--picture";
}

void EditSessionProgramTest::theProgramFailsWhereItCannotWrite() {
    QFETCH(QString, option);
    const QTemporaryDir directory;
    const QString path = directory.filePath(option == "--save" ? "missing/out.xml" : "missing/out.png");
    const Result result = runProgram({option, path});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errors.contains("edit_session: " + path + ": "), qPrintable(result.errors));
}

void EditSessionProgramTest::theProgramNeedsNoDisplay() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        environment.remove(variable);
    }
    const Result result = runProgram({"--version"}, environment);
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.startsWith("edit_session "));
}

QTEST_GUILESS_MAIN(EditSessionProgramTest)
#include "EditSessionProgramTest.moc"
