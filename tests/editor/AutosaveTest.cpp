#include "document/Autosave.h"

#include "document/AnimationFile.h"
#include "document/KeyEdits.h"
#include "tests/editor/support/Scene.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace EditorScene;
using Editor::AnimationFile;
using Editor::Autosave;
using Editor::CrashCopy;

namespace {

void removeOwnData() {
    QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).removeRecursively();
}

} // namespace

class AutosaveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { removeOwnData(); }
    void init();
    void theCopyComesShortlyAfterAnEdit();
    void manyEditsMakeOneCopyAndItIsNotPutOffForever();
    void theCopyHoldsWhatTheDocumentHolds();
    void thereIsNoCopyWhereNothingIsUnsaved();
    void savingRemovesTheCopy();
    void undoingToWhatIsSavedRemovesTheCopy();
    void anotherPathMovesTheCopy();
    void movingTheStartOrEndMarkerIsWork();
    void theCopyIsKeptUntilItsWorkIsSavedOrDiscarded();
    void anImportAfterAnotherHasACopyOfItsOwn();
    void documentsWithoutFileDoNotShareACopy();
    void documentsOfOneFileDoNotShareACopy();
    void whatIsLeftBehindIsNeitherOverwrittenNorRemoved();
    void anAdoptedCopyGoesWhenItsWorkIsSaved();
    void aCopyThatMayBeAnothersIsNotAdopted();
    void whatCannotBeWrittenIsSaidOnceAndTriedAgain();
    void noCopyIsWrittenDuringAGesture();
    void gesturesThatFollowEachOtherDoNotPutTheCopyOffForever();
    void aGestureThatChangesNothingMakesNoCopy();

private:
    QString _file(const QString& name = "a.xml") const { return _directory->filePath(name); }
    QString _copy(const QString& name = "a.xml") const { return CrashCopy::pathOf(_file(name)); }
    QStringList _files() const {
        return QDir(_directory->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden);
    }
    void _edit(Scene& scene);

    std::unique_ptr<QTemporaryDir> _directory;
    unsigned int _frame = 0;
};

void AutosaveTest::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setApplicationName(QString("AutosaveTest%1").arg(QCoreApplication::applicationPid()));
}

void AutosaveTest::init() {
    _directory = std::make_unique<QTemporaryDir>();
}

void AutosaveTest::_edit(Scene& scene) {
    QVERIFY(Editor::KeyEdits(scene.document).insert(scene.curve(), ++_frame) != nullptr);
}

void AutosaveTest::theCopyComesShortlyAfterAnEdit() {
    Scene scene;
    const Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    QTest::qWait(2 * Autosave::delay);
    QVERIFY(_files().isEmpty());
    _edit(scene);
    QVERIFY(!QFile::exists(_copy()));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(_copy()), 4 * Autosave::delay);
}

void AutosaveTest::manyEditsMakeOneCopyAndItIsNotPutOffForever() {
    Scene scene;
    const Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 2 * Autosave::delay) {
        QElapsedTimer pause;
        pause.start();
        _edit(scene);
        QTest::qWait(Autosave::delay / 10);
        // After a pause that long a copy is right; nothing can be said of edits that follow each other then.
        if (pause.elapsed() >= Autosave::delay) {
            QSKIP("the machine is too busy to tell");
        }
        QVERIFY(!QFile::exists(_copy()));
    }
    while (!QFile::exists(_copy())) {
        QVERIFY(clock.elapsed() < Autosave::longestDelay + 4 * Autosave::delay);
        _edit(scene);
        QTest::qWait(Autosave::delay / 10);
    }
}

void AutosaveTest::theCopyHoldsWhatTheDocumentHolds() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file("a.bvh"));
    scene.lock(1);
    scene.add(0, 500, bezier(0.1F, {-1, 0}, {3.3F, 1e-20F}))->setSmooth(true);
    _edit(scene);
    autosave.write();
    Editor::Document other;
    other.replace(AnimationFile(_copy("a.bvh")).load(), _file("a.bvh"));
    QVERIFY(other.tree() == scene.document.tree());
}

void AutosaveTest::thereIsNoCopyWhereNothingIsUnsaved() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    autosave.write();
    QVERIFY(_files().isEmpty());
}

void AutosaveTest::savingRemovesTheCopy() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    _edit(scene);
    autosave.write();
    QVERIFY(QFile::exists(_copy()));
    scene.document.setSaved(_file());
    QVERIFY(_files().isEmpty());
    QTest::qWait(2 * Autosave::delay);
    QVERIFY(_files().isEmpty());
}

void AutosaveTest::undoingToWhatIsSavedRemovesTheCopy() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    _edit(scene);
    autosave.write();
    scene.history().undo();
    QVERIFY(_files().isEmpty());
    scene.history().redo();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(_copy()), 4 * Autosave::delay);
}

void AutosaveTest::anotherPathMovesTheCopy() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file("a.xml"));
    _edit(scene);
    autosave.write();
    scene.document.setSaved(_file("b.xml"));
    QVERIFY(_files().isEmpty());
    _edit(scene);
    autosave.write();
    QVERIFY(!QFile::exists(_copy("a.xml")));
    QVERIFY(QFile::exists(_copy("b.xml")));
    scene.document.replace(animationOf({"other"}), _file("c.xml"));
    QVERIFY(_files().isEmpty());
}

void AutosaveTest::movingTheStartOrEndMarkerIsWork() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    scene.markers().setEndIndex(70);
    autosave.write();
    QCOMPARE(AnimationFile(_copy()).load().markers->end, 70U);
    scene.markers().setEndIndex(80); // The document is modified already.
    QTRY_COMPARE_WITH_TIMEOUT(AnimationFile(_copy()).load().markers->end, 80U, 4 * Autosave::delay);
    scene.markers().setEndIndex(100);
    QVERIFY(_files().isEmpty());
}

void AutosaveTest::theCopyIsKeptUntilItsWorkIsSavedOrDiscarded() {
    Scene scene;
    scene.document.setSaved(_file());
    {
        Autosave autosave(scene.document);
        _edit(scene);
        autosave.write();
    }
    QCOMPARE(CrashCopy::of(_file()).size(), std::size_t{1}); // Nobody said that it is not wanted.
    QVERIFY(CrashCopy::of(_file()).at(0).remove());
    Autosave autosave(scene.document);
    autosave.write();
    QVERIFY(QFile::exists(_copy()));
    autosave.discard();
    QCOMPARE(_files(), QStringList());
}

void AutosaveTest::anImportAfterAnotherHasACopyOfItsOwn() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setUnsaved();
    autosave.write();
    QVERIFY(QFile::exists(CrashCopy::pathOf({})));
    scene.document.replace(animationOf({"other"}), QString());
    QVERIFY(!QFile::exists(CrashCopy::pathOf({})));
    scene.document.setUnsaved();
    autosave.write();
    QCOMPARE(AnimationFile(CrashCopy::pathOf({})).load().animation->size(), std::size_t{1});
    scene.document.setSaved(_file());
    QVERIFY(!QFile::exists(CrashCopy::pathOf({})));
}

void AutosaveTest::documentsWithoutFileDoNotShareACopy() {
    Scene first;
    Scene second({"one"});
    Autosave firsts(first.document);
    Autosave seconds(second.document);
    const QSignalSpy failures(&seconds, &Autosave::failed);
    first.document.setUnsaved();
    second.document.setUnsaved();
    firsts.write();
    seconds.write();
    QCOMPARE(failures.count(), 0);
    QVERIFY(AnimationFile(CrashCopy::pathOf({})).load().animation->serialize() ==
            first.document.animation().serialize());
    firsts.discard();
    QVERIFY(AnimationFile(CrashCopy::pathOf({}, 2)).load().animation->serialize() ==
            second.document.animation().serialize());
    seconds.discard();
    QVERIFY(!QFile::exists(CrashCopy::pathOf({}, 2)));
}

void AutosaveTest::documentsOfOneFileDoNotShareACopy() {
    Scene first;
    Scene second;
    Autosave firsts(first.document);
    first.document.setSaved(_file());
    _edit(first);
    firsts.write();
    {
        Autosave seconds(second.document);
        second.document.setSaved(_file());
        _edit(second);
        seconds.write();
        QVERIFY(QFile::exists(CrashCopy::pathOf(_file(), 2)));
        seconds.discard();
    }
    const auto data = AnimationFile(_copy()).load();
    QVERIFY(data.animation->serialize() == first.document.animation().serialize());
}

void AutosaveTest::whatIsLeftBehindIsNeitherOverwrittenNorRemoved() {
    QFile left(_copy());
    QVERIFY(left.open(QIODevice::WriteOnly) && left.write("damaged") > 0);
    left.close();
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    _edit(scene);
    autosave.write();
    autosave.discard();
    _edit(scene);
    scene.document.setSaved(_file());
    QVERIFY(left.open(QIODevice::ReadOnly));
    QCOMPARE(left.readAll(), QByteArray("damaged"));
    QCOMPARE(_files(), QStringList(QFileInfo(left).fileName()));
}

void AutosaveTest::anAdoptedCopyGoesWhenItsWorkIsSaved() {
    AnimationFile(_copy()).save(Scene().document.tree());
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    scene.document.setUnsaved();
    autosave.adopt(std::move(CrashCopy::of(_file()).at(0)));
    QCOMPARE(CrashCopy::of(_file()).size(), std::size_t{0}); // This program works on it.
    QVERIFY(QFile::exists(_copy()));
    _edit(scene);
    autosave.write();
    QCOMPARE(AnimationFile(_copy()).load().animation->getGreaterIndex(), _frame);
    scene.document.setSaved(_file());
    QCOMPARE(_files(), QStringList());
}

void AutosaveTest::aCopyThatMayBeAnothersIsNotAdopted() {
    AnimationFile(_copy()).save(Scene().document.tree());
    QFile lock(_copy() + ".lock");
    QVERIFY(lock.open(QIODevice::WriteOnly) && lock.write("1\neditor\nelsewhere\nmachine\nboot\n") > 0);
    lock.close();
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    scene.document.setUnsaved();
    autosave.adopt(std::move(CrashCopy::of(_file()).at(0)));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(CrashCopy::pathOf(_file(), 2)), 4 * Autosave::delay);
    scene.document.setSaved(_file());
    QVERIFY(QFile::exists(_copy()));
    QVERIFY(!QFile::exists(CrashCopy::pathOf(_file(), 2)));
}

void AutosaveTest::whatCannotBeWrittenIsSaidOnceAndTriedAgain() {
    Scene scene;
    Autosave autosave(scene.document);
    QSignalSpy failures(&autosave, &Autosave::failed);
    const QString place = _file("missing/a.xml");
    scene.document.setSaved(place);
    for (int time = 0; time < 3; ++time) {
        _edit(scene);
        autosave.write();
    }
    QCOMPARE(failures.count(), 1);
    QVERIFY(failures[0][0].toString().startsWith(CrashCopy::pathOf(place)));
    QVERIFY(!QFile::exists(_file("missing")));
    QVERIFY(QDir().mkdir(_file("missing")));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(CrashCopy::pathOf(place)),
                             Autosave::longestDelay + 4 * Autosave::delay);
    QCOMPARE(failures.count(), 1);
    QVERIFY(QFile::exists(CrashCopy::pathOf(place) + ".lock"));
}

void AutosaveTest::noCopyIsWrittenDuringAGesture() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    _edit(scene);
    autosave.setGestureActive(true);
    _edit(scene);
    QTest::qWait(2 * Autosave::delay);
    QVERIFY(_files().isEmpty());
    autosave.setGestureActive(false);
    QVERIFY(_files().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(_copy()), 4 * Autosave::delay);
}

void AutosaveTest::gesturesThatFollowEachOtherDoNotPutTheCopyOffForever() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    QElapsedTimer clock;
    clock.start();
    while (!QFile::exists(_copy())) {
        QVERIFY(clock.elapsed() < Autosave::longestDelay + 4 * Autosave::delay);
        autosave.setGestureActive(true);
        _edit(scene);
        QTest::qWait(Autosave::delay / 10);
        QVERIFY(!QFile::exists(_copy()));
        autosave.setGestureActive(false);
        QTest::qWait(Autosave::delay / 10);
    }
}

void AutosaveTest::aGestureThatChangesNothingMakesNoCopy() {
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.setSaved(_file());
    _edit(scene);
    autosave.write();
    QVERIFY(QFile::remove(_copy()));
    autosave.setGestureActive(true);
    autosave.setGestureActive(false);
    QTest::qWait(2 * Autosave::delay);
    QVERIFY(!QFile::exists(_copy()));
}

QTEST_GUILESS_MAIN(AutosaveTest)
#include "AutosaveTest.moc"

#include <boost/property_tree/ptree.hpp>
