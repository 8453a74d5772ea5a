#include "FileScene.h"
#include "tests/editor/support/MemoryShortage.h"

#include <QSignalSpy>
#include <QtTest>

using Editor::CrashCopy;
using FileScene::Scene;

namespace {

constexpr std::size_t textOfFile = 1000; // bytes; those of each test are longer

} // namespace

class ShortMemoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void aFileThatDoesNotFitLeavesTheDocumentAsItWas();
    void aSaveThatDoesNotFitLeavesTheOldFile();
    void aCopyThatDoesNotFitIsSaidAndTriedAgain();
};

void ShortMemoryTest::aFileThatDoesNotFitLeavesTheDocumentAsItWas() {
    Scene scene;
    scene.session.open(scene.makeFile("x.xml", 7.5F));
    const QString other = scene.makeFile("other.xml", 3.0F);
    const QString before = scene.state();
    {
        const MemoryShortage shortage(textOfFile);
        QVERIFY(!scene.session.open(other));
    }
    QCOMPARE(scene.state(), before);
    QCOMPARE(scene.document.path(), scene.path("x.xml"));
    QCOMPARE(scene.dialogs.problems,
             QStringList("other.xml could not be opened.\n" + other + ": there is not enough memory"));
}

void ShortMemoryTest::aSaveThatDoesNotFitLeavesTheOldFile() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    scene.session.open(path);
    scene.edit(9.0F);
    {
        const MemoryShortage shortage(textOfFile);
        QVERIFY(!scene.session.save());
    }
    QVERIFY(scene.document.isModified());
    QCOMPARE(FileScene::valueIn(path), 7.5F);
    QCOMPARE(scene.dialogs.problems,
             QStringList("x.xml could not be saved.\n" + path + ": there is not enough memory"));
}

void ShortMemoryTest::aCopyThatDoesNotFitIsSaidAndTriedAgain() {
    Scene scene;
    const QString path = scene.makeFile("x.xml", 7.5F);
    scene.session.open(path);
    Editor::Autosave autosave(scene.document); // Beside that of the session: it has the second place.
    const QSignalSpy failures(&autosave, &Editor::Autosave::failed);
    scene.edit(9.0F);
    {
        const MemoryShortage shortage(textOfFile);
        autosave.write();
    }
    QCOMPARE(failures.count(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(CrashCopy::pathOf(path, 2)), 2 * Editor::Autosave::longestDelay);
    QCOMPARE(FileScene::valueIn(CrashCopy::pathOf(path, 2)), 9.0F);
    autosave.discard();
}

QTEST_MAIN(ShortMemoryTest)
#include "ShortMemoryTest.moc"
