#include "CurveViewScene.h"

#include <QLineEdit>
#include <QVBoxLayout>

using Scene = CurveViewScene;

namespace {

const Scene::Layers twoLayers{{{0, 10.0F}, {40, 60.0F}, {80, 20.0F}}, {{20, 100.0F}, {60, 90.0F}}};

} // namespace

class CurveViewKeyboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void arrowsMoveTheSelectedKeys_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("isShift");
        QTest::addColumn<unsigned int>("frame");
        QTest::addColumn<float>("value");
        // 140 visible value units: a hundredth of them, rounded, is 2.
        QTest::newRow("left") << int{Qt::Key_Left} << false << 39U << 60.0F;
        QTest::newRow("right") << int{Qt::Key_Right} << false << 41U << 60.0F;
        QTest::newRow("shift right") << int{Qt::Key_Right} << true << 50U << 60.0F;
        QTest::newRow("shift left") << int{Qt::Key_Left} << true << 30U << 60.0F;
        QTest::newRow("up") << int{Qt::Key_Up} << false << 40U << 62.0F;
        QTest::newRow("down") << int{Qt::Key_Down} << false << 40U << 58.0F;
        QTest::newRow("shift up") << int{Qt::Key_Up} << true << 40U << 80.0F;
    }
    void arrowsMoveTheSelectedKeys() {
        QFETCH(int, key);
        QFETCH(bool, isShift);
        QFETCH(unsigned int, frame);
        QFETCH(float, value);
        Scene scene(twoLayers);
        const QString before = scene.state();
        Scene::Key* const moved = scene.key(0, 40);
        scene.document.selection().set({moved});
        scene.type(static_cast<Qt::Key>(key), isShift ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(ZT::index(moved), frame);
        QCOMPARE(moved->getValue(), value);
        QCOMPARE(scene.entries(), 1);
        scene.document.history().undo();
        QCOMPARE(scene.state(), before);
    }

    void eachPressIsAnEntryOfItsOwn() {
        Scene scene(twoLayers);
        scene.document.selection().set({scene.key(0, 40)});
        scene.type(Qt::Key_Right);
        scene.type(Qt::Key_Right);
        scene.type(Qt::Key_Right);
        QCOMPARE(scene.entries(), 3);
        scene.document.history().undo();
        QCOMPARE(scene.selected(), QString("a@42"));
    }

    void arrowsDoNotPushAKeyThroughItsNeighbour() {
        Scene scene({{{3, 1.0F}, {4, 2.0F}}});
        scene.document.selection().set({scene.key(0, 3)});
        scene.type(Qt::Key_Right);
        QCOMPARE(scene.selected(), QString("a@3"));
        QCOMPARE(scene.entries(), 0);
        QCOMPARE(scene.curve(0).size(), std::size_t{2});
    }

    void arrowsStopAtTheFirstFrame() {
        Scene scene(twoLayers);
        scene.document.selection().set({scene.key(0, 0)});
        scene.type(Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("a@0"));
        QCOMPARE(scene.entries(), 0);
    }

    void withoutSelectionArrowsAreLeftToTheWindow() {
        Scene scene(twoLayers);
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Escape}) {
            for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyPress}) {
                QKeyEvent event(type, key, Qt::NoModifier);
                event.ignore();
                QApplication::sendEvent(scene.view.get(), &event);
                QVERIFY(!event.isAccepted());
            }
        }
        scene.document.selection().selectAll();
        QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_Left, Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(scene.view.get(), &event);
        QVERIFY(event.isAccepted());
        QCOMPARE(scene.entries(), 0);
    }

    void escapeDeselects() {
        Scene scene(twoLayers);
        scene.document.selection().selectAll();
        scene.type(Qt::Key_Escape);
        QVERIFY(scene.document.selection().isEmpty());
        QCOMPARE(scene.entries(), 0);
    }

    void keysPressedDuringADragDoNotEdit() {
        Scene scene(twoLayers);
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(50, 60));
        scene.type(Qt::Key_Up);
        scene.release(scene.at(50, 60));
        QCOMPARE(scene.selected(), QString("a@50"));
        QCOMPARE(scene.key(0, 50)->getValue(), 60.0F);
        QCOMPARE(scene.entries(), 1);
    }

    void tabStepsThroughTheCurrentLayersKeys() {
        Scene scene(twoLayers);
        scene.type(Qt::Key_Tab);
        QCOMPARE(scene.selected(), QString("a@0"));
        scene.type(Qt::Key_Tab);
        QCOMPARE(scene.selected(), QString("a@40"));
        scene.type(Qt::Key_Tab);
        QCOMPARE(scene.selected(), QString("a@80"));
        scene.type(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("a@40"));
        scene.view->setCurrentLayer(1);
        scene.type(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("b@60"));
    }

    void tabGoesOnFromTheOutermostOfTheSelectedKeys() {
        Scene scene({{{0, 1.0F}, {10, 1.0F}, {20, 1.0F}, {30, 1.0F}}});
        scene.document.selection().set({scene.key(0, 10), scene.key(0, 20)});
        scene.type(Qt::Key_Tab);
        QCOMPARE(scene.selected(), QString("a@30"));
        scene.document.selection().set({scene.key(0, 10), scene.key(0, 20)});
        scene.type(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("a@0"));
    }

    void tabBringsTheKeyIntoView() {
        Scene scene({{{0, 10.0F}, {5000, -3000.0F}}});
        scene.frames->show(-10.0, 110.0);
        scene.view->values().show(-20.0, 120.0);
        scene.type(Qt::Key_Tab);
        QCOMPARE(scene.frames->first(), -10.0);
        scene.type(Qt::Key_Tab);
        QVERIFY(scene.frames->first() < 5000.0 && scene.frames->last() > 5000.0);
        QVERIFY(scene.view->values().first() < -3000.0 && scene.view->values().last() > -3000.0);
        QVERIFY(qAbs(scene.frames->span() - 120.0) < 1e-6);
    }

    void tabLeavesTheViewBehindTheLastKeyAndControlTabAtOnce() {
        Scene scene(twoLayers);
        QWidget window;
        QVBoxLayout layout(&window);
        layout.addWidget(scene.view.get());
        auto* const edit = new QLineEdit;
        layout.addWidget(edit);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        scene.view->setFocus();
        QTRY_VERIFY(scene.view->hasFocus());
        scene.document.selection().set({scene.key(0, 80)});
        scene.type(Qt::Key_Tab);
        QVERIFY(edit->hasFocus());
        scene.view->setFocus();
        scene.document.selection().clear();
        scene.type(Qt::Key_Tab, Qt::ControlModifier);
        QVERIFY(edit->hasFocus());
        QVERIFY(scene.document.selection().isEmpty());
        scene.view->setFocus();
        scene.setLook(0, true, true);
        scene.type(Qt::Key_Tab);
        QVERIFY(edit->hasFocus());
        layout.removeWidget(scene.view.get());
        scene.view->setParent(nullptr);
    }

    void focusCanBeSeen() {
        Scene scene(twoLayers);
        const QImage before = scene.picture();
        scene.view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(scene.view.get()));
        scene.view->setFocus();
        QTRY_VERIFY(scene.view->hasFocus());
        const QImage focused = scene.picture();
        scene.view->clearFocus();
        QVERIFY(focused != scene.picture());
        QVERIFY(!before.isNull());
    }
};

QTEST_MAIN(CurveViewKeyboardTest)
#include "CurveViewKeyboardTest.moc"
