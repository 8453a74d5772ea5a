#include "FileScene.h"
#include "support/Victim.h"
#include "tests/editor/support/UnsavedWork.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

#include <utility>

using Editor::CrashCopy;
using FileScene::Scene;
using FileScene::valueIn;
using Recovery = ScriptedDialogs::Recovery;
using Unsaved = ScriptedDialogs::Unsaved;

namespace {

void removeOwnData() {
    QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).removeRecursively();
}

/// A copy of work of a program that is gone, as makeFile() makes a file.
QString leaveBehind(Scene& scene, const QString& file, float value, int number = 1) {
    QString copy = CrashCopy::pathOf(file, number);
    QDir().mkpath(QFileInfo(copy).absolutePath());
    if (!QFile::rename(scene.makeFile("crashed.xml", value), copy)) {
        qFatal("no copy could be made");
    }
    return copy;
}

/// All values by their bits, without the places in memory by which a snapshot tells keys apart.
QString bitsOf(const Editor::Document& document) {
    return Snapshot::of(document.animation()).remove(QRegularExpression("(?<=: )[0-9a-f]+(?= value)"));
}

} // namespace

class RecoveryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { removeOwnData(); }
    void init() { removeOwnData(); }
    void workIsRecoveredBeforeItsFileIsOpened();
    void workThatIsNotWantedIsDeleted();
    void workThatIsDecidedAboutLaterStays();
    void theUserSeesWhenTheWorkAndTheFileWereWritten();
    void savingWhatWasRecoveredLeavesNothingBehind();
    void damagedWorkIsSaidAndKeptAndTheFileOpens();
    void allWorkOnNoFileIsOfferedAtTheStart_data();
    void allWorkOnNoFileIsOfferedAtTheStart();
    void workOnRecentFilesIsOfferedAtTheStart();
    void workRecoveredIsNotLostToTheNext();
    void openingTheOpenFileAgainDoesNotOfferItsOwnWork();
    void workOfAnotherMachineIsOfferedWithAWarning();
    void workOfARunningProgramIsMentionedOnly();
    void workOfAKilledProgramComesBackAsItWas_data();
    void workOfAKilledProgramComesBackAsItWas();
    void anImportSurvivesTheDeathOfTheEditor();
};

void RecoveryTest::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setApplicationName(QString("RecoveryTest%1").arg(QCoreApplication::applicationPid()));
}

void RecoveryTest::workIsRecoveredBeforeItsFileIsOpened() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    leaveBehind(scene, path, 9.0F);
    scene.dialogs.recovery = Recovery::recover;
    QVERIFY(scene.session.open(path));
    QCOMPARE(scene.dialogs.asked, QStringList{"recover x.xml"});
    QCOMPARE(scene.value(), 9.0F);
    QCOMPARE(scene.document.path(), path);
    QVERIFY(scene.document.isModified());
    QCOMPARE(valueIn(path), 7.5F);
    QVERIFY(scene.session.save());
    QCOMPARE(valueIn(path), 9.0F);
}

void RecoveryTest::workThatIsNotWantedIsDeleted() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    const QString copy = leaveBehind(scene, path, 9.0F);
    scene.dialogs.recovery = Recovery::remove;
    QVERIFY(scene.session.open(path));
    QCOMPARE(scene.value(), 7.5F);
    QVERIFY(!scene.document.isModified());
    QVERIFY(!QFile::exists(copy));
}

void RecoveryTest::workThatIsDecidedAboutLaterStays() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    const QString copy = leaveBehind(scene, path, 9.0F);
    QVERIFY(scene.session.open(path));
    QCOMPARE(scene.value(), 7.5F);
    scene.edit(8.0F);
    QTRY_VERIFY(QFile::exists(CrashCopy::pathOf(path, 2)));
    QVERIFY(scene.session.save());
    scene.session.newAnimation();
    QCOMPARE(valueIn(copy), 9.0F);
    scene.dialogs.asked.clear();
    QVERIFY(scene.session.open(path));
    QCOMPARE(scene.dialogs.asked, QStringList{"recover x.xml"});
}

void RecoveryTest::theUserSeesWhenTheWorkAndTheFileWereWritten() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    const QString gone = scene.path("gone.xml");
    QFile copy(leaveBehind(scene, path, 9.0F));
    leaveBehind(scene, gone, 9.0F);
    const QDateTime time(QDate(2020, 2, 3), QTime(4, 5, 6), Qt::UTC);
    QVERIFY(copy.open(QIODevice::ReadWrite) && copy.setFileTime(time, QFileDevice::FileModificationTime));
    copy.close();
    scene.session.open(path);
    QCOMPARE(scene.dialogs.leftBehind.size(), 1);
    QCOMPARE(scene.dialogs.leftBehind[0].written, time);
    QCOMPARE(scene.dialogs.leftBehind[0].saved, QFileInfo(path).lastModified());
    QVERIFY(!scene.dialogs.leftBehind[0].mayBeInUse);
    scene.session.open(gone);
    QVERIFY(!scene.dialogs.leftBehind[1].saved.isValid());
}

void RecoveryTest::savingWhatWasRecoveredLeavesNothingBehind() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    const QString copy = leaveBehind(scene, path, 9.0F);
    scene.dialogs.recovery = Recovery::recover;
    QVERIFY(scene.session.open(path));
    QVERIFY(QFile::exists(copy)); // The work is nowhere else on disk.
    QVERIFY(scene.session.save());
    QVERIFY(!QFile::exists(copy));
    scene.session.newAnimation();
    scene.dialogs.asked.clear();
    QVERIFY(scene.session.open(path));
    QCOMPARE(scene.dialogs.asked, QStringList());
}

void RecoveryTest::damagedWorkIsSaidAndKeptAndTheFileOpens() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    const QString copy = scene.write(QFileInfo(CrashCopy::pathOf(path)).fileName(), "<anim");
    scene.dialogs.recovery = Recovery::recover;
    QVERIFY(scene.session.open(path));
    QCOMPARE(scene.dialogs.problems.size(), 1);
    QVERIFY2(scene.dialogs.problems[0].contains(copy), qPrintable(scene.dialogs.problems[0]));
    QCOMPARE(scene.value(), 7.5F);
    scene.edit(8.0F);
    QTRY_VERIFY(QFile::exists(CrashCopy::pathOf(path, 2)));
    QVERIFY(scene.session.save());
    QFile file(copy);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("<anim"));
}

void RecoveryTest::allWorkOnNoFileIsOfferedAtTheStart_data() {
    QTest::addColumn<QString>("file");
    QTest::newRow("without a file to open") << QString();
    QTest::newRow("with a file to open") << "x.xml";
    QTest::newRow("with a file that is not there") << "missing.xml";
}

void RecoveryTest::allWorkOnNoFileIsOfferedAtTheStart() {
    QFETCH(QString, file);
    Scene scene;
    scene.makeFile("x.xml", 7.5F);
    const QString first = leaveBehind(scene, {}, 1.5F);
    const QString second = leaveBehind(scene, {}, 2.5F, 2);
    scene.session.start(file.isEmpty() ? file : scene.path(file));
    QCOMPARE(scene.dialogs.asked,
             (QStringList{"recover an untitled animation", "recover an untitled animation"}));
    QCOMPARE(scene.document.path(), file == "x.xml" ? scene.path(file) : QString());
    QVERIFY(QFile::exists(first) && QFile::exists(second));

    scene.dialogs.recovery = Recovery::recover;
    QVERIFY(QFile::remove(second));
    scene.session.start({});
    QCOMPARE(scene.value(), 1.5F);
    QCOMPARE(scene.document.path(), QString());
    QVERIFY(scene.document.isModified());
    QVERIFY(QFile::exists(first));
    scene.session.leave();
    QVERIFY(!QFile::exists(first));
}

void RecoveryTest::workOnRecentFilesIsOfferedAtTheStart() {
    Scene scene;
    const QString x = scene.makeFile("x.xml", 7.5F);
    const QString y = scene.makeFile("y.xml", 8.5F);
    scene.recent.add(x);
    scene.recent.add(y);
    leaveBehind(scene, x, 9.0F);
    leaveBehind(scene, y, 10.0F);
    scene.session.start(y); // It is offered once.
    QCOMPARE(scene.dialogs.asked, (QStringList{"recover y.xml", "recover x.xml"}));
    QCOMPARE(scene.value(), 8.5F);
    QFile::remove(CrashCopy::pathOf(y));
    scene.dialogs.recovery = Recovery::recover;
    scene.session.start({});
    QCOMPARE(scene.value(), 9.0F);
    QCOMPARE(scene.document.path(), x);
    QVERIFY(scene.document.isModified());
}

void RecoveryTest::workRecoveredIsNotLostToTheNext() {
    Scene scene;
    const QString first = leaveBehind(scene, {}, 1.5F);
    const QString second = leaveBehind(scene, {}, 2.5F, 2);
    scene.dialogs.recovery = Recovery::recover;
    scene.session.start({});
    QCOMPARE(scene.dialogs.asked.size(), 3);
    QCOMPARE(scene.dialogs.asked.last(), QString("unsaved Untitled")); // Which the user cancels.
    QVERIFY(QFile::exists(first) && QFile::exists(second));
    scene.dialogs.unsaved = Unsaved::save;
    scene.dialogs.savePath = scene.path("kept.xml");
    const float kept = scene.value();
    scene.session.start({});
    QCOMPARE(valueIn(scene.path("kept.xml")), kept);
    QCOMPARE(scene.value(), 4.0F - kept);
    QVERIFY(QFile::exists(first) != QFile::exists(second));
}

void RecoveryTest::openingTheOpenFileAgainDoesNotOfferItsOwnWork() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    scene.session.open(path);
    scene.edit(9.0F);
    QTRY_VERIFY(QFile::exists(CrashCopy::pathOf(path)));
    scene.dialogs.unsaved = Unsaved::discard;
    scene.dialogs.recovery = Recovery::recover;
    const QSignalSpy problems(&scene.session, &Editor::FileSession::problem);
    QVERIFY(scene.session.open(path));
    QCOMPARE(scene.dialogs.asked, QStringList{"unsaved x.xml"});
    QCOMPARE(problems.count(), 0);
    QCOMPARE(scene.value(), 7.5F);
    QVERIFY(!scene.document.isModified());
    QVERIFY(!QFile::exists(CrashCopy::pathOf(path)));
}

void RecoveryTest::workOfAnotherMachineIsOfferedWithAWarning() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    const QString copy = leaveBehind(scene, path, 9.0F);
    QFile lock(copy + ".lock");
    QVERIFY(lock.open(QIODevice::WriteOnly) && lock.write("1\neditor\nelsewhere\nmachine\nboot\n") > 0);
    lock.close();
    scene.dialogs.recovery = Recovery::recover;
    QVERIFY(scene.session.open(path));
    QVERIFY(scene.dialogs.leftBehind.at(0).mayBeInUse);
    QCOMPARE(scene.dialogs.leftBehind[0].host, QString("elsewhere"));
    QCOMPARE(scene.value(), 9.0F);
    QTRY_VERIFY(QFile::exists(CrashCopy::pathOf(path, 2)));
    QVERIFY(scene.session.save());
    QVERIFY(QFile::exists(copy) && lock.exists()); // That program may yet write it.
    QVERIFY(!QFile::exists(CrashCopy::pathOf(path, 2)));
    scene.dialogs.recovery = Recovery::remove;
    QVERIFY(scene.session.open(path));
    QVERIFY(!QFile::exists(copy) && !lock.exists());
}

void RecoveryTest::workOfARunningProgramIsMentionedOnly() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    const Victim onFile(path);
    const Victim onNoFile({});
    scene.session.start({});
    QCOMPARE(scene.dialogs.asked, QStringList());
    const QSignalSpy problems(&scene.session, &Editor::FileSession::problem);
    scene.session.start(path);
    QCOMPARE(scene.dialogs.asked, QStringList());
    QCOMPARE(scene.value(), 7.5F);
    QCOMPARE(problems.count(), 1);
    QVERIFY(problems[0][0].toString().contains("x.xml"));
    QVERIFY(QFile::exists(CrashCopy::pathOf(path)));
}

void RecoveryTest::workOfAKilledProgramComesBackAsItWas_data() {
    QTest::addColumn<bool>("hasFile");
    QTest::addColumn<bool>("isNamed");
    QTest::newRow("on a file that is opened") << true << true;
    QTest::newRow("on a recent file") << true << false;
    QTest::newRow("on no file") << false << false;
}

void RecoveryTest::workOfAKilledProgramComesBackAsItWas() {
    QFETCH(bool, hasFile);
    QFETCH(bool, isNamed);
    Scene scene;
    const QString path = hasFile ? scene.makeFile("x.xml", 7.5F) : QString();
    Editor::Document expected;
    UnsavedWork::open(expected, path);
    const auto before = expected.tree();
    UnsavedWork::edit(expected);
    QVERIFY(expected.tree() != before);

    Victim victim(path);
    victim.kill();
    if (hasFile) {
        scene.recent.add(path);
    }
    scene.dialogs.recovery = Recovery::recover;
    scene.session.start(isNamed ? path : QString());
    QCOMPARE(scene.dialogs.asked.size(), 1);
    QVERIFY(scene.document.tree() == expected.tree());
    QCOMPARE(bitsOf(scene.document), bitsOf(expected));
    QCOMPARE(scene.document.path(), path);
    QVERIFY(scene.document.isModified());
    scene.dialogs.savePath = scene.path("saved.xml");
    QVERIFY(scene.session.save());
    QVERIFY(CrashCopy::of(path).empty());
}

// The program itself, whose own data are in a folder of the test's.
void RecoveryTest::anImportSurvivesTheDeathOfTheEditor() {
    Scene scene;
    const QString path = scene.write("arm.csv", "frame,a\n0,1.5\n10,2\n");
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("XDG_DATA_HOME", scene.path("data"));
    environment.insert("XDG_CONFIG_HOME", scene.path("config"));
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationDirPath() + "/../../editor/curve-editor", {path});
    const QString written = scene.path("data/curve-editor/curve-editor/.untitled.unsaved.xml");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(written), 60000);
    program.kill();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);

    const QString copy = CrashCopy::pathOf({});
    QVERIFY(QDir().mkpath(QFileInfo(copy).absolutePath()));
    QVERIFY(QFile::copy(written, copy) && QFile::copy(written + ".lock", copy + ".lock"));
    scene.dialogs.recovery = Recovery::recover;
    scene.session.start({});
    QVERIFY(!scene.dialogs.leftBehind.at(0).mayBeInUse);
    Editor::Document expected;
    expected.replace(Editor::AnimationFile(path).load(), QString());
    QVERIFY(scene.document.tree() == expected.tree());
    QVERIFY(scene.document.isModified());
}

QTEST_MAIN(RecoveryTest)
#include "RecoveryTest.moc"
