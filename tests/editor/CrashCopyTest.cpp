#include "document/CrashCopy.h"

#include "document/AnimationFile.h"
#include "support/Victim.h"
#include "tests/editor/support/UnsavedWork.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <boost/property_tree/ptree.hpp>

using Editor::CrashCopy;
using Holder = CrashCopy::Holder;

namespace {

void write(const QString& path, const QByteArray& content = "x") {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("no file could be written");
    }
}

void removeOwnData() {
    QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).removeRecursively();
}

QStringList pathsOf(const QString& file) {
    QStringList paths;
    for (const CrashCopy& copy : CrashCopy::of(file)) {
        paths.append(copy.path());
    }
    paths.sort();
    return paths;
}

} // namespace

class CrashCopyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { removeOwnData(); }
    void init() { _directory = std::make_unique<QTemporaryDir>(); }
    void placesStandBesideTheirFiles();
    void placesOfWorkOnNoFileStandAmongTheProgramsData();
    void everyDocumentHasAPlaceOfItsOwn_data();
    void everyDocumentHasAPlaceOfItsOwn();
    void aPlaceInWhichSomethingStandsIsNotGivenAway();
    void aPlaceLeavesNothingBehindButItsCopy();
    void copiesOfOtherFilesAreNotFound();
    void aProgramThatRunsHoldsItsCopyAndOneThatWasKilledDoesNot();
    void whoLooksHasTheLock();
    void aProgramThatEndsOrderlyLeavesNothing();
    void anotherMachinesLockProvesNothing();
    void aLockThatCannotBeReadProvesNothing();

private:
    QString _file(const QString& name = "a.xml") const { return _directory->filePath(name); }
    QStringList _files() const {
        return QDir(_directory->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden);
    }
    QString _save() const;

    std::unique_ptr<QTemporaryDir> _directory;
};

void CrashCopyTest::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setApplicationName(QString("CrashCopyTest%1").arg(QCoreApplication::applicationPid()));
}

QString CrashCopyTest::_save() const {
    Editor::Document document;
    UnsavedWork::open(document, {});
    Editor::AnimationFile(_file()).save(document.tree());
    return _file();
}

void CrashCopyTest::placesStandBesideTheirFiles() {
    const QString a = CrashCopy::reserve(_file("a.xml")).path();
    QCOMPARE(a, CrashCopy::pathOf(_file("a.xml")));
    QCOMPARE(QFileInfo(a).absolutePath(), _directory->path());
    QVERIFY(a != _file("a.xml"));
    QVERIFY(a != CrashCopy::pathOf(_file("b.xml")));
    QVERIFY(a != CrashCopy::pathOf(_file("a.bvh")));
    QVERIFY(Editor::AnimationFile::isWritable(CrashCopy::pathOf(_file("a.bvh"), 12)));
}

void CrashCopyTest::placesOfWorkOnNoFileStandAmongTheProgramsData() {
    const QString own = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QVERIFY(!QFileInfo::exists(own));
    QCOMPARE(QFileInfo(CrashCopy::reserve({}).path()).absolutePath(), own);
    QVERIFY(QDir(own).removeRecursively());
}

void CrashCopyTest::everyDocumentHasAPlaceOfItsOwn_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("on a file") << "a.xml";
    QTest::newRow("on no file") << QString();
}

void CrashCopyTest::everyDocumentHasAPlaceOfItsOwn() {
    QFETCH(QString, name);
    const QString file = name.isEmpty() ? name : _file(name);
    QStringList paths;
    std::vector<CrashCopy> copies;
    for (int i = 0; i < 3; ++i) {
        copies.push_back(CrashCopy::reserve(file));
        paths.append(copies.back().path());
        QVERIFY(copies.back().holder() == Holder::nobody);
        QCOMPARE(copies.back().file(), file);
    }
    QCOMPARE(paths.removeDuplicates(), 0);
    for (const QString& path : std::as_const(paths)) {
        write(path);
    }
    QCOMPARE(pathsOf(file), QStringList()); // They are of this program, which runs.
    copies.clear();
    QCOMPARE(pathsOf(file).size(), 3);
    for (CrashCopy& copy : CrashCopy::of(file)) {
        QVERIFY(copy.remove());
    }
    QCOMPARE(pathsOf(file), QStringList());
}

void CrashCopyTest::aPlaceInWhichSomethingStandsIsNotGivenAway() {
    write(CrashCopy::pathOf(_file()));
    write(CrashCopy::pathOf(_file(), 3));
    const CrashCopy second = CrashCopy::reserve(_file());
    QCOMPARE(second.path(), CrashCopy::pathOf(_file(), 2));
    QCOMPARE(CrashCopy::reserve(_file()).path(), CrashCopy::pathOf(_file(), 4));
}

void CrashCopyTest::aPlaceLeavesNothingBehindButItsCopy() {
    {
        CrashCopy copy = CrashCopy::reserve(_file());
        QVERIFY(!_files().isEmpty());
        QVERIFY(copy.remove());
    }
    QCOMPARE(_files(), QStringList());
    write(CrashCopy::reserve(_file()).path());
    QCOMPARE(_files(), QStringList(QFileInfo(CrashCopy::pathOf(_file())).fileName()));
    QVERIFY(CrashCopy::of(_file()).at(0).remove());
    QCOMPARE(_files(), QStringList());
}

void CrashCopyTest::copiesOfOtherFilesAreNotFound() {
    write(CrashCopy::pathOf(_file("*.xml")));
    write(CrashCopy::pathOf(_file("a.xml.unsaved.2.xml"))); // Begins as a copy of a.xml does.
    for (const char* const name : {".a.xml.unsaved.0.xml", ".a.xml.unsaved.1.xml", ".a.xml.unsaved.-2.xml",
                                   ".a.xml.unsaved.02.xml", ".a.xml.unsaved.2.xml.lock", ".a.xml.unsaved."}) {
        write(_file(name));
    }
    QCOMPARE(pathsOf(_file("a.xml")), QStringList());
    QCOMPARE(pathsOf(_file("*.xml")), QStringList(CrashCopy::pathOf(_file("*.xml"))));
    write(CrashCopy::pathOf(_file("a.xml"), 2));
    write(CrashCopy::pathOf(_file("a.xml"), 10));
    QCOMPARE(pathsOf(_file("a.xml")),
             (QStringList{CrashCopy::pathOf(_file("a.xml"), 10), CrashCopy::pathOf(_file("a.xml"), 2)}));
    QCOMPARE(pathsOf(_file("missing/a.xml")), QStringList());
}

void CrashCopyTest::aProgramThatRunsHoldsItsCopyAndOneThatWasKilledDoesNot() {
    Victim victim(_save());
    QCOMPARE(CrashCopy::of(_file()).size(), std::size_t{1});
    QVERIFY(CrashCopy::of(_file()).at(0).holder() == Holder::program);
    QCOMPARE(CrashCopy::reserve(_file()).path(), CrashCopy::pathOf(_file(), 2));
    victim.kill();
    for (int time = 0; time < 2; ++time) { // Looking takes nothing away.
        QCOMPARE(CrashCopy::of(_file()).size(), std::size_t{1});
        QVERIFY(CrashCopy::of(_file()).at(0).holder() == Holder::nobody);
    }
}

void CrashCopyTest::whoLooksHasTheLock() {
    write(CrashCopy::pathOf(_file()));
    const auto copies = CrashCopy::of(_file());
    QCOMPARE(copies.size(), std::size_t{1});
    QCOMPARE(CrashCopy::of(_file()).size(), std::size_t{0});
}

void CrashCopyTest::aProgramThatEndsOrderlyLeavesNothing() {
    Victim victim(_save());
    QCOMPARE(_files().size(), 3);
    QCOMPARE(victim.leaveOrderly(), 0);
    QCOMPARE(_files(), QStringList("a.xml"));
}

void CrashCopyTest::anotherMachinesLockProvesNothing() {
    const QString path = CrashCopy::pathOf(_file());
    write(path);
    write(path + ".lock", "1\ncurve-editor\nelsewhere\nnot-this-machine\nnot-this-boot\n");
    {
        const auto copies = CrashCopy::of(_file());
        QCOMPARE(copies.size(), std::size_t{1});
        QVERIFY(copies[0].holder() == Holder::unknown);
        QCOMPARE(copies[0].host(), QString("elsewhere"));
        QCOMPARE(CrashCopy::reserve(_file()).path(), CrashCopy::pathOf(_file(), 2));
    }
    QCOMPARE(_files().size(), 2);
    QVERIFY(CrashCopy::of(_file()).at(0).remove());
    QCOMPARE(_files(), QStringList());
}

void CrashCopyTest::aLockThatCannotBeReadProvesNothing() {
    const QString path = CrashCopy::pathOf(_file());
    write(path);
    write(path + ".lock", QByteArray());
    const auto copies = CrashCopy::of(_file());
    QCOMPARE(copies.size(), std::size_t{1});
    QVERIFY(copies[0].holder() == Holder::unknown);
    QCOMPARE(copies[0].host(), QString());
}

QTEST_GUILESS_MAIN(CrashCopyTest)
#include "CrashCopyTest.moc"
