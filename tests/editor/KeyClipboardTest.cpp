#include "document/KeyClipboard.h"

#include "document/KeyEdits.h"
#include "tests/editor/support/Scene.h"

#include <QMimeData>

#include <limits>

using namespace EditorScene;
using Editor::KeyClipboard;

namespace {

constexpr const char* ownType = "application/x-curve-editor-keys+xml";
constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

std::unique_ptr<QMimeData> textData(const QString& text) {
    auto data = std::make_unique<QMimeData>();
    data->setText(text);
    return data;
}

QString animationText(const QString& layers) {
    return "<animation>" + layers + "</animation>";
}

QString layerText(const QString& name, const QString& frame = "3") {
    return QString("<layer name=\"%1\"><curve timeUnit=\"1/25\" minimum=\"-inf\" maximum=\"inf\" "
                   "maximumDerivative=\"inf\"><key value=\"1.5\" frame=\"%2\"><left type=\"linear\" dx=\"0\" "
                   "dy=\"0\"/><right type=\"linear\" dx=\"0\" dy=\"0\"/></key></curve></layer>")
        .arg(name, frame);
}

QString bitsOf(const Key& key) {
    return Snapshot::of(key);
}

} // namespace

class KeyClipboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysComeBackAsTheyWere();
    void keysOfSeveralLayersKeepTheirDistances();
    void keysGoToAnotherDocument();
    void copyingNothingGivesNothing();
    void keysThatStandThereAreReplaced();
    void whatWasPastedIsSelected();
    void oneLayersKeysGoToTheLayerThatIsAsked();
    void severalLayersKeysAreLeftOutWhereTheirLayerIsMissing();
    void layersOfOneNameAreToldApart();
    void lockedAndHiddenLayersTakeNothing();
    void namesThatXmlCannotHoldAreFoundAgain();
    void keysFitUpToTheLastFrameAndNoFurther();
    void duplicatesComeRightBehind();
    void duplicatesKeepToTheirLayers();
    void whatCanBePastedIsRecognised();
    void damagedDataChangeNothing_data();
    void damagedDataChangeNothing();
    void anyDamagedTextIsSurvived();
};

void KeyClipboardTest::keysComeBackAsTheyWere() {
    Scene scene;
    scene.add(0, 10, bezier(0.1F, {-3.3F, 1e-20F}, {1.0F / 3.0F, -7}));
    scene.add(0, 12, record(-0.0F, Type::constant, Type::bezier, {-1, 5}, {2, 6}));
    scene.add(0, 15, bezier(std::numeric_limits<float>::max(), {-1, 0}, {3, 0}))->setSmooth(true);
    scene.add(0, 19, bezier(std::numeric_limits<float>::quiet_NaN(), {-1, -1}, {3, 3}))->setSymmetrical(true);
    scene.document.selection().selectAll();
    const auto data = KeyClipboard::copy(scene.document.selection().keys());
    QVERIFY(KeyClipboard::canPaste(data.get()));
    for (const bool asText : {false, true}) {
        const auto text = textData(data->text());
        const unsigned int frame = asText ? 200 : 100;
        checkEdit(scene, [&] {
            QCOMPARE(KeyClipboard(scene.document).paste(asText ? *text : *data, frame, nullptr).leftOut,
                     std::size_t{0});
        });
        for (const unsigned int at : {10U, 12U, 15U, 19U}) {
            QVERIFY(scene.key(0, at - 10U + frame) != nullptr);
            QCOMPARE(bitsOf(*scene.key(0, at - 10U + frame)), bitsOf(*scene.key(0, at)));
        }
    }
}

void KeyClipboardTest::keysOfSeveralLayersKeepTheirDistances() {
    Scene scene;
    const Keys keys = scene.add(0, {7, 9}) + scene.add(2, {5});
    scene.add(1, {6});
    const auto data = KeyClipboard::copy(keys);
    checkEdit(scene, [&] { KeyClipboard(scene.document).paste(*data, 0, nullptr); });
    QCOMPARE(scene.frames(0), QString("2 4 7 9"));
    QCOMPARE(scene.frames(1), QString("6"));
    QCOMPARE(scene.frames(2), QString("0 5"));
}

void KeyClipboardTest::keysGoToAnotherDocument() {
    std::unique_ptr<QMimeData> data;
    {
        Scene scene;
        data = KeyClipboard::copy(scene.add(1, {5, 6}));
    }
    Scene other({"head", "leg"});
    checkEdit(other, [&] { KeyClipboard(other.document).paste(*data, 1, nullptr); });
    QCOMPARE(other.frames(0), QString());
    QCOMPARE(other.frames(1), QString("1 2"));
}

void KeyClipboardTest::copyingNothingGivesNothing() {
    Key loose;
    QVERIFY(KeyClipboard::copy({}) == nullptr);
    QVERIFY(KeyClipboard::copy({&loose}) == nullptr);
}

void KeyClipboardTest::keysThatStandThereAreReplaced() {
    Scene scene;
    const Keys keys = scene.add(0, {1, 3});
    scene.add(0, {10, 11, 12});
    const auto data = KeyClipboard::copy(keys);
    KeyClipboard::Report report;
    checkEdit(scene, [&] { report = KeyClipboard(scene.document).paste(*data, 10, nullptr); });
    QCOMPARE(report.replaced, std::size_t{2});
    QCOMPARE(report.leftOut, std::size_t{0});
    QCOMPARE(scene.frames(), QString("1 3 10 11 12"));
    QCOMPARE(scene.key(0, 10)->getValue(), 1.0F);
    QCOMPARE(scene.key(0, 11)->getValue(), 11.0F);
    QCOMPARE(scene.key(0, 12)->getValue(), 3.0F);
    checkEdit(scene, [&] { KeyClipboard(scene.document).paste(*data, 1, nullptr); }); // Onto themselves.
    QCOMPARE(scene.frames(), QString("1 3 10 11 12"));
}

void KeyClipboardTest::whatWasPastedIsSelected() {
    Scene scene;
    const Keys keys = scene.add(0, {1, 3});
    scene.document.selection().set(keys);
    const auto data = KeyClipboard::copy(keys);
    KeyClipboard(scene.document).paste(*data, 20, nullptr);
    QCOMPARE(scene.document.selection().keys(), (Keys{scene.key(0, 20), scene.key(0, 22)}));
    KeyClipboard(scene.document).duplicate(scene.document.selection().keys());
    QCOMPARE(scene.document.selection().keys(), (Keys{scene.key(0, 23), scene.key(0, 25)}));
}

void KeyClipboardTest::oneLayersKeysGoToTheLayerThatIsAsked() {
    Scene scene;
    const auto data = textData(animationText(layerText("other")));
    checkEdit(scene, [&] { KeyClipboard(scene.document).paste(*data, 8, &scene.curve(2)); });
    QCOMPARE(scene.frames(2), QString("8"));
    // Its own layer comes first.
    const auto own = textData(animationText(layerText("leg")));
    checkEdit(scene, [&] { KeyClipboard(scene.document).paste(*own, 8, &scene.curve(2)); });
    QCOMPARE(scene.frames(1), QString("8"));
    scene.lock(2);
    checkNothingHappens(scene, [&] {
        QVERIFY(!problemOf([&] { KeyClipboard(scene.document).paste(*data, 9, &scene.curve(2)); }).isEmpty());
    });
}

void KeyClipboardTest::severalLayersKeysAreLeftOutWhereTheirLayerIsMissing() {
    Scene scene;
    const auto data = textData(animationText(layerText("other", "1") + layerText("leg", "4")));
    checkEdit(scene, [&] {
        QCOMPARE(KeyClipboard(scene.document).paste(*data, 10, &scene.curve(0)).leftOut, std::size_t{1});
    });
    QCOMPARE(scene.frames(0), QString());
    QCOMPARE(scene.frames(1), QString("13")); // The first of them would stand at 10.
    const auto none = textData(animationText(layerText("other") + layerText("another")));
    checkNothingHappens(scene, [&] {
        QCOMPARE(problemOf([&] { KeyClipboard(scene.document).paste(*none, 10, &scene.curve(0)); }),
                 QString("no layer has the name of one that the keys come from"));
    });
}

void KeyClipboardTest::layersOfOneNameAreToldApart() {
    Scene scene({"arm", "arm", "arm"});
    const Keys keys = scene.add(0, {5}) + scene.add(1, {6}) + scene.add(2, {7});
    const auto data = KeyClipboard::copy(keys);
    checkEdit(scene, [&] { KeyClipboard(scene.document).paste(*data, 10, nullptr); });
    QCOMPARE(scene.frames(0), QString("5 10"));
    QCOMPARE(scene.frames(1), QString("6 11"));
    QCOMPARE(scene.frames(2), QString("7 12"));
}

void KeyClipboardTest::lockedAndHiddenLayersTakeNothing() {
    Scene scene;
    const Keys keys = scene.add(0, {5}) + scene.add(1, {5}) + scene.add(2, {5});
    const auto data = KeyClipboard::copy(keys);
    const auto arm = KeyClipboard::copy({scene.key(0, 5)});
    scene.lock(0);
    scene.hide(1);
    checkEdit(scene, [&] {
        QCOMPARE(KeyClipboard(scene.document).paste(*data, 10, nullptr).leftOut, std::size_t{2});
    });
    QCOMPARE(scene.frames(0), QString("5"));
    QCOMPARE(scene.frames(1), QString("5"));
    QCOMPARE(scene.frames(2), QString("5 10"));
    checkNothingHappens(scene, [&] {
        QCOMPARE(problemOf([&] { KeyClipboard(scene.document).paste(*arm, 10, &scene.curve(2)); }),
                 QString("the layer arm is locked or hidden"));
    });
}

void KeyClipboardTest::namesThatXmlCannotHoldAreFoundAgain() {
    Scene scene({QString("a") + QChar(0x1b) + QChar(0xFFFE) + QChar(0x20AC), "other"});
    const auto data = KeyClipboard::copy(scene.add(0, {5}) + scene.add(1, {5}));
    checkEdit(scene, [&] { KeyClipboard(scene.document).paste(*data, 10, nullptr); });
    QCOMPARE(scene.frames(0), QString("5 10"));
    QCOMPARE(scene.frames(1), QString("5 10"));
}

void KeyClipboardTest::keysFitUpToTheLastFrameAndNoFurther() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 8});
    const auto data = KeyClipboard::copy(keys);
    checkEdit(scene, [&] { KeyClipboard(scene.document).paste(*data, lastFrame - 3U, nullptr); });
    QVERIFY(scene.key(0, lastFrame) != nullptr);
    checkNothingHappens(scene, [&] {
        QCOMPARE(problemOf([&] { KeyClipboard(scene.document).paste(*data, lastFrame - 2U, nullptr); }),
                 QString("keys would stand behind the last possible frame"));
        QCOMPARE(problemOf([&] { KeyClipboard(scene.document).duplicate({scene.key(0, lastFrame)}); }),
                 QString("there is no frame behind the last key"));
        const Keys apart{scene.key(0, lastFrame - 3U), scene.key(0, 5)};
        QCOMPARE(problemOf([&] { KeyClipboard(scene.document).duplicate(apart); }),
                 QString("keys would stand behind the last possible frame"));
    });
}

void KeyClipboardTest::duplicatesComeRightBehind() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 8}) + scene.add(1, {7});
    scene.key(0, 5)->setSymmetrical(true);
    KeyClipboard::Report report;
    checkEdit(scene, [&] { report = KeyClipboard(scene.document).duplicate(keys); });
    QCOMPARE(report.replaced, std::size_t{0});
    QCOMPARE(scene.frames(0), QString("5 8 9 12"));
    QCOMPARE(scene.frames(1), QString("7 11"));
    QVERIFY(scene.key(0, 9)->isSymmetrical());
    QCOMPARE(bitsOf(*scene.key(0, 9)), bitsOf(*scene.key(0, 5)));
    checkNothingHappens(scene, [&] { KeyClipboard(scene.document).duplicate({}); });
    checkEdit(scene, [&] { report = KeyClipboard(scene.document).duplicate(keys); }); // Onto the first ones.
    QCOMPARE(report.replaced, std::size_t{3});
}

void KeyClipboardTest::duplicatesKeepToTheirLayers() {
    Scene scene({"arm", "arm"});
    KeyClipboard(scene.document).duplicate(scene.add(1, {5}));
    QCOMPARE(scene.frames(0), QString());
    QCOMPARE(scene.frames(1), QString("5 6"));
    scene.lock(1);
    checkNothingHappens(scene, [&] { KeyClipboard(scene.document).duplicate({scene.key(1, 5)}); });
}

void KeyClipboardTest::whatCanBePastedIsRecognised() {
    QVERIFY(!KeyClipboard::canPaste(nullptr));
    QVERIFY(!KeyClipboard::canPaste(std::make_unique<QMimeData>().get()));
    QVERIFY(!KeyClipboard::canPaste(textData("a letter to a friend").get()));
    QVERIFY(KeyClipboard::canPaste(textData(animationText("")).get()));
}

void KeyClipboardTest::damagedDataChangeNothing_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");
    const QString good = animationText(layerText("arm"));
    QTest::newRow("nothing") << QString() << "line 1";
    QTest::newRow("half") << good.left(good.size() / 2) << "line 1";
    QTest::newRow("no keys") << animationText("") << "there are no keys to paste";
    QTest::newRow("another root") << "<other/>"
                                  << "root element";
    QTest::newRow("a bad frame") << animationText(layerText("arm", "-3")) << "attribute \"frame\"";
    QTest::newRow("a bad value") << QString(good).replace("1.5", "x") << "attribute \"value\"";
    const auto key = good.indexOf("<key");
    const auto behind = good.indexOf("</curve>");
    QTest::newRow("a doubled key") << QString(good).insert(behind, good.mid(key, behind - key)) << "frame";
}

void KeyClipboardTest::damagedDataChangeNothing() {
    QFETCH(QString, text);
    QFETCH(QString, problem);
    Scene scene;
    scene.add(0, {3, 4});
    checkNothingHappens(scene, [&] {
        for (const bool isOwn : {false, true}) {
            QMimeData data;
            if (isOwn) {
                data.setData(ownType, text.toUtf8());
            } else {
                data.setText(text);
            }
            const QString why = problemOf([&] { KeyClipboard(scene.document).paste(data, 7, nullptr); });
            QVERIFY2(!why.isEmpty() && why.contains(problem), qPrintable(why));
        }
    });
}

void KeyClipboardTest::anyDamagedTextIsSurvived() {
    const QString good = animationText(layerText("arm") + layerText("leg"));
    for (int i = 0; i < good.size(); ++i) {
        for (const QChar letter : {QChar('<'), QChar('"'), QChar('9'), QChar(0)}) {
            Scene scene;
            const DocumentState before = scene.state();
            QString damaged = good;
            damaged[i] = letter;
            const auto data = textData(damaged);
            const QString why = problemOf([&] { KeyClipboard(scene.document).paste(*data, 7, nullptr); });
            QCOMPARE(scene.history().count(), why.isEmpty() ? 1 : 0);
            scene.history().undo();
            QCOMPARE(scene.changesSince(before), QString());
        }
    }
}

QTEST_GUILESS_MAIN(KeyClipboardTest)
#include "KeyClipboardTest.moc"
