#include "WindowScene.h"
#include "model/AnimationMarkers.h"
#include "window/HistoryPanel.h"
#include "window/StatusLine.h"

#include <QCheckBox>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QLineEdit>

#include <stdexcept>
#include <utility>

using TwoLayers::key;

class FailedActionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEditThatFailsIsSaidAndChangesNothing_data() {
        QTest::addColumn<QByteArray>("name");
        for (const char* const name : {"cut", "paste", "duplicate", "delete", "typeConstant",
                                       "leftTypeLinear", "smooth", "symmetrical", "insertKey"}) {
            QTest::newRow(name) << QByteArray(name);
        }
    }
    // Slots of whoever listens to the library may throw.
    void anEditThatFailsIsSaidAndChangesNothing() {
        QFETCH(QByteArray, name);
        WindowScene scene;
        scene.history().push(new QUndoCommand);
        scene.history().undo(); // Can be redone.
        TwoLayers::select(scene.document(), 20);
        scene.action("copy").trigger();
        scene.document().markers().setSelectedIndex(33);
        const QString before = scene.state();
        {
            QObject thrower;
            const auto fail = [] { throw std::runtime_error("no room"); };
            for (ZT::EditableAnimationLayer* const layer : scene.document().animation()) {
                QObject::connect(layer->getCurve(), &ZT::EditableMotionCurve::keyAdded, &thrower, fail);
                QObject::connect(layer->getCurve(), &ZT::EditableMotionCurve::keyAboutToBeRemoved, &thrower,
                                 fail);
            }
            for (ZT::EditableMotionCurveKey* const each : scene.document().selection().keys()) {
                QObject::connect(each, &ZT::EditableMotionCurveKey::tangentsChanged, &thrower, fail);
                QObject::connect(each, &ZT::EditableMotionCurveKey::smoothChanged, &thrower, fail);
                QObject::connect(each, &ZT::EditableMotionCurveKey::symmetricalChanged, &thrower, fail);
            }
            scene.action(name.constData()).trigger();
        }
        QVERIFY2(scene.window.status().text().contains("no room"), qPrintable(scene.window.status().text()));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.history().count(), 1);
        QVERIFY(scene.history().canRedo());
        TwoLayers::select(scene.document(), 20);
        scene.action(name.constData()).trigger(); // It works once nobody throws.
        QCOMPARE(scene.history().index(), 1);
        QVERIFY(scene.state() != before);
        scene.history().undo();
        QCOMPARE(scene.state(), before);
    }

    // A curve into which a slot lets no key takes none in: the keys wait with their entry.
    void anUndoThatFailsIsSaidAndLosesNoKey() {
        WindowScene scene;
        const QString before = scene.state();
        TwoLayers::select(scene.document(), 20);
        scene.action("delete").trigger();
        const QString after = scene.state();
        {
            QObject thrower;
            QObject::connect(scene.document().layer(0)->getCurve(), &ZT::EditableMotionCurve::keyAdded,
                             &thrower, [] { throw std::runtime_error("no room"); });
            scene.action("undo").trigger();
        }
        QCOMPARE(scene.window.status().text(), QString("Not done: no room."));
        QCOMPARE(scene.history().index(), 0);
        scene.action("redo").trigger();
        QCOMPARE(scene.state(), after);
        scene.action("undo").trigger();
        QCOMPARE(scene.state(), before);
    }

    void aValueThatFailsIsSaidAndTheFieldShowsWhatTheKeysHave() {
        WindowScene scene;
        TwoLayers::select(scene.document(), 20);
        auto& field = scene.part<QLineEdit>("valueField");
        QTRY_COMPARE(field.text(), QString("2"));
        const QString before = scene.state();
        QObject thrower;
        failAtEdits(scene, thrower);
        enter(field, "25");
        QCOMPARE(scene.window.status().text(), QString("Not done: no room."));
        QCOMPARE(field.text(), QString("2"));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.history().count(), 0);
    }

    void aFrameThatFailsIsSaidAndLeavesNoDragUnderWay() {
        WindowScene scene;
        TwoLayers::select(scene.document(), 20);
        auto& field = scene.part<QLineEdit>("frameField");
        QTRY_COMPARE(field.text(), QString("20"));
        const QString before = scene.state();
        QObject thrower;
        failAtEdits(scene, thrower);
        enter(field, "25");
        QCOMPARE(scene.window.status().text(), QString("Not done: no room."));
        QVERIFY(!scene.workspace.drag.isActive());
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.history().count(), 0);
    }

    void aHandleThatFailsIsSaid() {
        for (const auto& [name, text] :
             {std::make_pair("leftFramesField", "-1"), std::make_pair("rightValueField", "7")}) {
            WindowScene scene;
            TwoLayers::select(scene.document(), 20);
            auto& field = scene.part<QLineEdit>(name);
            QTRY_VERIFY(!field.text().isEmpty());
            const QString before = scene.state();
            QObject thrower;
            failAtEdits(scene, thrower);
            enter(field, text);
            QCOMPARE(scene.window.status().text(), QString("Not done: no room."));
            QCOMPARE(scene.state(), before);
            QCOMPARE(scene.history().count(), 0);
        }
    }

    void aBoxThatFailsIsSaidAndShowsWhatTheKeysHave() {
        WindowScene scene;
        TwoLayers::select(scene.document(), 20);
        auto& type = scene.part<QComboBox>("leftTypeBox");
        QTRY_COMPARE(type.currentText(), QString("bezier"));
        const QString before = scene.state();
        QObject thrower;
        failAtEdits(scene, thrower);
        QTest::keyClick(&type, Qt::Key_Up);
        QCOMPARE(scene.window.status().text(), QString("Not done: no room."));
        QCOMPARE(type.currentText(), QString("bezier"));
        for (const char* const name : {"smoothBox", "symmetricalBox"}) {
            scene.window.status().showRefused(QString());
            auto& box = scene.part<QCheckBox>(name);
            const Qt::CheckState shown = box.checkState();
            QTest::keyClick(&box, Qt::Key_Space);
            QCOMPARE(scene.window.status().text(), QString("Not done: no room."));
            QCOMPARE(box.checkState(), shown);
        }
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.history().count(), 0);
    }

    void aJumpInTheHistoryThatFailsIsSaidAndShownAsFarAsItWent() {
        WindowScene scene;
        TwoLayers::select(scene.document(), 20);
        scene.action("delete").trigger();
        auto& panel = *scene.window.findChild<Editor::HistoryPanel*>();
        QCOMPARE(panel.currentIndex().row(), 1);
        QObject thrower;
        QObject::connect(scene.document().layer(0)->getCurve(), &ZT::EditableMotionCurve::keyAdded, &thrower,
                         [] { throw std::runtime_error("no room"); });
        QTest::mouseClick(panel.viewport(), Qt::LeftButton, {},
                          panel.visualRect(panel.model()->index(0, 0)).center());
        QCOMPARE(scene.window.status().text(), QString("Not done: no room."));
        const int reached = scene.history().index();
        QTRY_COMPARE(panel.currentIndex().row(), reached);
        QCOMPARE(panel.selectionModel()->selectedIndexes(),
                 QModelIndexList{panel.model()->index(reached, 0)});
    }

private:
    static void enter(QLineEdit& field, const QString& text) {
        field.selectAll();
        QTest::keyClicks(&field, text);
        QTest::keyClick(&field, Qt::Key_Return);
    }

    // Slots of whoever listens to the selected keys.
    static void failAtEdits(WindowScene& scene, QObject& thrower) {
        const auto fail = [] { throw std::runtime_error("no room"); };
        for (ZT::EditableMotionCurveKey* const each : scene.document().selection().keys()) {
            QObject::connect(each, &ZT::EditableMotionCurveKey::indexChanged, &thrower, fail);
            QObject::connect(each, &ZT::EditableMotionCurveKey::valueChanged, &thrower, fail);
            QObject::connect(each, &ZT::EditableMotionCurveKey::tangentsChanged, &thrower, fail);
            QObject::connect(each, &ZT::EditableMotionCurveKey::smoothChanged, &thrower, fail);
            QObject::connect(each, &ZT::EditableMotionCurveKey::symmetricalChanged, &thrower, fail);
        }
    }
};

QTEST_MAIN(FailedActionsTest)
#include "FailedActionsTest.moc"
