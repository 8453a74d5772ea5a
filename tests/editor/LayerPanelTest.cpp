#include "layers/LayerPanel.h"

#include "layers/LayerEdits.h"
#include "layers/LayerModel.h"
#include "model/AnimationMarkers.h"
#include "tests/editor/support/Scene.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QDropEvent>
#include <QLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTableView>
#include <QTimer>
#include <QToolButton>

using Editor::LayerEdits;
using Editor::LayerModel;
using Editor::LayerPanel;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;

namespace {

class Scene : public EditorScene::Scene {
public:
    explicit Scene(const QStringList& names = {"arm", "leg", "head"})
        : EditorScene::Scene(names)
        , panel(document) {
        panel.resize(420, 400);
        panel.show();
        panel.layout()->activate();
    }

    QTableView& table() { return *panel.findChild<QTableView*>(); }
    QLineEdit& filter() { return *panel.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly); }
    QAction* action(const QString& text) {
        for (QAction* const each : panel.actions()) {
            if (each->text() == text) {
                return each;
            }
        }
        return nullptr;
    }
    QToolButton* button(const QString& accessibleName) {
        for (QToolButton* const each : panel.findChildren<QToolButton*>()) {
            if (each->accessibleName() == accessibleName) {
                return each;
            }
        }
        return nullptr;
    }
    QModelIndex cell(int row, int column) { return table().model()->index(row, column); }
    QPoint at(int row, int column) { return table().visualRect(cell(row, column)).center(); }
    void click(int row, int column, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, modifiers, at(row, column));
    }
    void doubleClick(int row, int column) {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, at(row, column));
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, at(row, column));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&table(), key, modifiers);
    }
    QString shownNames() {
        QStringList texts;
        for (int row = 0; row < table().model()->rowCount(); ++row) {
            texts.append(cell(row, LayerModel::nameColumn).data().toString());
        }
        return texts.join(' ');
    }
    QString names() {
        QStringList texts;
        for (const ZT::EditableAnimationLayer* const layer : document.animation()) {
            texts.append(layer->getActuatorName());
        }
        return texts.join(' ');
    }
    QString selectedNames() {
        QStringList texts;
        for (const QModelIndex& row : table().selectionModel()->selectedRows(LayerModel::nameColumn)) {
            texts.append(row.data().toString());
        }
        texts.sort();
        return texts.join(' ');
    }

    LayerPanel panel;
};

/// Answers the colour dialog that comes up next.
void answerColourDialog(const QColor& colour, bool isAccepted, bool* wasShown) {
    QTimer::singleShot(0, qApp, [=] {
        auto* const dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        *wasShown = dialog != nullptr;
        if (dialog != nullptr) {
            dialog->setCurrentColor(colour);
            isAccepted ? dialog->accept() : dialog->reject();
        }
    });
}

} // namespace

class LayerPanelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void typingInTheFilterShowsTheLayersOfThatName() {
        Scene scene({"Left arm", "left leg", "head"});
        QTest::keyClicks(&scene.filter(), "LEFT");
        QCOMPARE(scene.shownNames(), QString("Left arm left leg"));
        QTest::keyClicks(&scene.filter(), " l");
        QCOMPARE(scene.shownNames(), QString("left leg"));
        scene.filter().clear();
        QCOMPARE(scene.shownNames(), QString("Left arm left leg head"));
        QTest::keyClicks(&scene.filter(), "(*"); // A text, no pattern.
        QCOMPARE(scene.shownNames(), QString());
    }

    void aClickMakesALayerTheCurrentOne() {
        Scene scene;
        QSignalSpy spy(&scene.panel, &LayerPanel::currentLayerChanged);
        QCOMPARE(scene.panel.currentLayer(), -1);
        scene.click(1, LayerModel::nameColumn);
        QCOMPARE(scene.panel.currentLayer(), 1);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), 1);
        scene.press(Qt::Key_Down);
        QCOMPARE(scene.panel.currentLayer(), 2);
        QCOMPARE(spy.count(), 2);
        scene.panel.setCurrentLayer(0);
        QCOMPARE(scene.selectedNames(), QString("arm"));
        QCOMPARE(spy.count(), 3);
        scene.panel.setCurrentLayer(0);
        QCOMPARE(spy.count(), 3);
        scene.panel.setCurrentLayer(-1);
        QCOMPARE(scene.panel.currentLayer(), -1);
        QCOMPARE(scene.selectedNames(), QString());
        scene.panel.setCurrentLayer(99);
        QCOMPARE(scene.panel.currentLayer(), -1);
    }

    void theCurrentLayersNewPlaceIsAnnounced() {
        Scene scene;
        scene.panel.setCurrentLayer(1);
        QSignalSpy spy(&scene.panel, &LayerPanel::currentLayerChanged);
        LayerEdits(scene.document).add(0);
        QCOMPARE(scene.panel.currentLayer(), 2);
        QCOMPARE(spy.last().at(0).toInt(), 2);
        LayerEdits(scene.document).move({2}, 0);
        QCOMPARE(scene.panel.currentLayer(), 0);
        QCOMPARE(spy.last().at(0).toInt(), 0);
        scene.document.replace(EditorScene::animationOf({"a", "b"}), QString());
        QCOMPARE(scene.panel.currentLayer(), -1);
        QCOMPARE(spy.last().at(0).toInt(), -1);
    }

    void underAFilterLayersKeepTheirNumbers() {
        Scene scene;
        QTest::keyClicks(&scene.filter(), "head");
        scene.click(0, LayerModel::nameColumn);
        QCOMPARE(scene.panel.currentLayer(), 2);
        scene.panel.setCurrentLayer(0); // The filter hid it.
        QCOMPARE(scene.filter().text(), QString());
        QCOMPARE(scene.panel.currentLayer(), 0);
    }

    void aDoubleClickEditsTheNameInPlace() {
        Scene scene;
        checkEdit(scene, [&scene] {
            scene.doubleClick(1, LayerModel::nameColumn);
            auto* const editor = scene.table().findChild<QLineEdit*>();
            QVERIFY(editor != nullptr);
            QCOMPARE(editor->text(), QString("leg"));
            QTest::keyClicks(editor, "knee");
            QTest::keyClick(editor, Qt::Key_Return);
            QCoreApplication::processEvents(); // The delegate commits in the next turn.
        });
        QCOMPARE(scene.names(), QString("arm knee head"));
    }

    void escapeInTheNameKeepsIt() {
        Scene scene;
        checkNothingHappens(scene, [&scene] {
            scene.panel.setCurrentLayer(1);
            scene.press(Qt::Key_F2);
            auto* const editor = scene.table().findChild<QLineEdit*>();
            QVERIFY(editor != nullptr);
            QTest::keyClicks(editor, "knee");
            QTest::keyClick(editor, Qt::Key_Escape);
            QCoreApplication::processEvents();
        });
    }

    void checkBoxesAreClicked_data() {
        QTest::addColumn<int>("column");
        QTest::newRow("visible") << int(LayerModel::visibleColumn);
        QTest::newRow("mute") << int(LayerModel::muteColumn);
        QTest::newRow("locked") << int(LayerModel::lockedColumn);
    }
    void checkBoxesAreClicked() {
        QFETCH(int, column);
        Scene scene;
        const QVariant before = scene.cell(1, column).data(Qt::CheckStateRole);
        const auto picture = [&] {
            return scene.table().viewport()->grab(scene.table().visualRect(scene.cell(1, column))).toImage();
        };
        scene.panel.setCurrentLayer(1);
        const QImage beforeIt = picture();
        checkEdit(scene, [&] { scene.click(1, column); });
        QVERIFY(picture() != beforeIt);
        QVERIFY(scene.cell(1, column).data(Qt::CheckStateRole) != before);
        scene.click(1, column);
        QCOMPARE(scene.cell(1, column).data(Qt::CheckStateRole), before);
    }

    void aRightClickTogglesNothing() {
        Scene scene;
        checkNothingHappens(scene, [&scene] {
            QTest::mouseClick(scene.table().viewport(), Qt::RightButton, {},
                              scene.at(1, LayerModel::muteColumn));
        });
    }

    void nameAndValueFitIntoTheNarrowestPanel() {
        Scene scene;
        scene.panel.resize(scene.panel.minimumSizeHint());
        const QFontMetrics font = scene.table().fontMetrics();
        QVERIFY(scene.table().columnWidth(LayerModel::nameColumn) >= 8 * font.averageCharWidth());
        QVERIFY(scene.table().visualRect(scene.cell(0, LayerModel::valueColumn)).right() <=
                scene.table().viewport()->width());
    }

    void theKeyboardReachesEveryCell() {
        Scene scene;
        scene.panel.setCurrentLayer(1); // Its name.
        checkEdit(scene, [&scene] {
            scene.press(Qt::Key_Right);
            scene.press(Qt::Key_Space);
        });
        QVERIFY(scene.document.layer(1)->isMute());
        checkEdit(scene, [&scene] {
            scene.press(Qt::Key_Right);
            scene.press(Qt::Key_Space);
        });
        QVERIFY(scene.document.look(1).isLocked);
        checkEdit(scene, [&scene] {
            for (int i = 0; i < 4; ++i) {
                scene.press(Qt::Key_Left);
            }
            scene.press(Qt::Key_Space);
        });
        QVERIFY(!scene.document.look(1).isVisible);
    }

    void aDoubleClickOnTheColourAsksForAnother() {
        Scene scene;
        bool wasShown = false;
        checkEdit(scene, [&] {
            answerColourDialog(QColor(10, 200, 30), true, &wasShown);
            scene.doubleClick(1, LayerModel::colourColumn);
        });
        QVERIFY(wasShown);
        QCOMPARE(scene.document.look(1).colour, QColor(10, 200, 30));
        checkNothingHappens(scene, [&] {
            wasShown = false;
            answerColourDialog(QColor(1, 2, 3), false, &wasShown);
            scene.panel.chooseColour();
        });
        QVERIFY(wasShown);
    }

    void theButtonsAddDuplicateAndRemove() {
        Scene scene;
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
        Scene scene(QStringList{});
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
        Scene scene({"a", "b", "c", "d"});
        scene.click(0, LayerModel::nameColumn);
        scene.click(2, LayerModel::nameColumn, Qt::ControlModifier);
        QCOMPARE(scene.selectedNames(), QString("a c"));
        checkEdit(scene, [&scene] { scene.action("Remove layer")->trigger(); });
        QCOMPARE(scene.names(), QString("b d"));
    }

    void altAndArrowsMoveTheSelectedLayers() {
        Scene scene({"a", "b", "c", "d"});
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
        Scene scene({"a", "b", "c", "d"});
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
        Scene scene({"a 1", "b", "a 2", "c", "a 3"});
        QTest::keyClicks(&scene.filter(), "a");
        QAbstractItemModel& model = *scene.table().model();
        const std::unique_ptr<QMimeData> data(model.mimeData({model.index(2, 0)}));
        checkEdit(scene, [&] { QVERIFY(model.dropMimeData(data.get(), Qt::MoveAction, 1, 0, {})); });
        QCOMPARE(scene.names(), QString("a 1 b a 3 a 2 c"));
    }

    void theContextMenuSelectsTheLayersKeys() {
        Scene scene;
        const EditorScene::Keys arm = scene.add(0, {1, 2});
        scene.add(1, {3});
        scene.panel.setCurrentLayer(0);
        QVERIFY(scene.table().actions().contains(scene.action("Select keys")));
        QCOMPARE(scene.table().contextMenuPolicy(), Qt::ActionsContextMenu);
        scene.action("Select keys")->trigger();
        QCOMPARE(scene.document.selection().keys(), arm);
    }

    void tabLeavesTheTable() {
        Scene scene;
        scene.panel.activateWindow();
        scene.table().setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&scene.panel));
        QVERIFY(scene.table().hasFocus());
        scene.press(Qt::Key_Tab);
        QVERIFY(!scene.table().hasFocus());
    }

    void whatIsShownHasANameForThoseWhoDoNotSeeIt() {
        Scene scene;
        QVERIFY(!scene.table().accessibleName().isEmpty());
        QVERIFY(!scene.filter().accessibleName().isEmpty());
        for (const QToolButton* const button : scene.panel.findChildren<QToolButton*>()) {
            if (button->isVisible() && button->parentWidget() != &scene.filter()) {
                QVERIFY(!button->accessibleName().isEmpty());
            }
        }
    }
};

QTEST_MAIN(LayerPanelTest)
#include "LayerPanelTest.moc"
