#include "WindowScene.h"

#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

using TwoLayers::key;

class MixedStatesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void checkMarksSayWhatAllSelectedKeysAre() {
        WindowScene scene;
        TwoLayers::select(scene.document(), 20);
        QTRY_VERIFY(scene.action("typeBezier").isChecked());
        QVERIFY(scene.action("leftTypeBezier").isChecked());
        QVERIFY(!scene.action("typeLinear").isChecked());
        scene.action("leftTypeLinear").trigger();
        QVERIFY(!scene.action("typeBezier").isChecked());
        QVERIFY(scene.action("leftTypeLinear").isChecked());
        QVERIFY(scene.action("rightTypeBezier").isChecked());
        TwoLayers::select(scene.document(), 10); // a differs from b on both sides.
        QTRY_VERIFY(!scene.action("leftTypeLinear").isChecked());
        for (const char* const name :
             {"leftTypeConstant", "rightTypeBezier", "rightTypeBezierAuto", "typeConstant"}) {
            QVERIFY2(!scene.action(name).isChecked(), name);
        }
    }

    void keysOfDifferentSmoothnessShowAsMixedAndBecomeSmooth() {
        WindowScene scene;
        key(scene.document(), 0, 20)->setSmooth(true);
        TwoLayers::select(scene.document(), 20);
        QAction& smooth = scene.action("smooth");
        QTRY_VERIFY(smooth.text().contains("mixed"));
        QVERIFY(!smooth.isChecked());
        smooth.trigger();
        QVERIFY(key(scene.document(), 0, 20)->isSmooth());
        QVERIFY(key(scene.document(), 1, 20)->isSmooth());
        QVERIFY(smooth.isChecked());
        QVERIFY(!smooth.text().contains("mixed"));
        QCOMPARE(scene.history().count(), 1);
        smooth.trigger();
        QVERIFY(!key(scene.document(), 0, 20)->isSmooth());
        QVERIFY(!smooth.isChecked());
        QVERIFY(!scene.action("symmetrical").text().contains("mixed"));
    }

    void undoOfAFlagAloneTakesItsMarkBack() {
        WindowScene scene;
        TwoLayers::select(scene.document(), 20);
        QAction& smooth = scene.action("smooth");
        for (int times = 0; times < 3; ++times) { // The handles are in line after the first time.
            smooth.trigger();
        }
        QVERIFY(smooth.isChecked());
        scene.action("undo").trigger();
        QVERIFY(!key(scene.document(), 0, 20)->isSmooth());
        QTRY_VERIFY(!smooth.isChecked());
    }

    void typesThatOnlySomeKeysHaveShowAsMixed() {
        WindowScene scene;
        const auto isMixed = [&scene](const char* name) {
            return scene.action(name).text().contains("(mixed)");
        };
        TwoLayers::select(scene.document(), 20);
        QTRY_VERIFY(scene.action("typeBezier").isChecked());
        QVERIFY(!isMixed("typeBezier") && !isMixed("typeLinear"));
        TwoLayers::select(scene.document(), 10); // Constant and bezier, linear and automatic.
        QTRY_VERIFY(isMixed("typeBezier"));
        for (const char* const name : {"typeConstant", "typeLinear", "typeBezierAuto", "leftTypeConstant",
                                       "leftTypeLinear", "rightTypeBezier", "rightTypeBezierAuto"}) {
            QVERIFY2(isMixed(name) && !scene.action(name).isChecked(), name);
            QVERIFY2(scene.action(name).toolTip().contains("(mixed)"), name);
        }
        for (const char* const name : {"leftTypeBezier", "leftTypeBezierAuto", "rightTypeConstant"}) {
            QVERIFY2(!isMixed(name), name);
        }
        scene.action("leftTypeLinear").trigger(); // All become so.
        QTRY_VERIFY(scene.action("leftTypeLinear").isChecked());
        QVERIFY(!isMixed("leftTypeLinear") && !isMixed("leftTypeConstant"));
        QCOMPARE(scene.history().count(), 1);
        scene.action("typeLinear").trigger();
        QTRY_VERIFY(scene.action("typeLinear").isChecked());
        QVERIFY(!isMixed("typeLinear") && !isMixed("typeBezier"));
        QCOMPARE(scene.action("typeLinear").toolTip(), QString("Linear (2)"));
    }

    void mixedStatesLookDifferentInMenuToolBarAndContextMenu() {
        WindowScene scene;
        const auto pictureOf = [](QWidget& widget) { return widget.grab().toImage(); };
        QAction& smooth = scene.action("smooth");
        QWidget* const button = scene.part<QToolBar>("toolBar").widgetForAction(&smooth);
        QVERIFY(button != nullptr);
        QVERIFY(scene.window.menuBar()->actions().at(2)->menu()->actions().contains(&smooth));
        const auto iconOf = [&smooth] { return smooth.icon().pixmap(32, 32).toImage(); };
        TwoLayers::select(scene.document(), 20);
        QTRY_VERIFY(smooth.isEnabled());
        QCoreApplication::processEvents();
        const QImage none = pictureOf(*button);
        const QImage noneIcon = iconOf();
        key(scene.document(), 0, 20)->setSmooth(true);
        scene.workspace.selection.update();
        QVERIFY(smooth.text().contains("mixed"));
        const QImage mixed = pictureOf(*button);
        QVERIFY(mixed != none);
        QVERIFY(iconOf() != noneIcon);
        smooth.trigger();
        const QImage all = pictureOf(*button);
        QVERIFY(all != mixed);
        QVERIFY(all != none);
        QVERIFY(iconOf() == noneIcon);
    }
};

QTEST_MAIN(MixedStatesTest)
#include "MixedStatesTest.moc"
