#include "document/Autosave.h"

#include "document/AnimationFile.h"
#include "document/KeyEdits.h"
#include "tests/editor/support/Scene.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace EditorScene;
using Editor::AnimationFile;
using Editor::Autosave;

class AutosaveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void copiesStandBesideTheirFiles();
    void theCopyComesShortlyAfterAnEdit();
    void manyEditsMakeOneCopyAndItIsNotPutOffForever();
    void theCopyHoldsWhatTheDocumentHolds();
    void thereIsNoCopyWhereNothingIsUnsaved();
    void savingRemovesTheCopy();
    void undoingToWhatIsSavedRemovesTheCopy();
    void anotherPathMovesTheCopy();
    void leavingOrderlyRemovesTheCopy();
    void aDocumentWithoutFileHasACopyToo();
    void whatCannotBeWrittenIsSaidOnce();
    void twoDocumentsOfOneFileDoNotShareACopy();
    void whatAProgramThatWasKilledLeftIsFound();
    void whatWasLeftBehindCanBeDiscarded();
    void aProgramThatEndsOrderlyLeavesNothing();

private:
    QString _file(const QString& name = "a.xml") const { return _directory->filePath(name); }
    QString _copy(const QString& name = "a.xml") const { return Autosave::copyOf(_file(name)); }
    QStringList _files() const {
        return QDir(_directory->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden);
    }
    void _edit(Scene& scene);
    void _leaveBehind();

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

void AutosaveTest::copiesStandBesideTheirFiles() {
    QCOMPARE(QFileInfo(_copy()).absolutePath(), QFileInfo(_file()).absolutePath());
    QVERIFY(_copy() != _file());
    QVERIFY(_copy("a.xml") != _copy("b.xml"));
    QVERIFY(_copy("a.xml") != _copy("a.bvh"));
    QVERIFY(AnimationFile::isWritable(_copy("a.bvh")));
    QVERIFY(AnimationFile::isWritable(Autosave::copyOf(QString())));
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

void AutosaveTest::leavingOrderlyRemovesTheCopy() {
    Scene scene;
    {
        Autosave autosave(scene.document);
        scene.document.setSaved(_file());
        _edit(scene);
        autosave.write();
        QVERIFY(QFile::exists(_copy()));
    }
    QVERIFY(_files().isEmpty());
    QVERIFY(!Autosave::isLeftBehind(_file()));
}

void AutosaveTest::aDocumentWithoutFileHasACopyToo() {
    Scene scene;
    Autosave autosave(scene.document);
    _edit(scene);
    autosave.write();
    const QString copy = Autosave::copyOf(QString());
    QVERIFY(QFile::exists(copy));
    scene.document.setSaved(_file());
    QVERIFY(!QFile::exists(copy));
    QVERIFY(QDir(QFileInfo(copy).absolutePath()).removeRecursively());
}

void AutosaveTest::whatCannotBeWrittenIsSaidOnce() {
    Scene scene;
    Autosave autosave(scene.document);
    QSignalSpy failures(&autosave, &Autosave::failed);
    const QString place = _file("a.xml");
    scene.document.setSaved(place);
    QVERIFY(QDir().mkpath(_copy())); // What stands there cannot be replaced by a file.
    for (int time = 0; time < 3; ++time) {
        _edit(scene);
        autosave.write();
    }
    QCOMPARE(failures.count(), 1);
    QVERIFY(failures[0][0].toString().startsWith(_copy()));
    QVERIFY(QDir(_copy()).removeRecursively());
    autosave.write();
    QVERIFY(QFile::exists(_copy()));
    QCOMPARE(failures.count(), 1);
}

void AutosaveTest::twoDocumentsOfOneFileDoNotShareACopy() {
    Scene first;
    Scene second;
    Autosave firsts(first.document);
    first.document.setSaved(_file());
    _edit(first);
    firsts.write();
    QVERIFY(!Autosave::isLeftBehind(_file())); // Its program runs.
    {
        Autosave seconds(second.document);
        QSignalSpy failures(&seconds, &Autosave::failed);
        second.document.setSaved(_file());
        _edit(second);
        seconds.write();
        QCOMPARE(failures.count(), 1);
        seconds.discard();
        QVERIFY(QFile::exists(_copy()));
    }
    QVERIFY(QFile::exists(_copy()));
    const auto data = AnimationFile(_copy()).load();
    QVERIFY(data.animation->serialize() == first.document.animation().serialize());
}

// Ends when the program was killed and its copy is there.
void AutosaveTest::_leaveBehind() {
    AnimationFile(_file()).save(Scene().document.tree());
    QProcess program;
    program.start(AUTOSAVE_VICTIM, {_file()});
    QVERIFY(program.waitForStarted());
    QVERIFY(program.waitForReadyRead(20 * Autosave::delay));
    QCOMPARE(program.readAllStandardOutput(), QByteArray("edited\n"));
    QVERIFY(QFile::exists(_copy()));
    QVERIFY(!Autosave::isLeftBehind(_file()));
    program.kill();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);
}

void AutosaveTest::whatAProgramThatWasKilledLeftIsFound() {
    _leaveBehind();
    QVERIFY(Autosave::isLeftBehind(_file()));
    QVERIFY(Autosave::isLeftBehind(_file())); // Looking takes nothing away.
    Scene scene;
    {
        Autosave autosave(scene.document);
        scene.document.replace(AnimationFile(_copy()).load(), _file());
        QVERIFY(Autosave::isLeftBehind(_file())); // It stays until the work is safe elsewhere.
        scene.document.setUnsaved();
        QCOMPARE(scene.frames(), QString("77"));
        autosave.write();
        QVERIFY(QFile::exists(_copy()));
        AnimationFile(_file()).save(scene.document.tree());
        scene.document.setSaved(_file());
    }
    QVERIFY(!Autosave::isLeftBehind(_file()));
    QCOMPARE(_files(), QStringList("a.xml"));
}

void AutosaveTest::whatWasLeftBehindCanBeDiscarded() {
    _leaveBehind();
    Scene scene;
    Autosave autosave(scene.document);
    scene.document.replace(AnimationFile(_file()).load(), _file());
    autosave.discard();
    QVERIFY(!Autosave::isLeftBehind(_file()));
    QCOMPARE(_files(), QStringList("a.xml"));
    QCOMPARE(scene.frames(), QString());
}

void AutosaveTest::aProgramThatEndsOrderlyLeavesNothing() {
    AnimationFile(_file()).save(Scene().document.tree());
    QProcess program;
    program.start(AUTOSAVE_VICTIM, {_file()});
    QVERIFY(program.waitForReadyRead(20 * Autosave::delay));
    QVERIFY(QFile::exists(_copy()));
    program.closeWriteChannel();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(_files(), QStringList("a.xml"));
}

QTEST_GUILESS_MAIN(AutosaveTest)
#include "AutosaveTest.moc"
