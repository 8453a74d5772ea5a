#include "document/AnimationFile.h"
#include "document/Drag.h"
#include "document/KeyClipboard.h"
#include "document/KeyEdits.h"
#include "document/LayerCommands.h"
#include "document/RangeDrags.h"
#include "tests/editor/support/Scene.h"

#include <QFile>
#include <QMimeData>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace EditorScene;
using Editor::Drag;
using ZT::AnimCmd::StretchSide;

namespace {

/// Somebody who does anything that the editor offers, in any order.
class Editing {
public:
    Editing(Scene& scene, unsigned int seed, std::vector<Type> types)
        : _scene(scene)
        , _drag(scene.document)
        , _edits(scene.document)
        , _clipboard(scene.document)
        , _types(std::move(types))
        , _random(seed) {}

    void doSomething() {
        const std::array<std::function<void()>, 11> actions{
            [this] { gesture(); },   [this] { gesture(); },      [this] { gesture(); },
            [this] { insertKey(); }, [this] { changeKeys(); },   [this] { removeKeys(); },
            [this] { pasteKeys(); }, [this] { changeLayers(); }, [this] { stepThroughHistory(); },
            [this] { select(); },    [this] { select(); }};
        actions[below(static_cast<unsigned int>(actions.size()))]();
    }

private:
    unsigned int below(unsigned int end) { return static_cast<unsigned int>(_random() % end); }
    bool chance(unsigned int oneIn) { return below(oneIn) == 0; }
    double number() {
        static const std::array<double, 8> remarkable{0.0,   1.0,   -1.0,  1e10,
                                                      -1e10, 1e300, 1e-12, -4294967295.0};
        return chance(10) ? remarkable[below(8)]
                          : std::uniform_real_distribution<double>(-12.0, 12.0)(_random);
    }
    int anyLayer() {
        return static_cast<int>(below(static_cast<unsigned int>(_scene.document.layerCount())));
    }
    Type anyType() { return _types[below(static_cast<unsigned int>(_types.size()))]; }
    Side anySide() { return chance(2) ? Side::left : Side::right; }
    const Keys& selected() { return _scene.document.selection().keys(); }

    // In the order of layers and frames: addresses differ from run to run.
    std::vector<Key*> allKeys() {
        std::vector<Key*> keys;
        for (int i = 0; i < _scene.document.layerCount(); ++i) {
            if (_scene.document.isEditable(&_scene.curve(i))) {
                for (const auto& [frame, key] : _scene.curve(i)) {
                    keys.push_back(key);
                }
            }
        }
        return keys;
    }

    const Key& firstSelected() {
        const std::vector<Key*> keys = allKeys();
        return **std::find_if(keys.begin(), keys.end(),
                              [this](Key* key) { return selected().contains(key); });
    }

    void select() {
        Keys keys;
        for (Key* const key : allKeys()) {
            if (chance(3)) {
                keys.insert(key);
            }
        }
        _scene.document.selection().set(keys);
    }

    std::unique_ptr<Editor::DragKind> anyKind() {
        switch (below(6)) {
        case 0:
            return Editor::dragRange(_scene.document);
        case 1:
            return Editor::dragRangeEnd(_scene.document, chance(2) ? StretchSide::start : StretchSide::end);
        case 2:
            return Editor::dragNewRange(_scene.document, below(40));
        case 3:
            if (!selected().isEmpty()) {
                return Editor::dragHandles(selected(), firstSelected(), anySide());
            }
            [[fallthrough]];
        default:
            return Editor::dragKeys(selected());
        }
    }

    void gesture() {
        const DocumentState before = _scene.state();
        const int entries = _scene.history().index();
        _drag.begin(anyKind());
        for (unsigned int steps = below(8); steps > 0; --steps) {
            _drag.moveTo({number(), number()});
        }
        if (chance(20)) {
            removeKeys(); // Something else comes between.
        }
        if (chance(4) && _drag.isActive()) {
            _drag.cancel();
            QCOMPARE(_scene.changesSince(before), QString());
        } else {
            _drag.finish();
            QVERIFY(_scene.history().index() <= entries + 2);
        }
    }

    void insertKey() { _edits.insert(_scene.curve(anyLayer()), below(60)); }

    void changeKeys() {
        switch (below(6)) {
        case 0:
            return _edits.setType(selected(), anyType());
        case 1:
            return _edits.setType(selected(), anySide(), anyType());
        case 2:
            return _edits.setSmooth(selected(), chance(2));
        case 3:
            return _edits.setSymmetrical(selected(), chance(2));
        case 4:
            return _edits.setValue(selected(), static_cast<float>(std::clamp(number(), -1e30, 1e30)));
        default:
            return _edits.setHandle(selected(), anySide(), {number(), number()});
        }
    }

    void removeKeys() {
        if (selected().size() < 4) {
            _edits.remove(selected());
        }
    }

    void pasteKeys() {
        if (const auto data = Editor::KeyClipboard::copy(selected()); data && selected().size() < 8) {
            problemOf([&] { _clipboard.paste(*data, below(60), nullptr); });
            problemOf([&] { _clipboard.duplicate(selected()); });
        }
    }

    void changeLayers() {
        const int layer = anyLayer();
        Editor::Document& document = _scene.document;
        Editor::LayerLook look = document.look(layer);
        switch (below(7)) {
        case 0:
            return document.history().push(new Editor::AddLayerCommand(
                document, layer, std::make_unique<ZT::EditableAnimationLayer>(), look, "Add layer"));
        case 1:
            if (document.layerCount() > 2) {
                document.history().push(new Editor::RemoveLayerCommand(document, layer));
            }
            return;
        case 2:
            return document.history().push(new Editor::MoveLayerCommand(document, layer, anyLayer()));
        case 3:
            return document.history().push(
                new Editor::RenameLayerCommand(document, layer, QString("x%1").arg(below(9))));
        case 4:
            return document.history().push(new Editor::MuteLayerCommand(document, layer, chance(2)));
        default:
            look.isLocked = chance(6);
            look.isVisible = !chance(6);
            look.colour = QColor(static_cast<int>(below(256)), 0, 0);
            return document.history().push(new Editor::ChangeLookCommand(document, layer, look));
        }
    }

    void stepThroughHistory() {
        for (unsigned int steps = below(5); steps > 0; --steps) {
            chance(2) ? _scene.history().undo() : _scene.history().redo();
        }
    }

    Scene& _scene;
    Drag _drag;
    Editor::KeyEdits _edits;
    Editor::KeyClipboard _clipboard;
    std::vector<Type> _types;
    std::mt19937 _random;
};

void fill(Scene& scene, const std::vector<Type>& types) {
    for (int layer = 0; layer < scene.document.layerCount(); ++layer) {
        for (unsigned int i = 0; i < 8; ++i) {
            const Type type = types[(i + static_cast<unsigned int>(layer)) % types.size()];
            const float value = static_cast<float>(i) * 0.7F - static_cast<float>(layer);
            scene.add(layer, i * 5U + static_cast<unsigned int>(layer),
                      record(value, type, type, {-1.5F, 0.3F}, {1.2F, -0.1F}));
        }
    }
    scene.setRange(10, 20);
}

} // namespace

class EditingSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void undoingEverythingGivesBackWhatWasThere_data();
    void undoingEverythingGivesBackWhatWasThere();
    void aMotionCaptureIsDraggedAsOneEntry();
};

void EditingSessionTest::undoingEverythingGivesBackWhatWasThere_data() {
    QTest::addColumn<unsigned int>("seed");
    QTest::addColumn<bool>("hasAutomatic");
    for (unsigned int seed = 1; seed <= 5; ++seed) {
        QTest::addRow("handles of all kinds, %u", seed) << seed << true;
        QTest::addRow("no automatic handles, %u", seed) << seed << false;
    }
}

// Without automatic handles every entry that is redone gives each bit again, and so does the file at the
// beginning. Automatic handles are right within a tolerance only, and an entry that is redone makes others of
// those that it finds.
void EditingSessionTest::undoingEverythingGivesBackWhatWasThere() {
    QFETCH(unsigned int, seed);
    QFETCH(bool, hasAutomatic);
    std::vector<Type> types{Type::constant, Type::linear, Type::bezier};
    if (hasAutomatic) {
        types.push_back(Type::bezierAuto);
    }
    Scene scene;
    fill(scene, types);
    const DocumentState before = scene.state();
    const std::string tree = scene.tree();
    Editing editing(scene, seed, types);
    for (int i = 0; i < 1000; ++i) {
        editing.doSomething();
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QString("action %1").arg(i)));
    }
    QVERIFY2(scene.history().count() > 100, "there is little to undo");

    std::vector<DocumentState> states{scene.state()};
    while (scene.history().canUndo()) {
        scene.history().undo();
        states.push_back(scene.state());
    }
    QCOMPARE(scene.changesSince(before), QString());
    if (!hasAutomatic) {
        QVERIFY(scene.tree() == tree);
    }
    for (std::size_t state = states.size() - 1; state-- > 0;) {
        const QString text = scene.history().redoText();
        scene.history().redo();
        if (!hasAutomatic) {
            const QString changes = scene.changesSince(states[state]);
            QVERIFY2(changes.isEmpty(), qPrintable(text + ": " + changes));
        }
    }
    QVERIFY(!scene.history().canRedo());
    scene.history().setIndex(0);
    QCOMPARE(scene.changesSince(before), QString());
}

void EditingSessionTest::aMotionCaptureIsDraggedAsOneEntry() {
    const QString path = QString(EA_SHARED_DATA) + "/walk.bvh";
    if (!QFile::exists(path)) {
        QSKIP("the shared data are not here");
    }
    Scene scene;
    scene.document.replace(Editor::AnimationFile(path).load(), QString());
    scene.document.selection().selectAll();
    QCOMPARE(scene.document.selection().keys().size(), 50304);
    const DocumentState before = scene.state();
    Drag drag(scene.document);
    drag.begin(Editor::dragKeys(scene.document.selection().keys()));
    for (int step = 1; step <= 5; ++step) {
        drag.moveTo({7.0 * step, 0.1 * step});
    }
    drag.finish();
    QCOMPARE(scene.history().count(), 1);
    scene.setRange(0, 100);
    const DocumentState moved = scene.state();
    drag.begin(Editor::dragRangeEnd(scene.document, StretchSide::end));
    drag.moveTo({50, 0});
    drag.moveTo({100, 0});
    drag.cancel();
    QCOMPARE(scene.changesSince(moved), QString());
    scene.history().undo();
    scene.markers().setRangeStartIndex(1);
    scene.markers().setRangeEndIndex(1);
    scene.markers().setRangeVisible(false);
    QCOMPARE(scene.changesSince(before), QString());
}

QTEST_GUILESS_MAIN(EditingSessionTest)
#include "EditingSessionTest.moc"
