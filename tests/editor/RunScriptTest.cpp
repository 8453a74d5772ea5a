#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// scripts/run in a copy of the folders that it knows, where building notes only what is asked for.
class Project {
public:
    Project() {
        for (const char* const folder : {"scripts", "examples", "build/release/editor", "elsewhere"}) {
            QDir(path(".")).mkpath(folder);
        }
        QFile::copy(EA_SOURCE_DIR "/scripts/run", path("scripts/run"));
        QFile::copy(EA_SOURCE_DIR "/examples/wave.xml", path("examples/wave.xml"));
        write("scripts/build", "echo built \"$@\"");
    }

    QString path(const QString& name) const { return QDir(_directory.path()).canonicalPath() + '/' + name; }
    QString editor() const { return path("build/release/editor/curve-editor"); }
    void write(const QString& name, const QByteArray& lines) const {
        QFile script(path(name));
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/usr/bin/env bash\n" + lines + '\n');
        QVERIFY(script.setPermissions(script.permissions() | QFile::ExeOwner));
    }

    /// What it says when it is called in the folder "elsewhere"; its errors where it fails.
    QString run(const QStringList& arguments, const QString& display) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
            environment.remove(variable);
        }
        if (!display.isEmpty()) {
            environment.insert("DISPLAY", display);
        }
        // Qt's platform without a display never frees its screen, which a leak checker would report as ours.
        environment.insert("ASAN_OPTIONS", "detect_leaks=0");
        QProcess script;
        script.setProcessEnvironment(environment);
        script.setWorkingDirectory(path("elsewhere"));
        script.start(path("scripts/run"), arguments);
        const bool isDone = script.waitForFinished(120000) && script.exitStatus() == QProcess::NormalExit &&
                            script.exitCode() == 0;
        return isDone ? script.readAllStandardOutput()
                      : "failed: " + script.errorString() + script.readAllStandardError();
    }

private:
    QTemporaryDir _directory;
};

} // namespace

class RunScriptTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutADisplayAPictureIsDrawnAndItIsSaidWhere_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("the gesture that comes with the project") << QStringList();
        QTest::newRow("a file") << QStringList("mine.xml");
    }
    void withoutADisplayAPictureIsDrawnAndItIsSaidWhere() {
        QFETCH(QStringList, arguments);
        const Project project;
        QVERIFY(QFile::link(EDITOR_PROGRAM, project.editor()));
        QVERIFY(QFile::copy(project.path("examples/wave.xml"), project.path("elsewhere/mine.xml")));
        const QString picture = project.path("build/run/editor.png");
        QCOMPARE(project.run(arguments, QString()),
                 "built release curve-editor\nThere is no display. The picture of the editor: " + picture +
                     '\n');
        const QImage image(picture);
        QVERIFY(!image.isNull());
        QCOMPARE(image.size(), QSize(1280, 720));
    }

    void aFileThatIsNotThereGivesNoPicture() {
        const Project project;
        QVERIFY(QFile::link(EDITOR_PROGRAM, project.editor()));
        const QString said = project.run({"none.xml"}, QString());
        QVERIFY2(said.startsWith("failed") && said.contains("none.xml"), qPrintable(said));
        QVERIFY(!QFile::exists(project.path("build/run/editor.png")));
    }

    void withADisplayTheEditorIsStartedOnTheFile_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("file");
        QTest::newRow("the gesture that comes with the project") << QStringList() << "examples/wave.xml";
        QTest::newRow("a file") << QStringList("my own.xml") << "elsewhere/my own.xml";
    }
    void withADisplayTheEditorIsStartedOnTheFile() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, file);
        const Project project;
        project.write("build/release/editor/curve-editor", "echo $# arguments: \"$1\"");
        QVERIFY(QFile::copy(project.path("examples/wave.xml"), project.path("elsewhere/my own.xml")));
        const QStringList lines = project.run(arguments, ":1").split('\n');
        QCOMPARE(lines.value(0), QString("built release curve-editor"));
        const QString started = lines.value(1);
        QVERIFY2(started.startsWith("1 arguments: "), qPrintable(started));
        QCOMPARE(QFileInfo(started.mid(13)).canonicalFilePath(), project.path(file));
    }
};

QTEST_GUILESS_MAIN(RunScriptTest)
#include "RunScriptTest.moc"
