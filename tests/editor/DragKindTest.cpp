#include "document/DragKind.h"

#include "document/RangeDrags.h"
#include "tests/editor/support/Scene.h"

#include <QUndoCommand>

#include <limits>
#include <memory>

using namespace EditorScene;
using Editor::DragKind;
using ZT::AnimCmd::StretchSide;

class DragKindTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noKindHasAStepWhereItBegan();
    void eachKindNamesItsEntry();
    void makingAStepChangesNothing();
    void distancesAreRoundedToWholeFrames();
    void aPlaceThatIsReachedIsReachedAgain();
    void keysInNoCurveAreLeftOut();
    void theProblemNamesTheFrameAndTheLayer();
    void aHandleThatIsNotFiniteIsGrabbedAtItsKey();

private:
    static std::vector<std::unique_ptr<DragKind>> allKinds(Scene& scene);
};

std::vector<std::unique_ptr<DragKind>> DragKindTest::allKinds(Scene& scene) {
    Key* const key = scene.key(0, 10);
    std::vector<std::unique_ptr<DragKind>> kinds;
    kinds.push_back(Editor::dragKeys({key}));
    kinds.push_back(Editor::dragHandles({key}, *key, Side::right));
    kinds.push_back(Editor::dragRange(scene.document));
    kinds.push_back(Editor::dragRangeEnd(scene.document, StretchSide::start));
    kinds.push_back(Editor::dragRangeEnd(scene.document, StretchSide::end));
    kinds.push_back(Editor::dragNewRange(scene.document, 3));
    return kinds;
}

void DragKindTest::noKindHasAStepWhereItBegan() {
    Scene scene;
    scene.add(0, 10, bezier(0, {-1, 0}, {1, 0}));
    scene.setRange(8, 12);
    for (const auto& kind : allKinds(scene)) {
        QVERIFY(kind->step({0, 0}) == nullptr);
        QVERIFY(kind->step({-0.0, 0}) == nullptr);
        QVERIFY(kind->step({1, 0}) != nullptr);
    }
}

void DragKindTest::eachKindNamesItsEntry() {
    Scene scene;
    Key* const key = scene.add(0, 10, bezier(0, {-1, 0}, {1, 0}));
    Key* const other = scene.add(1, 10, bezier(0, {-1, 0}, {1, 0}));
    Key* const linear = scene.add(2, 10, record(0));
    scene.setRange(8, 12);
    QStringList texts;
    for (const auto& kind : allKinds(scene)) {
        texts.append(kind->text());
    }
    QCOMPARE(texts, (QStringList{"Move 1 key(s)", "Move 1 handle(s)", "Move range", "Stretch range",
                                 "Stretch range", "Make range"}));
    Key loose;
    QCOMPARE(Editor::dragKeys({key, other, linear, &loose})->text(), QString("Move 3 key(s)"));
    QCOMPARE(Editor::dragHandles({key, other, linear}, *key, Side::right)->text(),
             QString("Move 2 handle(s)"));
}

void DragKindTest::makingAStepChangesNothing() {
    Scene scene;
    scene.add(0, 10, bezier(0, {-1, 0}, {1, 0}));
    scene.setRange(8, 12);
    for (const auto& kind : allKinds(scene)) {
        checkNothingHappens(scene, [&] { kind->step({1, 2}).reset(); });
    }
}

void DragKindTest::distancesAreRoundedToWholeFrames() {
    Scene scene;
    scene.add(0, 10, bezier(0, {-1, 0}, {1, 0}));
    scene.setRange(10, 10);
    for (const double distance : {1.5, 2.0, 2.49}) {
        const auto kind = Editor::dragKeys({scene.key(0, 10)});
        const auto command = kind->step({distance, 0});
        command->redo();
        QCOMPARE(scene.frames(), QString("12"));
        command->undo();
        QVERIFY(kind->step({0.49, 0}) == nullptr);
        const auto range = Editor::dragRange(scene.document);
        const auto move = range->step({distance, 0});
        move->redo();
        QCOMPARE(scene.range(), QString("12-12"));
        move->undo();
    }
}

void DragKindTest::aPlaceThatIsReachedIsReachedAgain() {
    Scene scene;
    scene.add(0, 10, bezier(0, {-1, 0}, {1, 0}));
    scene.setRange(8, 12);
    for (const auto& kind : allKinds(scene)) {
        for (const double frames : {-1e300, -7.6, -0.4, 0.0, 0.4, 3.2, 1e300}) {
            const QPointF reached = kind->reach({frames, 0});
            const QPointF again = kind->reach(reached);
            QVERIFY(again.x() == reached.x() && again.y() == reached.y());
            QCOMPARE(kind->step(reached) == nullptr, kind->step({frames, 0}) == nullptr);
        }
        QCOMPARE(kind->reach({0, 0}), QPointF(0, 0));
    }
    QCOMPARE(Editor::dragKeys({scene.key(0, 10)})->reach({-12.4, 3}), QPointF(-10, 3));
    QCOMPARE(Editor::dragRange(scene.document)->reach({-12.4, 3}), QPointF(-8, 0));
    QCOMPARE(Editor::dragRangeEnd(scene.document, StretchSide::start)->reach({9, 3}), QPointF(4, 0));
    QCOMPARE(Editor::dragRangeEnd(scene.document, StretchSide::end)->reach({2.6, 3}), QPointF(3, 0));
    QCOMPARE(Editor::dragNewRange(scene.document, 3)->reach({-4, 3}), QPointF(-3, 0));
}

void DragKindTest::keysInNoCurveAreLeftOut() {
    Scene scene;
    Key loose;
    QVERIFY(Editor::dragKeys({&loose})->step({3, 3}) == nullptr);
    const auto kind = Editor::dragKeys({&loose, scene.add(0, 10)});
    const auto command = kind->step({3, 3});
    command->redo();
    QCOMPARE(scene.frames(), QString("13"));
    QCOMPARE(loose.getValue(), 0.0F);
    QCOMPARE(kind->problem(*command), QString());
}

void DragKindTest::theProblemNamesTheFrameAndTheLayer() {
    Scene scene({"%1 of %2"});
    Key* const key = scene.add(0, 10);
    scene.add(0, 12);
    const auto kind = Editor::dragKeys({key});
    const auto command = kind->step({2, 0});
    command->redo();
    QCOMPARE(kind->problem(*command), QString("Frame 12 of %1 of %2 is taken by a key that is not dragged."));
}

void DragKindTest::aHandleThatIsNotFiniteIsGrabbedAtItsKey() {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    Scene scene;
    for (const float x : {infinity, -infinity, std::numeric_limits<float>::quiet_NaN()}) {
        Key* const key = scene.add(0, 10, bezier(0, {-1, 0}, {x, 1}));
        const auto command = Editor::dragHandles({key}, *key, Side::right)->step({2, 3});
        command->redo();
        QVERIFY(key->getTangentOffset(Side::right) == qMakePair(2.0F, 3.0F));
        command->undo();
    }
    Key* const key = scene.add(0, 20, bezier(0, {-1, 0}, {1, 1}));
    const auto command = Editor::dragHandles({key}, *key, Side::left)->step({-1e300, 1e300});
    command->redo();
    constexpr float largest = std::numeric_limits<float>::max();
    QVERIFY(key->getTangentOffset(Side::left) == qMakePair(-largest, largest));
}

QTEST_GUILESS_MAIN(DragKindTest)
#include "DragKindTest.moc"
