// Plain keys have no end that a test could watch: the memory that is in use says whether they were freed.
#include "Damages.h"
#include "base/animation/Animation.h"
#include "base/animation/KeyFunctions.h"

#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

long blocksInUse = 0;

} // namespace

void* operator new(std::size_t size) {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++blocksInUse;
    return block;
}

void operator delete(void* block) noexcept {
    blocksInUse -= block != nullptr ? 1 : 0;
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    operator delete(block);
}

namespace {

using Records::Key;
using Records::MotionCurve;
using Records::Tree;
using VQ::Animation::Animation;
using VQ::Animation::AnimationLayer;

void fill(MotionCurve& curve) {
    for (const unsigned int frame : {1U, 2U, 3U}) {
        curve.insert(frame, new Key);
    }
}

/// The blocks that an action leaves in use. It runs twice: what is made once and kept does not count.
long leftBy(const std::function<void()>& action) {
    action();
    const long before = blocksInUse;
    action();
    return blocksInUse - before;
}

} // namespace

class KeyMemoryTest : public QObject {
    Q_OBJECT

private slots:
    void whatIsNotFreedIsCounted() {
        std::vector<std::unique_ptr<Key>> keys;
        keys.reserve(2);
        QCOMPARE(leftBy([&] { keys.push_back(std::make_unique<Key>()); }), 1L);
        QCOMPARE(leftBy([] { delete new Key; }), 0L);
    }

    void destroyingAPlainKeyFreesIt() {
        QCOMPARE(leftBy([] { VQ::Animation::KeyFunctions::plain.destroy(new Key); }), 0L);
    }

    void aCurveFreesItsKeys() {
        QCOMPARE(leftBy([] {
                     MotionCurve curve;
                     fill(curve);
                     curve.erase(curve.begin());
                     curve.clear();
                     fill(curve);
                 }),
                 0L);
    }

    void copiesAndMovesFreeTheirKeys() {
        QCOMPARE(leftBy([] {
                     MotionCurve curve;
                     fill(curve);
                     MotionCurve copy(curve);
                     MotionCurve moved(std::move(copy));
                     curve = moved;
                 }),
                 0L);
    }

    void readingFreesWhatWasThereAndWhatItGivesUp() {
        MotionCurve source;
        fill(source);
        const Tree good = source.serialize();
        Tree bad = good;
        bad.back().second.get_child("<xmlattr>").clear();
        QCOMPARE(leftBy([&] {
                     MotionCurve curve;
                     fill(curve);
                     if (!curve.deserialize(good) || curve.deserialize(bad) ||
                         MotionCurve::problemIn(bad).empty()) {
                         throw std::logic_error("the trees are not what they should be");
                     }
                 }),
                 0L);
    }

    void anAnimationFreesItsLayers() {
        QCOMPARE(leftBy([] {
                     Animation animation;
                     for (int i = 0; i < 3; ++i) {
                         auto* const layer = new AnimationLayer;
                         fill(*layer->curve);
                         animation.push_back(layer);
                     }
                     animation.erase(animation.begin());
                     const Animation copy(animation);
                     Animation read;
                     if (!read.deserialize(copy.serialize())) {
                         throw std::logic_error("what was written cannot be read");
                     }
                 }),
                 0L);
    }
};

QTEST_APPLESS_MAIN(KeyMemoryTest)
#include "KeyMemoryTest.moc"
