#include "WindowScene.h"
#include "window/StatusLine.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>

#include <cstdlib>
#include <limits>

using TwoLayers::key;
using TwoLayers::Type;
using ZT::TangentSide;

namespace {

class PanelScene : public WindowScene {
public:
    explicit PanelScene(unsigned int frame) {
        if (!QTest::qWaitForWindowActive(&window)) {
            qFatal("the window does not become active");
        }
        TwoLayers::select(document(), frame);
        QTest::qWait(1); // Fields follow once for each turn of the event loop.
    }

    QLineEdit& field(const char* name) { return part<QLineEdit>(name); }

    /// As a user does it.
    void enter(const char* name, const QString& text) {
        QLineEdit& edit = field(name);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClicks(&edit, text);
        QTest::keyClick(&edit, Qt::Key_Return);
    }
};

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

class KeyPanelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fieldsShowWhatTheKeysHaveInCommon();
    void withoutKeysNothingCanBeEntered();
    void anEnteredValueGoesToAllKeysAsOneEntry();
    void anEnteredFrameMovesAllKeysAsOneEntry();
    void keysAtDifferentFramesKeepTheirDistances();
    void aTakenFrameIsRefusedWithTheReason();
    void anEnteredHandleNumberLeavesTheOtherOneOfEachKey();
    void aHandleOutOfItsSegmentIsRefused_data();
    void aHandleOutOfItsSegmentIsRefused();
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
    void aTypeChosenInABoxGoesToThatSide();
    void boxesOfFlagsHaveAThirdState();
    void fieldsFollowEditsFromElsewhere();
    void whatIsBeingTypedSurvivesEditsFromElsewhere();
    void anotherSelectionTakesBackWhatWasTyped();
};

void KeyPanelTest::fieldsShowWhatTheKeysHaveInCommon() {
    PanelScene scene(10);
    QCOMPARE(scene.field("frameField").text(), QString("10"));
    QCOMPARE(scene.field("valueField").text(), QString());
    QCOMPARE(scene.field("valueField").placeholderText(), QString("mixed"));
    QCOMPARE(scene.part<QComboBox>("leftTypeBox").currentIndex(), -1);
    // Only a has a handle on the right, and none has one on the left.
    QCOMPARE(scene.field("rightFramesField").text(), QString("2"));
    QVERIFY(!scene.field("leftFramesField").isEnabled());
    TwoLayers::select(scene.document(), 20);
    QTRY_COMPARE(scene.field("valueField").text(), QString("2"));
    QCOMPARE(scene.part<QComboBox>("leftTypeBox").currentText(), QString("bezier"));
    QCOMPARE(scene.field("leftFramesField").text(), QString("-2"));
    QCOMPARE(scene.field("leftValueField").text(), QString("-1"));
    QCOMPARE(scene.field("rightValueField").text(), QString("0.5"));
    scene.document().selection().selectAll();
    QTRY_COMPARE(scene.field("frameField").text(), QString());
    QCOMPARE(scene.field("frameField").placeholderText(), QString("0 to 40"));
}

void KeyPanelTest::withoutKeysNothingCanBeEntered() {
    PanelScene scene(10);
    scene.document().selection().clear();
    QTRY_VERIFY(!scene.field("valueField").isEnabled());
    for (const char* const name : {"frameField", "leftFramesField", "rightValueField"}) {
        QVERIFY2(!scene.field(name).isEnabled(), name);
        QCOMPARE(scene.field(name).text(), QString());
    }
    QVERIFY(!scene.part<QComboBox>("rightTypeBox").isEnabled());
    QVERIFY(!scene.part<QCheckBox>("smoothBox").isEnabled());
}

void KeyPanelTest::anEnteredValueGoesToAllKeysAsOneEntry() {
    PanelScene scene(10);
    const QString before = scene.state();
    scene.enter("valueField", "-12.25");
    QCOMPARE(key(scene.document(), 0, 10)->getValue(), -12.25F);
    QCOMPARE(key(scene.document(), 1, 10)->getValue(), -12.25F);
    QCOMPARE(scene.field("valueField").text(), QString("-12.25"));
    QCOMPARE(scene.history().count(), 1);
    scene.enter("valueField", "-12.25");
    QCOMPARE(scene.history().count(), 1);
    scene.history().undo();
    QCOMPARE(scene.state(), before);
}

void KeyPanelTest::anEnteredFrameMovesAllKeysAsOneEntry() {
    PanelScene scene(10);
    const QString before = scene.state();
    scene.enter("frameField", "13");
    QVERIFY(key(scene.document(), 0, 13) != nullptr && key(scene.document(), 1, 13) != nullptr);
    QVERIFY(key(scene.document(), 0, 10) == nullptr);
    QCOMPARE(scene.field("frameField").text(), QString("13"));
    QCOMPARE(scene.history().count(), 1);
    scene.history().undo();
    QCOMPARE(scene.state(), before);
}

void KeyPanelTest::keysAtDifferentFramesKeepTheirDistances() {
    PanelScene scene(10);
    scene.document().selection().set({key(scene.document(), 0, 10), key(scene.document(), 1, 20)});
    QTRY_COMPARE(scene.field("frameField").placeholderText(), QString("10 to 20"));
    scene.enter("frameField", "14");
    QVERIFY(key(scene.document(), 0, 14) != nullptr);
    QVERIFY(key(scene.document(), 1, 24) != nullptr);
}

void KeyPanelTest::aTakenFrameIsRefusedWithTheReason() {
    PanelScene scene(10);
    const QString before = scene.state();
    scene.enter("frameField", "20");
    QCOMPARE(scene.state(), before);
    QCOMPARE(scene.history().count(), 0);
    QCOMPARE(scene.field("frameField").text(), QString("10"));
    QVERIFY2(scene.window.status().text().startsWith("Frame 20 of "),
             qPrintable(scene.window.status().text()));
}

void KeyPanelTest::anEnteredHandleNumberLeavesTheOtherOneOfEachKey() {
    PanelScene scene(20);
    key(scene.document(), 1, 20)->setTangentOffset(TangentSide::right, {3.0F, 4.0F});
    QTRY_COMPARE(scene.field("rightValueField").text(), QString());
    QCOMPARE(scene.field("rightValueField").placeholderText(), QString("mixed"));
    const QString before = scene.state();
    scene.enter("rightFramesField", "6.5");
    QCOMPARE(key(scene.document(), 0, 20)->getTangentOffset(TangentSide::right), qMakePair(6.5F, 0.5F));
    QCOMPARE(key(scene.document(), 1, 20)->getTangentOffset(TangentSide::right), qMakePair(6.5F, 4.0F));
    QCOMPARE(scene.history().count(), 1);
    scene.history().undo();
    QCOMPARE(scene.state(), before);
    QTest::qWait(1);
    scene.enter("leftValueField", "7");
    QCOMPARE(key(scene.document(), 0, 20)->getTangentOffset(TangentSide::left), qMakePair(-2.0F, 7.0F));
    QCOMPARE(key(scene.document(), 1, 20)->getTangentOffset(TangentSide::left), qMakePair(-2.0F, 7.0F));
    QCOMPARE(scene.history().count(), 1);
}

void KeyPanelTest::aHandleOutOfItsSegmentIsRefused_data() {
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("text");
    QTest::newRow("left") << QByteArray("leftFramesField") << "1";
    QTest::newRow("right") << QByteArray("rightFramesField") << "-1";
}

void KeyPanelTest::aHandleOutOfItsSegmentIsRefused() {
    QFETCH(QByteArray, field);
    QFETCH(QString, text);
    PanelScene scene(20);
    const QString before = scene.state();
    scene.enter(field.constData(), text);
    QCOMPARE(scene.state(), before);
    QVERIFY2(scene.window.status().text().contains("handle lies"), qPrintable(scene.window.status().text()));
}

void KeyPanelTest::whatIsNoNumberIsRefusedAndTakenBack_data() {
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

void KeyPanelTest::whatIsNoNumberIsRefusedAndTakenBack() {
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

void KeyPanelTest::numbersMayHaveTheDecimalCommaOfTheCountry_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<float>("value");
    QTest::newRow("three decimals behind a zero") << "0,125" << 0.125F;
    QTest::newRow("three decimals") << "1,500" << 1.5F;
    QTest::newRow("below zero") << "-0,250" << -0.25F;
    QTest::newRow("one decimal") << "1,5" << 1.5F;
    QTest::newRow("the point of files") << "0.125" << 0.125F;
}

void KeyPanelTest::numbersMayHaveTheDecimalCommaOfTheCountry() {
    QFETCH(QString, text);
    QFETCH(float, value);
    const GermanNumbers german;
    PanelScene scene(20);
    scene.enter("valueField", text);
    QCOMPARE(key(scene.document(), 0, 20)->getValue(), value);
    QCOMPARE(key(scene.document(), 1, 20)->getValue(), value);
    QCOMPARE(scene.history().count(), 1);
}

void KeyPanelTest::aDecimalCommaMakesNoThousandsOfFrames() {
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

void KeyPanelTest::escapeTakesBackWhatWasTyped() {
    PanelScene scene(20);
    QLineEdit& field = scene.field("valueField");
    field.setFocus();
    QTest::keyClicks(&field, "99");
    QTest::keyClick(&field, Qt::Key_Escape);
    QCOMPARE(field.text(), QString("2"));
    QTest::keyClick(&field, Qt::Key_Return);
    QCOMPARE(scene.history().count(), 0);
}

void KeyPanelTest::aFieldThatIsLeftCounts() {
    PanelScene scene(20);
    QLineEdit& field = scene.field("valueField");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, "8");
    QTest::keyClick(&field, Qt::Key_Tab);
    QCOMPARE(key(scene.document(), 0, 20)->getValue(), 8.0F);
    QCOMPARE(scene.history().count(), 1);
}

void KeyPanelTest::theUndoKeyUndoesWhatWasEntered() {
    PanelScene scene(20);
    const QString before = scene.state();
    scene.enter("valueField", "7");
    QCOMPARE(scene.history().index(), 1);
    QTest::keyClick(scene.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(scene.history().index(), 0);
    QCOMPARE(scene.state(), before);
}

void KeyPanelTest::theUndoKeyUndoesTypingBeforeThat() {
    PanelScene scene(20);
    scene.enter("valueField", "7");
    QLineEdit& field = scene.field("valueField");
    QTest::keyClicks(&field, "1");
    QVERIFY(field.isModified());
    QTest::keyClick(scene.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(scene.history().index(), 1);
}

void KeyPanelTest::whatIsBeingTypedIsSaved_data() {
    QTest::addColumn<bool>("isFloating");
    QTest::newRow("in the window") << false;
    QTest::newRow("in a dock that floats") << true;
}

void KeyPanelTest::whatIsBeingTypedIsSaved() {
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

void KeyPanelTest::whatIsBeingTypedIsAskedAboutBeforeTheWindowCloses() {
    PanelScene scene(20);
    scene.document().setSaved(scene.directory.filePath("typed.xml"));
    scene.field("valueField").setFocus();
    scene.field("valueField").selectAll();
    QTest::keyClicks(&scene.field("valueField"), "7");
    scene.dialogs.unsaved = Editor::FileDialogs::Unsaved::cancel;
    QVERIFY(!scene.window.close());
    QVERIFY(scene.document().isModified());
}

void KeyPanelTest::valuesAreShownToTheLastBit_data() {
    QTest::addColumn<float>("value");
    QTest::newRow("a tenth") << 0.1F;
    QTest::newRow("a third") << 1.0F / 3.0F;
    QTest::newRow("the largest") << std::numeric_limits<float>::max();
    QTest::newRow("the smallest") << std::numeric_limits<float>::denorm_min();
    QTest::newRow("whole") << 16777216.0F;
}

void KeyPanelTest::valuesAreShownToTheLastBit() {
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

void KeyPanelTest::aTypeChosenInABoxGoesToThatSide() {
    PanelScene scene(20);
    const QString before = scene.state();
    auto& box = scene.part<QComboBox>("leftTypeBox");
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Up); // From bezier to linear.
    QCOMPARE(box.currentText(), QString("linear"));
    for (const int layer : {0, 1}) {
        QVERIFY(key(scene.document(), layer, 20)->getTangentType(TangentSide::left) == Type::linear);
        QVERIFY(key(scene.document(), layer, 20)->getTangentType(TangentSide::right) == Type::bezier);
    }
    QCOMPARE(scene.history().count(), 1);
    scene.history().undo();
    QCOMPARE(scene.state(), before);
}

void KeyPanelTest::boxesOfFlagsHaveAThirdState() {
    PanelScene scene(20);
    auto& box = scene.part<QCheckBox>("symmetricalBox");
    QCOMPARE(box.checkState(), Qt::Unchecked);
    key(scene.document(), 0, 20)->setSymmetrical(true);
    TwoLayers::select(scene.document(), 40);
    TwoLayers::select(scene.document(), 20);
    QTRY_COMPARE(box.checkState(), Qt::PartiallyChecked);
    QTest::keyClick(&box, Qt::Key_Space);
    QCOMPARE(box.checkState(), Qt::Checked);
    QVERIFY(key(scene.document(), 1, 20)->isSymmetrical());
    QCOMPARE(scene.history().count(), 1);
    QTest::keyClick(&box, Qt::Key_Space);
    QCOMPARE(box.checkState(), Qt::Unchecked);
    QVERIFY(!key(scene.document(), 0, 20)->isSymmetrical());
    QCOMPARE(scene.history().count(), 2);
}

void KeyPanelTest::fieldsFollowEditsFromElsewhere() {
    PanelScene scene(20);
    scene.workspace.edits.setValue(scene.document().selection().keys(), 6.0F);
    QTRY_COMPARE(scene.field("valueField").text(), QString("6"));
    scene.history().undo();
    QTRY_COMPARE(scene.field("valueField").text(), QString("2"));
}

void KeyPanelTest::whatIsBeingTypedSurvivesEditsFromElsewhere() {
    PanelScene scene(20);
    QLineEdit& field = scene.field("valueField");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, "7");
    scene.workspace.edits.setValue(scene.document().selection().keys(), 6.0F);
    QTest::qWait(1);
    QCOMPARE(field.text(), QString("7"));
}

void KeyPanelTest::anotherSelectionTakesBackWhatWasTyped() {
    PanelScene scene(20);
    QLineEdit& field = scene.field("valueField");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, "7");
    TwoLayers::select(scene.document(), 40);
    QTRY_COMPARE(field.text(), QString("-4"));
    QCOMPARE(scene.history().count(), 0);
}

QTEST_MAIN(KeyPanelTest)
#include "KeyPanelTest.moc"
