#include "layers/LayerPanel.h"

#include "layers/LayerEdits.h"
#include "tests/editor/support/LayerPanelScene.h"

#include <QApplication>
#include <QColorDialog>
#include <QSignalSpy>
#include <QTimer>

using Editor::LayerEdits;
using Editor::LayerModel;
using Editor::LayerPanel;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;

namespace {

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
        LayerPanelScene scene({"Left arm", "left leg", "head"});
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
        LayerPanelScene scene;
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
        LayerPanelScene scene;
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
        LayerPanelScene scene;
        QTest::keyClicks(&scene.filter(), "head");
        scene.click(0, LayerModel::nameColumn);
        QCOMPARE(scene.panel.currentLayer(), 2);
        scene.panel.setCurrentLayer(0); // The filter hid it.
        QCOMPARE(scene.filter().text(), QString());
        QCOMPARE(scene.panel.currentLayer(), 0);
    }

    void aDoubleClickEditsTheNameInPlace() {
        LayerPanelScene scene;
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

    void aNameThatAFileCannotHoldIsNotTaken() {
        LayerPanelScene scene;
        const QSignalSpy spy(&scene.panel, &LayerPanel::refused);
        checkNothingHappens(scene, [&scene] {
            scene.doubleClick(1, LayerModel::nameColumn);
            auto* const editor = scene.table().findChild<QLineEdit*>();
            QVERIFY(editor != nullptr);
            editor->setText("knee\x01"); // As it may be pasted.
            QTest::keyClick(editor, Qt::Key_Return);
            QCoreApplication::processEvents();
        });
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(),
                 QString("Not renamed: The name holds the character U+0001, which XML cannot hold."));
    }

    void escapeInTheNameKeepsIt() {
        LayerPanelScene scene;
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
        LayerPanelScene scene;
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
        LayerPanelScene scene;
        checkNothingHappens(scene, [&scene] {
            QTest::mouseClick(scene.table().viewport(), Qt::RightButton, {},
                              scene.at(1, LayerModel::muteColumn));
        });
    }

    void nameAndValueFitIntoTheNarrowestPanel() {
        LayerPanelScene scene;
        scene.panel.resize(scene.panel.minimumSizeHint());
        const QFontMetrics font = scene.table().fontMetrics();
        QVERIFY(scene.table().columnWidth(LayerModel::nameColumn) >= 8 * font.averageCharWidth());
        QVERIFY(scene.table().visualRect(scene.cell(0, LayerModel::valueColumn)).right() <=
                scene.table().viewport()->width());
    }

    void theKeyboardReachesEveryCell() {
        LayerPanelScene scene;
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
        LayerPanelScene scene;
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

    void tabLeavesTheTable() {
        LayerPanelScene scene;
        scene.panel.activateWindow();
        scene.table().setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&scene.panel));
        QVERIFY(scene.table().hasFocus());
        scene.press(Qt::Key_Tab);
        QVERIFY(!scene.table().hasFocus());
    }

    void whatIsShownHasANameForThoseWhoDoNotSeeIt() {
        LayerPanelScene scene;
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
