#include "KeyPanelScene.h"
#include "window/StatusLine.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

using TwoLayers::key;
using TwoLayers::Type;
using ZT::TangentSide;

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
    void aTypeChosenInABoxGoesToThatSide();
    void boxesOfFlagsHaveAThirdState();
    void fieldsFollowEditsFromElsewhere();
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

QTEST_MAIN(KeyPanelTest)
#include "KeyPanelTest.moc"
