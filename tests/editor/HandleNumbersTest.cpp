#include "window/HandleNumbers.h"

#include "tests/editor/support/Scene.h"

#include <limits>
#include <stdexcept>

using Editor::HandleNumbers;
using namespace EditorScene;
using Number = HandleNumbers::Number;

class HandleNumbersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachHandleKeepsItsOtherNumberInOneEntry() {
        Scene scene;
        const Keys keys{scene.add(0, 10, bezier(0, {-1, 0}, {1, 5})),
                        scene.add(0, 20, bezier(0, {-1, 0}, {2, 6})), scene.add(0, 30, record(0))};
        checkEdit(scene, [&] { HandleNumbers(keys, Side::right).set(Number::frames, 3.0F, scene.document); });
        QVERIFY(scene.key(0, 10)->getTangentOffset(Side::right) == qMakePair(3.0F, 5.0F));
        QVERIFY(scene.key(0, 20)->getTangentOffset(Side::right) == qMakePair(3.0F, 6.0F));
        checkEdit(scene, [&] { HandleNumbers(keys, Side::right).set(Number::value, 4.0F, scene.document); });
        QVERIFY(scene.key(0, 20)->getTangentOffset(Side::right) == qMakePair(3.0F, 4.0F));
        checkNothingHappens(
            scene, [&] { HandleNumbers(keys, Side::right).set(Number::value, 4.0F, scene.document); });
    }

    void aSlotThatThrowsLeavesAllAsItWas() {
        Scene scene;
        Key* const first = scene.add(0, 10, bezier(0, {-1, 0}, {1, 5}));
        Key* const second = scene.add(0, 20, bezier(0, {-1, 0}, {2, 6}));
        const HandleNumbers numbers({first, second}, Side::right);
        numbers.set(Number::frames, 7.0F, scene.document);
        scene.history().undo(); // Can be redone.
        for (Key* const each : {first, second}) {
            checkNothingHappens(scene, [&] {
                QObject thrower;
                QObject::connect(each, &Key::tangentsChanged, &thrower,
                                 [] { throw std::runtime_error("no room"); });
                QCOMPARE(problemOf([&] { numbers.set(Number::frames, 3.0F, scene.document); }),
                         QString("no room"));
            });
        }
        QVERIFY(scene.history().canRedo());
        checkEdit(scene, [&] { numbers.set(Number::frames, 3.0F, scene.document); });
    }

    void numbersThatAreNotFiniteChangeNothing() {
        constexpr float nan = std::numeric_limits<float>::quiet_NaN();
        Scene scene;
        const Keys keys{scene.add(0, 10, bezier(0, {-1, 0}, {1, 5})),
                        scene.add(0, 20, bezier(0, {-1, 0}, {2, nan}))};
        checkNothingHappens(
            scene, [&] { HandleNumbers(keys, Side::right).set(Number::frames, nan, scene.document); });
        checkEdit(scene, [&] { HandleNumbers(keys, Side::right).set(Number::frames, 3.0F, scene.document); });
        QCOMPARE(scene.key(0, 20)->getTangentOffset(Side::right).first, 2.0F);
    }
};

QTEST_GUILESS_MAIN(HandleNumbersTest)
#include "HandleNumbersTest.moc"
