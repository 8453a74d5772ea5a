#include "tests/editor/support/Gesture.h"

#include <limits>

using Editor::Drag;
using Editor::dragKeys;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;
using EditorScene::Gesture;
using EditorScene::Key;
using EditorScene::Keys;
using EditorScene::record;
using EditorScene::Scene;
using EditorScene::Type;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

} // namespace

class DragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDragOfManyStepsIsOneEntry();
    void twoDragsAreTwoEntries();
    void aDragThatMovesNothingLeavesNoEntry();
    void aDragBackToItsBeginningLeavesNoEntry();
    void cancellingGivesBackWhatWasThereAndLeavesNoEntry();
    void cancellingABlockedDragGivesBackWhatWasThere();
    void cancellingWithoutADragDoesNothing();
    void keysOfSeveralLayersMoveTogether();
    void aStepByTinyValuesCounts();
    void distancesThatAreNotFiniteAreIgnored();
    void hugeDistancesEndAtTheFirstAndTheLastFrame();
    void valuesStayFinite();
    void keysWaitBeforeAKeyThatIsInTheWay();
    void keysJumpOverAKeyThatIsInTheWay();
    void aFirstStepThatIsBlockedLeavesNothing();
    void aBlockWithoutALaterStepEndsWithTheLastGoodOne();
    void oneBlockedLayerHoldsAllKeys();
    void keysAreBlockedAtTheFirstFrame();
    void keysAreBlockedAtTheLastFrame();
};

void DragTest::aDragOfManyStepsIsOneEntry() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 10});
    Gesture gesture(scene);
    checkEdit(scene, [&] {
        gesture.drag.begin(dragKeys(keys));
        QVERIFY(gesture.drag.isActive());
        for (int step = 1; step <= 20; ++step) {
            gesture.drag.moveTo(QPointF(step, 0.5 * step));
        }
        gesture.drag.finish();
    });
    QVERIFY(!gesture.drag.isActive());
    QCOMPARE(scene.frames(), QString("25 30"));
    QCOMPARE(scene.key(0, 25)->getValue(), 15.0F);
    QCOMPARE(gesture.active, (QList<bool>{true, false}));
    QVERIFY(gesture.blocked.isEmpty());
}

void DragTest::twoDragsAreTwoEntries() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Drag drag(scene.document);
    for (int i = 0; i < 2; ++i) {
        checkEdit(scene, [&] {
            drag.begin(dragKeys(keys));
            drag.moveTo({1, 0});
            drag.moveTo({3, 0});
            drag.finish();
        });
    }
    QCOMPARE(scene.frames(), QString("11"));
    QCOMPARE(scene.history().count(), 2);
}

void DragTest::aDragThatMovesNothingLeavesNoEntry() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Drag drag(scene.document);
    checkNothingHappens(scene, [&] {
        drag.begin(dragKeys(keys));
        drag.moveTo({0, 0});
        drag.moveTo({0.4, 0});
        drag.finish();
    });
    checkNothingHappens(scene, [&] {
        drag.begin(dragKeys(Keys()));
        drag.moveTo({7, 7});
        drag.finish();
    });
}

void DragTest::aDragBackToItsBeginningLeavesNoEntry() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 8});
    Drag drag(scene.document);
    checkNothingHappens(scene, [&] {
        drag.begin(dragKeys(keys));
        drag.moveTo({4, 3});
        drag.moveTo({0, 0});
        drag.finish();
    });
    checkEdit(scene, [&] {
        drag.begin(dragKeys(keys));
        drag.moveTo({4, 3});
        drag.moveTo({0, 0});
        drag.moveTo({2, 0});
        drag.finish();
    });
    QCOMPARE(scene.frames(), QString("7 10"));
}

void DragTest::cancellingGivesBackWhatWasThereAndLeavesNoEntry() {
    Scene scene;
    scene.add(0, 5, record(-0.0F, Type::bezierAuto, Type::bezierAuto));
    scene.add(0, 9, record(0.1F, Type::bezierAuto, Type::bezierAuto));
    Gesture gesture(scene);
    checkNothingHappens(scene, [&] {
        gesture.drag.begin(dragKeys({scene.key(0, 5)}));
        gesture.drag.moveTo({1, 1e10});
        gesture.drag.moveTo({30, -2});
        gesture.drag.cancel();
    });
    QVERIFY(!gesture.drag.isActive());
    QCOMPARE(gesture.active, (QList<bool>{true, false}));
    QVERIFY(scene.history().isClean());
}

void DragTest::cancellingABlockedDragGivesBackWhatWasThere() {
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

void DragTest::cancellingWithoutADragDoesNothing() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    gesture.drag.finish();
    checkNothingHappens(scene, [&] {
        gesture.drag.cancel();
        gesture.drag.finish();
        gesture.drag.moveTo({9, 9});
    });
    QCOMPARE(gesture.active.size(), 2);
}

void DragTest::keysOfSeveralLayersMoveTogether() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 6}) + scene.add(1, {6}) + scene.add(2, {0, 100});
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragKeys(keys));
        drag.moveTo({1, 0});
        drag.moveTo({3, -1});
        drag.finish();
    });
    QCOMPARE(scene.frames(0), QString("8 9"));
    QCOMPARE(scene.frames(1), QString("9"));
    QCOMPARE(scene.frames(2), QString("3 103"));
    QCOMPARE(scene.key(2, 103)->getValue(), 99.0F);
}

void DragTest::aStepByTinyValuesCounts() {
    Scene scene;
    Key* const key = scene.add(0, 5, record(0.0F));
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragKeys({key}));
        drag.moveTo({0, 1e-15});
        drag.moveTo({0, 2e-15});
        drag.finish();
    });
    QCOMPARE(key->getValue(), 2e-15F);
}

void DragTest::distancesThatAreNotFiniteAreIgnored() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Drag drag(scene.document);
    drag.begin(dragKeys(keys));
    drag.moveTo({2, 1});
    checkNothingHappens(scene, [&] {
        drag.moveTo({std::numeric_limits<double>::quiet_NaN(), 0});
        drag.moveTo({0, std::numeric_limits<double>::infinity()});
        drag.moveTo({-std::numeric_limits<double>::infinity(), 0});
        drag.finish();
    });
    QCOMPARE(scene.frames(), QString("7"));
}

void DragTest::hugeDistancesEndAtTheFirstAndTheLastFrame() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 9});
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({-1e300, 0});
    QCOMPARE(scene.frames(), QString("0 4"));
    gesture.drag.moveTo({1e300, 0});
    QCOMPARE(scene.frames(), QString("4294967291 4294967295"));
    gesture.drag.finish();
    QVERIFY(gesture.blocked.isEmpty());
    scene.history().undo();
    QCOMPARE(scene.frames(), QString("5 9"));
}

void DragTest::valuesStayFinite() {
    constexpr float largest = std::numeric_limits<float>::max();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    Scene scene;
    Key* const key = scene.add(0, 5, record(largest));
    Key* const infinite = scene.add(0, 6, record(infinity));
    Drag drag(scene.document);
    drag.begin(dragKeys({key, infinite}));
    drag.moveTo({0, 1e300});
    QCOMPARE(key->getValue(), largest);
    drag.moveTo({0, -1e300});
    QCOMPARE(key->getValue(), -largest);
    QVERIFY(infinite->getValue() == infinity);
    drag.cancel();
    QCOMPARE(key->getValue(), largest);
}

void DragTest::keysWaitBeforeAKeyThatIsInTheWay() {
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

void DragTest::keysJumpOverAKeyThatIsInTheWay() {
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

void DragTest::aFirstStepThatIsBlockedLeavesNothing() {
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

void DragTest::aBlockWithoutALaterStepEndsWithTheLastGoodOne() {
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

void DragTest::oneBlockedLayerHoldsAllKeys() {
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

void DragTest::keysAreBlockedAtTheFirstFrame() {
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

void DragTest::keysAreBlockedAtTheLastFrame() {
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

QTEST_GUILESS_MAIN(DragTest)
#include "DragTest.moc"
