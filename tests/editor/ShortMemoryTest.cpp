#include "FileScene.h"

#include <QSignalSpy>
#include <QtTest>

#include <cstdlib>
#include <new>

using Editor::CrashCopy;
using FileScene::Scene;

namespace {

/// While it is set, this program has no memory in one piece for the text of a file. Qt's own containers do
/// not ask here.
bool isMemoryShort = false;
constexpr std::size_t tooMuch = 1000;

struct Shortage {
    Shortage() noexcept { isMemoryShort = true; }
    ~Shortage() { isMemoryShort = false; }
    Shortage(const Shortage&) = delete;
    Shortage& operator=(const Shortage&) = delete;
};

} // namespace

void* operator new(std::size_t size) {
    void* const memory = isMemoryShort && size >= tooMuch ? nullptr : std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

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
        const Shortage shortage;
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
        const Shortage shortage;
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
        const Shortage shortage;
        autosave.write();
    }
    QCOMPARE(failures.count(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(CrashCopy::pathOf(path, 2)), 2 * Editor::Autosave::longestDelay);
    QCOMPARE(FileScene::valueIn(CrashCopy::pathOf(path, 2)), 9.0F);
    autosave.discard();
}

QTEST_MAIN(ShortMemoryTest)
#include "ShortMemoryTest.moc"
