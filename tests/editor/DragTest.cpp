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

class DragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDragOfManyStepsIsOneEntry();
    void twoDragsAreTwoEntries();
    void aDragThatMovesNothingLeavesNoEntry();
    void aDragBackToItsBeginningLeavesNoEntry();
    void cancellingGivesBackWhatWasThereAndLeavesNoEntry();
    void aDragThatComesToNothingLeavesWhatCanBeRedone_data();
    void aDragThatComesToNothingLeavesWhatCanBeRedone();
    void cancellingWithoutADragDoesNothing();
    void keysOfSeveralLayersMoveTogether();
    void aStepByTinyValuesCounts();
    void movesToTheSamePlaceAreOneStep();
    void distancesThatAreNotFiniteAreIgnored();
    void hugeDistancesEndAtTheFirstAndTheLastFrame();
    void valuesStayFinite();
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

void DragTest::aDragThatComesToNothingLeavesWhatCanBeRedone_data() {
    QTest::addColumn<QPointF>("distance");
    QTest::addColumn<bool>("isCancelled");
    QTest::newRow("cancelled") << QPointF(2, 1) << true;
    QTest::newRow("blocked and cancelled") << QPointF(4, 0) << true;
    QTest::newRow("blocked and finished") << QPointF(4, 0) << false;
    QTest::newRow("back where it began") << QPointF(0, 0) << false;
}

void DragTest::aDragThatComesToNothingLeavesWhatCanBeRedone() {
    QFETCH(QPointF, distance);
    QFETCH(bool, isCancelled);
    Scene scene;
    const Keys keys = scene.add(0, {5, 6});
    scene.add(0, {10});
    Drag drag(scene.document);
    const auto move = [&](const QPointF& to) {
        drag.begin(dragKeys(keys));
        drag.moveTo(to);
    };
    for (int i = 0; i < 3; ++i) {
        move({0, 1});
        drag.finish();
    }
    const DocumentState after = scene.state();
    scene.history().setIndex(0);
    checkNothingHappens(scene, [&] {
        move({1, 1});
        drag.moveTo({0, 0});
        drag.moveTo(distance);
        isCancelled ? drag.cancel() : drag.finish();
    });
    QCOMPARE(scene.history().count(), 3);
    scene.history().setIndex(3);
    QCOMPARE(scene.changesSince(after), QString());
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

void DragTest::movesToTheSamePlaceAreOneStep() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    scene.add(0, {9});
    Gesture gesture(scene);
    const QSignalSpy changes(&scene.document, &Editor::Document::changed);
    const auto changesBy = [&](std::initializer_list<QPointF> distances) {
        const auto before = changes.size();
        for (const QPointF& distance : distances) {
            gesture.drag.moveTo(distance);
        }
        return changes.size() - before;
    };
    gesture.drag.begin(dragKeys(keys));
    QCOMPARE(changesBy({{0.3, 0}, {-0.4, 0}}), 0);
    QVERIFY(changesBy({{1.8, 1}}) > 0);
    QCOMPARE(changesBy({{2, 1}, {2.2, 1}, {1.6, 1}}), 0);
    QVERIFY(changesBy({{3.9, 1}}) > 0);
    QCOMPARE(changesBy({{4.2, 1}, {2.3, 1}}), 0); // The block is tried once, and the keys wait at the other.
    QCOMPARE(gesture.blocked.size(), 2);
    QVERIFY(changesBy({{-90, 1}}) > 0);
    QCOMPARE(scene.frames(), QString("0 9"));
    QCOMPARE(changesBy({{-91, 1}, {-1e300, 1}}), 0);
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
    });
    drag.finish();
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

QTEST_GUILESS_MAIN(DragTest)
#include "DragTest.moc"
