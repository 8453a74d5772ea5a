#include "KeyPanelScene.h"
#include "window/StatusLine.h"

#include <QApplication>
#include <QDockWidget>
#include <QLocale>

#include <cstdlib>
#include <limits>

using TwoLayers::key;

namespace {

/// Numbers are written as in Germany while there is one of these.
class GermanNumbers {
public:
    GermanNumbers() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    ~GermanNumbers() { QLocale::setDefault(_before); }
    GermanNumbers(const GermanNumbers&) = delete;
    GermanNumbers& operator=(const GermanNumbers&) = delete;

private:
    QLocale _before;
};

} // namespace

/// What becomes of what is typed into the fields of exact numbers.
class TypedNumbersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsNoNumberIsRefusedAndTakenBack_data();
    void whatIsNoNumberIsRefusedAndTakenBack();
    void numbersMayHaveTheDecimalCommaOfTheCountry_data();
    void numbersMayHaveTheDecimalCommaOfTheCountry();
    void aDecimalCommaMakesNoThousandsOfFrames();
    void escapeTakesBackWhatWasTyped();
    void aFieldThatIsLeftCounts();
    void theUndoKeyUndoesWhatWasEntered();
    void theUndoKeyUndoesTypingBeforeThat();
    void whatIsBeingTypedIsSaved_data();
    void whatIsBeingTypedIsSaved();
    void whatIsBeingTypedIsAskedAboutBeforeTheWindowCloses();
    void valuesAreShownToTheLastBit_data();
    void valuesAreShownToTheLastBit();
    void whatIsBeingTypedSurvivesEditsFromElsewhere();
    void anotherSelectionTakesBackWhatWasTyped();
};

void TypedNumbersTest::whatIsNoNumberIsRefusedAndTakenBack_data() {
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("text");
    QTest::newRow("a word") << QByteArray("valueField") << "much";
    QTest::newRow("infinity") << QByteArray("valueField") << "inf";
    QTest::newRow("not a number") << QByteArray("valueField") << "nan";
    QTest::newRow("beyond floats") << QByteArray("valueField") << "1e39";
    QTest::newRow("half a frame") << QByteArray("frameField") << "10.5";
    QTest::newRow("before the first frame") << QByteArray("frameField") << "-1";
    QTest::newRow("behind the last frame") << QByteArray("frameField") << "4294967296";
    QTest::newRow("a handle of a word") << QByteArray("leftFramesField") << "-";
}

void TypedNumbersTest::whatIsNoNumberIsRefusedAndTakenBack() {
    QFETCH(QByteArray, field);
    QFETCH(QString, text);
    PanelScene scene(20);
    const QString before = scene.state();
    const QString shown = scene.field(field.constData()).text();
    scene.enter(field.constData(), text);
    QCOMPARE(scene.state(), before);
    QCOMPARE(scene.history().count(), 0);
    QCOMPARE(scene.field(field.constData()).text(), shown);
    QVERIFY(!scene.window.status().text().isEmpty());
}

void TypedNumbersTest::numbersMayHaveTheDecimalCommaOfTheCountry_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<float>("value");
    QTest::newRow("three decimals behind a zero") << "0,125" << 0.125F;
    QTest::newRow("three decimals") << "1,500" << 1.5F;
    QTest::newRow("below zero") << "-0,250" << -0.25F;
    QTest::newRow("one decimal") << "1,5" << 1.5F;
    QTest::newRow("the point of files") << "0.125" << 0.125F;
}

void TypedNumbersTest::numbersMayHaveTheDecimalCommaOfTheCountry() {
    QFETCH(QString, text);
    QFETCH(float, value);
    const GermanNumbers german;
    PanelScene scene(20);
    scene.enter("valueField", text);
    QCOMPARE(key(scene.document(), 0, 20)->getValue(), value);
    QCOMPARE(key(scene.document(), 1, 20)->getValue(), value);
    QCOMPARE(scene.history().count(), 1);
}

void TypedNumbersTest::aDecimalCommaMakesNoThousandsOfFrames() {
    const GermanNumbers german;
    PanelScene scene(10);
    const QString before = scene.state();
    scene.enter("frameField", "10,500");
    QCOMPARE(scene.state(), before);
    QVERIFY2(scene.window.status().text().contains("whole numbers"),
             qPrintable(scene.window.status().text()));
    scene.enter("frameField", "1,000");
    QVERIFY(key(scene.document(), 0, 1) != nullptr && key(scene.document(), 1, 1) != nullptr);
    QCOMPARE(scene.history().count(), 1);
}

void TypedNumbersTest::escapeTakesBackWhatWasTyped() {
    PanelScene scene(20);
    QLineEdit& field = scene.field("valueField");
    field.setFocus();
    QTest::keyClicks(&field, "99");
    QTest::keyClick(&field, Qt::Key_Escape);
    QCOMPARE(field.text(), QString("2"));
    QTest::keyClick(&field, Qt::Key_Return);
    QCOMPARE(scene.history().count(), 0);
}

void TypedNumbersTest::aFieldThatIsLeftCounts() {
    PanelScene scene(20);
    QLineEdit& field = scene.field("valueField");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, "8");
    QTest::keyClick(&field, Qt::Key_Tab);
    QCOMPARE(key(scene.document(), 0, 20)->getValue(), 8.0F);
    QCOMPARE(scene.history().count(), 1);
}

void TypedNumbersTest::theUndoKeyUndoesWhatWasEntered() {
    PanelScene scene(20);
    const QString before = scene.state();
    scene.enter("valueField", "7");
    QCOMPARE(scene.history().index(), 1);
    QTest::keyClick(scene.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(scene.history().index(), 0);
    QCOMPARE(scene.state(), before);
}

void TypedNumbersTest::theUndoKeyUndoesTypingBeforeThat() {
    PanelScene scene(20);
    scene.enter("valueField", "7");
    QLineEdit& field = scene.field("valueField");
    QTest::keyClicks(&field, "1");
    QVERIFY(field.isModified());
    QTest::keyClick(scene.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(scene.history().index(), 1);
}

void TypedNumbersTest::whatIsBeingTypedIsSaved_data() {
    QTest::addColumn<bool>("isFloating");
    QTest::newRow("in the window") << false;
    QTest::newRow("in a dock that floats") << true;
}

void TypedNumbersTest::whatIsBeingTypedIsSaved() {
    QFETCH(const bool, isFloating);
    PanelScene scene(20);
    auto& dock = scene.part<QDockWidget>("keyDock");
    dock.setFloating(isFloating);
    QApplication::setActiveWindow(dock.window());
    QCOMPARE(QApplication::activeWindow(), dock.window());
    const QString path = scene.directory.filePath("typed.xml");
    scene.dialogs.savePath = path;
    scene.field("valueField").setFocus();
    scene.field("valueField").selectAll();
    QTest::keyClicks(&scene.field("valueField"), "7");
    scene.action("save").trigger();
    QCOMPARE(key(scene.document(), 0, 20)->getValue(), 7.0F);
    QVERIFY(!scene.document().isModified());
    QVERIFY(scene.field("valueField").hasFocus());
}

void TypedNumbersTest::whatIsBeingTypedIsAskedAboutBeforeTheWindowCloses() {
    PanelScene scene(20);
    scene.document().setSaved(scene.directory.filePath("typed.xml"));
    scene.field("valueField").setFocus();
    scene.field("valueField").selectAll();
    QTest::keyClicks(&scene.field("valueField"), "7");
    scene.dialogs.unsaved = Editor::FileDialogs::Unsaved::cancel;
    QVERIFY(!scene.window.close());
    QVERIFY(scene.document().isModified());
}

void TypedNumbersTest::valuesAreShownToTheLastBit_data() {
    QTest::addColumn<float>("value");
    QTest::newRow("a tenth") << 0.1F;
    QTest::newRow("a third") << 1.0F / 3.0F;
    QTest::newRow("the largest") << std::numeric_limits<float>::max();
    QTest::newRow("the smallest") << std::numeric_limits<float>::denorm_min();
    QTest::newRow("whole") << 16777216.0F;
}

void TypedNumbersTest::valuesAreShownToTheLastBit() {
    QFETCH(float, value);
    PanelScene scene(20);
    for (const int layer : {0, 1}) {
        key(scene.document(), layer, 20)->setValue(value);
    }
    QTRY_VERIFY(scene.field("valueField").text() != "2");
    const QString shown = scene.field("valueField").text();
    QVERIFY2(shown.size() <= 13, qPrintable(shown));
    QVERIFY2(std::strtof(qPrintable(shown), nullptr) == value, qPrintable(shown));
    scene.enter("valueField", "1");
    scene.enter("valueField", shown);
    QVERIFY(key(scene.document(), 0, 20)->getValue() == value);
}

void TypedNumbersTest::whatIsBeingTypedSurvivesEditsFromElsewhere() {
    PanelScene scene(20);
    QLineEdit& field = scene.field("valueField");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, "7");
    scene.workspace.edits.setValue(scene.document().selection().keys(), 6.0F);
    QTest::qWait(1);
    QCOMPARE(field.text(), QString("7"));
}

void TypedNumbersTest::anotherSelectionTakesBackWhatWasTyped() {
    PanelScene scene(20);
    QLineEdit& field = scene.field("valueField");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, "7");
    TwoLayers::select(scene.document(), 40);
    QTRY_COMPARE(field.text(), QString("-4"));
    QCOMPARE(scene.history().count(), 0);
}

QTEST_MAIN(TypedNumbersTest)
#include "TypedNumbersTest.moc"
