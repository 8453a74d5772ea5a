#include "WindowScene.h"
#include "curves/CurveView.h"
#include "layers/LayerModel.h"
#include "layers/LayerPanel.h"
#include "model/AnimationMarkers.h"
#include "timeline/TimelineView.h"
#include "window/StatusLine.h"

#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTableView>

#include <limits>
#include <utility>

using TwoLayers::key;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

/// A window that has the focus, and hands on its keyboard.
class Scene : public WindowScene {
public:
    Scene() {
        (void)QTest::qWaitForWindowActive(&window);
        window.timeline().setFocus();
    }

    ZT::AnimationMarkers& markers() { return document().markers(); }
    void goTo(unsigned int frame) { markers().setSelectedIndex(frame); }
    void type(Qt::Key which, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), which, modifiers);
    }
    QString range() {
        return markers().isRangeVisible()
                   ? QString("%1-%2").arg(markers().rangeStartIndex()).arg(markers().rangeEndIndex())
                   : QString("none");
    }
    QString frames(int layer) { return Snapshot::frames(*document().layer(layer)->getCurve()); }
    QTableView& table() { return *window.layers().findChild<QTableView*>(); }
    QString said() { return window.status().text(); }
};

} // namespace

class WindowKeyboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Escape would not find it there, and deselect.
    void tabDoesNotLeaveADrag() {
        Scene scene;
        Editor::CurveView& curves = scene.window.curves();
        Editor::TimelineView& timeline = scene.window.timeline();
        const QPoint key(timeline.parts().x(20), timeline.parts().row(0).center().y());
        const std::pair<QWidget*, QPoint> presses[] = {
            {&curves, curves.placement().toPoint(20.0, 2.0).toPoint()}, {timeline.viewport(), key}};
        for (const auto& [pressed, point] : presses) {
            QWidget* const view = pressed == &curves ? pressed : &timeline;
            view->setFocus();
            QTest::mousePress(pressed, Qt::LeftButton, {}, point);
            QVERIFY(curves.isGestureActive() || timeline.isGestureActive());
            for (const Qt::KeyboardModifiers modifiers : {Qt::NoModifier, Qt::ControlModifier}) {
                QTest::keyClick(scene.window.windowHandle(), Qt::Key_Tab, modifiers);
                QCOMPARE(scene.window.focusWidget(), view);
            }
            QTest::keyClick(scene.window.windowHandle(), Qt::Key_Escape);
            QVERIFY(!curves.isGestureActive() && !timeline.isGestureActive());
            QTest::mouseRelease(pressed, Qt::LeftButton, {}, point);
        }
    }

    void aNameThatIsBeingTypedIsSaved() {
        Scene scene;
        scene.dialogs.savePath = scene.directory.filePath("named.xml");
        QTableView& table = scene.table();
        table.setFocus();
        table.setCurrentIndex(table.model()->index(0, Editor::LayerModel::nameColumn));
        table.edit(table.currentIndex());
        auto* const editor = table.findChild<QLineEdit*>();
        QVERIFY(editor != nullptr);
        editor->selectAll();
        QTest::keyClicks(editor, "shoulder");
        scene.action("save").trigger();
        QCOMPARE(scene.document().layer(0)->getActuatorName(), QString("shoulder"));
        QVERIFY(!scene.document().isModified());
        QVERIFY(table.hasFocus());
    }

    void aRangeIsRemovedAndItsKeysStay() {
        Scene scene;
        scene.type(Qt::Key_R, Qt::ShiftModifier); // There is none.
        QCOMPARE(scene.said(), QString("There is no range."));
        QCOMPARE(scene.history().count(), 0);
        scene.goTo(5);
        scene.type(Qt::Key_B);
        const QString range = scene.range();
        const QString frames = scene.frames(0) + '/' + scene.frames(1);
        scene.type(Qt::Key_R, Qt::ShiftModifier);
        QCOMPARE(scene.range(), QString("none"));
        QCOMPARE(scene.frames(0) + '/' + scene.frames(1), frames);
        QCOMPARE(scene.history().count(), 2);
        QCOMPARE(scene.history().undoText(), QString("Remove range"));
        scene.history().undo();
        QCOMPARE(scene.range(), range);
        scene.history().redo();
        QCOMPARE(scene.range(), QString("none"));
    }

    void aRangeIsMadeFromOneFrameToAnother() {
        Scene scene;
        scene.goTo(5);
        scene.type(Qt::Key_B);
        scene.goTo(15);
        scene.type(Qt::Key_E);
        QCOMPARE(scene.range(), QString("5-15"));
        QCOMPARE(scene.history().count(), 2);
        scene.type(Qt::Key_E); // It ends there already.
        QCOMPARE(scene.history().count(), 2);
        scene.history().undo();
        scene.history().undo();
        QCOMPARE(scene.range(), QString("none"));
        QCOMPARE(scene.frames(0), QString("0 10 20 40"));
    }

    void aRangeThatBeginsBehindItsEndGoesToTheEndMarker() {
        Scene scene;
        scene.goTo(5);
        scene.type(Qt::Key_B);
        QCOMPARE(scene.range(), QString("5-%1").arg(scene.markers().endIndex()));
        scene.goTo(8);
        scene.type(Qt::Key_E);
        scene.goTo(12);
        scene.type(Qt::Key_B);
        QCOMPARE(scene.range(), QString("12-%1").arg(scene.markers().endIndex()));
        scene.goTo(3);
        scene.type(Qt::Key_E);
        QCOMPARE(scene.range(), QString("%1-3").arg(scene.markers().startIndex()));
    }

    void thereIsNoRangeBeyondTheFrames() {
        Scene scene;
        scene.goTo(lastFrame);
        scene.type(Qt::Key_B);
        QCOMPARE(scene.said(), QString("No range can begin at the last possible frame."));
        scene.goTo(0);
        scene.type(Qt::Key_E);
        QCOMPARE(scene.said(), QString("No range can end at the first frame."));
        scene.goTo(lastFrame - 1U);
        scene.type(Qt::Key_B);
        QCOMPARE(scene.range(), QString("%1-%2").arg(lastFrame - 1U).arg(lastFrame));
    }

    void aRangeSpansTheSelectedKeys() {
        Scene scene;
        scene.document().selection().set({key(scene.document(), 0, 10), key(scene.document(), 1, 40)});
        scene.type(Qt::Key_R);
        QCOMPARE(scene.range(), QString("10-40"));
        QCOMPARE(scene.history().count(), 1);
        TwoLayers::select(scene.document(), 20);
        scene.type(Qt::Key_R);
        QCOMPARE(scene.said(), QString("A range needs keys at two frames at least."));
        QCOMPARE(scene.range(), QString("10-40"));
    }

    void theRangeIsMovedAndStretchedWithItsKeys_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("isShift");
        QTest::addColumn<unsigned int>("frame");
        QTest::addColumn<QString>("range");
        QTest::addColumn<QString>("frames");
        QTest::newRow("move") << int(Qt::Key_M) << false << 13U << "13-23"
                              << "0 13 23 40";
        QTest::newRow("stretch the end") << int(Qt::Key_E) << true << 30U << "10-30"
                                         << "0 10 30 50";
        QTest::newRow("stretch the start") << int(Qt::Key_B) << true << 5U << "5-20"
                                           << "0 5 20 40";
    }
    void theRangeIsMovedAndStretchedWithItsKeys() {
        QFETCH(int, key);
        QFETCH(bool, isShift);
        QFETCH(unsigned int, frame);
        QFETCH(QString, range);
        QFETCH(QString, frames);
        Scene scene;
        scene.type(Qt::Key(key), isShift ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(scene.said(), QString("There is no range."));
        scene.markers().setRangeStartIndex(10);
        scene.markers().setRangeEndIndex(20);
        scene.markers().setRangeVisible(true);
        scene.goTo(frame);
        const QString before = scene.state();
        scene.type(Qt::Key(key), isShift ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(scene.range(), range);
        QCOMPARE(scene.frames(0), frames);
        QCOMPARE(scene.history().count(), 1);
        scene.history().undo();
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.range(), QString("10-20"));
    }

    void theMarkersAreSetToTheCurrentFrame() {
        Scene scene;
        scene.goTo(7);
        scene.type(Qt::Key_I);
        scene.goTo(33);
        scene.type(Qt::Key_O);
        QCOMPARE(scene.markers().startIndex(), 7U);
        QCOMPARE(scene.markers().endIndex(), 33U);
        scene.type(Qt::Key_I);
        QCOMPARE(scene.markers().startIndex(), 33U);
        scene.goTo(34);
        scene.type(Qt::Key_I);
        QCOMPARE(scene.said(), QString("The start marker cannot stand behind the end marker."));
        scene.goTo(32);
        scene.type(Qt::Key_O);
        QCOMPARE(scene.said(), QString("The end marker cannot stand before the start marker."));
        QCOMPARE(scene.markers().startIndex(), 33U);
        QCOMPARE(scene.markers().endIndex(), 33U);
        QCOMPARE(scene.history().count(), 0);
    }

    void framesAreZoomedAndScrolledFromBothViews() {
        Scene scene;
        Editor::ViewAxis& frames = *scene.workspace.frames;
        const std::vector<QWidget*> views{&scene.window.curves(), &scene.window.timeline()};
        for (QWidget* const view : views) {
            view->setFocus();
            frames.show(0.0, 100.0);
            scene.goTo(50);
            scene.type(Qt::Key_Plus);
            QVERIFY(frames.span() < 99.0);
            QVERIFY(qAbs(frames.first() + frames.last() - 100.0) < 1e-6);
            scene.type(Qt::Key_Minus);
            QVERIFY(qAbs(frames.span() - 100.0) < 1e-6);
            scene.type(Qt::Key_Right, Qt::AltModifier);
            QVERIFY(qAbs(frames.first() - 20.0) < 1e-6);
            scene.type(Qt::Key_Left, Qt::AltModifier);
            QVERIFY(qAbs(frames.first()) < 1e-6);
        }
        QCOMPARE(scene.history().count(), 0);
    }

    void valuesAreZoomedAndScrolledFromTheCurves() {
        Scene scene;
        scene.window.curves().setFocus();
        Editor::ViewAxis& values = scene.window.curves().values();
        values.show(-10.0, 10.0);
        scene.type(Qt::Key_Plus, Qt::ControlModifier);
        QVERIFY(values.span() < 19.0);
        QVERIFY(qAbs(values.first() + values.last()) < 1e-6);
        scene.type(Qt::Key_Minus, Qt::ControlModifier);
        QVERIFY(qAbs(values.span() - 20.0) < 1e-6);
        scene.type(Qt::Key_PageUp);
        QVERIFY(qAbs(values.first() + 6.0) < 1e-6);
        scene.type(Qt::Key_PageDown);
        QVERIFY(qAbs(values.first() + 10.0) < 1e-6);
    }

    void eachKeyOfTheKeyboardActsOnce_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("frames");
        QTest::newRow("delete") << int(Qt::Key_Delete) << int(Qt::NoModifier) << "0 20 40";
        QTest::newRow("backspace") << int(Qt::Key_Backspace) << int(Qt::NoModifier) << "0 20 40";
        QTest::newRow("right") << int(Qt::Key_Right) << int(Qt::NoModifier) << "0 11 20 40";
        QTest::newRow("shift and left") << int(Qt::Key_Left) << int(Qt::ShiftModifier) << "0 10 20 40";
    }
    void eachKeyOfTheKeyboardActsOnce() {
        QFETCH(int, which);
        QFETCH(int, modifiers);
        QFETCH(QString, frames);
        Scene scene;
        const std::vector<QWidget*> views{&scene.window.curves(), &scene.window.timeline()};
        for (QWidget* const view : views) {
            view->setFocus();
            TwoLayers::select(scene.document(), 10);
            scene.type(Qt::Key(which), Qt::KeyboardModifiers(modifiers));
            QCOMPARE(scene.frames(0), frames); // A key at 0 is in the way of the last row.
            QCOMPARE(scene.history().index(), frames == "0 10 20 40" ? 0 : 1);
            while (scene.history().canUndo()) {
                scene.history().undo();
            }
        }
    }

    void whatIsBeingDraggedIsNotDeletedOrChanged() {
        Scene scene;
        Editor::CurveView& curves = scene.window.curves();
        curves.setFocus();
        TwoLayers::select(scene.document(), 20);
        const auto at = [&curves](double frame, double value) {
            return curves.placement().toPoint(frame, value).toPoint();
        };
        const QPoint to = at(25.0, 2.0);
        QTest::mousePress(&curves, Qt::LeftButton, {}, at(20.0, 2.0));
        QMouseEvent move(QEvent::MouseMove, to, curves.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&curves, &move);
        for (const Qt::Key which : {Qt::Key_Delete, Qt::Key_1, Qt::Key_S, Qt::Key_K, Qt::Key_R}) {
            scene.type(which);
        }
        scene.type(Qt::Key_D, Qt::ControlModifier);
        QTest::mouseRelease(&curves, Qt::LeftButton, {}, to);
        QCOMPARE(scene.frames(0), QString("0 10 25 40"));
        QCOMPARE(scene.history().count(), 1);
        scene.history().undo();
        QCOMPARE(scene.frames(0), QString("0 10 20 40"));
    }

    void layersAreHiddenMutedAndLockedFromAnywhere_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<int>("column");
        QTest::newRow("hidden") << int(Qt::Key_H) << int(Editor::LayerModel::visibleColumn);
        QTest::newRow("muted") << int(Qt::Key_M) << int(Editor::LayerModel::muteColumn);
        QTest::newRow("locked") << int(Qt::Key_L) << int(Editor::LayerModel::lockedColumn);
    }
    void layersAreHiddenMutedAndLockedFromAnywhere() {
        QFETCH(int, which);
        QFETCH(int, column);
        Scene scene;
        const auto shown = [&] {
            QString states;
            for (const int layer : {0, 1}) {
                states += scene.table().model()->index(layer, column).data(Qt::CheckStateRole).toString();
            }
            return states;
        };
        const QString before = shown();
        const Qt::KeyboardModifiers modifiers = Qt::ControlModifier | Qt::ShiftModifier;
        scene.window.setCurrentLayer(1);
        scene.type(Qt::Key(which), modifiers);
        QVERIFY(shown() != before);
        QCOMPARE(shown().at(0), before.at(0));
        scene.table().selectAll(); // They differ: all become so.
        scene.type(Qt::Key(which), modifiers);
        QCOMPARE(shown().at(0), shown().at(1));
        QCOMPARE(scene.history().count(), 2);
        scene.history().undo();
        scene.history().undo();
        QCOMPARE(shown(), before);
    }

    void tabVisitsAllPartsInTheOrderInWhichTheyStand() {
        Scene scene;
        TwoLayers::select(scene.document(), 20); // Enables the numbers.
        QTRY_VERIFY(scene.part<QWidget>("valueField").isEnabled());
        scene.window.curves().setFocus();
        scene.type(Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&scene.window.timeline()));
        QSet<QWidget*> visited;
        for (int i = 0; i < 60 && !visited.contains(QApplication::focusWidget()); ++i) {
            visited.insert(QApplication::focusWidget());
            const bool isCurves = QApplication::focusWidget() == &scene.window.curves();
            scene.type(Qt::Key_Tab, isCurves ? Qt::ControlModifier : Qt::NoModifier);
        }
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&scene.window.timeline())); // All around.
        for (QWidget* const part :
             {static_cast<QWidget*>(&scene.table()), static_cast<QWidget*>(&scene.window.curves()),
              static_cast<QWidget*>(&scene.part<QWidget>("valueField")),
              static_cast<QWidget*>(scene.part<QWidget>("historyDock").findChild<QAbstractItemView*>())}) {
            QVERIFY2(visited.contains(part), qPrintable(part->accessibleName()));
        }
    }

    void focusIsVisibleInEveryPart() {
        Scene scene;
        scene.window.setCurrentLayer(0);
        for (QWidget* const part :
             {static_cast<QWidget*>(&scene.window.curves()), static_cast<QWidget*>(&scene.window.timeline()),
              static_cast<QWidget*>(&scene.table())}) {
            part->setFocus();
            QVERIFY(part->hasFocus());
            const QImage with = part->grab().toImage();
            part->clearFocus();
            QVERIFY2(part->grab().toImage() != with, qPrintable(part->accessibleName()));
        }
    }
};

QTEST_MAIN(WindowKeyboardTest)
#include "WindowKeyboardTest.moc"
