#include "WindowScene.h"
#include "model/AnimationMarkers.h"
#include "window/StatusLine.h"

#include <stdexcept>

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

    void anUndoThatFailsIsSaid() {
        WindowScene scene;
        TwoLayers::select(scene.document(), 20);
        scene.action("delete").trigger();
        QObject thrower;
        QObject::connect(scene.document().layer(0)->getCurve(), &ZT::EditableMotionCurve::keyAdded, &thrower,
                         [] { throw std::runtime_error("no room"); });
        scene.action("undo").trigger();
        QCOMPARE(scene.window.status().text(), QString("Not done: no room."));
    }
};

QTEST_MAIN(FailedActionsTest)
#include "FailedActionsTest.moc"
