#include "document/Drag.h"

#include "document/DragKind.h"
#include "document/KeyEdits.h"
#include "document/LayerCommands.h"
#include "tests/editor/support/Scene.h"

#include <cmath>
#include <limits>

using Editor::Drag;
using Editor::dragHandles;
using Editor::dragKeys;
using Editor::dragNewRange;
using Editor::dragRange;
using Editor::dragRangeEnd;
using EditorScene::bezier;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;
using EditorScene::Key;
using EditorScene::Keys;
using EditorScene::record;
using EditorScene::Scene;
using EditorScene::Side;
using EditorScene::Type;
using ZT::AnimCmd::StretchSide;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

/// A drag of a scene, and what it says.
struct Gesture {
    explicit Gesture(Scene& scene)
        : drag(scene.document) {
        QObject::connect(&drag, &Drag::blocked, &drag, [this](const QString& why) { blocked.append(why); });
        QObject::connect(&drag, &Drag::activeChanged, &drag,
                         [this](bool isActive) { active.append(isActive); });
    }

    Drag drag;
    QStringList blocked;
    QList<bool> active;
};

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
    void beginningFinishesTheDragBefore();
    void anotherEditFinishesTheDrag();
    void undoDuringADragUndoesIt();
    void savingDuringADragFinishesIt();
    void anotherAnimationForgetsTheDrag();
    void removingTheLayerOfADragForgetsIt();
    void handlesOfOneSideMoveTogether();
    void aHandleOfASmoothKeyTurnsTheOther();
    void aHandleOfASymmetricalKeyMirrorsTheOther();
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

void DragTest::beginningFinishesTheDragBefore() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    gesture.drag.cancel();
    QCOMPARE(scene.frames(), QString("7"));
    QCOMPARE(scene.history().count(), 1);
    QCOMPARE(gesture.active, (QList<bool>{true, false, true, false}));
}

void DragTest::anotherEditFinishesTheDrag() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Key* const other = *scene.add(1, {5}).begin();
    Gesture gesture(scene);
    const DocumentState before = scene.state();
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    Editor::KeyEdits(scene.document).setValue({other}, 3.0F);
    QVERIFY(!gesture.drag.isActive());
    gesture.drag.moveTo({9, 0});
    gesture.drag.cancel();
    QCOMPARE(scene.frames(), QString("7"));
    QCOMPARE(scene.history().count(), 2);
    scene.history().undo();
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
}

void DragTest::undoDuringADragUndoesIt() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    const DocumentState before = scene.state();
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
    QVERIFY(!gesture.drag.isActive());
    gesture.drag.moveTo({4, 0});
    gesture.drag.finish();
    QCOMPARE(scene.changesSince(before), QString());
    scene.history().redo();
    QCOMPARE(scene.frames(), QString("7"));
}

void DragTest::savingDuringADragFinishesIt() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    scene.document.setSaved("a.xml");
    QVERIFY(!gesture.drag.isActive());
    gesture.drag.moveTo({4, 0});
    gesture.drag.cancel();
    QCOMPARE(scene.frames(), QString("7"));
    QVERIFY(!scene.document.isModified());
    QCOMPARE(scene.history().count(), 1);
}

void DragTest::anotherAnimationForgetsTheDrag() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    for (const bool hasMoved : {true, false}) {
        Gesture gesture(scene);
        gesture.drag.begin(dragKeys(hasMoved ? keys : scene.add(0, {5})));
        if (hasMoved) {
            gesture.drag.moveTo({2, 0});
        }
        scene.document.replace(EditorScene::animationOf({"other"}), QString());
        QVERIFY(!gesture.drag.isActive());
        QCOMPARE(gesture.active, (QList<bool>{true, false}));
        gesture.drag.moveTo({4, 0});
        gesture.drag.finish();
        QCOMPARE(scene.history().count(), 0);
        QCOMPARE(scene.frames(), QString());
    }
}

void DragTest::removingTheLayerOfADragForgetsIt() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    const DocumentState before = scene.state();
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    scene.history().push(new Editor::RemoveLayerCommand(scene.document, 0));
    gesture.drag.moveTo({4, 0});
    gesture.drag.cancel();
    QCOMPARE(scene.document.layerCount(), 2);
    scene.history().undo();
    QCOMPARE(scene.frames(), QString("7"));
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
}

void DragTest::handlesOfOneSideMoveTogether() {
    Scene scene;
    Key* const grabbed = scene.add(0, 10, bezier(1, {-2, 0}, {2, 1}));
    Key* const other = scene.add(1, 10, bezier(7, {-3, 0}, {5, 5}));
    Key* const linear = scene.add(2, 10, record(0));
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragHandles({grabbed, other, linear}, *grabbed, Side::right));
        drag.moveTo({1.5, 0});
        drag.moveTo({2.5, -2});
        drag.finish();
    });
    QVERIFY(grabbed->getTangentOffset(Side::right) == qMakePair(4.5F, -1.0F));
    QVERIFY(other->getTangentOffset(Side::right) == qMakePair(4.5F, -1.0F));
    QVERIFY(grabbed->getTangentOffset(Side::left) == qMakePair(-2.0F, 0.0F));
    QVERIFY(linear->getTangentOffset(Side::right) == qMakePair(0.0F, 0.0F));
    // A handle does not leave its side.
    drag.begin(dragHandles({grabbed}, *grabbed, Side::right));
    drag.moveTo({-100, 0});
    QVERIFY(grabbed->getTangentOffset(Side::right) == qMakePair(0.0F, -1.0F));
    drag.cancel();
    QVERIFY(grabbed->getTangentOffset(Side::right) == qMakePair(4.5F, -1.0F));
}

void DragTest::aHandleOfASmoothKeyTurnsTheOther() {
    Scene scene;
    Key* const key = scene.add(0, 10, bezier(1, {-2, 0}, {2, 0}));
    key->setSmooth(true);
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragHandles({key}, *key, Side::left));
        for (int step = 1; step <= 50; ++step) {
            drag.moveTo(QPointF(0.1 * step, 0.37 * step));
        }
        drag.moveTo({0, 2});
        drag.finish();
    });
    const auto right = key->getTangentOffset(Side::right);
    QVERIFY(std::abs(right.first + right.second) < 1e-4F); // 45 degrees downwards
    QVERIFY(std::abs(std::hypot(right.first, right.second) - 2.0F) < 1e-4F);
}

void DragTest::aHandleOfASymmetricalKeyMirrorsTheOther() {
    Scene scene;
    Key* const key = scene.add(0, 10, bezier(1, {-2, 0}, {2, 0}));
    key->setSymmetrical(true);
    Drag drag(scene.document);
    checkEdit(scene, [&] {
        drag.begin(dragHandles({key}, *key, Side::right));
        drag.moveTo({1, 1});
        drag.moveTo({2, 3});
        drag.finish();
    });
    QVERIFY(key->getTangentOffset(Side::left) == qMakePair(-4.0F, -3.0F));
}

void DragTest::aRangeMovesWithTheKeysInIt() {
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

void DragTest::aRangeThatMovesBackLeavesNoEntry() {
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

void DragTest::aRangeStopsAtTheFirstAndTheLastFrame() {
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

void DragTest::aStretchMovesTheKeys() {
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

void DragTest::aStretchBackToWhereItBeganLeavesNoEntry() {
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

void DragTest::aStretchNeverLosesKeys() {
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

void DragTest::aStretchOverKeysThatStayIsBlocked() {
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

void DragTest::aBlockedStretchKeepsTheSelection() {
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

void DragTest::aRangeOfOneFrameChangesWithoutItsKeys() {
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

void DragTest::aRangeWithoutKeysIsNotCollapsed() {
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

void DragTest::aNewRangeGoesBothWays() {
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

void DragTest::keysOfLockedLayersStay() {
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

QTEST_GUILESS_MAIN(DragTest)
#include "DragTest.moc"
