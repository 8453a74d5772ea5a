#include "document/RangeDrags.h"
#include "tests/editor/support/Gesture.h"

#include <limits>

using Editor::Drag;
using Editor::dragNewRange;
using Editor::dragRange;
using Editor::dragRangeEnd;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;
using EditorScene::Gesture;
using EditorScene::Keys;
using EditorScene::Scene;
using ZT::AnimCmd::StretchSide;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

} // namespace

class RangeDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRangeMovesWithTheKeysInIt();
    void aRangeThatMovesBackLeavesNoEntry();
    void aRangeStopsAtTheFirstAndTheLastFrame();
    void aStretchMovesTheKeys();
    void aStretchBackToWhereItBeganLeavesNoEntry();
    void aStretchNeverLosesKeys();
    void aStretchOverKeysThatStayIsBlocked();
    void aBlockedStretchKeepsTheSelection();
    void aRangeOfOneFrameChangesWithoutItsKeys();
    void aRangeWithoutKeysIsNotCollapsed();
    void aNewRangeGoesBothWays();
    void keysOfLockedLayersStay();
};

void RangeDragTest::aRangeMovesWithTheKeysInIt() {
    Scene scene;
    scene.add(0, {10, 12, 14, 15, 16, 20});
    scene.add(1, {11});
    scene.setRange(10, 14);
    Gesture gesture(scene);
    checkEdit(scene, [&] {
        gesture.drag.begin(dragRange(scene.document));
        for (const int step : {1, 5, 3, -2, 2}) {
            gesture.drag.moveTo(QPointF(step, 0));
        }
        gesture.drag.finish();
    });
    QCOMPARE(scene.range(), QString("12-16"));
    QCOMPARE(scene.frames(0), QString("10 11 12 14 16 20"));
    QCOMPARE(scene.key(0, 10)->getValue(), 15.0F);
    QCOMPARE(scene.key(0, 12)->getValue(), 10.0F);
    QCOMPARE(scene.frames(1), QString("13"));
    QVERIFY(gesture.blocked.isEmpty());
}

void RangeDragTest::aRangeThatMovesBackLeavesNoEntry() {
    Scene scene;
    scene.add(0, {10, 12, 14, 15, 16, 20});
    scene.setRange(10, 14);
    Drag drag(scene.document);
    checkNothingHappens(scene, [&] {
        drag.begin(dragRange(scene.document));
        drag.moveTo({7, 0});
        drag.moveTo({0, 5});
        drag.finish();
    });
    checkNothingHappens(scene, [&] {
        drag.begin(dragRange(scene.document));
        drag.moveTo({7, 0});
        drag.moveTo({-4, 0});
        drag.cancel();
    });
}

void RangeDragTest::aRangeStopsAtTheFirstAndTheLastFrame() {
    Scene scene;
    scene.add(0, {3, 10, 14, lastFrame});
    scene.setRange(10, 14);
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragRange(scene.document));
        drag.moveTo({-1e12, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("0-4"));
    QCOMPARE(scene.frames(), QString("0 4 8 4294967295"));
    checkEdit(scene, [&] {
        drag.begin(dragRange(scene.document));
        drag.moveTo({1e12, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("4294967291-4294967295"));
    QCOMPARE(scene.frames(), QString("3 4294967290 4294967291 4294967295"));
}

void RangeDragTest::aStretchMovesTheKeys() {
    Scene scene;
    scene.add(0, {10, 15, 20, 25});
    scene.add(1, {10, 11, 12});
    scene.setRange(10, 20);
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragRangeEnd(scene.document, StretchSide::end));
        drag.moveTo({-3, 0});
        drag.moveTo({10, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("10-30"));
    QCOMPARE(scene.frames(0), QString("10 20 30 35"));
    QCOMPARE(scene.frames(1), QString("10 12 14"));
    checkEdit(scene, [&] {
        drag.begin(dragRangeEnd(scene.document, StretchSide::start));
        drag.moveTo({3, 0});
        drag.moveTo({10, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("20-30"));
    QCOMPARE(scene.frames(0), QString("20 25 30 35"));
    QCOMPARE(scene.frames(1), QString("20 21 22"));
}

void RangeDragTest::aStretchBackToWhereItBeganLeavesNoEntry() {
    for (const StretchSide side : {StretchSide::start, StretchSide::end}) {
        Scene scene;
        scene.add(0, {10, 11, 12, 20, 25});
        scene.add(1, {10, 14, 19, 20, 40});
        scene.setRange(10, 20);
        Drag drag(scene.document);
        const int inwards = side == StretchSide::start ? 1 : -1;
        checkNothingHappens(scene, [&] {
            drag.begin(dragRangeEnd(scene.document, side));
            drag.moveTo(QPointF(6 * inwards, 0));
            drag.moveTo(QPointF(9 * inwards, 0));
            drag.moveTo(QPointF(-5 * inwards, 0));
            drag.moveTo({0, 0});
            drag.finish();
        });
        checkEdit(scene, [&] {
            drag.begin(dragRangeEnd(scene.document, side));
            drag.moveTo(QPointF(9 * inwards, 0));
            drag.moveTo({0, 0});
            drag.moveTo(QPointF(-5 * inwards, 0));
            drag.finish();
        });
    }
}

void RangeDragTest::aStretchNeverLosesKeys() {
    Scene scene;
    scene.add(0, {0, 1, 2, 3, 4, 5, 8});
    scene.setRange(0, 5);
    Gesture gesture(scene);
    for (const StretchSide side :
         {StretchSide::start, StretchSide::end}) { // There is no room to make smaller.
        checkNothingHappens(scene, [&] {
            gesture.drag.begin(dragRangeEnd(scene.document, side));
            gesture.drag.moveTo(QPointF(side == StretchSide::start ? 3 : -3, 0));
            gesture.drag.finish();
        });
    }
    scene.add(0, {lastFrame - 10U});
    checkEdit(scene, [&] { // The last key moves along, to the last frame and no further.
        gesture.drag.begin(dragRangeEnd(scene.document, StretchSide::end));
        gesture.drag.moveTo({1e9, 0});
        gesture.drag.finish();
    });
    QCOMPARE(scene.range(), QString("0-15"));
    QCOMPARE(scene.frames(), QString("0 3 6 9 12 15 18 4294967295"));
    QVERIFY(gesture.blocked.isEmpty());
}

void RangeDragTest::aStretchOverKeysThatStayIsBlocked() {
    Scene scene;
    scene.add(0, {5, 10, 15, 20});
    scene.setRange(10, 20);
    Gesture gesture(scene);
    checkEdit(scene, [&] {
        gesture.drag.begin(dragRangeEnd(scene.document, StretchSide::start));
        gesture.drag.moveTo({-2, 0});
        QCOMPARE(scene.frames(), QString("5 8 14 20"));
        gesture.drag.moveTo({-5, 0});
        QCOMPARE(gesture.blocked, QStringList{"1 key(s) would find no free frame."});
        QCOMPARE(scene.frames(), QString("5 8 14 20"));
        QCOMPARE(scene.range(), QString("8-20"));
        gesture.drag.moveTo({-4, 0});
        QCOMPARE(gesture.blocked.last(), QString());
        gesture.drag.finish();
    });
    QCOMPARE(scene.frames(), QString("5 6 13 20"));
    scene.history().undo();
    const DocumentState before = scene.state(); // Blocked at once.
    gesture.drag.begin(dragRangeEnd(scene.document, StretchSide::start));
    gesture.drag.moveTo({-5, 0});
    QVERIFY(!gesture.blocked.last().isEmpty());
    gesture.drag.finish();
    QCOMPARE(scene.changesSince(before), QString());
    QVERIFY(!scene.history().canUndo());
}

void RangeDragTest::aBlockedStretchKeepsTheSelection() {
    Scene scene;
    scene.add(0, {5, 10, 15, 20});
    scene.setRange(10, 20);
    scene.document.selection().selectAll();
    const Keys selected = scene.document.selection().keys();
    Drag drag(scene.document);
    drag.begin(dragRangeEnd(scene.document, StretchSide::start));
    drag.moveTo({-5, 0});
    QCOMPARE(scene.document.selection().keys(), selected);
}

void RangeDragTest::aRangeOfOneFrameChangesWithoutItsKeys() {
    Scene scene;
    scene.add(0, {9, 10, 11});
    scene.setRange(10, 10);
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragRangeEnd(scene.document, StretchSide::end));
        drag.moveTo({5, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("10-15"));
    scene.history().undo();
    checkEdit(scene, [&] {
        drag.begin(dragRangeEnd(scene.document, StretchSide::start));
        drag.moveTo({-50, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("0-10"));
    QCOMPARE(scene.frames(), QString("9 10 11"));
    scene.history().undo();
    checkEdit(scene, [&] { // It moves with its key.
        drag.begin(dragRange(scene.document));
        drag.moveTo({1, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("11-11"));
    QCOMPARE(scene.key(0, 11)->getValue(), 10.0F);
}

void RangeDragTest::aRangeWithoutKeysIsNotCollapsed() {
    Scene scene;
    scene.add(0, {30});
    scene.setRange(10, 20);
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragRangeEnd(scene.document, StretchSide::end));
        drag.moveTo({-4, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("10-16"));
    QCOMPARE(scene.frames(), QString("30"));
    checkEdit(scene, [&] {
        drag.begin(dragRangeEnd(scene.document, StretchSide::start));
        drag.moveTo({400, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("16-16"));
}

void RangeDragTest::aNewRangeGoesBothWays() {
    Scene scene;
    scene.add(0, {5, 6, 7});
    scene.setRange(1, 2);
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragNewRange(scene.document, 6));
        drag.moveTo({-2, 0});
        QCOMPARE(scene.range(), QString("4-6"));
        drag.moveTo({3, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("6-9"));
    QCOMPARE(scene.frames(), QString("5 6 7"));
    checkNothingHappens(scene, [&] {
        drag.begin(dragNewRange(scene.document, 100));
        drag.moveTo({-200, 0});
        QCOMPARE(scene.range(), QString("0-100"));
        drag.cancel();
    });
    checkEdit(scene, [&] {
        drag.begin(dragNewRange(scene.document, lastFrame - 1U));
        drag.moveTo({1e30, 0});
        drag.finish();
    });
    QCOMPARE(scene.range(), QString("4294967294-4294967295"));
}

void RangeDragTest::keysOfLockedLayersStay() {
    Scene scene;
    for (const int layer : {0, 1, 2}) {
        scene.add(layer, {10, 15, 20});
    }
    scene.lock(1);
    scene.hide(2);
    scene.setRange(10, 20);
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragRange(scene.document));
        drag.moveTo({5, 0});
        drag.finish();
        // Of what is in the range now, too.
    });
    checkEdit(scene, [&] {
        drag.begin(dragRangeEnd(scene.document, StretchSide::end));
        drag.moveTo({10, 0});
        drag.finish();
    });
    QCOMPARE(scene.frames(0), QString("15 25 35"));
    QCOMPARE(scene.frames(1), QString("10 15 20"));
    QCOMPARE(scene.frames(2), QString("10 15 20"));
}

QTEST_GUILESS_MAIN(RangeDragTest)
#include "RangeDragTest.moc"
