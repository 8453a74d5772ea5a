#include "document/Document.h"

#include "document/KeyEdits.h"
#include "document/LayerCommands.h"
#include "tests/editor/support/Scene.h"

#include <QPointer>
#include <QSignalSpy>

#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <cstdlib>
#include <tuple>

using namespace EditorScene;
using Editor::AnimationData;
using Editor::Document;
using Editor::LayerLook;

class DocumentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewDocumentIsEmptyAndUnmodified();
    void replacingForgetsWhatWas();
    void replacingTakesLooksAndMarkersThatTheFileNames();
    void replacingGivesTheRestUsualOnes();
    void theSpanThatPlaysHoldsAllKeys_data();
    void theSpanThatPlaysHoldsAllKeys();
    void replacingAnnouncesItself();
    void editsMakeItModifiedAndSavingDoesNot();
    void unsavedWorkStaysUnsavedUntilItIsSaved();
    void startAndEndMarkersAreWorkAndTheCurrentFrameIsNot();
    void theTreeHoldsWhatOnlyTheEditorKnows();
    void layersComeAndGoWithTheirLooks();
    void layersMoveWithTheirLooks();
    void aLayerThatIsTakenAwayIsSelectedNoMore();
    void lockedAndHiddenLayersCannotBeEdited();
    void everyEditIsAnnounced();
    void layersThatCameLaterAreAnnouncedToo();
    void theRateIsThatOfTheFirstLayer();
    void neighbouringColoursDiffer();
    void layersAreFoundByPlaceAndPlaceByLayer();
    void theHistoryDiesBeforeTheAnimation();
};

void DocumentTest::aNewDocumentIsEmptyAndUnmodified() {
    Document document;
    QCOMPARE(document.layerCount(), 0);
    QVERIFY(!document.isModified());
    QCOMPARE(document.path(), QString());
    QVERIFY(document.layer(0) == nullptr);
    QVERIFY(document.layer(-1) == nullptr);
    QVERIFY(!document.isEditable(nullptr));
    QCOMPARE(document.framesPerSecond(), 25.0);
}

void DocumentTest::replacingForgetsWhatWas() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    scene.document.selection().set(keys);
    Editor::KeyEdits(scene.document).setValue(keys, 7.0F);
    scene.document.setUnsaved();
    scene.document.replace(animationOf({"one", "two"}), "two.xml");
    QCOMPARE(scene.document.layerCount(), 2);
    QCOMPARE(scene.document.path(), QString("two.xml"));
    QCOMPARE(scene.history().count(), 0);
    QVERIFY(scene.document.selection().isEmpty());
    QVERIFY(!scene.document.isModified());
}

void DocumentTest::replacingTakesLooksAndMarkersThatTheFileNames() {
    AnimationData data = animationOf({"one", "two", "three"});
    const LayerLook look{QColor(1, 2, 3), false, true};
    data.looks = {std::nullopt, look};
    data.markers = Editor::MarkerFrames{7, 3, 9, 4, 5, true};
    Document document;
    document.replace(std::move(data), QString());
    QVERIFY(document.look(1) == look);
    QVERIFY(document.look(0) == LayerLook{Document::colourAt(0)});
    QVERIFY(document.look(2) == LayerLook{Document::colourAt(2)});
    QCOMPARE(Snapshot::of(document.markers()), QString("markers 7 [3, 9] range [4, 5] 1"));
}

void DocumentTest::replacingGivesTheRestUsualOnes() {
    AnimationData data = animationOf({"one"});
    (*data.animation)[0]->getCurve()->insert(42, new Key);
    Document document;
    document.replace(std::move(data), QString());
    QCOMPARE(Snapshot::of(document.markers()), QString("markers 1 [1, 42] range [1, 1] 0"));
}

void DocumentTest::theSpanThatPlaysHoldsAllKeys_data() {
    QTest::addColumn<QList<int>>("frames");
    QTest::addColumn<QString>("markers");
    QTest::newRow("from frame 0") << QList<int>{0, 42} << "markers 0 [0, 42] range [1, 1] 0";
    QTest::newRow("from a later one") << QList<int>{7, 42} << "markers 1 [1, 42] range [1, 1] 0";
    QTest::newRow("a single key") << QList<int>{1} << "markers 1 [1, 100] range [1, 1] 0";
    QTest::newRow("a pose at frame 0") << QList<int>{0} << "markers 0 [0, 100] range [1, 1] 0";
    QTest::newRow("no key, room for a first gesture") << QList<int>() << "markers 1 [1, 100] range [1, 1] 0";
}

void DocumentTest::theSpanThatPlaysHoldsAllKeys() {
    QFETCH(const QList<int>, frames);
    QFETCH(const QString, markers);
    AnimationData data = animationOf({"one", "two"});
    for (const int frame : frames) {
        (*data.animation)[1]->getCurve()->insert(static_cast<unsigned int>(frame), new Key);
    }
    Document document;
    QCOMPARE(Snapshot::of(document.markers()), QString("markers 1 [1, 100] range [1, 1] 0"));
    document.replace(std::move(data), QString());
    QCOMPARE(Snapshot::of(document.markers()), markers);
}

void DocumentTest::replacingAnnouncesItself() {
    Document document;
    QStringList log;
    connect(&document, &Document::replaced, this,
            [&] { log.append(QString::number(document.layerCount())); });
    connect(&document, &Document::pathChanged, this, [&] { log.append(document.path()); });
    document.replace(animationOf({"one"}), "one.xml");
    QCOMPARE(log, (QStringList{"1", "one.xml"}));
}

void DocumentTest::editsMakeItModifiedAndSavingDoesNot() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    const QSignalSpy changes(&scene.document, &Document::pathChanged);
    Editor::KeyEdits(scene.document).setValue(keys, 7.0F);
    QVERIFY(scene.document.isModified());
    QCOMPARE(changes.count(), 1);
    Editor::KeyEdits(scene.document).setValue(keys, 8.0F);
    QCOMPARE(changes.count(), 1);
    scene.document.setSaved("saved.xml");
    QVERIFY(!scene.document.isModified());
    QCOMPARE(scene.document.path(), QString("saved.xml"));
    QVERIFY(changes.count() > 1);
    scene.history().undo();
    QVERIFY(scene.document.isModified());
    scene.history().redo();
    QVERIFY(!scene.document.isModified());
}

void DocumentTest::unsavedWorkStaysUnsavedUntilItIsSaved() {
    Document document;
    const QSignalSpy changes(&document, &Document::pathChanged);
    document.setUnsaved();
    document.setUnsaved();
    QCOMPARE(changes.count(), 1);
    QVERIFY(document.isModified());
    document.setSaved("a.xml");
    QVERIFY(!document.isModified());
}

void DocumentTest::startAndEndMarkersAreWorkAndTheCurrentFrameIsNot() {
    Scene scene;
    const QSignalSpy changes(&scene.document, &Document::pathChanged);
    const QSignalSpy spans(&scene.document, &Document::spanChanged);
    scene.markers().setSelectedIndex(12);
    QVERIFY(!scene.document.isModified());
    QCOMPARE(spans.count(), 0);
    scene.markers().setEndIndex(70);
    QVERIFY(scene.document.isModified());
    scene.markers().setStartIndex(3);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(spans.count(), 2);
    scene.markers().setStartIndex(1);
    scene.markers().setEndIndex(100); // As a gesture that is taken back leaves them.
    QVERIFY(!scene.document.isModified());
    QCOMPARE(changes.count(), 2);
    scene.markers().setEndIndex(70);
    scene.document.setSaved("a.xml");
    QVERIFY(!scene.document.isModified());
    scene.markers().setEndIndex(1);
    QVERIFY(scene.document.isModified());
    scene.document.replace(animationOf({"one"}), "b.xml");
    QVERIFY(!scene.document.isModified());
    scene.markers().setStartIndex(2);
    QVERIFY(scene.document.isModified());
}

void DocumentTest::theTreeHoldsWhatOnlyTheEditorKnows() {
    Scene scene({"arm"});
    scene.add(0, {5});
    scene.document.setLook(0, {QColor(16, 32, 48), true, true});
    scene.markers().setSelectedIndex(12);
    const auto tree = scene.document.tree();
    QCOMPARE(tree.get<std::string>("layer.<xmlattr>.colour"), std::string("#102030"));
    QCOMPARE(tree.get<std::string>("layer.<xmlattr>.locked"), std::string("true"));
    QCOMPARE(tree.get<std::string>("layer.<xmlattr>.name"), std::string("arm"));
    QCOMPARE(tree.get<std::string>("<xmlattr>.selectedFrame"), std::string("12"));
    ZT::EditableAnimation animation; // What the library knows is not disturbed.
    QVERIFY(animation.deserialize(tree));
    QVERIFY(animation.serialize() == scene.document.animation().serialize());
}

void DocumentTest::layersComeAndGoWithTheirLooks() {
    Scene scene;
    QStringList log;
    const auto note = [&](const char* what) {
        return [&log, &scene, what](int i) {
            log.append(QString("%1 %2 of %3").arg(what).arg(i).arg(scene.document.layerCount()));
        };
    };
    connect(&scene.document, &Document::layerAboutToBeInserted, this, note("inserting"));
    connect(&scene.document, &Document::layerInserted, this, note("inserted"));
    connect(&scene.document, &Document::layerAboutToBeRemoved, this, note("removing"));
    connect(&scene.document, &Document::layerRemoved, this, note("removed"));
    const QSignalSpy changes(&scene.document, &Document::changed);
    const LayerLook look{QColor(9, 9, 9), false, true};
    auto layer = std::make_unique<ZT::EditableAnimationLayer>();
    ZT::EditableAnimationLayer* const added = layer.get();
    scene.document.insertLayer(1, std::move(layer), look);
    QCOMPARE(scene.document.layer(1), added);
    QVERIFY(scene.document.look(1) == look);
    QVERIFY(scene.document.look(2) == LayerLook{Document::colourAt(1)});
    QCOMPARE(added->getParentAnimation(), &scene.document.animation());
    QCOMPARE(changes.count(), 1);

    std::unique_ptr<ZT::EditableAnimationLayer> taken;
    LayerLook itsLook;
    scene.document.takeLayer(1, taken, itsLook);
    QCOMPARE(taken.get(), added);
    QVERIFY(itsLook == look);
    QVERIFY(added->getParentAnimation() == nullptr);
    QVERIFY(scene.document.look(1) == LayerLook{Document::colourAt(1)});
    QCOMPARE(log, (QStringList{"inserting 1 of 3", "inserted 1 of 4", "removing 1 of 4", "removed 1 of 3"}));
    QCOMPARE(changes.count(), 2);
}

void DocumentTest::layersMoveWithTheirLooks() {
    for (const auto& [from, to, order] :
         {std::make_tuple(0, 2, "bca"), std::make_tuple(2, 0, "cab"), std::make_tuple(1, 2, "acb")}) {
        Scene scene({"a", "b", "c"});
        for (int i = 0; i < 3; ++i) {
            scene.document.setLook(i, {QColor(i, i, i)});
        }
        const QSignalSpy moving(&scene.document, &Document::layerAboutToBeMoved);
        const QSignalSpy moved(&scene.document, &Document::layerMoved);
        scene.document.moveLayer(from, to);
        QString names;
        for (int i = 0; i < 3; ++i) {
            const QString name = scene.document.layer(i)->getActuatorName();
            names += name;
            QCOMPARE(scene.document.look(i).colour.red(), name[0].unicode() - 'a');
        }
        QCOMPARE(names, QString(order));
        QCOMPARE(moving.count(), 1);
        QCOMPARE(moved.count(), 1);
        QCOMPARE(moved.first(), (QList<QVariant>{from, to}));
        scene.document.moveLayer(1, 1);
        QCOMPARE(moved.count(), 1);
    }
}

void DocumentTest::aLayerThatIsTakenAwayIsSelectedNoMore() {
    Scene scene;
    const Keys rest = scene.add(1, {5});
    scene.document.selection().set(scene.add(0, {5, 6}) + rest);
    std::unique_ptr<ZT::EditableAnimationLayer> taken;
    LayerLook look;
    scene.document.takeLayer(0, taken, look);
    QCOMPARE(scene.document.selection().keys(), rest);
}

void DocumentTest::lockedAndHiddenLayersCannotBeEdited() {
    Scene scene;
    scene.document.selection().set(scene.add(0, {5}) + scene.add(1, {5}) + scene.add(2, {5}));
    scene.lock(0);
    scene.hide(2);
    QVERIFY(!scene.document.isEditable(&scene.curve(0)));
    QVERIFY(scene.document.isEditable(&scene.curve(1)));
    QVERIFY(!scene.document.isEditable(&scene.curve(2)));
    QCOMPARE(scene.document.selection().keys(), Keys{scene.key(1, 5)});
    const Curve loose;
    QVERIFY(!scene.document.isEditable(&loose));
}

void DocumentTest::everyEditIsAnnounced() {
    Scene scene;
    const Keys keys = scene.add(0, {5, 6});
    const QSignalSpy changes(&scene.document, &Document::changed);
    const auto isAnnounced = [&](auto edit) {
        const auto before = changes.count();
        edit();
        return changes.count() > before;
    };
    Editor::KeyEdits edits(scene.document);
    QVERIFY(isAnnounced([&] { edits.setValue(keys, 1.5F); }));
    QVERIFY(isAnnounced([&] { edits.setType(keys, Type::bezier); }));
    QVERIFY(isAnnounced([&] { edits.setSmooth(keys, true); }));
    QVERIFY(isAnnounced([&] { edits.setSymmetrical(keys, true); }));
    QVERIFY(isAnnounced([&] { edits.setHandle(keys, Side::left, {-5, 1}); }));
    QVERIFY(isAnnounced([&] { edits.insert(scene.curve(), 100); }));
    QVERIFY(isAnnounced([&] { edits.remove({scene.key(0, 100)}); }));
    QVERIFY(isAnnounced([&] { scene.document.layer(0)->setActuatorName("x"); }));
    QVERIFY(isAnnounced([&] { scene.document.layer(0)->setMute(true); }));
    QVERIFY(isAnnounced([&] { scene.lock(0); }));
    QVERIFY(!isAnnounced([&] { scene.lock(0); }));
}

void DocumentTest::layersThatCameLaterAreAnnouncedToo() {
    Scene scene;
    auto layer = std::make_unique<ZT::EditableAnimationLayer>();
    layer->getCurve()->insert(5, new Key);
    scene.history().push(
        new Editor::AddLayerCommand(scene.document, 0, std::move(layer), LayerLook(), "Add layer"));
    scene.history().undo();
    scene.history().redo();
    scene.document.moveLayer(0, 2);
    const QSignalSpy changes(&scene.document, &Document::changed);
    scene.key(2, 5)->setValue(3.0F);
    QCOMPARE(changes.count(), 1);
    scene.document.layer(2)->setMute(true);
    QCOMPARE(changes.count(), 2);
    scene.document.selection().set({scene.key(2, 5)});
    scene.curve(2).remove(5U);
    QVERIFY(scene.document.selection().isEmpty());
}

void DocumentTest::theRateIsThatOfTheFirstLayer() {
    VQ::Animation::Animation plain;
    auto* const layer = new VQ::Animation::AnimationLayer;
    layer->curve->setTimeUnit(VQ::Animation::RationalSeconds(boost::rational<int>(1001, 30000)));
    plain.push_back(layer);
    AnimationData data;
    data.animation = std::make_unique<ZT::EditableAnimation>(plain);
    Document document;
    document.replace(std::move(data), QString());
    QCOMPARE(document.framesPerSecond(), 30000.0 / 1001.0);
}

void DocumentTest::neighbouringColoursDiffer() {
    for (int i = 0; i < 500; ++i) {
        const QColor here = Document::colourAt(i);
        const QColor next = Document::colourAt(i + 1);
        QVERIFY(here.isValid());
        const int hues = std::abs(here.hslHue() - next.hslHue());
        QVERIFY(std::min(hues, 360 - hues) >= 60);
        QVERIFY(std::abs(here.lightness() - next.lightness()) >= 30);
    }
}

void DocumentTest::layersAreFoundByPlaceAndPlaceByLayer() {
    Scene scene;
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(scene.document.indexOf(scene.document.layer(i)), i);
    }
    QCOMPARE(scene.document.indexOf(nullptr), -1);
    QVERIFY(scene.document.layer(3) == nullptr);
    QVERIFY(scene.document.layer(-1) == nullptr);
}

// Commands own keys and layers that are out of the animation, whichever way they went out.
void DocumentTest::theHistoryDiesBeforeTheAnimation() {
    QPointer<ZT::EditableMotionCurveKey> removed;
    QPointer<ZT::EditableAnimationLayer> taken;
    QPointer<ZT::EditableAnimationLayer> added;
    {
        Scene scene;
        const Keys keys = scene.add(0, {5, 6});
        removed = scene.key(0, 5);
        taken = scene.document.layer(0);
        Editor::KeyEdits(scene.document).remove({scene.key(0, 5)});
        scene.history().push(new Editor::RemoveLayerCommand(scene.document, 0));
        auto layer = std::make_unique<ZT::EditableAnimationLayer>();
        added = layer.get();
        scene.history().push(
            new Editor::AddLayerCommand(scene.document, 0, std::move(layer), LayerLook(), "Add layer"));
        Editor::KeyEdits(scene.document).insert(*added->getCurve(), 3);
        scene.history().undo();
        scene.history().undo();
        QVERIFY(removed && taken && added);
    }
    QVERIFY(!removed && !taken && !added);
}

QTEST_GUILESS_MAIN(DocumentTest)
#include "DocumentTest.moc"
