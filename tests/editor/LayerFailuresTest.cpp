#include "layers/LayerEdits.h"

#include "document/KeyEdits.h"
#include "tests/editor/support/Scene.h"

#include <QPointer>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

using Editor::Document;
using Editor::KeySelection;
using Editor::LayerEdits;
using EditorScene::problemOf;
using EditorScene::Scene;

namespace {

using Edit = std::function<void(LayerEdits&)>;

void fail() {
    throw std::runtime_error("no room");
}

/// Connects @p thrower to what an edit of the list says; the number is the row of the test.
void throwAt(int signal, Document& document, QObject& thrower) {
    const auto at = [&](auto emitted) { QObject::connect(&document, emitted, &thrower, fail); };
    switch (signal) {
    case 0:
        return at(&Document::layerAboutToBeInserted);
    case 1:
        return at(&Document::layerInserted);
    case 2:
        return at(&Document::layerAboutToBeRemoved);
    case 3:
        return at(&Document::layerRemoved);
    case 4:
        return at(&Document::layerAboutToBeMoved);
    case 5:
        return at(&Document::layerMoved);
    case 6:
        return at(&Document::changed);
    default:
        QObject::connect(&document.selection(), &KeySelection::changed, &thrower, fail);
    }
}

/// Whether each signal that opens a change of the list is followed by the one that closes it.
class Ends {
public:
    explicit Ends(Document& document) {
        const auto count = [this](int step) { return [this, step] { _open += step; }; };
        QObject::connect(&document, &Document::layerAboutToBeInserted, &_listener, count(1));
        QObject::connect(&document, &Document::layerInserted, &_listener, count(-1));
        QObject::connect(&document, &Document::layerAboutToBeRemoved, &_listener, count(1));
        QObject::connect(&document, &Document::layerRemoved, &_listener, count(-1));
        QObject::connect(&document, &Document::layerAboutToBeMoved, &_listener, count(1));
        QObject::connect(&document, &Document::layerMoved, &_listener, count(-1));
    }

    bool areAllClosed() const { return _open == 0; }

private:
    QObject _listener;
    int _open = 0;
};

/// Layers of different looks with older entries that hold keys of them.
class FullScene : public Scene {
public:
    FullScene() {
        for (int layer = 0; layer < 3; ++layer) {
            keys += add(layer, {5, 8});
            document.setLook(layer, {QColor(layer, 1, 1)});
        }
        start.push_back(state());
        Editor::KeyEdits(document).setValue(keys, 7.0F);
        start.push_back(state());
        Editor::KeyEdits(document).remove({key(0, 5), key(2, 8)});
        keys = {key(0, 8), key(2, 5)};
        document.selection().set(keys);
        for (int layer = 0; layer < 3; ++layer) {
            layers.emplace_back(document.layer(layer));
        }
    }

    /// Goes back over the older entries and forth again.
    void checkOlderEntries() {
        const DocumentState before = state();
        for (int i = 2; i > 0; --i) {
            history().undo();
            QCOMPARE(changesSince(start[static_cast<std::size_t>(i - 1)]), QString());
        }
        history().redo();
        history().redo();
        QCOMPARE(changesSince(before), QString());
    }

    /// @p step with all keys selected and a slot that throws at the signal: whatever comes of it, no layer
    /// dies and each change of the list is closed.
    void fail(int signal, const std::function<void()>& step);

    EditorScene::Keys keys;
    std::vector<DocumentState> start;
    std::vector<QPointer<ZT::EditableAnimationLayer>> layers;
};

bool areAlive(const FullScene& scene) {
    return std::none_of(scene.layers.begin(), scene.layers.end(),
                        [](const auto& layer) { return layer.isNull(); });
}

void FullScene::fail(int signal, const std::function<void()>& step) {
    document.selection().selectAll();
    const Ends ends(document);
    {
        QObject thrower;
        throwAt(signal, document, thrower);
        (void)problemOf(step);
    }
    QVERIFY(areAlive(*this));
    QVERIFY(ends.areAllClosed());
}

} // namespace

Q_DECLARE_METATYPE(Edit)

/// Whatever throws while layers come, go and move: the list is changed wholly or not at all.
class LayerFailuresTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEditThatFailsIsTakenBack_data() { _rows(); }
    void anEditThatFailsIsTakenBack();
    void anUndoThatFailsIsDoneAndCanBeRedone_data() { _rows(); }
    void anUndoThatFailsIsDoneAndCanBeRedone();
    void aRedoThatFailsIsDoneAndCanBeUndone_data() { _rows(); }
    void aRedoThatFailsIsDoneAndCanBeUndone();
    void layersDieOnceWithTheHistoryThatFailed();

private:
    void _rows();
};

void LayerFailuresTest::_rows() {
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<int>("signal");
    const std::vector<std::pair<const char*, Edit>> edits{
        {"add", [](LayerEdits& layers) { layers.add(1); }},
        {"duplicate", [](LayerEdits& layers) { layers.duplicate({0}); }},
        {"duplicate two",
         [](LayerEdits& layers) {
             layers.duplicate({0, 2});
         }},
        {"remove", [](LayerEdits& layers) { layers.remove({0}); }},
        {"remove two",
         [](LayerEdits& layers) {
             layers.remove({0, 2});
         }},
        {"move up", [](LayerEdits& layers) { layers.move({2}, 0); }},
        {"move down", [](LayerEdits& layers) { layers.move({0}, 3); }}};
    const std::vector<const char*> signalNames{"inserting", "inserted", "removing", "removed",
                                               "moving",    "moved",    "changed",  "selection"};
    for (const auto& [name, edit] : edits) {
        for (std::size_t i = 0; i < signalNames.size(); ++i) {
            QTest::addRow("%s, %s", name, signalNames[i]) << edit << static_cast<int>(i);
        }
    }
}

void LayerFailuresTest::anEditThatFailsIsTakenBack() {
    QFETCH(Edit, edit);
    QFETCH(int, signal);
    FullScene scene;
    LayerEdits edits(scene.document);
    const DocumentState before = scene.state();
    const Ends ends(scene.document);
    QString problem;
    {
        QObject thrower;
        throwAt(signal, scene.document, thrower);
        problem = problemOf([&] { edit(edits); });
    }
    QVERIFY(areAlive(scene));
    QVERIFY(ends.areAllClosed());
    QCOMPARE(problem.isEmpty(), scene.history().count() == 3);
    if (problem.isEmpty()) { // It said nothing of that kind.
        scene.history().undo();
    }
    QCOMPARE(scene.changesSince(before), QString());
    QVERIFY(areAlive(scene));
    scene.checkOlderEntries();
    EditorScene::checkEdit(scene, [&] { edit(edits); });
}

void LayerFailuresTest::anUndoThatFailsIsDoneAndCanBeRedone() {
    QFETCH(Edit, edit);
    QFETCH(int, signal);
    FullScene scene;
    LayerEdits edits(scene.document);
    const DocumentState before = scene.state();
    edit(edits);
    const DocumentState after = scene.state();
    scene.fail(signal, [&] { scene.history().undo(); });
    QCOMPARE(scene.history().index(), 2);
    QCOMPARE(scene.changesSince(before), QString());
    scene.history().redo();
    QCOMPARE(scene.changesSince(after), QString());
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
    QVERIFY(areAlive(scene));
    scene.checkOlderEntries();
}

void LayerFailuresTest::aRedoThatFailsIsDoneAndCanBeUndone() {
    QFETCH(Edit, edit);
    QFETCH(int, signal);
    FullScene scene;
    LayerEdits edits(scene.document);
    const DocumentState before = scene.state();
    edit(edits);
    const DocumentState after = scene.state();
    scene.history().undo();
    scene.fail(signal, [&] { scene.history().redo(); });
    QCOMPARE(scene.history().index(), 3);
    QCOMPARE(scene.changesSince(after), QString());
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
    QVERIFY(areAlive(scene));
    scene.checkOlderEntries();
}

void LayerFailuresTest::layersDieOnceWithTheHistoryThatFailed() {
    FullScene scene;
    LayerEdits edits(scene.document);
    {
        QObject thrower;
        throwAt(6, scene.document, thrower);
        (void)problemOf([&] { edits.remove({0}); });
    }
    edits.remove({0});
    QVERIFY(areAlive(scene));
    scene.history().clear();
    QVERIFY(scene.layers[0].isNull());
    QVERIFY(!scene.layers[1].isNull() && !scene.layers[2].isNull());
    QCOMPARE(scene.names(), QString("leg head"));
}

QTEST_GUILESS_MAIN(LayerFailuresTest)
#include "LayerFailuresTest.moc"
