#include "window/SelectionState.h"
#include "tests/editor/support/Scene.h"
#include "window/HandleNumbers.h"

#include <QCoreApplication>
#include <QSignalSpy>

using EditorScene::Key;
using EditorScene::Keys;
using EditorScene::Scene;

class SelectionStateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itIsLookedUpOnceForAllChangesOfATurn();
    void otherKeysAreSeenInTheNextTurnHoweverMany();
    void changesOfManyKeysAreSeenInTheEnd();
    void handlesAreCommonWhereAllKeysThatHaveThemAgree();

private:
    static Keys manyKeys(Scene& scene) {
        Keys keys;
        for (unsigned int frame = 0; frame < 3000; ++frame) {
            auto* const key = new Key(EditorScene::record(1.0F));
            scene.curve().insert(frame, key);
            keys.insert(key);
        }
        return keys;
    }
};

void SelectionStateTest::itIsLookedUpOnceForAllChangesOfATurn() {
    Scene scene;
    Editor::SelectionState state(scene.document);
    const Keys keys = scene.add(0, {5, 6}) + scene.add(1, {9});
    const QSignalSpy changes(&state, &Editor::SelectionState::changed);
    scene.document.selection().set(keys);
    for (int i = 0; i < 10; ++i) {
        scene.key(0, 5)->setValue(static_cast<float>(i));
    }
    QCoreApplication::processEvents();
    QCOMPARE(changes.size(), 1);
    QCOMPARE(state.keyCount(), 3);
    QCOMPARE(state.layerCount(), 2);
    QCOMPARE(state.firstFrame(), 5U);
    QCOMPARE(state.lastFrame(), 9U);
}

void SelectionStateTest::otherKeysAreSeenInTheNextTurnHoweverMany() {
    Scene scene;
    Editor::SelectionState state(scene.document);
    const Keys keys = manyKeys(scene);
    scene.document.selection().set(keys);
    QCoreApplication::processEvents();
    QCOMPARE(state.keyCount(), 3000);
    scene.key(0, 7)->setValue(2.0F); // May wait, but what follows may not wait with it.
    scene.document.selection().set({scene.key(0, 7)});
    QCoreApplication::processEvents();
    QCOMPARE(state.keyCount(), 1);
    QCOMPARE(state.common().value, std::optional(2.0F));
}

void SelectionStateTest::changesOfManyKeysAreSeenInTheEnd() {
    Scene scene;
    Editor::SelectionState state(scene.document);
    const Keys keys = manyKeys(scene);
    scene.document.selection().set(keys);
    QCoreApplication::processEvents();
    QCOMPARE(state.common().value, std::optional(1.0F));
    for (Key* const key : keys) {
        key->setValue(3.0F);
    }
    QTRY_COMPARE(state.common().value, std::optional(3.0F));
}

void SelectionStateTest::handlesAreCommonWhereAllKeysThatHaveThemAgree() {
    Scene scene;
    const Keys keys{scene.add(0, 5, EditorScene::bezier(0, {-1, 2}, {1, 0})),
                    scene.add(0, 9, EditorScene::bezier(0, {-1, 3}, {1, 0})), scene.add(0, 12)};
    using Number = Editor::HandleNumbers::Number;
    const Editor::HandleNumbers left(keys, EditorScene::Side::left);
    QCOMPARE(left.common(Number::frames), std::optional(-1.0F));
    QCOMPARE(left.common(Number::value), std::optional<float>());
    QVERIFY(!left.isEmpty());
    QVERIFY(Editor::HandleNumbers({scene.key(0, 12)}, EditorScene::Side::left).isEmpty());
}

QTEST_GUILESS_MAIN(SelectionStateTest)
#include "SelectionStateTest.moc"
