#include "tests/editor/support/Gesture.h"

#include <limits>

using Editor::dragKeys;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;
using EditorScene::Gesture;
using EditorScene::Key;
using EditorScene::Keys;
using EditorScene::Scene;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

} // namespace

class BlockedDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysWaitBeforeAKeyThatIsInTheWay();
    void keysJumpOverAKeyThatIsInTheWay();
    void aFirstStepThatIsBlockedLeavesNothing();
    void aBlockWithoutALaterStepEndsWithTheLastGoodOne();
    void oneBlockedLayerHoldsAllKeys();
    void keysAreBlockedAtTheFirstFrame();
    void keysAreBlockedAtTheLastFrame();
    void cancellingABlockedDragGivesBackWhatWasThere();
};

void BlockedDragTest::keysWaitBeforeAKeyThatIsInTheWay() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 6});
    scene.add(0, {10});
    Gesture gesture(scene);
    checkEdit(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({2, 1});
        QCOMPARE(scene.frames(), QString("7 8 10"));
        gesture.drag.moveTo({4, 5}); // 6 would come to 10.
        QCOMPARE(scene.frames(), QString("7 8 10"));
        QCOMPARE(scene.key(0, 7)->getValue(), 6.0F);
        QCOMPARE(gesture.blocked, QStringList{"Frame 10 of arm is taken by a key that is not dragged."});
        gesture.drag.moveTo({5, 5}); // And 5 now.
        QCOMPARE(scene.frames(), QString("7 8 10"));
        QCOMPARE(gesture.blocked.size(), 2);
        gesture.drag.moveTo({3, 0});
        QCOMPARE(gesture.blocked.last(), QString());
        gesture.drag.finish();
    });
    QCOMPARE(scene.frames(), QString("8 9 10"));
    QCOMPARE(scene.key(0, 10)->getValue(), 10.0F);
}

void BlockedDragTest::keysJumpOverAKeyThatIsInTheWay() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 6});
    Key* const other = *scene.add(0, {10}).begin();
    Gesture gesture(scene);
    checkEdit(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        for (int step = 1; step <= 7; ++step) {
            gesture.drag.moveTo(QPointF(step, 0));
        }
        gesture.drag.finish();
    });
    QCOMPARE(scene.frames(), QString("10 12 13"));
    QCOMPARE(scene.key(0, 10), other);
    QCOMPARE(gesture.blocked.size(), 3); // twice why, and once that it is over
}

void BlockedDragTest::aFirstStepThatIsBlockedLeavesNothing() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    scene.add(0, {6});
    Gesture gesture(scene);
    checkNothingHappens(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({1, 3});
        QVERIFY(!gesture.blocked.last().isEmpty());
        QVERIFY(gesture.drag.isActive());
        gesture.drag.finish();
    });
    QCOMPARE(gesture.blocked.last(), QString());
    checkEdit(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({1, 0});
        gesture.drag.moveTo({2, 0});
        gesture.drag.finish();
    });
    QCOMPARE(scene.frames(), QString("6 7"));
}

void BlockedDragTest::aBlockWithoutALaterStepEndsWithTheLastGoodOne() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    scene.add(0, {9});
    Gesture gesture(scene);
    checkEdit(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({2, 1.5});
        gesture.drag.moveTo({4, 7});
        gesture.drag.finish();
    });
    QCOMPARE(scene.frames(), QString("7 9"));
    QCOMPARE(scene.key(0, 7)->getValue(), 6.5F);
    // Back to where the keys wait is no block any more.
    gesture.blocked.clear();
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({1, 0});
    gesture.drag.moveTo({2, 0});
    QVERIFY(!gesture.blocked.last().isEmpty());
    gesture.drag.moveTo({1, 0});
    QCOMPARE(gesture.blocked.last(), QString());
}

void BlockedDragTest::oneBlockedLayerHoldsAllKeys() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 6, 7}) + scene.add(1, {5});
    scene.add(1, {8});
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    gesture.drag.moveTo({3, 0});
    QCOMPARE(gesture.blocked, QStringList{"Frame 8 of leg is taken by a key that is not dragged."});
    QCOMPARE(scene.frames(0), QString("7 8 9"));
    QCOMPARE(scene.frames(1), QString("7 8"));
}

void BlockedDragTest::keysAreBlockedAtTheFirstFrame() {
    Scene scene;
    scene.add(0, {0});
    const Keys keys = scene.add(0, {3, 4});
    Gesture gesture(scene);
    checkEdit(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({-1, 0});
        gesture.drag.moveTo({-100, 0});
        QVERIFY(!gesture.blocked.last().isEmpty());
        gesture.drag.finish();
    });
    QCOMPARE(scene.frames(), QString("0 2 3"));
}

void BlockedDragTest::keysAreBlockedAtTheLastFrame() {
    Scene scene;
    scene.add(0, {lastFrame});
    const Keys keys = scene.add(0, {lastFrame - 5U, lastFrame - 4U});
    Gesture gesture(scene);
    checkEdit(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({3, 0});
        gesture.drag.moveTo({4e9, 0});
        QVERIFY(!gesture.blocked.last().isEmpty());
        gesture.drag.finish();
    });
    QCOMPARE(scene.frames(), QString("4294967293 4294967294 4294967295"));
}

void BlockedDragTest::cancellingABlockedDragGivesBackWhatWasThere() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 6});
    scene.add(0, {10});
    Gesture gesture(scene);
    checkNothingHappens(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({2, 0});
        gesture.drag.moveTo({4, 0});
        QCOMPARE(gesture.blocked.size(), 1);
        gesture.drag.cancel();
    });
    QCOMPARE(gesture.blocked.last(), QString());
}

QTEST_GUILESS_MAIN(BlockedDragTest)
#include "BlockedDragTest.moc"
