#include "base/animation/Animation.h"
#include "base/animation/AnimationXml.h"
#include "tests/faults/FailEachAllocation.h"
#include "tests/faults/FaultScene.h"
#include "tests/support/Snapshot.h"

#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <memory>
#include <sstream>
#include <stdexcept>

namespace {

using Tree = boost::property_tree::ptree;

/// Fails each allocation of an action that builds something new, which has no state to check. Returns how
/// many failed.
std::size_t failEachAllocationOf(const std::function<void()>& action) {
    return failEachAllocation([&](std::size_t n) { return runFailing(n, action); });
}

VQ::Animation::Animation plainAnimation() {
    const FaultScene scene;
    return scene.animation().baseAnimation();
}

} // namespace

/// Memory runs out while something is built, read or written.
class BuildingWithoutMemoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatCannotBeBuiltLeavesNothingBehind();
    void aFailedReadLeavesThePlainAnimationUnchanged();
    void aFailedReadLeavesTheEditableAnimationUnchanged();
    void aFailedReadLeavesTheEditableCurveUnchanged();
    void aLayerThatCannotTakeACurveLeavesItToTheCaller();
    void writingWithoutMemoryLeavesNothingBehind();
};

void BuildingWithoutMemoryTest::whatCannotBeBuiltLeavesNothingBehind() {
    const VQ::Animation::Animation animation = plainAnimation();
    QVERIFY(failEachAllocationOf([&] { const VQ::Animation::Animation copy(animation); }) > 20);
    QVERIFY(failEachAllocationOf([&] { const ZT::EditableAnimation editable(animation); }) > 20);
    const FaultScene scene;
    QVERIFY(failEachAllocationOf(
                [&] { const std::unique_ptr<ZT::EditableMotionCurveKey> clone(scene.key(0)->clone()); }) > 1);
}

void BuildingWithoutMemoryTest::aFailedReadLeavesThePlainAnimationUnchanged() {
    const Tree tree = plainAnimation().serialize();
    VQ::Animation::Animation animation;
    animation.push_back(new VQ::Animation::AnimationLayer);
    const Tree before = animation.serialize();
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        const bool hasFailed = runFailing(n, [&] { QVERIFY(animation.deserialize(tree)); });
        [&] { QVERIFY(animation.serialize() == (hasFailed ? before : tree)); }();
        return hasFailed;
    });
    QVERIFY(failures > 20);
}

void BuildingWithoutMemoryTest::aFailedReadLeavesTheEditableAnimationUnchanged() {
    const Tree tree = plainAnimation().serialize();
    ZT::EditableAnimation animation;
    animation.push_back(new ZT::EditableAnimationLayer);
    const QString before = Snapshot::of(animation);
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        const bool hasFailed = runFailing(n, [&] { QVERIFY(animation.deserialize(tree)); });
        const QString state = Snapshot::of(animation);
        [&] { QCOMPARE(state == before, hasFailed); }();
        return hasFailed;
    });
    QVERIFY(failures > 20);
    QVERIFY(animation.serialize() == tree);
}

void BuildingWithoutMemoryTest::aFailedReadLeavesTheEditableCurveUnchanged() {
    const FaultScene scene;
    const Tree tree = scene.curve(1).serialize();
    const QString before = scene.state();
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        const bool hasFailed = runFailing(n, [&] { QVERIFY(scene.curve().deserialize(tree)); });
        const QString state = hasFailed ? scene.state() : QString();
        [&] { QCOMPARE(state, hasFailed ? before : QString()); }();
        return hasFailed;
    });
    QVERIFY(failures > 10);
    QVERIFY(scene.curve().serialize() == tree);
}

void BuildingWithoutMemoryTest::aLayerThatCannotTakeACurveLeavesItToTheCaller() {
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        ZT::EditableAnimationLayer layer;
        ZT::EditableMotionCurve* const before = layer.getCurve();
        auto curve = std::make_unique<ZT::EditableMotionCurve>();
        const bool hasFailed = runFailing(n, [&] { layer.setCurve(curve.get()); });
        [&] { QCOMPARE(layer.getCurve(), hasFailed ? before : curve.get()); }();
        [&] { QVERIFY(!hasFailed || curve->getParentLayer() == nullptr); }();
        if (!hasFailed) {
            static_cast<void>(curve.release()); // The layer's.
        }
        return hasFailed;
    });
    QVERIFY(failures > 0);
}

void BuildingWithoutMemoryTest::writingWithoutMemoryLeavesNothingBehind() {
    const FaultScene scene;
    QVERIFY(failEachAllocationOf([&] { scene.animation().serialize(); }) > 20);
    QVERIFY(failEachAllocationOf([&] { scene.animation().baseAnimation(); }) > 20);
    const auto tree = scene.animation().serialize();
    std::ostringstream whole;
    VQ::Animation::writeAnimationXml(whole, tree);
    const std::size_t failures = failEachAllocation([&](std::size_t n) {
        std::ostringstream stream;
        bool isWritten = false;
        const bool hasFailed = runFailing(n, [&] {
            try {
                VQ::Animation::writeAnimationXml(stream, tree);
                isWritten = true;
            } catch (const std::runtime_error&) {
                // The stream itself ran out of memory, which streams do not throw.
                QVERIFY(stream.bad());
            }
        });
        [&] { QVERIFY(isWritten ? stream.str() == whole.str() : hasFailed); }();
        return hasFailed;
    });
    QVERIFY(failures > 5);
}

QTEST_GUILESS_MAIN(BuildingWithoutMemoryTest)
#include "BuildingWithoutMemoryTest.moc"
