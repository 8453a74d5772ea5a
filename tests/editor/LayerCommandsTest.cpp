#include "document/LayerCommands.h"

#include "document/Drag.h"
#include "document/KeyClipboard.h"
#include "document/KeyEdits.h"
#include "document/RangeDrags.h"
#include "tests/editor/support/Scene.h"

#include <QPointer>

#include <boost/property_tree/ptree.hpp>

#include <memory>
#include <tuple>
#include <utility>
#include <vector>

using namespace EditorScene;
using Editor::AddLayerCommand;
using Editor::LayerLook;
using Editor::RemoveLayerCommand;

namespace {

QString names(Scene& scene) {
    QStringList all;
    for (int i = 0; i < scene.document.layerCount(); ++i) {
        all.append(scene.document.layer(i)->getActuatorName());
    }
    return all.join(' ');
}

std::unique_ptr<ZT::EditableAnimationLayer> newLayer(const QString& name) {
    auto layer = std::make_unique<ZT::EditableAnimationLayer>();
    layer->setActuatorName(name);
    return layer;
}

} // namespace

class LayerCommandsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLayerIsAdded();
    void aCopyOfALayerIsAdded();
    void aLayerIsRemovedWithItsKeys();
    void aLayerIsMoved();
    void aLayerIsRenamed();
    void aLayerIsMuted();
    void mutingAMuteLayerIsUndoneToMute();
    void aLooksChangeNamesWhatItDoes();
    void olderEntriesReferToKeysOfRemovedLayers();
    void newerEntriesReferToKeysOfAddedLayers();
    void layersDieWithTheEntriesThatOwnThem();
};

void LayerCommandsTest::aLayerIsAdded() {
    for (const int index : {0, 1, 3}) {
        Scene scene;
        const LayerLook look{QColor(1, 2, 3), true, true};
        checkEdit(scene, [&] {
            scene.history().push(
                new AddLayerCommand(scene.document, index, newLayer("new"), look, "Add layer"));
        });
        QCOMPARE(scene.document.layer(index)->getActuatorName(), QString("new"));
        QVERIFY(scene.document.look(index) == look);
        QCOMPARE(scene.history().undoText(), QString("Add layer"));
    }
}

void LayerCommandsTest::aCopyOfALayerIsAdded() {
    Scene scene;
    Key* const key = scene.add(0, 5, bezier(1, {-1, 2}, {1, 2}));
    key->setSymmetrical(true);
    auto copy = std::make_unique<ZT::EditableAnimationLayer>();
    QVERIFY(copy->deserialize(scene.document.layer(0)->serialize()));
    checkEdit(scene, [&] {
        scene.history().push(new AddLayerCommand(scene.document, 1, std::move(copy), scene.document.look(0),
                                                 "Duplicate layer"));
    });
    QCOMPARE(names(scene), QString("arm arm leg head"));
    QVERIFY(scene.document.layer(1)->serialize() == scene.document.layer(0)->serialize());
    QVERIFY(scene.key(1, 5) != key);
    QVERIFY(scene.key(1, 5)->isSymmetrical());
}

void LayerCommandsTest::aLayerIsRemovedWithItsKeys() {
    Scene scene;
    scene.add(1, {5, 6});
    scene.lock(1);
    checkEdit(scene, [&] { scene.history().push(new RemoveLayerCommand(scene.document, 1)); });
    QCOMPARE(names(scene), QString("arm head"));
    QCOMPARE(scene.history().undoText(), QString("Remove layer leg"));
}

void LayerCommandsTest::aLayerIsMoved() {
    for (const auto& [from, to, order] :
         {std::make_tuple(0, 2, "leg head arm"), std::make_tuple(2, 0, "head arm leg"),
          std::make_tuple(2, 1, "arm head leg")}) {
        Scene scene;
        scene.add(0, {5});
        scene.lock(0);
        checkEdit(scene, [&, from = from, to = to] {
            scene.history().push(new Editor::MoveLayerCommand(scene.document, from, to));
        });
        QCOMPARE(names(scene), QString(order));
    }
}

void LayerCommandsTest::aLayerIsRenamed() {
    Scene scene;
    checkEdit(scene, [&] {
        scene.history().push(
            new Editor::RenameLayerCommand(scene.document, 2, QString::fromUtf8("k\xc3\xb6rper")));
    });
    QCOMPARE(names(scene), QString::fromUtf8("arm leg k\xc3\xb6rper"));
}

void LayerCommandsTest::aLayerIsMuted() {
    Scene scene;
    checkEdit(scene, [&] { scene.history().push(new Editor::MuteLayerCommand(scene.document, 0, true)); });
    QVERIFY(scene.document.layer(0)->isMute());
    checkEdit(scene, [&] { scene.history().push(new Editor::MuteLayerCommand(scene.document, 0, false)); });
    QVERIFY(!scene.document.layer(0)->isMute());
}

void LayerCommandsTest::mutingAMuteLayerIsUndoneToMute() {
    Scene scene;
    scene.document.layer(0)->setMute(true);
    scene.history().push(new Editor::MuteLayerCommand(scene.document, 0, true));
    scene.history().undo();
    QVERIFY(scene.document.layer(0)->isMute());
}

void LayerCommandsTest::aLooksChangeNamesWhatItDoes() {
    Scene scene;
    const QColor colour = scene.document.look(0).colour;
    const QColor other(1, 2, 3);
    const std::vector<std::pair<LayerLook, QString>> steps{{{colour, false, false}, "Hide layer"},
                                                           {{colour, true, false}, "Show layer"},
                                                           {{colour, true, true}, "Lock layer"},
                                                           {{colour, true, false}, "Unlock layer"},
                                                           {{other, true, false}, "Change colour of layer"}};
    for (const auto& [look, text] : steps) {
        checkEdit(scene, [&, look = look] {
            scene.history().push(new Editor::ChangeLookCommand(scene.document, 0, look));
        });
        QCOMPARE(scene.history().undoText(), text);
        QVERIFY(scene.document.look(0) == look);
    }
}

void LayerCommandsTest::olderEntriesReferToKeysOfRemovedLayers() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 8});
    scene.setRange(4, 9);
    std::vector<DocumentState> states{scene.state()};
    const auto note = [&] { states.push_back(scene.state()); };
    Editor::KeyEdits edits(scene.document);
    Editor::Drag drag(scene.document);
    drag.begin(Editor::dragKeys(keys));
    drag.moveTo({2, 1});
    drag.finish();
    note();
    edits.remove({scene.key(0, 7)});
    note();
    edits.setType({scene.key(0, 10)}, Type::bezierAuto);
    note();
    drag.begin(Editor::dragRange(scene.document));
    drag.moveTo({3, 0});
    drag.finish();
    note();
    scene.history().push(new RemoveLayerCommand(scene.document, 0));
    note();
    scene.history().push(new AddLayerCommand(scene.document, 0, newLayer("other"), LayerLook(), "Add layer"));
    note();
    for (int time = 0; time < 2; ++time) {
        for (std::size_t i = states.size() - 1; i > 0; --i) {
            scene.history().undo();
            QCOMPARE(scene.changesSince(states[i - 1]), QString());
        }
        for (std::size_t i = 1; i < states.size(); ++i) {
            scene.history().redo();
            QCOMPARE(scene.changesSince(states[i]), QString());
        }
    }
}

void LayerCommandsTest::newerEntriesReferToKeysOfAddedLayers() {
    Scene scene;
    const DocumentState before = scene.state();
    scene.history().push(new AddLayerCommand(scene.document, 0, newLayer("new"), LayerLook(), "Add layer"));
    Editor::KeyEdits edits(scene.document);
    for (const unsigned int frame : {3U, 9U}) {
        edits.insert(scene.curve(0), frame);
    }
    edits.setValue({scene.key(0, 9)}, 4.0F);
    Editor::KeyClipboard(scene.document).duplicate({scene.key(0, 9)});
    const DocumentState after = scene.state();
    for (int time = 0; time < 2; ++time) {
        scene.history().setIndex(0);
        QCOMPARE(scene.changesSince(before), QString());
        scene.history().setIndex(scene.history().count());
        QCOMPARE(scene.changesSince(after), QString());
    }
}

void LayerCommandsTest::layersDieWithTheEntriesThatOwnThem() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Editor::KeyEdits edits(scene.document);
    edits.setValue(keys, 1.5F);
    auto layer = newLayer("new");
    const QPointer<ZT::EditableAnimationLayer> added = layer.get();
    scene.history().push(new AddLayerCommand(scene.document, 3, std::move(layer), LayerLook(), "Add layer"));
    edits.insert(*added->getCurve(), 4);
    scene.history().undo();
    scene.history().undo();
    QVERIFY(added);
    edits.setValue(keys, 2.5F); // What was undone can be redone no more.
    QVERIFY(!added);

    const QPointer<ZT::EditableAnimationLayer> removed = scene.document.layer(0);
    scene.history().push(new RemoveLayerCommand(scene.document, 0));
    QVERIFY(removed);
    scene.history().clear();
    QVERIFY(!removed);
    QCOMPARE(names(scene), QString("leg head"));
}

QTEST_GUILESS_MAIN(LayerCommandsTest)
#include "LayerCommandsTest.moc"
