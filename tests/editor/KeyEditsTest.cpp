#include "document/KeyEdits.h"

#include "tests/editor/support/Scene.h"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

using namespace EditorScene;
using Editor::KeyEdits;

class KeyEditsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void insertingAddsAKeyAndSelectsIt();
    void nothingIsInsertedWhereAKeyStandsOrTheLayerIsLocked();
    void removingTakesKeysOfAllLayers();
    void typesChangeOnOneSideOrBoth();
    void smoothnessAndSymmetryChange();
    void valuesBecomeOne();
    void handlesBecomeOne();
    void whatChangesNothingLeavesNoEntry();
    void numbersThatAreNotFiniteAreRefused();
    void keysHaveInCommonWhatIsEqual();
    void keysThatDifferSlightlyHaveNothingInCommon();
    void oneKeyHasAllInCommonWithItself();
    void entriesSayWhatWasDoneToHowManyKeys();
    void entriesNameTheTypeThatKeysGot();
};

void KeyEditsTest::insertingAddsAKeyAndSelectsIt() {
    Scene scene;
    scene.add(0, {10, 20});
    KeyEdits edits(scene.document);
    checkEdit(scene, [&] {
        Key* const key = edits.insert(scene.curve(), 15);
        QCOMPARE(scene.document.selection().keys(), Keys{key});
    });
    QCOMPARE(scene.frames(), QString("10 15 20"));
    QCOMPARE(scene.history().undoText(), QString("Insert key"));
}

void KeyEditsTest::nothingIsInsertedWhereAKeyStandsOrTheLayerIsLocked() {
    Scene scene;
    scene.add(0, {10});
    scene.lock(1);
    scene.hide(2);
    KeyEdits edits(scene.document);
    checkNothingHappens(scene, [&] {
        QVERIFY(edits.insert(scene.curve(), 10) == nullptr);
        QVERIFY(edits.insert(scene.curve(1), 11) == nullptr);
        QVERIFY(edits.insert(scene.curve(2), 11) == nullptr);
    });
}

void KeyEditsTest::removingTakesKeysOfAllLayers() {
    Scene scene;
    const Keys keys = scene.add(0, {10, 20}) + scene.add(1, {5});
    scene.add(0, {15});
    scene.add(2, {15});
    scene.document.selection().set(keys);
    KeyEdits edits(scene.document);
    checkEdit(scene, [&] { edits.remove(keys); });
    QCOMPARE(scene.frames(0), QString("15"));
    QCOMPARE(scene.frames(1), QString());
    QCOMPARE(scene.frames(2), QString("15"));
    QVERIFY(scene.document.selection().isEmpty());
}

void KeyEditsTest::typesChangeOnOneSideOrBoth() {
    Scene scene;
    const Keys keys = scene.add(0, {10, 20}) + scene.add(1, {5});
    KeyEdits edits(scene.document);
    checkEdit(scene, [&] { edits.setType(keys, Side::left, Type::constant); });
    QCOMPARE(scene.key(0, 10)->getTangentType(Side::left), Type::constant);
    QCOMPARE(scene.key(0, 10)->getTangentType(Side::right), Type::linear);
    checkEdit(scene, [&] { edits.setType(keys, Type::bezierAuto); });
    for (const Key* const key : keys) {
        QCOMPARE(key->getTangentType(Side::left), Type::bezierAuto);
        QCOMPARE(key->getTangentType(Side::right), Type::bezierAuto);
    }
}

void KeyEditsTest::smoothnessAndSymmetryChange() {
    Scene scene;
    const Keys keys = scene.add(0, {10, 20}) + scene.add(1, {5});
    scene.key(0, 10)->setSmooth(true);
    KeyEdits edits(scene.document);
    checkEdit(scene, [&] { edits.setSmooth(keys, true); });
    QVERIFY(KeyEdits::commonOf(keys).isSmooth == true);
    checkEdit(scene, [&] { edits.setSymmetrical(keys, true); });
    QVERIFY(KeyEdits::commonOf(keys).isSymmetrical == true);
    checkEdit(scene, [&] { edits.setSmooth(keys, false); });
    checkEdit(scene, [&] { edits.setSymmetrical(keys, false); });
    QVERIFY(KeyEdits::commonOf(keys).isSymmetrical == false);
}

void KeyEditsTest::valuesBecomeOne() {
    Scene scene;
    const Keys keys = scene.add(0, {10, 20}) + scene.add(1, {5});
    KeyEdits edits(scene.document);
    checkEdit(scene, [&] { edits.setValue(keys, 20.0F); });
    for (const Key* const key : keys) {
        QCOMPARE(key->getValue(), 20.0F);
    }
    QCOMPARE(scene.frames(), QString("10 20"));
}

void KeyEditsTest::handlesBecomeOne() {
    Scene scene;
    Key* const first = scene.add(0, 10, bezier(0, {-1, 0}, {1, 0}));
    Key* const second = scene.add(1, 10, bezier(0, {-1, 0}, {2, 0}));
    Key* const linear = scene.add(2, 10);
    KeyEdits edits(scene.document);
    checkEdit(scene, [&] { edits.setHandle({first, second, linear}, Side::right, {3.0, -1e-15}); });
    QVERIFY(first->getTangentOffset(Side::right) == qMakePair(3.0F, -1e-15F));
    QVERIFY(second->getTangentOffset(Side::right) == qMakePair(3.0F, -1e-15F));
    checkEdit(scene, [&] { edits.setHandle({first, second, linear}, Side::right, {3.0, -2e-15}); });
}

void KeyEditsTest::whatChangesNothingLeavesNoEntry() {
    Scene scene;
    const Keys keys{scene.add(0, 10, bezier(2, {-1, 0.1F}, {1, 0})),
                    scene.add(1, 10, bezier(2, {-1, 0.1F}, {1, 0}))};
    KeyEdits edits(scene.document);
    checkNothingHappens(scene, [&] {
        edits.setType(keys, Type::bezier);
        edits.setType(keys, Side::left, Type::bezier);
        edits.setSmooth(keys, false);
        edits.setSymmetrical(keys, false);
        edits.setValue(keys, 2.0F);
        edits.setHandle(keys, Side::left, {-1.0, double{0.1F}});
        edits.setHandle(keys, Side::left, {-1.0, 0.1}); // The same float.
    });
    checkNothingHappens(scene, [&] {
        edits.remove(Keys());
        edits.setType(Keys(), Type::linear);
        edits.setSmooth(Keys(), true);
        edits.setSymmetrical(Keys(), true);
        edits.setValue(Keys(), 3.0F);
        edits.setHandle(Keys(), Side::left, {1, 1});
    });
    const Keys linear = scene.add(2, {4});
    checkNothingHappens(scene, [&] { edits.setHandle(linear, Side::left, {1, 1}); });
}

void KeyEditsTest::numbersThatAreNotFiniteAreRefused() {
    Scene scene;
    const Keys keys{scene.add(0, 10, bezier(2, {-1, 0.1F}, {1, 0}))};
    KeyEdits edits(scene.document);
    checkNothingHappens(scene, [&] {
        edits.setValue(keys, std::numeric_limits<float>::quiet_NaN());
        edits.setValue(keys, std::numeric_limits<float>::infinity());
        edits.setHandle(keys, Side::left, {std::numeric_limits<double>::quiet_NaN(), 0});
        edits.setHandle(keys, Side::left, {-1, std::numeric_limits<double>::infinity()});
        edits.setHandle(keys, Side::left, {-1e300, 0}); // No float holds it.
    });
}

void KeyEditsTest::keysHaveInCommonWhatIsEqual() {
    Scene scene;
    Key* const first = scene.add(0, 10, bezier(2, {-1, 0}, {1, 0}));
    Key* const second = scene.add(1, 10, bezier(2, {-1, 0}, {1, 0}));
    second->setRightTangentType(Type::linear);
    const auto common = KeyEdits::commonOf({first, second});
    QVERIFY(common.leftType == Type::bezier);
    QVERIFY(!common.rightType);
    QVERIFY(common.isSmooth == false);
    QVERIFY(common.isSymmetrical == false);
    QVERIFY(common.frame == 10U);
    QVERIFY(common.value == 2.0F);
    QVERIFY(common.leftHandle && *common.leftHandle == QPointF(-1, 0));
    QVERIFY(!common.rightHandle);

    const auto none = KeyEdits::commonOf({});
    QVERIFY(!none.leftType && !none.isSmooth && !none.frame && !none.value && !none.leftHandle);
}

void KeyEditsTest::keysThatDifferSlightlyHaveNothingInCommon() {
    Scene scene;
    Key* const first = scene.add(0, 10, bezier(0, {-1, 0}, {1, 0}));
    Key* const second = scene.add(1, 11, bezier(1e-30F, {-1, 1e-20F}, {1, 0}));
    const auto common = KeyEdits::commonOf({first, second});
    QVERIFY(!common.frame);
    QVERIFY(!common.value);
    QVERIFY(!common.leftHandle);
    QVERIFY(common.rightHandle.has_value());
}

void KeyEditsTest::oneKeyHasAllInCommonWithItself() {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    Scene scene;
    const auto common = KeyEdits::commonOf({scene.add(0, 10, bezier(nan, {nan, 0}, {1, 0}))});
    QVERIFY(common.value && std::isnan(*common.value));
    QVERIFY(common.leftHandle.has_value());
    QVERIFY(common.rightHandle.has_value());
}

void KeyEditsTest::entriesSayWhatWasDoneToHowManyKeys() {
    Scene scene;
    const Keys keys = scene.add(0, {10, 20}) + scene.add(1, {5});
    KeyEdits edits(scene.document);
    const auto text = [&scene] { return scene.history().undoText(); };
    edits.setValue(keys, 3.0F);
    QCOMPARE(text(), QString("Set value of 3 key(s)"));
    edits.setType({scene.key(0, 10)}, Side::left, Type::bezier);
    QCOMPARE(text(), QString("Set type of 1 key(s) to bezier"));
    edits.setType(keys, Type::bezier); // Of one of them a side was so; it is counted once.
    QCOMPARE(text(), QString("Set type of 3 key(s) to bezier"));
    edits.setHandle(keys, Side::right, {1.0, 2.0});
    QCOMPARE(text(), QString("Set handle of 3 key(s)"));
    edits.setSmooth({scene.key(0, 10)}, true);
    QCOMPARE(text(), QString("Make 1 key(s) smooth"));
    edits.setSmooth(keys, true); // One was so before.
    QCOMPARE(text(), QString("Make 2 key(s) smooth"));
    edits.setSmooth(keys, false);
    QCOMPARE(text(), QString("Make 3 key(s) not smooth"));
    edits.setSymmetrical(keys, true);
    QCOMPARE(text(), QString("Make 3 key(s) symmetrical"));
    edits.setSymmetrical({scene.key(1, 5)}, false);
    QCOMPARE(text(), QString("Make 1 key(s) not symmetrical"));
    edits.remove(keys);
    QCOMPARE(text(), QString("Delete 3 key(s)"));
}

void KeyEditsTest::entriesNameTheTypeThatKeysGot() {
    Scene scene;
    const Keys keys = scene.add(0, {10, 20});
    KeyEdits edits(scene.document);
    const std::vector<std::pair<Type, QString>> types{{Type::constant, "constant"},
                                                      {Type::linear, "linear"},
                                                      {Type::bezier, "bezier"},
                                                      {Type::bezierAuto, "bezier auto"}};
    for (const auto& [type, name] : types) {
        edits.setType(keys, type);
        QCOMPARE(scene.history().undoText(), "Set type of 2 key(s) to " + name);
    }
}

QTEST_GUILESS_MAIN(KeyEditsTest)
#include "KeyEditsTest.moc"
