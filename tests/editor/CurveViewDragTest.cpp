#include "CurveViewScene.h"

#include <QRubberBand>

#include <cmath>

using Scene = CurveViewScene;
using Type = Scene::Type;
using ZT::TangentSide;

namespace {

const Scene::Layers twoLayers{{{0, 10.0F}, {40, 60.0F}, {80, 20.0F}}, {{20, 100.0F}, {60, 90.0F}}};
const Scene::Layers withHandles{{{0, 10.0F, Type::bezier, {-5.0F, 0.0F}, {10.0F, 20.0F}},
                                 {50, 60.0F, Type::bezier, {-15.0F, 10.0F}, {15.0F, -20.0F}},
                                 {90, 20.0F, Type::bezierAuto}}};

QPointF handleOf(const Scene::Key* key, TangentSide side) {
    const auto [x, y] = key->getTangentOffset(side);
    return {double{x}, double{y}};
}

bool isNear(double a, double b, double tolerance) {
    return std::abs(a - b) <= tolerance;
}

} // namespace

class CurveViewDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDraggedKeyMovesInFramesAndValuesAsOneEntry() {
        Scene scene(twoLayers);
        const QString before = scene.state();
        Scene::Key* const key = scene.key(0, 40);
        scene.dragBetween(scene.at(40, 60), scene.at(52.3, 85));
        QCOMPARE(ZT::index(key), 52U);
        QVERIFY2(isNear(double{key->getValue()}, 85.0, 0.5),
                 qPrintable(QString::number(double{key->getValue()})));
        QCOMPARE(scene.selected(), QString("a@52"));
        QCOMPARE(scene.entries(), 1);
        const QString after = scene.state();
        scene.document.history().undo();
        QCOMPARE(scene.state(), before);
        scene.document.history().redo();
        QCOMPARE(scene.state(), after);
    }

    void allSelectedKeysOfAllLayersFollow() {
        Scene scene(twoLayers);
        const QString before = scene.state();
        scene.document.selection().set({scene.key(0, 40), scene.key(1, 60)});
        scene.dragBetween(scene.at(40, 60), scene.at(45, 50));
        QCOMPARE(scene.selected(), QString("a@45 b@65"));
        QVERIFY(isNear(double{scene.key(1, 65)->getValue()}, 80.0, 0.5));
        QCOMPARE(scene.entries(), 1);
        scene.document.history().undo();
        QCOMPARE(scene.state(), before);
    }

    void aDragThatComesBackLeavesNoEntry() {
        Scene scene(twoLayers);
        const QString before = scene.state();
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(60, 60));
        QVERIFY(scene.state() != before);
        scene.moveTo(scene.at(40, 60));
        scene.release(scene.at(40, 60));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.entries(), 0);
    }

    // A dialog that opens in the middle of a gesture takes the release.
    void aMoveWithoutTheButtonEndsTheGestureWhereItWas() {
        Scene scene(twoLayers);
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(50, 60));
        scene.moveTo(scene.at(55, 60), {}, Qt::NoButton);
        QVERIFY(!scene.drag.isActive());
        QCOMPARE(scene.selected(), QString("a@50"));
        QCOMPARE(scene.entries(), 1);
        scene.moveTo(scene.at(57, 60), {}, Qt::RightButton);
        scene.release(scene.at(57, 60));
        QCOMPARE(scene.selected(), QString("a@50"));
        QCOMPARE(scene.entries(), 1);
        scene.dragBetween(scene.at(50, 60), scene.at(52, 60));
        QCOMPARE(scene.selected(), QString("a@52"));
    }

    void aBandWithoutTheButtonSelectsNothing() {
        Scene scene(twoLayers);
        scene.press(scene.at(20, -10));
        scene.moveTo(scene.at(60, 110));
        auto* const band = scene.view->findChild<QRubberBand*>();
        QVERIFY(band->isVisible());
        scene.moveTo(scene.at(61, 110), {}, Qt::NoButton);
        QVERIFY(!band->isVisible());
        scene.release(scene.at(61, 110));
        QCOMPARE(scene.selected(), QString());
    }

    void aGestureEndsWithItsDrag() {
        Scene scene(twoLayers);
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(50, 60));
        scene.drag.finish(); // As another edit does.
        scene.moveTo(scene.at(55, 60));
        QCOMPARE(scene.selected(), QString("a@50"));
        scene.press(scene.at(60, 90)); // A new gesture, and no button that is ignored.
        QCOMPARE(scene.selected(), QString("b@60"));
        scene.moveTo(scene.at(65, 90));
        scene.release(scene.at(65, 90));
        QCOMPARE(scene.selected(), QString("b@65"));
        QCOMPARE(scene.entries(), 2);
    }

    void withShiftAKeyMovesAlongTheAxisThatWentFurther() {
        Scene scene(twoLayers);
        scene.dragBetween(scene.at(40, 60), scene.at(60, 65), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("a@60"));
        QCOMPARE(scene.key(0, 60)->getValue(), 60.0F);
        scene.dragBetween(scene.at(60, 60), scene.at(62, 30), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("a@60"));
        QVERIFY(isNear(double{scene.key(0, 60)->getValue()}, 30.0, 0.5));
    }

    void withShiftASelectedKeyIsDraggedWithTheOthers() {
        Scene scene(twoLayers);
        scene.document.selection().set({scene.key(0, 40), scene.key(1, 60)});
        scene.dragBetween(scene.at(40, 60), scene.at(45, 60), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("a@45 b@65"));
    }

    void whileAKeyIsDraggedTheViewTellsWhereItIs() {
        Scene scene(twoLayers);
        QSignalSpy texts(scene.view.get(), &Editor::CurveView::hovered);
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(52.3, 70), Qt::ShiftModifier);
        QCOMPARE(texts.last().at(0).toString(), QString("a: key at frame 52, value 60"));
        scene.type(Qt::Key_Escape);
        scene.moveTo(scene.at(40, 60));
        QCOMPARE(texts.last().at(0).toString(), QString("a: key at frame 40, value 60"));
    }

    void aHandThatShakesInAClickMovesNothing() {
        Scene scene(twoLayers);
        const QString before = scene.state();
        const QPoint point = scene.at(40, 60);
        scene.press(point);
        scene.moveTo(point + QPoint(1, 1));
        scene.release(point + QPoint(1, 1));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.entries(), 0);
        QCOMPARE(scene.selected(), QString("a@40"));
    }

    void escapeTakesADragBack() {
        Scene scene(twoLayers);
        const QString before = scene.state();
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(60, 90));
        QVERIFY(scene.state() != before);
        scene.type(Qt::Key_Escape);
        QCOMPARE(scene.state(), before);
        scene.moveTo(scene.at(65, 95));
        scene.release(scene.at(65, 95));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.entries(), 0);
        QCOMPARE(scene.selected(), QString("a@40"));
    }

    void aKeyWaitsBesideOneThatStandsInItsWay() {
        Scene scene(twoLayers);
        QSignalSpy blocked(&scene.drag, &Editor::Drag::blocked);
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(79, 60));
        scene.moveTo(scene.at(80, 60));
        QCOMPARE(blocked.count(), 1);
        scene.release(scene.at(80, 60));
        QCOMPARE(scene.selected(), QString("a@79"));
        QCOMPARE(scene.entries(), 1);
        QCOMPARE(scene.curve(0).size(), std::size_t{3});
    }

    void keysDoNotLeaveTheFramesThatThereAre() {
        Scene scene(twoLayers);
        scene.document.selection().set({scene.key(0, 40), scene.key(0, 80)});
        scene.dragBetween(scene.at(80, 20), scene.at(80, 20) - QPoint(3000, 0));
        QCOMPARE(scene.curve(0).size(), std::size_t{3}); // Frame 0 is taken: they wait before it.
        QCOMPARE(scene.key(0, 0)->getValue(), 10.0F);
    }

    void lockedKeysAreNotDragged() {
        Scene scene(twoLayers);
        const QString before = scene.state();
        scene.setLook(0, true, true);
        scene.dragBetween(scene.at(40, 60), scene.at(50, 80));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.entries(), 0);
    }

    void draggingGoesOnWhereTheViewIsZoomedMeanwhile() {
        Scene scene(twoLayers);
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(50, 60));
        scene.turnWheel(scene.at(50, 60), 240);
        scene.moveTo(scene.at(55, 60));
        scene.release(scene.at(55, 60));
        QCOMPARE(scene.selected(), QString("a@55"));
        QCOMPARE(scene.entries(), 1);
    }

    void undoingInTheMiddleOfADragEndsIt() {
        Scene scene(twoLayers);
        const QString before = scene.state();
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(50, 80));
        scene.document.history().undo();
        scene.moveTo(scene.at(60, 80));
        scene.release(scene.at(60, 80));
        QCOMPARE(scene.state(), before);
    }

    void anotherAnimationInTheMiddleOfADragEndsIt() {
        Scene scene(twoLayers);
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(50, 80));
        scene.load(withHandles);
        const QString before = scene.state();
        scene.moveTo(scene.at(60, 80));
        scene.release(scene.at(60, 80));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.entries(), 0);
    }

    void hidingTheViewTakesADragBack() {
        Scene scene(twoLayers);
        const QString before = scene.state();
        scene.press(scene.at(40, 60));
        scene.moveTo(scene.at(50, 80));
        scene.view->hide();
        QCOMPARE(scene.state(), before);
        QVERIFY(!scene.drag.isActive());
    }

    void aDraggedHandleFollowsThePointerAsOneEntry() {
        Scene scene(withHandles);
        const QString before = scene.state();
        scene.click(scene.at(50, 60));
        scene.dragBetween(scene.at(65, 40), scene.at(75.5, 70));
        const QPointF handle = handleOf(scene.key(0, 50), TangentSide::right);
        QVERIFY2(isNear(handle.x(), 25.5, 0.2) && isNear(handle.y(), 10.0, 0.5),
                 qPrintable(QString::number(handle.x())));
        QCOMPARE(handleOf(scene.key(0, 50), TangentSide::left), QPointF(-15.0, 10.0));
        QCOMPARE(scene.selected(), QString("a@50"));
        QCOMPARE(scene.entries(), 1);
        scene.document.history().undo();
        QCOMPARE(scene.state(), before);
    }

    void theLeftHandleIsTheLeftOne() {
        Scene scene(withHandles);
        scene.click(scene.at(50, 60));
        scene.dragBetween(scene.at(35, 70), scene.at(30, 30));
        const QPointF handle = handleOf(scene.key(0, 50), TangentSide::left);
        QVERIFY(isNear(handle.x(), -20.0, 0.2) && isNear(handle.y(), -30.0, 0.5));
        QCOMPARE(handleOf(scene.key(0, 50), TangentSide::right), QPointF(15.0, -20.0));
    }

    void escapeTakesADraggedHandleBack() {
        Scene scene(withHandles);
        const QString before = scene.state();
        scene.click(scene.at(50, 60));
        scene.press(scene.at(65, 40));
        scene.moveTo(scene.at(70, 80));
        QVERIFY(scene.state() != before);
        scene.type(Qt::Key_Escape);
        scene.release(scene.at(70, 80));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.entries(), 0);
    }

    void withControlTheHandlesOfAllSelectedKeysBecomeLikeTheDraggedOne() {
        Scene scene(withHandles);
        scene.document.selection().set({scene.key(0, 0), scene.key(0, 50)});
        scene.dragBetween(scene.at(65, 40), scene.at(70, 30), Qt::ControlModifier);
        QCOMPARE(handleOf(scene.key(0, 0), TangentSide::right),
                 handleOf(scene.key(0, 50), TangentSide::right));
        scene.dragBetween(scene.at(70, 30), scene.at(75, 30));
        QVERIFY(handleOf(scene.key(0, 0), TangentSide::right) !=
                handleOf(scene.key(0, 50), TangentSide::right));
    }

    void handlesOfKeysThatAreNotSelectedCannotBeGrabbed() {
        Scene scene(withHandles);
        const QString before = scene.state();
        scene.dragBetween(scene.at(65, 40), scene.at(70, 80));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.entries(), 0);
    }

    void automaticHandlesCannotBeGrabbed() {
        Scene scene(
            {{{0, 0.0F, Type::bezierAuto}, {50, 50.0F, Type::bezierAuto}, {100, 100.0F, Type::bezierAuto}}});
        const QString before = scene.state();
        scene.click(scene.at(50, 50));
        const QPointF handle = handleOf(scene.key(0, 50), TangentSide::right);
        QVERIFY(handle.x() > 5.0);
        const QPoint end = scene.at(50 + handle.x(), 50 + handle.y());
        scene.dragBetween(end, end + QPoint(20, -60));
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.entries(), 0);
    }
};

QTEST_MAIN(CurveViewDragTest)
#include "CurveViewDragTest.moc"
