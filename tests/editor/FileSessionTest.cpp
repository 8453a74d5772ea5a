#include "FileScene.h"

#include <QSignalSpy>
#include <QtTest>

using FileScene::Scene;
using FileScene::valueIn;
using Unsaved = ScriptedDialogs::Unsaved;

class FileSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void anOpenedFileIsTheDocument();
    void aFileThatCannotBeReadLeavesTheDocumentAsItWas_data();
    void aFileThatCannotBeReadLeavesTheDocumentAsItWas();
    void anImportIsUnsavedAndHasNoPath();
    void savingWritesTheFileOfTheDocument();
    void savingAnUntitledDocumentAsksWhere();
    void notSayingWhereSavesNothing();
    void aFileThatCannotBeWrittenIsSaidAndTheOldOneStays();
    void unsavedWorkIsAskedAboutBeforeItIsLeft_data();
    void unsavedWorkIsAskedAboutBeforeItIsLeft();
    void savedWorkIsNotAskedAbout();
    void aFailedSaveKeepsTheDocument();
    void aNewAnimationIsEmptyAndSaved();
    void openingAsksWhichFile();
    void recentFilesHoldWhatWasOpenedAndSaved();
    void aRecentFileThatIsGoneLeavesTheList();
};

void FileSessionTest::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setApplicationName(
        QString("FileSessionTest%1").arg(QCoreApplication::applicationPid()));
}

void FileSessionTest::anOpenedFileIsTheDocument() {
    Scene scene;
    QVERIFY(scene.session.open(scene.makeFile("x.xml", 7.5F)));
    QCOMPARE(scene.value(), 7.5F);
    QCOMPARE(scene.document.path(), scene.path("x.xml"));
    QCOMPARE(scene.session.name(), QString("x.xml"));
    QVERIFY(!scene.document.isModified());
    QCOMPARE(scene.dialogs.asked, QStringList());
    QCOMPARE(scene.dialogs.problems, QStringList());
}

void FileSessionTest::aFileThatCannotBeReadLeavesTheDocumentAsItWas_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("damaged XML") << "x.xml" << QByteArray("<animation><layer") << "x.xml";
    QTest::newRow("a frame is missing")
        << "x.xml"
        << QByteArray(R"(<animation><layer name="a"><curve timeUnit="1/25" minimum="-inf" maximum="inf" )"
                      R"(maximumDerivative="inf"><key value="1"><left type="linear" dx="0" dy="0"/>)"
                      R"(<right type="linear" dx="0" dy="0"/></key></curve></layer></animation>)")
        << "\"frame\"";
    QTest::newRow("a damaged capture") << "x.bvh" << QByteArray("HIERARCHY\nROOT\n{\n") << "line 3";
    QTest::newRow("another kind of file") << "x.txt" << QByteArray("text") << "x.txt";
}

void FileSessionTest::aFileThatCannotBeReadLeavesTheDocumentAsItWas() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    Scene scene;
    scene.session.open(scene.makeFile("good.xml", 7.5F));
    scene.edit(8.0F);
    const QString before = scene.state();
    scene.dialogs.unsaved = Unsaved::discard;
    QVERIFY(!scene.session.open(scene.write(name, content)));
    QCOMPARE(scene.state(), before);
    QCOMPARE(scene.document.path(), scene.path("good.xml"));
    QVERIFY(scene.document.isModified());
    QCOMPARE(scene.document.history().count(), 1);
    QCOMPARE(scene.dialogs.problems.size(), 1);
    QVERIFY2(scene.dialogs.problems.first().startsWith(name + " could not be opened."),
             qPrintable(scene.dialogs.problems.first()));
    QVERIFY2(scene.dialogs.problems.first().contains(reason), qPrintable(scene.dialogs.problems.first()));
}

void FileSessionTest::anImportIsUnsavedAndHasNoPath() {
    Scene scene;
    QVERIFY(scene.session.open(scene.write("arm.csv", "frame,a\n0,1.5\n10,2\n")));
    QCOMPARE(scene.value(), 1.5F);
    QCOMPARE(scene.document.path(), QString());
    QCOMPARE(scene.session.name(), QString("arm.csv"));
    QVERIFY(scene.document.isModified());
    scene.dialogs.savePath = scene.path("kept.xml");
    QVERIFY(scene.session.save());
    QCOMPARE(scene.dialogs.asked, QStringList{"save arm.xml"});
    QCOMPARE(valueIn(scene.path("kept.xml")), 1.5F);
    QCOMPARE(scene.session.name(), QString("kept.xml"));
    QVERIFY(!scene.document.isModified());
}

void FileSessionTest::savingWritesTheFileOfTheDocument() {
    Scene scene;
    scene.session.open(scene.makeFile("x.xml", 7.5F));
    scene.edit(9.0F);
    QVERIFY(scene.document.isModified());
    const QSignalSpy saved(&scene.session, &Editor::FileSession::saved);
    QVERIFY(scene.session.save());
    QCOMPARE(saved.count(), 1);
    QCOMPARE(valueIn(scene.path("x.xml")), 9.0F);
    QVERIFY(!scene.document.isModified());
    QCOMPARE(scene.dialogs.asked, QStringList());
}

void FileSessionTest::savingAnUntitledDocumentAsksWhere() {
    Scene scene;
    scene.document.replace(TwoLayers::data(), QString());
    scene.dialogs.savePath = scene.path("new.xml");
    QVERIFY(scene.session.save());
    QCOMPARE(scene.dialogs.asked, QStringList{"save Untitled.xml"});
    QCOMPARE(scene.document.path(), scene.path("new.xml"));
    QCOMPARE(valueIn(scene.path("new.xml")), 1.0F);
    scene.edit(3.0F);
    scene.dialogs.savePath = scene.path("other.xml");
    QVERIFY(scene.session.saveAs());
    QCOMPARE(valueIn(scene.path("new.xml")), 1.0F);
    QCOMPARE(valueIn(scene.path("other.xml")), 3.0F);
}

void FileSessionTest::notSayingWhereSavesNothing() {
    Scene scene;
    scene.document.replace(TwoLayers::data(), QString());
    scene.edit(2.0F);
    QVERIFY(!scene.session.save());
    QVERIFY(scene.document.isModified());
    QCOMPARE(scene.dialogs.problems, QStringList());
}

void FileSessionTest::aFileThatCannotBeWrittenIsSaidAndTheOldOneStays() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    scene.session.open(path);
    // A name that no XML can hold.
    scene.document.layer(1)->setActuatorName(QString(QChar(1)));
    scene.edit(9.0F);
    QVERIFY(!scene.session.save());
    QVERIFY(scene.document.isModified());
    QCOMPARE(valueIn(path), 7.5F);
    QCOMPARE(scene.dialogs.problems.size(), 1);
    QVERIFY2(scene.dialogs.problems.first().startsWith("x.xml could not be saved."),
             qPrintable(scene.dialogs.problems.first()));
    scene.dialogs.savePath = scene.path("missing/x.xml");
    QVERIFY(!scene.session.saveAs());
    QCOMPARE(scene.dialogs.problems.size(), 2);
    QCOMPARE(scene.document.path(), path);
}

void FileSessionTest::unsavedWorkIsAskedAboutBeforeItIsLeft_data() {
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("isLeft");
    QTest::addColumn<float>("kept");
    QTest::newRow("save") << static_cast<int>(Unsaved::save) << true << 9.0F;
    QTest::newRow("discard") << static_cast<int>(Unsaved::discard) << true << 7.5F;
    QTest::newRow("cancel") << static_cast<int>(Unsaved::cancel) << false << 7.5F;
}

void FileSessionTest::unsavedWorkIsAskedAboutBeforeItIsLeft() {
    QFETCH(int, answer);
    QFETCH(bool, isLeft);
    QFETCH(float, kept);
    Scene scene;
    const QString other = scene.makeFile("other.xml", 3.0F);
    scene.session.open(scene.makeFile("x.xml", 7.5F));
    scene.edit(9.0F);
    scene.dialogs.unsaved = static_cast<Unsaved>(answer);
    QCOMPARE(scene.session.open(other), isLeft);
    QCOMPARE(scene.dialogs.asked, QStringList{"unsaved x.xml"});
    QCOMPARE(scene.value(), isLeft ? 3.0F : 9.0F);
    QCOMPARE(scene.document.isModified(), !isLeft);
    QCOMPARE(valueIn(scene.path("x.xml")), kept);
}

void FileSessionTest::savedWorkIsNotAskedAbout() {
    Scene scene;
    scene.session.open(scene.makeFile("x.xml", 7.5F));
    scene.edit(9.0F);
    scene.document.history().undo();
    QVERIFY(scene.session.mayLeave());
    QCOMPARE(scene.dialogs.asked, QStringList());
}

void FileSessionTest::aFailedSaveKeepsTheDocument() {
    Scene scene;
    scene.session.newAnimation();
    scene.document.replace(TwoLayers::data(), QString());
    scene.edit(9.0F);
    scene.dialogs.unsaved = Unsaved::save;
    scene.dialogs.savePath = scene.path("missing/x.xml");
    QVERIFY(!scene.session.mayLeave());
    scene.session.newAnimation();
    QCOMPARE(scene.value(), 9.0F);
    QVERIFY(scene.document.isModified());
}

void FileSessionTest::aNewAnimationIsEmptyAndSaved() {
    Scene scene;
    scene.session.open(scene.makeFile("x.xml", 7.5F));
    scene.session.newAnimation();
    QCOMPARE(scene.document.layerCount(), 0);
    QCOMPARE(scene.session.name(), QString("Untitled"));
    QVERIFY(!scene.document.isModified());
}

void FileSessionTest::openingAsksWhichFile() {
    Scene scene;
    scene.session.openAsked();
    QCOMPARE(scene.document.path(), QString());
    scene.dialogs.openPath = scene.makeFile("x.xml", 7.5F);
    scene.session.openAsked();
    QCOMPARE(scene.dialogs.asked, (QStringList{"open", "open"}));
    QCOMPARE(scene.document.path(), scene.path("x.xml"));
}

void FileSessionTest::recentFilesHoldWhatWasOpenedAndSaved() {
    Scene scene;
    const QString a = scene.makeFile("a.xml", 1.0F);
    const QString b = scene.makeFile("b.xml", 2.0F);
    scene.session.open(a);
    scene.session.open(b);
    scene.session.open(a);
    QCOMPARE(scene.recent.paths(), (QStringList{a, b}));
    scene.dialogs.savePath = scene.path("c.xml");
    scene.session.saveAs();
    QCOMPARE(scene.recent.paths(), (QStringList{scene.path("c.xml"), a, b}));
    for (int i = 0; i < 20; ++i) {
        scene.recent.add(scene.path(QString::number(i)));
    }
    QCOMPARE(scene.recent.paths().size(), int{Editor::RecentFiles::most});
    QCOMPARE(scene.recent.paths().first(), scene.path("19"));
}

void FileSessionTest::aRecentFileThatIsGoneLeavesTheList() {
    Scene scene;
    const QString a = scene.makeFile("a.xml", 1.0F);
    scene.session.open(a);
    scene.session.newAnimation();
    QVERIFY(QFile::remove(a));
    QVERIFY(!scene.session.open(a));
    QCOMPARE(scene.dialogs.problems.size(), 1);
    QCOMPARE(scene.recent.paths(), QStringList());
}

QTEST_MAIN(FileSessionTest)
#include "FileSessionTest.moc"
