#include "layers/LayerPanel.h"

#include "tests/editor/support/LayerPanelScene.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>

#include <memory>

using Editor::LayerModel;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;

class LayerPanelRowsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theButtonsAddDuplicateAndRemove() {
        LayerPanelScene scene;
        scene.add(0, {3, 8});
        scene.panel.setCurrentLayer(0);
        checkEdit(scene, [&scene] {
            QTest::mouseClick(scene.button("Duplicate layer"), Qt::LeftButton);
            QCOMPARE(scene.selectedNames(), QString("arm 2"));
            QCOMPARE(scene.panel.currentLayer(), 1);
        });
        QCOMPARE(scene.names(), QString("arm arm 2 leg head"));
        scene.panel.setCurrentLayer(1);
        checkEdit(scene, [&scene] {
            QTest::mouseClick(scene.button("Add layer"), Qt::LeftButton);
            QCOMPARE(scene.selectedNames(), QString("Layer"));
        });
        QCOMPARE(scene.names(), QString("arm arm 2 Layer leg head"));
        scene.panel.setCurrentLayer(2);
        checkEdit(scene, [&scene] {
            QTest::mouseClick(scene.button("Remove layer"), Qt::LeftButton);
            QVERIFY(scene.button("Remove layer")->isEnabled()); // For the next one.
            QVERIFY(!scene.selectedNames().isEmpty());
        });
        QCOMPARE(scene.names(), QString("arm arm 2 leg head"));
    }

    void whatNeedsALayerIsDisabledWithoutOne() {
        LayerPanelScene scene(QStringList{});
        QVERIFY(scene.button("Add layer")->isEnabled());
        QVERIFY(!scene.button("Remove layer")->isEnabled());
        QVERIFY(!scene.button("Duplicate layer")->isEnabled());
        QVERIFY(!scene.action("Select keys")->isEnabled());
        checkNothingHappens(scene, [&scene] { // As a menu elsewhere might.
            scene.panel.duplicateLayer();
            scene.panel.removeLayer();
            scene.panel.moveLayersUp();
            scene.panel.moveLayersDown();
            scene.panel.selectKeys();
            scene.panel.chooseColour();
        });
        scene.panel.addLayer();
        QVERIFY(scene.button("Remove layer")->isEnabled());
        scene.panel.removeLayer();
        QVERIFY(!scene.button("Remove layer")->isEnabled());
    }

    void severalLayersAreRemovedAsOneEntry() {
        LayerPanelScene scene({"a", "b", "c", "d"});
        scene.click(0, LayerModel::nameColumn);
        scene.click(2, LayerModel::nameColumn, Qt::ControlModifier);
        QCOMPARE(scene.selectedNames(), QString("a c"));
        checkEdit(scene, [&scene] { scene.action("Remove layer")->trigger(); });
        QCOMPARE(scene.names(), QString("b d"));
    }

    void altAndArrowsMoveTheSelectedLayers() {
        LayerPanelScene scene({"a", "b", "c", "d"});
        scene.panel.activateWindow();
        scene.table().setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&scene.panel));
        scene.click(0, LayerModel::nameColumn);
        scene.click(1, LayerModel::nameColumn, Qt::ShiftModifier);
        checkEdit(scene, [&scene] { scene.press(Qt::Key_Down, Qt::AltModifier); });
        QCOMPARE(scene.names(), QString("c a b d"));
        QCOMPARE(scene.selectedNames(), QString("a b"));
        checkEdit(scene, [&scene] { scene.press(Qt::Key_Down, Qt::AltModifier); });
        QCOMPARE(scene.names(), QString("c d a b"));
        checkNothingHappens(scene, [&scene] { scene.press(Qt::Key_Down, Qt::AltModifier); });
        checkEdit(scene, [&scene] { scene.press(Qt::Key_Up, Qt::AltModifier); });
        QCOMPARE(scene.names(), QString("c a b d"));
        QCOMPARE(scene.selectedNames(), QString("a b"));
    }

    void rowsAreDraggedToAnotherPlace() {
        LayerPanelScene scene({"a", "b", "c", "d"});
        const QModelIndexList dragged{scene.cell(0, LayerModel::nameColumn)};
        const std::unique_ptr<QMimeData> data(scene.table().model()->mimeData(dragged));
        checkEdit(scene, [&] {
            const QRect row = scene.table().visualRect(scene.cell(2, LayerModel::nameColumn));
            const QPoint point(row.center().x(), row.bottom() - 1); // Below "c".
            QDragEnterEvent enter(point, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(scene.table().viewport(), &enter);
            QDragMoveEvent move(point, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(scene.table().viewport(), &move);
            QVERIFY(move.isAccepted());
            QDropEvent drop(point, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(scene.table().viewport(), &drop);
            QVERIFY(drop.isAccepted());
        });
        QCOMPARE(scene.names(), QString("b c a d"));
    }

    void underAFilterRowsAreDroppedBesideTheRowsThatAreShown() {
        LayerPanelScene scene({"a 1", "b", "a 2", "c", "a 3"});
        QTest::keyClicks(&scene.filter(), "a");
        QAbstractItemModel& model = *scene.table().model();
        const std::unique_ptr<QMimeData> data(model.mimeData({model.index(2, 0)}));
        checkEdit(scene, [&] { QVERIFY(model.dropMimeData(data.get(), Qt::MoveAction, 1, 0, {})); });
        QCOMPARE(scene.names(), QString("a 1 b a 3 a 2 c"));
    }

    void theContextMenuSelectsTheLayersKeys() {
        LayerPanelScene scene;
        const EditorScene::Keys arm = scene.add(0, {1, 2});
        scene.add(1, {3});
        scene.panel.setCurrentLayer(0);
        QVERIFY(scene.table().actions().contains(scene.action("Select keys")));
        QCOMPARE(scene.table().contextMenuPolicy(), Qt::ActionsContextMenu);
        scene.action("Select keys")->trigger();
        QCOMPARE(scene.document.selection().keys(), arm);
    }
};

QTEST_MAIN(LayerPanelRowsTest)
#include "LayerPanelRowsTest.moc"
