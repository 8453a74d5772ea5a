#include "CurveViewScene.h"

#include <QRubberBand>

using Scene = CurveViewScene;
using Type = Scene::Type;

namespace {

const Scene::Layers twoLayers{{{0, 10.0F}, {40, 60.0F}, {80, 20.0F}}, {{20, 100.0F}, {60, 90.0F}}};

} // namespace

class CurveViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aClickSelectsTheKeyAlone() {
        Scene scene(twoLayers);
        scene.click(scene.at(0, 10));
        QCOMPARE(scene.selected(), QString("a@0"));
        scene.click(scene.at(20, 100) + QPoint(4, 0));
        QCOMPARE(scene.selected(), QString("b@20"));
        QCOMPARE(scene.entries(), 0);
    }

    void aClickOnOneOfSeveralSelectedKeysSelectsItAlone() {
        Scene scene(twoLayers);
        scene.document.selection().selectAll();
        scene.click(scene.at(40, 60));
        QCOMPARE(scene.selected(), QString("a@40"));
    }

    void shiftClicksAddKeysAndTakeThemAway() {
        Scene scene(twoLayers);
        scene.click(scene.at(0, 10), Qt::ShiftModifier);
        scene.click(scene.at(60, 90), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("a@0 b@60"));
        scene.click(scene.at(0, 10), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("b@60"));
        QCOMPARE(scene.entries(), 0);
    }

    void aClickOnEmptyGroundDeselectsUnlessShiftIsHeld() {
        Scene scene(twoLayers);
        scene.document.selection().selectAll();
        scene.click(scene.at(100, -10), Qt::ShiftModifier);
        QCOMPARE(scene.document.selection().keys().size(), 5);
        scene.click(scene.at(100, -10));
        QVERIFY(scene.document.selection().isEmpty());
    }

    void aRubberBandSelectsWhatItSpans() {
        Scene scene(twoLayers);
        scene.click(scene.at(80, 20));
        scene.dragBetween(scene.at(10, 115), scene.at(50, 50));
        QCOMPARE(scene.selected(), QString("a@40 b@20"));
        scene.dragBetween(scene.at(90, 80), scene.at(50, 110),
                          Qt::ShiftModifier); // To the upper left as well.
        QCOMPARE(scene.selected(), QString("a@40 b@20 b@60"));
        scene.dragBetween(scene.at(90, 40), scene.at(100, 50));
        QCOMPARE(scene.selected(), QString());
        QCOMPARE(scene.entries(), 0);
    }

    void escapePutsTheRubberBandAwayAndKeepsTheSelection() {
        Scene scene(twoLayers);
        scene.click(scene.at(80, 20));
        scene.press(scene.at(10, 115));
        scene.moveTo(scene.at(50, 50));
        QVERIFY(scene.view->findChild<QRubberBand*>()->isVisible());
        scene.type(Qt::Key_Escape);
        QVERIFY(!scene.view->findChild<QRubberBand*>()->isVisible());
        scene.moveTo(scene.at(60, 50));
        scene.release(scene.at(60, 50));
        QCOMPARE(scene.selected(), QString("a@80"));
    }

    void keysOfLockedAndHiddenLayersCannotBeSelected() {
        Scene scene(twoLayers);
        scene.setLook(0, true, true);
        scene.setLook(1, false, false);
        scene.click(scene.at(0, 10));
        QCOMPARE(scene.selected(), QString());
        scene.click(scene.at(20, 100));
        QCOMPARE(scene.selected(), QString());
        scene.dragBetween(scene.at(-5, 115), scene.at(100, -10));
        QCOMPARE(scene.selected(), QString());
    }

    void lockingOrHidingALayerDeselectsItsKeys() {
        Scene scene(twoLayers);
        scene.document.selection().selectAll();
        scene.setLook(0, true, true);
        QCOMPARE(scene.selected(), QString("b@20 b@60"));
        scene.setLook(1, false, false);
        QCOMPARE(scene.selected(), QString());
    }

    void aKeyThatCanBeEditedIsPreferredToALockedOneAboveIt() {
        Scene scene({{{50, 50.0F}}, {{50, 50.0F}}});
        scene.setLook(0, true, true);
        scene.click(scene.at(50, 50));
        QCOMPARE(scene.selected(), QString("b@50"));
    }

    void ofKeysAtOnePlaceThatOfTheCurrentLayerIsPreferred() {
        Scene scene({{{50, 50.0F}}, {{50, 50.0F}}, {{50, 50.0F}}});
        for (int layer = 0; layer < 3; ++layer) {
            scene.view->setCurrentLayer(layer);
            scene.click(scene.at(50, 50));
            QCOMPARE(scene.selected(), QString("%1@50").arg(QChar('a' + layer)));
        }
    }

    void theNearestKeyWins() {
        Scene scene({{{50, 50.0F}, {51, 50.0F}}});
        const QPoint first = scene.at(50, 50);
        scene.click(first + QPoint(-3, 0));
        QCOMPARE(scene.selected(), QString("a@50"));
        scene.click(scene.at(51, 50) + QPoint(3, 0));
        QCOMPARE(scene.selected(), QString("a@51"));
        scene.click(first + QPoint(0, 12));
        QCOMPARE(scene.selected(), QString());
    }

    void clickingAnotherLayersKeyOrCurveMakesItTheCurrentOne() {
        Scene scene(twoLayers);
        QSignalSpy picks(scene.view.get(), &Editor::CurveView::currentLayerPicked);
        QCOMPARE(scene.view->currentLayer(), 0);
        scene.click(scene.at(40, 60));
        QCOMPARE(picks.count(), 0);
        scene.click(scene.at(40, 95));
        QCOMPARE(picks.count(), 1);
        QCOMPARE(picks.takeFirst().at(0).toInt(), 1);
        QCOMPARE(scene.view->currentLayer(), 1);
        scene.click(scene.at(0, 10));
        QCOMPARE(picks.takeFirst().at(0).toInt(), 0);
        scene.click(scene.at(100, -10));
        QCOMPARE(picks.count(), 0);
    }

    void theCurrentLayerStaysCurrentWhenTheListChanges() {
        Scene scene(twoLayers);
        scene.view->setCurrentLayer(1);
        scene.document.moveLayer(1, 0);
        QCOMPARE(scene.view->currentLayer(), 0);
        std::unique_ptr<ZT::EditableAnimationLayer> taken;
        Editor::LayerLook look;
        scene.document.takeLayer(0, taken, look);
        QCOMPARE(scene.view->currentLayer(), -1);
        QVERIFY(!scene.picture().isNull());
        scene.view->setCurrentLayer(77);
        QCOMPARE(scene.view->currentLayer(), -1);
    }

    void hoveringTellsLayerFrameAndValue() {
        Scene scene(twoLayers);
        QSignalSpy texts(scene.view.get(), &Editor::CurveView::hovered);
        const auto textAt = [&](const QPoint& point) {
            scene.moveTo(point, {}, Qt::NoButton);
            return texts.takeLast().at(0).toString();
        };
        QCOMPARE(textAt(scene.at(40, 60)), QString("a: key at frame 40, value 60"));
        const QString onCurve = textAt(scene.at(20, 35));
        QVERIFY2(onCurve.startsWith("a: frame 2") || onCurve.startsWith("a: frame 19.9"),
                 qPrintable(onCurve));
        QVERIFY2(textAt(scene.at(100, -10)).startsWith("Frame "), qPrintable(textAt(scene.at(100, -10))));
        QCOMPARE(textAt({scene.at(40, 0).x(), 5}), QString());
        textAt(scene.at(40, 60));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(scene.view.get(), &leave);
        QCOMPARE(texts.takeLast().at(0).toString(), QString());
    }

    void aDoubleClickOnACurveInsertsAKeyThatKeepsItsShape() {
        Scene scene(
            {{{0, 10.0F, Type::bezierAuto}, {40, 60.0F, Type::bezierAuto}, {80, 20.0F, Type::bezierAuto}}});
        const QString before = scene.state();
        std::vector<float> values;
        for (int frame = 0; frame <= 80; ++frame) {
            values.push_back(scene.curve(0).valueAt(frame));
        }
        const QPoint point = scene.at(20, double{scene.curve(0).valueAt(20)});
        scene.doubleClick(point);
        QVERIFY(scene.key(0, 20) != nullptr);
        QCOMPARE(scene.selected(), QString("a@20"));
        QCOMPARE(scene.entries(), 1);
        for (int frame = 0; frame <= 80; ++frame) {
            const float value = scene.curve(0).valueAt(frame);
            QVERIFY2(std::abs(value - values[static_cast<std::size_t>(frame)]) < 0.01F,
                     qPrintable(QString::number(frame)));
        }
        scene.document.history().undo();
        QCOMPARE(scene.state(), before);
    }

    void aDoubleClickOnAKeyOnGroundOrOnALockedCurveInsertsNothing() {
        Scene scene(twoLayers);
        scene.setLook(1, true, true);
        scene.doubleClick(scene.at(40, 60));
        scene.doubleClick(scene.at(100, -10));
        scene.doubleClick(scene.at(40, 95));
        QCOMPARE(scene.entries(), 0);
    }

    void theRightButtonSelectsTheKeyThatAMenuIsAbout() {
        Scene scene(twoLayers);
        QSignalSpy menus(scene.view.get(), &QWidget::customContextMenuRequested);
        scene.press(scene.at(40, 60), {}, Qt::RightButton);
        scene.release(scene.at(40, 60), {}, Qt::RightButton);
        QCOMPARE(scene.selected(), QString("a@40"));
        scene.document.selection().selectAll();
        scene.press(scene.at(40, 60), {}, Qt::RightButton);
        scene.release(scene.at(40, 60), {}, Qt::RightButton);
        QCOMPARE(scene.document.selection().keys().size(), 5);
        const QPoint at = scene.at(40, 60);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, scene.view->mapToGlobal(at));
        QApplication::sendEvent(scene.view.get(), &event);
        QCOMPARE(menus.count(), 1);
    }

    void inTheRulerTheSelectedFrameFollowsThePointer() {
        Scene scene(twoLayers);
        const QPoint ruler(scene.at(30, 0).x(), 5);
        scene.press(ruler);
        QCOMPARE(scene.document.markers().selectedIndex(), 30U);
        scene.moveTo({scene.at(55, 0).x(), 5});
        QCOMPARE(scene.document.markers().selectedIndex(), 55U);
        scene.moveTo({-5000, 5});
        QCOMPARE(scene.document.markers().selectedIndex(), 0U);
        scene.release({-5000, 5});
        QCOMPARE(scene.entries(), 0);
    }

    void escapeGivesThePlaceOfTheViewBack() {
        Scene scene(twoLayers);
        const double first = scene.frames->first();
        const double lowest = scene.view->values().first();
        scene.press({300, 200}, {}, Qt::MiddleButton);
        scene.moveTo({380, 260}, {}, Qt::MiddleButton);
        QVERIFY(scene.frames->first() != first);
        QVERIFY(scene.view->values().first() != lowest);
        scene.type(Qt::Key_Escape);
        QCOMPARE(scene.frames->first(), first);
        QCOMPARE(scene.view->values().first(), lowest);
        scene.moveTo({420, 300}, {}, Qt::MiddleButton);
        QCOMPARE(scene.frames->first(), first);
    }

    void escapeGivesTheSelectedFrameBack() {
        Scene scene(twoLayers);
        const QPoint ruler(scene.at(30, 0).x(), 5);
        scene.document.markers().setSelectedIndex(7);
        scene.press(ruler);
        scene.moveTo({scene.at(55, 0).x(), 5});
        QCOMPARE(scene.document.markers().selectedIndex(), 55U);
        scene.type(Qt::Key_Escape);
        QCOMPARE(scene.document.markers().selectedIndex(), 7U);
        scene.moveTo(ruler);
        scene.release(ruler);
        QCOMPARE(scene.document.markers().selectedIndex(), 7U);
    }

    void anotherAnimationKeepsItsSelectedFrameWhileTheButtonIsDownInTheRuler() {
        Scene scene(twoLayers);
        const QPoint ruler(scene.at(30, 0).x(), 5);
        scene.document.markers().setSelectedIndex(7);
        scene.press(ruler);
        scene.load(twoLayers);
        QCOMPARE(scene.document.markers().selectedIndex(), 0U);
        scene.moveTo(ruler);
        scene.release(ruler);
        QCOMPARE(scene.document.markers().selectedIndex(), 0U);
    }

    void anotherAnimationIsShownFromItsBeginning() {
        Scene scene(twoLayers);
        scene.view->setCurrentLayer(1);
        scene.load({{{100, 1000.0F}, {200, 2000.0F}}});
        QCOMPARE(scene.view->currentLayer(), 0);
        QVERIFY(scene.frames->first() < 100.0 && scene.frames->last() > 200.0);
        QVERIFY(scene.frames->span() < 150.0);
        QVERIFY(scene.view->values().first() < 1000.0 && scene.view->values().last() > 2000.0);
        const QImage before = scene.picture();
        scene.document.markers().setSelectedIndex(150);
        QVERIFY(scene.picture() != before);
    }
};

QTEST_MAIN(CurveViewTest)
#include "CurveViewTest.moc"
