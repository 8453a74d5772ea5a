#include "document/AnimationFile.h"

#include "document/Document.h"
#include "tests/editor/support/Scene.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <boost/property_tree/ptree.hpp>

#include <set>

using namespace EditorScene;
using Editor::AnimationData;
using Editor::AnimationFile;

namespace {

const QString shippedFile = QString(EA_SOURCE_DIR) + "/examples/wave.xml";

const QByteArray capture = "HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\nCHANNELS 1 Xrotation\n}\n"
                           "MOTION\nFrames: 2\nFrame Time: 0.04\n1.5\n2\n";
const QByteArray table = "frame,arm,leg\n0,1.5,2\n10,,3\n";

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64{content.size()});
}

QString problemIn(const QString& path) {
    return problemOf([&] { AnimationFile(path).load(); });
}

} // namespace

class AnimationFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theShippedFileShowsEverythingThatAKeyCanBe();
    void theShippedFileIsWhatSavingItAgainGives();
    void keysAndFlagsSurviveAFile();
    void whatOnlyTheEditorKnowsSurvivesAFile();
    void aMotionCaptureIsLoaded();
    void aTableIsLoaded();
    void theSuffixMayBeInCapitals();
    void allReadableSuffixesAreRead();
    void errorsNameTheFileAndThePlace_data();
    void errorsNameTheFileAndThePlace();
    void whatIsNotThereOrNoFileIsNamed();
    void onlyXmlIsWritten();
    void aFailedSaveLeavesTheOldFile();
    void aNameThatNoFileCanHoldLeavesTheOldFile();
    void savingReplacesTheFileAndLeavesNothingBeside();
};

void AnimationFileTest::theShippedFileShowsEverythingThatAKeyCanBe() {
    const auto animation = AnimationFile(shippedFile).load().animation;
    QCOMPARE(animation->size(), std::size_t{8});
    QCOMPARE(animation->getGreaterIndex(), 120U);
    std::set<Type> types;
    std::set<QString> names;
    int smooth = 0;
    int symmetrical = 0;
    for (const ZT::EditableAnimationLayer* const layer : *animation) {
        const ZT::EditableMotionCurve& curve = *layer->getCurve();
        names.insert(layer->getActuatorName());
        QCOMPARE(curve.getTimeUnit().count(), boost::rational<int>(1, 25));
        QVERIFY(curve.size() >= 5 && curve.size() <= 15);
        for (const auto element : curve) {
            types.insert(element.second->getTangentType(Side::left));
            types.insert(element.second->getTangentType(Side::right));
            smooth += element.second->isSmooth() ? 1 : 0;
            symmetrical += element.second->isSymmetrical() ? 1 : 0;
            // A gesture of an arm stays within what its joints can do.
            QVERIFY(element.second->getValue() >= curve.getValueLimits().first);
            QVERIFY(element.second->getValue() <= curve.getValueLimits().second);
        }
    }
    QCOMPARE(types.size(), std::size_t{4});
    QCOMPARE(names.size(), std::size_t{8});
    QVERIFY(smooth > 0);
    QVERIFY(symmetrical > 0);
}

void AnimationFileTest::theShippedFileIsWhatSavingItAgainGives() {
    const QTemporaryDir directory;
    const QString copy = directory.filePath("copy.xml");
    const AnimationData data = AnimationFile(shippedFile).load();
    QCOMPARE(data.animation->size(), std::size_t{8});
    AnimationFile(copy).save(data.animation->serialize());
    QVERIFY(!contentOf(shippedFile).isEmpty());
    QCOMPARE(contentOf(copy), contentOf(shippedFile));
}

void AnimationFileTest::keysAndFlagsSurviveAFile() {
    const QTemporaryDir directory;
    const QString path = directory.filePath(QString::fromUtf8("dr\xC3\xBC"
                                                              "ben.xml"));
    const QString name = QString::fromUtf8("<K\xC3\xB6rper> & \"Arm\"");
    Scene scene({name});
    scene.document.layer(0)->setMute(true);
    scene.add(0, 0, bezier(0.1F, {-1, 0}, {3.3F, 1e-20F}))->setSymmetrical(true);
    scene.add(0, 4294967295U, bezier(-0.0F, {-1, 0}, {3, 0}))->setSmooth(true);
    AnimationFile(path).save(scene.document.tree());

    const AnimationData data = AnimationFile(path).load();
    QCOMPARE((*data.animation)[0]->getActuatorName(), name);
    QVERIFY((*data.animation)[0]->isMute());
    for (const unsigned int frame : {0U, 4294967295U}) {
        QCOMPARE(Snapshot::of(*(*data.animation)[0]->getCurve()->getKey(frame)),
                 Snapshot::of(*scene.key(0, frame)));
    }
    QVERIFY(data.animation->serialize() == scene.document.animation().serialize());
    QVERIFY((*data.animation)[0]->getCurve()->getKey(0)->isSymmetrical());
    QVERIFY((*data.animation)[0]->getCurve()->getKey(4294967295U)->isSmooth());
}

void AnimationFileTest::whatOnlyTheEditorKnowsSurvivesAFile() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("a.xml");
    Scene scene;
    scene.document.setLook(1, {QColor(1, 2, 3), false, true});
    scene.setRange(2, 7);
    AnimationFile(path).save(scene.document.tree());
    Editor::Document document;
    document.replace(AnimationFile(path).load(), path);
    QVERIFY(document.look(1) == scene.document.look(1));
    QCOMPARE(Snapshot::of(document.markers()), Snapshot::of(scene.markers()));
    QVERIFY(document.tree() == scene.document.tree());
}

void AnimationFileTest::aMotionCaptureIsLoaded() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("capture.bvh");
    write(path, capture);
    const AnimationData data = AnimationFile(path).load();
    QVERIFY(data.looks.empty());
    QVERIFY(!data.markers);
    Curve& curve = *data.animation->getLayer("Hips.Xrotation")->getCurve();
    QCOMPARE(curve.size(), std::size_t{2});
    QCOMPARE(curve.getKey(0)->getValue(), 1.5F);
    QCOMPARE(curve.getTimeUnit().count(), boost::rational<int>(1, 25));
}

void AnimationFileTest::aTableIsLoaded() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("table.csv");
    write(path, table);
    const AnimationData data = AnimationFile(path).load();
    QCOMPARE(Snapshot::frames(*data.animation->getLayer("arm")->getCurve()), QString("0"));
    QCOMPARE(Snapshot::frames(*data.animation->getLayer("leg")->getCurve()), QString("0 10"));
}

void AnimationFileTest::theSuffixMayBeInCapitals() {
    const QTemporaryDir directory;
    write(directory.filePath("A.BVH"), capture);
    QCOMPARE(problemIn(directory.filePath("A.BVH")), QString());
    write(directory.filePath("A.Csv"), table);
    QCOMPARE(problemIn(directory.filePath("A.Csv")), QString());
    QVERIFY(AnimationFile::isWritable("a.XML"));
    QVERIFY(!AnimationFile::isWritable("axml"));
    QVERIFY(!AnimationFile::isWritable("a.bvh"));
    AnimationFile(directory.filePath("A.XML")).save(Scene().document.tree());
    QCOMPARE(problemIn(directory.filePath("A.XML")), QString());
}

void AnimationFileTest::allReadableSuffixesAreRead() {
    const QTemporaryDir directory;
    for (const QString& suffix : AnimationFile::readableSuffixes()) {
        const QString path = directory.filePath("empty." + suffix);
        write(path, QByteArray());
        QVERIFY2(problemIn(path).contains("line 1: "), qPrintable(problemIn(path)));
    }
}

void AnimationFileTest::errorsNameTheFileAndThePlace_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");
    const QString otherSuffix =
        "the file is neither an animation (.xml) nor a motion capture (.bvh) nor a table (.csv)";
    QByteArray damagedCapture = capture;
    damagedCapture.replace("1.5", "x");
    QTest::newRow("a bad capture") << "a.bvh" << damagedCapture
                                   << "line 10: \"x\" stands where a number should stand";
    QTest::newRow("no capture") << "a.bvh" << QByteArray()
                                << "line 1: the file ends where \"HIERARCHY\" should stand";
    QByteArray damagedTable = table;
    damagedTable.replace("1.5", "x");
    QTest::newRow("a bad table") << "a.csv" << damagedTable
                                 << "line 2: \"x\" stands where a number should stand";
    QTest::newRow("another root") << "a.xml" << QByteArray("<other/>")
                                  << "line 1: the root element is \"other\", not \"animation\"";
    QTest::newRow("another suffix") << "a.txt" << capture << otherSuffix;
    QTest::newRow("no suffix") << "xml" << capture << otherSuffix;
    QByteArray damaged = contentOf(shippedFile);
    damaged.replace("name=\"elbow\"", "nome=\"elbow\"");
    QTest::newRow("a missing attribute") << "a.xml" << damaged << "layer 3: attribute \"name\" is missing";
    damaged = contentOf(shippedFile);
    damaged.replace("frame=\"16\"", "frame=\"-16\"");
    QTest::newRow("a bad frame")
        << "a.xml" << damaged
        << "layer 4: curve: key 2: attribute \"frame\" is \"-16\", not a frame from 0 to 4294967295";
}

void AnimationFileTest::errorsNameTheFileAndThePlace() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, problem);
    const QTemporaryDir directory;
    const QString path = directory.filePath(name);
    write(path, content);
    QCOMPARE(problemIn(path), path + ": " + problem);
}

void AnimationFileTest::whatIsNotThereOrNoFileIsNamed() {
    const QTemporaryDir directory;
    QVERIFY(QDir().mkdir(directory.filePath("directory.xml")));
    for (const QString& path : {directory.filePath("missing.xml"), directory.filePath("directory.xml")}) {
        QVERIFY(problemIn(path).startsWith(path + ": "));
        QVERIFY(problemIn(path).size() > path.size() + 2);
    }
}

void AnimationFileTest::onlyXmlIsWritten() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("a.bvh");
    QCOMPARE(problemOf([&] { AnimationFile(path).save(Scene().document.tree()); }),
             path + ": an animation can only be saved as .xml");
    QVERIFY(!QFile::exists(path));
}

void AnimationFileTest::aFailedSaveLeavesTheOldFile() {
    const QTemporaryDir directory;
    Scene scene;
    const QString missing = directory.filePath("no/such/directory/a.xml");
    QVERIFY(
        problemOf([&] { AnimationFile(missing).save(scene.document.tree()); }).startsWith(missing + ": "));

    const QString path = directory.filePath("a.xml");
    QVERIFY(QDir().mkdir(path)); // What stands there cannot be replaced by a file.
    QVERIFY(problemOf([&] { AnimationFile(path).save(scene.document.tree()); }).startsWith(path + ": "));
    QVERIFY(QFileInfo(path).isDir());
    QCOMPARE(QDir(directory.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList("a.xml"));
}

void AnimationFileTest::aNameThatNoFileCanHoldLeavesTheOldFile() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("a.xml");
    Scene scene;
    AnimationFile(path).save(scene.document.tree());
    const QByteArray saved = contentOf(path);
    scene.document.layer(0)->setActuatorName(QString("arm") + QChar(0x1b));
    QCOMPARE(problemOf([&] { AnimationFile(path).save(scene.document.tree()); }),
             path + ": layer 1: attribute \"name\" holds the character U+001B, which XML cannot hold");
    QCOMPARE(contentOf(path), saved);
}

void AnimationFileTest::savingReplacesTheFileAndLeavesNothingBeside() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("a.xml");
    write(path, QByteArray(1000000, 'x'));
    AnimationFile(path).save(Scene().document.tree());
    QCOMPARE(problemIn(path), QString());
    QCOMPARE(QDir(directory.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList("a.xml"));
}

QTEST_GUILESS_MAIN(AnimationFileTest)
#include "AnimationFileTest.moc"
