#include "document/EditorAttributes.h"

#include "document/Document.h"
#include "tests/editor/support/Scene.h"

#include <boost/property_tree/ptree.hpp>

using namespace EditorScene;
using Editor::AnimationData;
using Editor::LayerLook;
using Tree = boost::property_tree::ptree;

namespace {

Tree withAttribute(const QString& name, const QString& value) {
    Scene scene({"arm"});
    Tree tree = scene.document.tree();
    Tree& element = name.startsWith("layer ") ? tree.get_child("layer") : tree;
    element.put("<xmlattr>." + name.section(' ', -1).toStdString(), value.toStdString());
    return tree;
}

AnimationData read(const Tree& tree) {
    AnimationData data;
    Editor::readEditorAttributes(tree, data);
    return data;
}

} // namespace

class EditorAttributesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrittenIsRead();
    void aRangeThatIsNotShownIsNotWritten();
    void theLibraryReadsOnAsBefore();
    void aTreeWithoutAttributesNamesNothing();
    void whatMakesNoSenseIsLeftOut_data();
    void whatMakesNoSenseIsLeftOut();
    void aLayerThatIsLockedWithoutColourGetsAUsualOne();
};

void EditorAttributesTest::whatIsWrittenIsRead() {
    Scene scene;
    scene.document.setLook(0, {QColor(1, 2, 3), false, false});
    scene.document.setLook(1, {QColor(254, 255, 0), true, true});
    scene.document.setLook(2, {QColor(0, 0, 0), false, true});
    scene.markers().setStartIndex(3);
    scene.markers().setEndIndex(4294967295U);
    scene.markers().setSelectedIndex(0);
    scene.setRange(5, 8);
    const AnimationData data = read(scene.document.tree());
    QCOMPARE(data.looks.size(), std::size_t{3});
    for (int i = 0; i < 3; ++i) {
        QVERIFY(data.looks[static_cast<std::size_t>(i)] == scene.document.look(i));
    }
    QVERIFY(data.markers.has_value());
    QCOMPARE(data.markers->selected, 0U);
    QCOMPARE(data.markers->start, 3U);
    QCOMPARE(data.markers->end, 4294967295U);
    QCOMPARE(data.markers->rangeStart, 5U);
    QCOMPARE(data.markers->rangeEnd, 8U);
    QVERIFY(data.markers->isRangeVisible);
}

void EditorAttributesTest::aRangeThatIsNotShownIsNotWritten() {
    Scene scene;
    scene.setRange(5, 8);
    scene.markers().setRangeVisible(false);
    const AnimationData data = read(scene.document.tree());
    QVERIFY(!data.markers->isRangeVisible);
    QCOMPARE(data.markers->rangeStart, 1U);
}

void EditorAttributesTest::theLibraryReadsOnAsBefore() {
    Scene scene;
    scene.add(0, {5});
    scene.lock(0);
    scene.document.layer(1)->setMute(true);
    ZT::EditableAnimation animation;
    QVERIFY(animation.deserialize(scene.document.tree()));
    QVERIFY(animation.serialize() == scene.document.animation().serialize());
}

void EditorAttributesTest::aTreeWithoutAttributesNamesNothing() {
    Scene scene;
    const AnimationData data = read(scene.document.animation().serialize());
    QVERIFY(!data.markers);
    QCOMPARE(data.looks.size(), std::size_t{3});
    for (const auto& look : data.looks) {
        QVERIFY(!look);
    }
    QVERIFY(read(Tree()).looks.empty());
}

void EditorAttributesTest::whatMakesNoSenseIsLeftOut_data() {
    QTest::addColumn<QString>("attribute");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("hasLook");
    QTest::addColumn<bool>("hasMarkers");
    QTest::addColumn<bool>("hasRange");
    QTest::newRow("no colour") << "layer colour"
                               << "#12" << false << true << true;
    QTest::newRow("an empty colour") << "layer colour"
                                     << "" << false << true << true;
    QTest::newRow("an unknown flag") << "layer hidden"
                                     << "yes" << true << true << true;
    QTest::newRow("no frame") << "selectedFrame"
                              << "x" << true << false << false;
    QTest::newRow("a negative frame") << "startFrame"
                                      << "-1" << true << false << false;
    QTest::newRow("a huge frame") << "endFrame"
                                  << "4294967296" << true << false << false;
    QTest::newRow("a fraction") << "startFrame"
                                << "1.5" << true << false << false;
    QTest::newRow("start behind end") << "startFrame"
                                      << "101" << true << false << false;
    QTest::newRow("no range frame") << "rangeStart"
                                    << "x" << true << true << false;
    QTest::newRow("a reversed range") << "rangeStart"
                                      << "4000" << true << true << false;
}

void EditorAttributesTest::whatMakesNoSenseIsLeftOut() {
    QFETCH(QString, attribute);
    QFETCH(QString, value);
    QFETCH(bool, hasLook);
    QFETCH(bool, hasMarkers);
    QFETCH(bool, hasRange);
    Tree tree = withAttribute(attribute, value);
    if (attribute != "rangeStart") {
        tree.put("<xmlattr>.rangeStart", 2);
    }
    tree.put("<xmlattr>.rangeEnd", 3);
    const AnimationData data = read(tree);
    QCOMPARE(data.looks.at(0).has_value(), hasLook);
    QCOMPARE(data.markers.has_value(), hasMarkers);
    QCOMPARE(data.markers && data.markers->isRangeVisible, hasRange);
    if (hasLook) {
        QVERIFY(data.looks[0]->isVisible);
    }
}

void EditorAttributesTest::aLayerThatIsLockedWithoutColourGetsAUsualOne() {
    Scene scene;
    auto tree = scene.document.animation().serialize();
    int i = 0;
    for (auto& [name, element] : tree) {
        if (name == "layer" && ++i == 2) {
            element.put("<xmlattr>.locked", "true");
        }
    }
    const AnimationData data = read(tree);
    QVERIFY(!data.looks[0] && data.looks[1] && !data.looks[2]);
    QVERIFY(*data.looks[1] == (LayerLook{Editor::Document::colourAt(1), true, true}));
}

QTEST_GUILESS_MAIN(EditorAttributesTest)
#include "EditorAttributesTest.moc"
