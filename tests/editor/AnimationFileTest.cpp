#include "document/AnimationFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <set>
#include <stdexcept>

using Editor::AnimationFile;
using VQ::Math::Interpolation::InterpolationType;
using ZT::TangentSide;

namespace {

const QString shippedFile = QString(EA_SOURCE_DIR) + "/examples/wave.xml";

const QByteArray capture = "HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\nCHANNELS 1 Xrotation\n}\n"
                           "MOTION\nFrames: 2\nFrame Time: 0.04\n1.5\n2\n";

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64{content.size()});
}

template <class Action>
QString problemOf(Action action) {
    try {
        action();
        return {};
    } catch (const std::runtime_error& error) {
        return QString::fromUtf8(error.what());
    }
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
    void flagsAndHandlesSurviveAFile();
    void aMotionCaptureIsLoadedAsEditable();
    void theSuffixMayBeInCapitals();
    void errorsNameTheFileAndThePlace_data();
    void errorsNameTheFileAndThePlace();
    void aFileThatIsMissingIsNamed();
    void aDirectoryIsNoFile();
    void onlyXmlIsWritten();
    void aFailedSaveLeavesTheOldFile();
    void aNameThatNoFileCanHoldLeavesTheOldFile();
    void savingReplacesTheFileAndLeavesNothingBeside();
};

void AnimationFileTest::theShippedFileShowsEverythingThatAKeyCanBe() {
    const auto animation = AnimationFile(shippedFile).load().animation;
    QCOMPARE(animation->size(), std::size_t{8});
    QCOMPARE(animation->getGreaterIndex(), 120U);
    std::set<InterpolationType> types;
    std::set<QString> names;
    int smooth = 0;
    int symmetrical = 0;
    for (const ZT::EditableAnimationLayer* const layer : *animation) {
        const ZT::EditableMotionCurve& curve = *layer->getCurve();
        names.insert(layer->getActuatorName());
        QCOMPARE(curve.getTimeUnit().count(), boost::rational<int>(1, 25));
        QVERIFY(curve.size() >= 5 && curve.size() <= 15);
        for (const auto element : curve) {
            types.insert(element.second->getTangentType(TangentSide::left));
            types.insert(element.second->getTangentType(TangentSide::right));
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
    AnimationFile(copy).save(AnimationFile(shippedFile).load().animation->serialize());
    QVERIFY(!contentOf(shippedFile).isEmpty());
    QCOMPARE(contentOf(copy), contentOf(shippedFile));
}

void AnimationFileTest::flagsAndHandlesSurviveAFile() {
    const QTemporaryDir directory;
    const QString path = directory.filePath(QString::fromUtf8("dr\xC3\xBC"
                                                              "ben.xml"));
    const auto animation = AnimationFile(shippedFile).load().animation;
    ZT::EditableAnimationLayer* const layer = (*animation)[0];
    layer->setActuatorName(QString::fromUtf8("<K\xC3\xB6rper> & \"Arm\""));
    layer->setMute(true);
    ZT::EditableMotionCurveKey* const key = (*layer->getCurve()->begin()).second;
    key->setSymmetrical(true);
    key->setRightTangentOffset({3.3F, 1e-20F});
    AnimationFile(path).save(animation->serialize());

    const auto reloaded = AnimationFile(path).load().animation;
    QCOMPARE((*reloaded)[0]->getActuatorName(), layer->getActuatorName());
    QVERIFY((*reloaded)[0]->isMute());
    const auto [frame, read] = *(*reloaded)[0]->getCurve()->begin();
    QCOMPARE(frame, 0U);
    QVERIFY(read->isSymmetrical());
    QVERIFY(!read->isSmooth());
    QVERIFY(read->getTangentOffset(TangentSide::right) == qMakePair(3.3F, 1e-20F));
    QVERIFY(read->getTangentOffset(TangentSide::left) == qMakePair(-3.3F, -1e-20F));
}

void AnimationFileTest::aMotionCaptureIsLoadedAsEditable() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("capture.bvh");
    write(path, capture);
    const auto animation = AnimationFile(path).load().animation;
    QCOMPARE(animation->size(), std::size_t{1});
    ZT::EditableMotionCurve& curve = *animation->getLayer("Hips.Xrotation")->getCurve();
    QCOMPARE(curve.size(), std::size_t{2});
    QCOMPARE(curve.getKey(0)->getValue(), 1.5F);
    QCOMPARE(curve.getKey(1)->getValue(), 2.0F);
    QCOMPARE(curve.getTimeUnit().count(), boost::rational<int>(1, 25));
}

void AnimationFileTest::theSuffixMayBeInCapitals() {
    const QTemporaryDir directory;
    write(directory.filePath("A.BVH"), capture);
    QCOMPARE(problemIn(directory.filePath("A.BVH")), QString());
    AnimationFile(directory.filePath("A.XML"))
        .save(AnimationFile(directory.filePath("A.BVH")).load().animation->serialize());
    QCOMPARE(problemIn(directory.filePath("A.XML")), QString());
}

void AnimationFileTest::errorsNameTheFileAndThePlace_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");
    QByteArray damagedCapture = capture;
    damagedCapture.replace("1.5", "x");
    QTest::newRow("a bad capture") << "a.bvh" << damagedCapture
                                   << "line 10: \"x\" stands where a number should stand";
    QTest::newRow("no capture") << "a.bvh" << QByteArray()
                                << "line 1: the file ends where \"HIERARCHY\" should stand";
    QTest::newRow("another root") << "a.xml" << QByteArray("<other/>")
                                  << "line 1: the root element is \"other\", not \"animation\"";
    QTest::newRow("another suffix")
        << "a.txt" << capture
        << "the file is neither an animation (.xml) nor a motion capture (.bvh) nor a table (.csv)";
    QTest::newRow("no suffix")
        << "xml" << capture
        << "the file is neither an animation (.xml) nor a motion capture (.bvh) nor a table (.csv)";
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
    const QString message = problemIn(path);
    QVERIFY2(message.startsWith(path + ": "), qPrintable(message));
    QCOMPARE(message.mid(path.size() + 2), problem);
}

void AnimationFileTest::aFileThatIsMissingIsNamed() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("missing.xml");
    QVERIFY(problemIn(path).startsWith(path + ": "));
    QVERIFY(problemIn(path).size() > path.size() + 2);
}

void AnimationFileTest::aDirectoryIsNoFile() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("directory.xml");
    QVERIFY(QDir().mkdir(path));
    QVERIFY(problemIn(path).startsWith(path + ": "));
}

void AnimationFileTest::onlyXmlIsWritten() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("a.bvh");
    const ZT::EditableAnimation animation;
    QCOMPARE(problemOf([&] { AnimationFile(path).save(animation.serialize()); }),
             path + ": an animation can only be saved as .xml");
    QVERIFY(!QFile::exists(path));
}

void AnimationFileTest::aFailedSaveLeavesTheOldFile() {
    const QTemporaryDir directory;
    const ZT::EditableAnimation animation;
    const QString missing = directory.filePath("no/such/directory/a.xml");
    QVERIFY(
        problemOf([&] { AnimationFile(missing).save(animation.serialize()); }).startsWith(missing + ": "));

    const QString path = directory.filePath("a.xml");
    QVERIFY(QDir().mkdir(path)); // What stands there cannot be replaced by a file.
    QVERIFY(problemOf([&] { AnimationFile(path).save(animation.serialize()); }).startsWith(path + ": "));
    QVERIFY(QFileInfo(path).isDir());
    QCOMPARE(QDir(directory.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList("a.xml"));
}

void AnimationFileTest::aNameThatNoFileCanHoldLeavesTheOldFile() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("a.xml");
    const auto animation = AnimationFile(shippedFile).load().animation;
    AnimationFile(path).save(animation->serialize());
    (*animation->begin())->setActuatorName(QString("arm") + QChar(0x1b));
    QCOMPARE(problemOf([&] { AnimationFile(path).save(animation->serialize()); }),
             path + ": layer 1: attribute \"name\" holds the character U+001B, which XML cannot hold");
    QCOMPARE(contentOf(path), contentOf(shippedFile));
}

void AnimationFileTest::savingReplacesTheFileAndLeavesNothingBeside() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("a.xml");
    write(path, QByteArray(1000000, 'x'));
    AnimationFile(path).save(AnimationFile(shippedFile).load().animation->serialize());
    QCOMPARE(contentOf(path), contentOf(shippedFile));
    QCOMPARE(QDir(directory.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList("a.xml"));
}

QTEST_GUILESS_MAIN(AnimationFileTest)
#include "AnimationFileTest.moc"
