#include "CurveViewScene.h"

#include <cmath>

using Scene = CurveViewScene;
using Type = Scene::Type;

namespace {

const Scene::Layers twoLayers{{{0, 10.0F}, {40, 60.0F}, {80, 20.0F}}, {{20, 100.0F}, {60, 90.0F}}};

bool isNear(const QPointF& a, const QPointF& b) {
    return std::abs(a.x() - b.x()) < 1e-6 && std::abs(a.y() - b.y()) < 1e-6;
}

} // namespace

class CurveViewZoomTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theWheelZoomsAtThePointer_data() {
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("changesFrames");
        QTest::addColumn<bool>("changesValues");
        QTest::newRow("both") << int{Qt::NoModifier} << true << true;
        QTest::newRow("control: frames") << int{Qt::ControlModifier} << true << false;
        QTest::newRow("shift: values") << int{Qt::ShiftModifier} << false << true;
    }
    void theWheelZoomsAtThePointer() {
        QFETCH(int, modifiers);
        QFETCH(bool, changesFrames);
        QFETCH(bool, changesValues);
        Scene scene(twoLayers);
        const QPoint pointer = scene.at(20, 90);
        const QPointF position = scene.view->placement().toPosition(pointer);
        scene.turnWheel(pointer, 120, Qt::KeyboardModifiers(modifiers));
        QVERIFY(isNear(scene.view->placement().toPosition(pointer), position));
        QCOMPARE(scene.frames->span() < 119.0, changesFrames);
        QCOMPARE(scene.view->values().span() < 139.0, changesValues);
        scene.turnWheel(pointer, -120, Qt::KeyboardModifiers(modifiers));
        QVERIFY(std::abs(scene.frames->span() - 120.0) < 1e-6);
        QVERIFY(std::abs(scene.view->values().span() - 140.0) < 1e-6);
    }

    void theMiddleButtonPans() {
        Scene scene(twoLayers);
        const QPointF position = scene.view->placement().toPosition(QPoint(400, 300));
        scene.dragBetween({400, 300}, {350, 320}, {}, Qt::MiddleButton);
        QVERIFY(isNear(scene.view->placement().toPosition(QPoint(350, 320)), position));
        QVERIFY(std::abs(scene.frames->span() - 120.0) < 1e-6);
    }

    void spaceAndTheLeftButtonPan() {
        Scene scene(twoLayers);
        const QPoint key = scene.at(40, 60);
        const QPointF position = scene.view->placement().toPosition(key);
        QTest::keyPress(scene.view.get(), Qt::Key_Space);
        scene.dragBetween(key, key + QPoint(30, 10));
        QTest::keyRelease(scene.view.get(), Qt::Key_Space);
        QVERIFY(isNear(scene.view->placement().toPosition(key + QPoint(30, 10)), position));
        QCOMPARE(scene.selected(), QString());
        QCOMPARE(scene.entries(), 0);
        scene.click(scene.at(40, 60));
        QCOMPARE(scene.selected(), QString("a@40"));
    }

    void fittingShowsAllVisibleLayers() {
        Scene scene({{{0, 10.0F}, {200, 60.0F}}, {{500, 9000.0F}}});
        scene.setLook(1, false, false);
        scene.view->fitAll();
        QVERIFY(scene.frames->first() < 0.0 && scene.frames->last() > 200.0 && scene.frames->span() < 260.0);
        QVERIFY(scene.view->values().first() < 10.0 && scene.view->values().last() > 60.0);
        QVERIFY(scene.view->values().span() < 70.0);
    }

    void fittingShowsHowFarACurveSwingsOutBetweenItsKeys() {
        Scene scene(
            {{{0, 0.0F, Type::bezier, {}, {30.0F, 400.0F}}, {90, 0.0F, Type::bezier, {-30.0F, 400.0F}, {}}}});
        scene.view->fitAll();
        QVERIFY(scene.view->values().last() > 290.0);
    }

    void fittingTheSelectionShowsItsKeys() {
        Scene scene(twoLayers);
        scene.document.selection().set({scene.key(0, 40), scene.key(1, 60)});
        scene.view->fitSelection();
        QVERIFY(scene.frames->first() < 40.0 && scene.frames->first() > 30.0);
        QVERIFY(scene.frames->last() > 60.0 && scene.frames->last() < 70.0);
        QVERIFY(scene.view->values().first() < 60.0 && scene.view->values().last() > 90.0);
    }

    void fittingNoSelectionShowsAll() {
        Scene scene(twoLayers);
        scene.frames->show(1000.0, 2000.0);
        scene.view->fitSelection();
        QVERIFY(scene.frames->first() < 0.0 && scene.frames->last() > 80.0);
    }

    void aSingleKeyIsFittedWithRoomAroundIt() {
        Scene scene({{{50, 7.0F}}});
        scene.view->fitAll();
        QVERIFY(scene.frames->first() < 50.0 && scene.frames->last() > 50.0);
        QVERIFY(scene.view->values().first() < 7.0 && scene.view->values().last() > 7.0);
    }

    void withoutKeysTheFramesBetweenStartAndEndAreShown() {
        Scene scene({});
        scene.document.markers().setEndIndex(300);
        scene.view->fitAll();
        QVERIFY(scene.frames->first() < 1.0 && scene.frames->last() > 300.0);
        QVERIFY(scene.view->values().first() < 0.0 && scene.view->values().last() > 0.0);
    }
};

QTEST_MAIN(CurveViewZoomTest)
#include "CurveViewZoomTest.moc"
