#include "layers/LayerEdits.h"

#include "model/AnimationMarkers.h"
#include "tests/editor/support/Scene.h"

#include <boost/rational.hpp>

using Editor::LayerEdits;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;
using EditorScene::problemOf;
using EditorScene::Scene;

class LayerEditsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anAddedLayerIsEmptyAndHasANameAndAColourOfItsOwn() {
        Scene scene;
        checkEdit(scene, [&scene] { QCOMPARE(LayerEdits(scene.document).add(1), 1); });
        QCOMPARE(scene.history().undoText(), QString("Add layer"));
        checkEdit(scene, [&scene] { LayerEdits(scene.document).add(4); });
        QCOMPARE(scene.names(), QString("arm Layer leg head Layer 2"));
        QVERIFY(scene.curve(1).empty());
        QVERIFY(scene.document.look(1) != scene.document.look(4));
        QVERIFY(scene.document.look(1).isVisible && !scene.document.look(1).isLocked);
    }

    void anAddedLayerHasTheRateOfTheFirst() {
        VQ::Animation::Animation plain;
        auto* const layer = new VQ::Animation::AnimationLayer;
        layer->curve->setTimeUnit(VQ::Animation::RationalSeconds(boost::rational<int>(1001, 30000)));
        plain.push_back(layer);
        Editor::AnimationData data;
        data.animation = std::make_unique<ZT::EditableAnimation>(plain);
        Scene scene;
        scene.document.replace(std::move(data), QString());
        LayerEdits(scene.document).add(0);
        QVERIFY(scene.curve(0).getTimeUnit() == scene.curve(1).getTimeUnit());
        QVERIFY(scene.curve(0).getTimeUnit().count() == boost::rational<int>(1001, 30000));
    }

    void aLayerCanBeAddedToAnAnimationWithout() {
        Scene scene(QStringList{});
        checkEdit(scene, [&scene] { LayerEdits(scene.document).add(0); });
        QCOMPARE(scene.names(), QString("Layer"));
    }

    void aCopyHasTheKeysWithTheirFlagsAndTheLook() {
        Scene scene;
        using EditorScene::bezier;
        EditorScene::Key* const key = scene.add(0, 3, bezier(0.1F, {-2.0F, -0.3F}, {2.0F, 0.3F}));
        key->setSymmetrical(true);
        scene.add(0, 9, bezier(-5.0F, {-1.0F, 1.0F}, {3.0F, -3.0F}))->setSmooth(true);
        scene.document.layer(0)->setMute(true);
        scene.lock(0);
        checkEdit(scene, [&scene] { QCOMPARE(LayerEdits(scene.document).duplicate({0}), 1); });
        QCOMPARE(scene.history().undoText(), QString("Duplicate layer"));
        QCOMPARE(scene.names(), QString("arm arm 2 leg head"));
        QVERIFY(scene.document.layer(1)->isMute());
        QVERIFY(scene.document.look(1).isLocked && scene.document.look(1).isVisible);
        QVERIFY(scene.document.look(1).colour != scene.document.look(0).colour);
        QCOMPARE(scene.frames(1), QString("3 9"));
        for (const unsigned int frame : {3U, 9U}) {
            QVERIFY(scene.key(0, frame) != scene.key(1, frame));
            QCOMPARE(Snapshot::of(*scene.key(1, frame)), Snapshot::of(*scene.key(0, frame)));
        }
    }

    void severalLayersAreCopiedEachBehindItselfInOneEntry() {
        Scene scene;
        checkEdit(scene, [&scene] { QCOMPARE(LayerEdits(scene.document).duplicate({0, 2}), 1); });
        QCOMPARE(scene.names(), QString("arm arm 2 leg head head 2"));
    }

    void aCopyOfACopyGetsTheNextNumber() {
        Scene scene({"arm", "arm 2", "arm 4"});
        QCOMPARE(LayerEdits(scene.document).uniqueName("arm"), QString("arm 3"));
        QCOMPARE(LayerEdits(scene.document).uniqueName("arm 2"), QString("arm 3"));
        QCOMPARE(LayerEdits(scene.document).uniqueName("leg"), QString("leg"));
        LayerEdits(scene.document).duplicate({1});
        QCOMPARE(scene.names(), QString("arm arm 2 arm 3 arm 4"));
    }

    void namesWithPercentSignsStayThemselves() {
        Scene scene({"50%1 %2"});
        QCOMPARE(LayerEdits(scene.document).uniqueName("50%1 %2"), QString("50%1 %2 2"));
    }

    void removingLayersIsOneEntry() {
        Scene scene;
        scene.add(0, {1, 2});
        scene.add(2, {5});
        checkEdit(scene, [&scene] { LayerEdits(scene.document).remove({0, 2}); });
        QCOMPARE(scene.names(), QString("leg"));
        checkEdit(scene, [&scene] { LayerEdits(scene.document).remove({0}); });
        QCOMPARE(scene.names(), QString());
    }

    void layersMoveInFrontOfThePlace_data() {
        QTest::addColumn<QList<int>>("layers");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("names");
        QTest::newRow("down") << QList<int>{1} << 4 << "a c d b e f";
        QTest::newRow("up") << QList<int>{4} << 1 << "a e b c d f";
        QTest::newRow("to the end") << QList<int>{0} << 6 << "b c d e f a";
        QTest::newRow("to the beginning") << QList<int>{5} << 0 << "f a b c d e";
        QTest::newRow("two down") << QList<int>{1, 3} << 5 << "a c e b d f";
        QTest::newRow("two up") << QList<int>{3, 5} << 1 << "a d f b c e";
        QTest::newRow("from both sides") << QList<int>{1, 4} << 3 << "a c b e d f";
        QTest::newRow("a block by one") << QList<int>{1, 2} << 4 << "a d b c e f";
        QTest::newRow("all but one") << QList<int>{0, 1, 2, 3, 4} << 6 << "f a b c d e";
    }
    void layersMoveInFrontOfThePlace() {
        QFETCH(QList<int>, layers);
        QFETCH(int, index);
        QFETCH(QString, names);
        Scene scene({"a", "b", "c", "d", "e", "f"});
        const std::vector<int> rows(layers.begin(), layers.end());
        checkEdit(scene, [&] { LayerEdits(scene.document).move(rows, index); });
        QCOMPARE(scene.names(), names);
    }

    void whatIsInItsPlaceLeavesNoEntry() {
        Scene scene({"a", "b", "c", "d"});
        checkNothingHappens(scene, [&scene] {
            LayerEdits edits(scene.document);
            for (const int index : {1, 2, 3}) {
                edits.move({1, 2}, index);
            }
            edits.move({0}, 0);
            edits.move({3}, 4);
            edits.move({}, 2);
            edits.remove({});
            QCOMPARE(edits.duplicate({}), -1);
        });
    }

    void entriesSayHowManyLayersTheyChange() {
        Scene scene;
        LayerEdits edits(scene.document);
        const auto textAfter = [&](LayerEdits::Flag flag, bool isOn) {
            edits.set({0, 1, 2}, flag, isOn);
            return scene.history().undoText();
        };
        edits.set({1}, LayerEdits::Flag::visible, false);
        QCOMPARE(scene.history().undoText(), QString("Hide layer"));
        QCOMPARE(textAfter(LayerEdits::Flag::visible, false),
                 QString("Hide 2 layer(s)")); // One was so before.
        QCOMPARE(textAfter(LayerEdits::Flag::visible, true), QString("Show 3 layer(s)"));
        QCOMPARE(textAfter(LayerEdits::Flag::mute, true), QString("Mute 3 layer(s)"));
        QCOMPARE(textAfter(LayerEdits::Flag::mute, false), QString("Unmute 3 layer(s)"));
        QCOMPARE(textAfter(LayerEdits::Flag::locked, true), QString("Lock 3 layer(s)"));
        QCOMPARE(textAfter(LayerEdits::Flag::locked, false), QString("Unlock 3 layer(s)"));
        edits.duplicate({0, 2});
        QCOMPARE(scene.history().undoText(), QString("Duplicate 2 layer(s)"));
    }

    void severalLayersAreHiddenMutedOrLockedAsOneEntry_data() {
        QTest::addColumn<int>("flag");
        QTest::newRow("visible") << static_cast<int>(LayerEdits::Flag::visible);
        QTest::newRow("mute") << static_cast<int>(LayerEdits::Flag::mute);
        QTest::newRow("locked") << static_cast<int>(LayerEdits::Flag::locked);
    }
    void severalLayersAreHiddenMutedOrLockedAsOneEntry() {
        QFETCH(int, flag);
        const auto which = static_cast<LayerEdits::Flag>(flag);
        Scene scene;
        LayerEdits edits(scene.document);
        const bool before = edits.isSet(0, which);
        edits.set({1}, which, !before);
        checkEdit(scene, [&] { edits.set({0, 1, 2}, which, !before); });
        for (const int layer : {0, 1, 2}) {
            QCOMPARE(edits.isSet(layer, which), !before);
        }
        checkNothingHappens(scene, [&] { edits.set({0, 1, 2}, which, !before); });
        checkEdit(scene, [&] { edits.set({0, 2}, which, before); });
        QCOMPARE(edits.isSet(1, which), !before);
    }

    void anEditThatFailsHalfwayIsTakenBack() {
        Scene scene;
        scene.document.history().push(new QUndoCommand);
        scene.document.history().undo();
        const auto failing =
            QObject::connect(scene.document.layer(2), &ZT::EditableAnimationLayer::muteChanged,
                             [] { throw std::runtime_error("no room"); });
        checkNothingHappens(scene, [&scene] {
            QCOMPARE(problemOf([&scene] {
                         LayerEdits(scene.document).set({0, 1, 2}, LayerEdits::Flag::mute, true);
                     }),
                     QString("no room"));
        });
        QObject::disconnect(failing);
        QVERIFY(scene.history().canRedo());
        checkEdit(scene, [&scene] { LayerEdits(scene.document).set({0, 2}, LayerEdits::Flag::mute, true); });
    }

    void theKeysOfLayersAreSelectedButForLockedOnes() {
        Scene scene;
        const EditorScene::Keys arm = scene.add(0, {1, 2});
        scene.add(1, {3});
        const EditorScene::Keys head = scene.add(2, {4});
        scene.lock(1);
        LayerEdits(scene.document).selectKeys({0, 1, 2});
        QCOMPARE(scene.document.selection().keys(), arm + head);
        LayerEdits(scene.document).selectKeys({2});
        QCOMPARE(scene.document.selection().keys(), head);
        QCOMPARE(scene.history().count(), 0);
    }
};

QTEST_GUILESS_MAIN(LayerEditsTest)
#include "LayerEditsTest.moc"
