#include "tests/editor/support/Gesture.h"

#include <cmath>

using Editor::Drag;
using Editor::dragHandles;
using EditorScene::bezier;
using EditorScene::checkEdit;
using EditorScene::Key;
using EditorScene::record;
using EditorScene::Scene;
using EditorScene::Side;

class HandleDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void handlesOfOneSideMoveTogether();
    void aHandleOfASmoothKeyTurnsTheOther();
    void aHandleOfASymmetricalKeyMirrorsTheOther();
};

void HandleDragTest::handlesOfOneSideMoveTogether() {
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

void HandleDragTest::aHandleOfASmoothKeyTurnsTheOther() {
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

void HandleDragTest::aHandleOfASymmetricalKeyMirrorsTheOther() {
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

QTEST_GUILESS_MAIN(HandleDragTest)
#include "HandleDragTest.moc"
