#include "commands/StretchRangeCommand.h"
#include "CommandHarness.h"

#include <rapidcheck.h>

#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <type_traits>

namespace {

using namespace Harness;
using ZT::AnimCmd::StretchSide;
using Stretch = ZT::AnimCmd::StretchRangeCommand;

static_assert(std::is_same_v<std::underlying_type_t<StretchSide>, int>);
static_assert(static_cast<int>(StretchSide::end) == 0 && static_cast<int>(StretchSide::start) == 1);

constexpr unsigned int last = 4294967295U;

/// Neither of the two sides.
constexpr auto otherSide = static_cast<StretchSide>(2);

/// One curve's keys, all at their given frames, and one stretch.
struct Stretched {
    Stretched(std::initializer_list<unsigned int> given, unsigned int start, unsigned int end,
              unsigned int newValue, StretchSide side)
        : keys(scene.add(given)) {
        scene.setRange(start, end);
        auto* const command =
            new Stretch(&scene.markers(), whereTheyStand(keys), start, end, newValue, false, side);
        text = command->text();
        signalsSeen = walk(scene, command);
        scene.stack->redo();
    }
    QString result() const { return framesOf(keys) + " in " + scene.range(); }

    Scene scene;
    Keys keys;
    QString text;
    Walk signalsSeen;
};

/// What a stretch makes of keys that stand at their given frames in one curve, step by step.
struct Model {
    std::map<unsigned int, unsigned int> targets;
    unsigned int start;
    unsigned int end;

    Model(const std::set<unsigned int>& frames, unsigned int oldStart, unsigned int oldEnd,
          unsigned int newStart, unsigned int newEnd, bool startSide)
        : start(newStart)
        , end(newEnd) {
        unsigned int count = 0;
        for (const unsigned int frame : frames) {
            count += frame >= oldStart && frame <= oldEnd ? 1U : 0U;
        }
        if (end - start < count - 1U) {
            if (startSide && end <= count) {
                return;
            }
            startSide ? start = end - count + 1U : end = start + count - 1U;
        }
        std::set<unsigned int> used;
        unsigned int n = 0;
        for (const unsigned int frame : frames) {
            if (frame > oldEnd) {
                targets[frame] = frame - oldEnd + end;
            } else if (frame >= oldStart) {
                const float product = (static_cast<float>(frame) - static_cast<float>(oldStart)) *
                                      (static_cast<float>(end) - static_cast<float>(start));
                const float quotient = product / (static_cast<float>(oldEnd) - static_cast<float>(oldStart));
                const float target = std::floor(quotient + static_cast<float>(start));
                const unsigned int upper = n + 1U - count + end;
                unsigned int frameGiven =
                    std::min(upper, static_cast<unsigned int>(static_cast<std::int64_t>(target)));
                frameGiven = std::max(frameGiven, n + start);
                while (!used.insert(frameGiven).second) {
                    ++frameGiven;
                }
                targets[frame] = frameGiven;
                ++n;
            }
        }
    }
};

} // namespace

class StretchRangeCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aStartStretchIntoJustTheRoomThatItsKeysNeedIsDone() {
        const Stretched stretched({1, 2, 3}, 0, 3, 1, StretchSide::start);
        QCOMPARE(stretched.result(), QString("1 2 3 in 1-3"));
        QCOMPARE(stretched.text, QString("Stretch range from (0; 3) to (1; 3)"));
    }

    void theTextNamesTheOldAndTheFinalRange() {
        QCOMPARE(Stretched({10, 20}, 10, 20, 30, StretchSide::end).text,
                 QString("Stretch range from (10; 20) to (10; 30)"));
        QCOMPARE(Stretched({10, 20}, 10, 20, 5, StretchSide::start).text,
                 QString("Stretch range from (10; 20) to (5; 20)"));
        QCOMPARE(Stretched({10, 12, 14, 16, 20}, 10, 20, 12, StretchSide::end).text,
                 QString("Stretch range from (10; 20) to (10; 14)"));
    }

    void theTextIsTranslatedInTheContextOfTheClass() {
        const RecordingTranslator translator;
        QCOMPARE(Stretched({10}, 10, 20, 30, StretchSide::end).text,
                 QString("translated Stretch range from (10; 20) to (10; 30)"));
        QCOMPARE(translator.asked.last(),
                 QString("ZT::AnimCmd::StretchRangeCommand: Stretch range from (%1; %2) to (%3; %4)"));
    }

    void keysInsideAreRescaledAndKeysBehindFollow_data() {
        using Frames = std::initializer_list<unsigned int>;
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, Frames given, unsigned int start, unsigned int end,
                            unsigned int newValue, StretchSide side, const char* expected) {
            QTest::newRow(name) << Stretched(given, start, end, newValue, side).result() << expected;
        };
        const StretchSide toEnd = StretchSide::end;
        const StretchSide toStart = StretchSide::start;
        row("longer", {5, 10, 15, 20, 25}, 10, 20, 30, toEnd, "5 10 20 30 35 in 10-30");
        row("shorter", {10, 15, 20, 25}, 10, 20, 14, toEnd, "10 12 14 19 in 10-14");
        row("widened for five keys", {10, 12, 15, 17, 20}, 10, 20, 12, toEnd, "10 11 12 13 14 in 10-14");
        row("just wide enough", {10, 15, 20}, 10, 20, 12, toEnd, "10 11 12 in 10-12");
        row("to one frame", {10}, 10, 20, 10, toEnd, "10 in 10-10");
        row("two keys on one frame", {14, 15}, 10, 20, 15, toEnd, "12 13 in 10-15");
        row("a crowd at the end", {18, 19, 20}, 10, 20, 14, toEnd, "12 13 14 in 10-14");
        row("a crowd at the start", {10, 11, 12}, 10, 20, 15, toEnd, "10 11 12 in 10-15");
        row("start to the left", {5, 10, 15, 20, 25}, 10, 20, 0, toStart, "5 0 10 20 25 in 0-20");
        row("start to the right", {10, 15, 20, 25}, 10, 20, 16, toStart, "16 18 20 25 in 16-20");
        row("start widened", {10, 12, 15, 17, 20}, 10, 20, 19, toStart, "16 17 18 19 20 in 16-20");
        row("neither side, as the start", {10, 20}, 10, 20, 0, otherSide, "0 20 in 0-20");
        row("neither side, unmoved", {10, 15}, 10, 20, 10, otherSide, "10 15 in 10-20");
        // Frames are unsigned: what follows the end past the last frame comes out at the first ones.
        row("keys behind wrap around", {10, 30}, 10, 20, 4294967290U, toEnd, "10 4 in 10-4294967290");
    }
    void keysInsideAreRescaledAndKeysBehindFollow() {
        QFETCH(QString, result);
        QFETCH(QString, expected);
        QCOMPARE(result, expected);
    }

    void framesAreComputedInSinglePrecisionInAFixedOrder_data() {
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("expected");
        // 7 * 62 / 14 is 31; 62 / 14 * 7 would be less than that in single precision. Likewise the others.
        QTest::newRow("multiplied first")
            << Stretched({7}, 0, 14, 62, StretchSide::end).result() << "31 in 0-62";
        QTest::newRow("multiplied first, twice")
            << Stretched({7}, 0, 14, 124, StretchSide::end).result() << "62 in 0-124";
        QTest::newRow("multiplied first, late")
            << Stretched({15}, 0, 18, 150, StretchSide::end).result() << "125 in 0-150";
        // Above 2^24 not every frame is a float. Double precision would give 20000005 and 20000017.
        QTest::newRow("rounded frames")
            << Stretched({20000003U, 20000009U}, 20000001U, 20000101U, 20000201U, StretchSide::end).result()
            << "20000008 20000016 in 20000001-20000201";
    }
    void framesAreComputedInSinglePrecisionInAFixedOrder() {
        QFETCH(QString, result);
        QFETCH(QString, expected);
        QCOMPARE(result, expected);
    }

    void everyStretchGoesByItsSteps() {
        QVERIFY(rc::check("a stretch goes by its steps", [] {
            const auto frames = *rc::gen::container<std::set<unsigned int>>(rc::gen::inRange(0U, 60U));
            const unsigned int oldStart = *rc::gen::inRange(0U, 50U);
            const unsigned int oldEnd = *rc::gen::inRange(oldStart + 1, 60U);
            const bool startSide = *rc::gen::arbitrary<bool>();
            const unsigned int newValue =
                startSide ? *rc::gen::inRange(0U, oldEnd + 1) : *rc::gen::inRange(oldStart, 120U);
            RC_PRE(!frames.empty() && newValue != (startSide ? oldStart : oldEnd));
            const Model model(frames, oldStart, oldEnd, startSide ? newValue : oldStart,
                              startSide ? oldEnd : newValue, startSide);
            Scene scene;
            std::map<unsigned int, Key*> keys;
            KeysIndexMap given;
            for (const unsigned int frame : frames) {
                keys[frame] = scene.addKey(frame);
                given.insert(keys[frame], frame);
            }
            scene.setRange(oldStart, oldEnd);
            auto* const command = new Stretch(&scene.markers(), given, oldStart, oldEnd, newValue, true,
                                              startSide ? StretchSide::start : StretchSide::end);
            scene.stack->push(command);
            const std::set<Key*> failed(command->failedKeys().begin(), command->failedKeys().end());
            for (const auto& [frame, key] : keys) {
                const auto target = model.targets.find(frame);
                const unsigned int expected = target == model.targets.end() ? frame : target->second;
                if (failed.count(key) == 0) {
                    RC_ASSERT(ZT::index(key) == expected);
                } else {
                    RC_ASSERT(scene.curve().getKey(expected) != nullptr);
                    RC_ASSERT(scene.curve().getKey(expected) != key);
                }
            }
            if (model.start <= model.end) {
                RC_ASSERT(scene.range() == QString("%1-%2").arg(model.start).arg(model.end));
            }
        }));
    }

    void aStretchWithoutKeysInsideCollapsesTheRange() {
        const Stretched atEnd({5, 25}, 10, 20, 30, StretchSide::end);
        QCOMPARE(atEnd.text, QString("Stretch range from (10; 20) to (10; 9)"));
        QCOMPARE(atEnd.result(), QString("5 14 in 9-9"));
        const Stretched atStart({5, 25}, 10, 20, 15, StretchSide::start);
        QCOMPARE(atStart.text, QString("Stretch range from (10; 20) to (21; 20)"));
        QCOMPARE(atStart.result(), QString("5 25 in 20-20"));
        const Stretched fromZero({25}, 0, 20, 30, StretchSide::end);
        QCOMPARE(fromZero.text, QString("Stretch range from (0; 20) to (0; 4294967295)"));
        QCOMPARE(fromZero.result(), QString("4 in 0-4294967295"));
        // No length is smaller than the one that no keys ask for.
        const Stretched longest({25}, 0, 20, last, StretchSide::end);
        QCOMPARE(longest.text, QString("Stretch range from (0; 20) to (0; 4294967295)"));
    }

    void aStretchOfKeysInNoCurveCollapsesTheRangeToo() {
        Scene scene;
        scene.setRange(10, 20);
        const std::unique_ptr<Key> loose(scene.makeKey());
        walk(scene, new Stretch(&scene.markers(), {{loose.get(), 12}, {nullptr, 13}}, 10, 20, 30, false,
                                StretchSide::end));
        scene.stack->redo();
        QCOMPARE(scene.range(), QString("9-9"));
        QVERIFY(loose->getParentCurve() == nullptr);
    }

    void aStartStretchIsGivenUpOneFrameEarly() {
        const Stretched givenUp({1, 2, 3}, 1, 3, 2, StretchSide::start);
        QCOMPARE(givenUp.text, QString("Range command from (1; 3) to (1; 3)"));
        QCOMPARE(givenUp.result(), QString("1 2 3 in 2-3"));
        const Stretched oneLater({2, 3, 4}, 2, 4, 3, StretchSide::start);
        QCOMPARE(oneLater.text, QString("Stretch range from (2; 4) to (2; 4)"));
        QCOMPARE(oneLater.result(), QString("2 3 4 in 2-4"));
        const Stretched withoutKeysInside({5}, 0, 0, 0, otherSide);
        QCOMPARE(withoutKeysInside.text, QString("Range command from (0; 0) to (0; 0)"));
        QCOMPARE(withoutKeysInside.result(), QString("5 in 0-0"));
    }

    void aStretchThatIsNoneChangesNothing_data() {
        QTest::addColumn<uint>("start");
        QTest::addColumn<uint>("end");
        QTest::addColumn<uint>("newValue");
        QTest::addColumn<int>("side");
        QTest::newRow("start unmoved") << 3U << 8U << 3U << 1;
        QTest::newRow("end unmoved") << 3U << 8U << 8U << 0;
        QTest::newRow("reversed before") << 8U << 3U << 5U << 0;
        QTest::newRow("reversed before, start") << 8U << 3U << 2U << 1;
        QTest::newRow("start behind the end") << 3U << 8U << 9U << 1;
        QTest::newRow("end before the start") << 3U << 8U << 2U << 0;
        QTest::newRow("neither side behind the end") << 3U << 8U << 9U << 2;
    }
    void aStretchThatIsNoneChangesNothing() {
        QFETCH(uint, start);
        QFETCH(uint, end);
        QFETCH(uint, newValue);
        QFETCH(int, side);
        Scene scene;
        const Keys keys = scene.add({3, 5, 8, 12});
        scene.setRange(4, 6);
        auto* const command = new Stretch(&scene.markers(), whereTheyStand(keys), start, end, newValue, false,
                                          static_cast<StretchSide>(side));
        QCOMPARE(command->text(), QString("Range command from (4; 6) to (%1; %2)").arg(start).arg(end));
        const Walk seen = walk(scene, command);
        QCOMPARE(seen.redoSignals, QString());
        QCOMPARE(seen.undoSignals, QString());
    }

    void aStretchWithoutKeysChangesNothing() {
        Scene scene;
        scene.setRange(4, 6);
        const Walk seen = walk(scene, new Stretch(&scene.markers(), {}, 4, 6, 9, false, StretchSide::end));
        QCOMPARE(seen.redoSignals + seen.undoSignals, QString());
    }

    void keysOfARangeOfOneFrameArePlacedOnePerFrameFromTheNewStart() {
        for (const bool startSide : {false, true}) {
            Scene scene;
            const Keys keys = scene.add({10, 11, 12});
            scene.setRange(10, 10);
            walk(scene,
                 new Stretch(&scene.markers(), {{keys[0], 10}, {keys[1], 10}, {keys[2], 10}}, 10, 10,
                             startSide ? 5 : 20, false, startSide ? StretchSide::start : StretchSide::end));
            scene.stack->redo();
            QCOMPARE(framesOf(keys), QString(startSide ? "5 6 7" : "10 11 12"));
            QCOMPARE(scene.range(), QString(startSide ? "5-10" : "10-20"));
        }
    }

    void keysArePlacedInTheOrderOfTheirCurrentFrames() {
        Scene scene;
        const Keys keys = scene.add({5, 6});
        walk(scene, new Stretch(&scene.markers(), {{keys[0], 20}, {keys[1], 10}}, 10, 20, 30, false,
                                StretchSide::end));
        scene.stack->redo();
        QCOMPARE(framesOf(keys), QString("29 11"));
    }

    void theFullestCurveDecidesHowMuchRoomIsMade() {
        Scene scene(2);
        const Keys first = scene.add({10, 20});
        const Keys second = scene.add({10, 12, 14, 20, 25}, 1);
        KeysIndexMap given = whereTheyStand(second);
        for (Key* const key : first) {
            given.insert(key, ZT::index(key));
        }
        scene.setRange(10, 20);
        const Walk seen =
            walk(scene, new Stretch(&scene.markers(), given, 10, 20, 11, false, StretchSide::end));
        QCOMPARE(seen.redoSignals,
                 QString("a.indexChanged(10), b.indexChanged(13), curve0.keysChanged(), "
                         "curve0.greaterIndexChanged(13, 20), c.indexChanged(10), d.indexChanged(11), "
                         "e.indexChanged(12), f.indexChanged(13), g.indexChanged(18), "
                         "curve1.keysChanged(), curve1.greaterIndexChanged(18, 25), "
                         "markers.rangeEndIndexChanged(13)"));
        QCOMPARE(seen.undoSignals,
                 QString("a.indexChanged(10), b.indexChanged(20), curve0.keysChanged(), "
                         "curve0.greaterIndexChanged(20, 13), c.indexChanged(10), d.indexChanged(12), "
                         "e.indexChanged(14), f.indexChanged(20), g.indexChanged(25), "
                         "curve1.keysChanged(), curve1.greaterIndexChanged(25, 18), "
                         "markers.rangeEndIndexChanged(20)"));
    }

    void stepsOfOneDragMerge() {
        Scene scene;
        const Keys keys = scene.add({10, 15, 20, 25});
        const KeysIndexMap given = whereTheyStand(keys);
        scene.setRange(10, 20);
        const QString before = scene.state();
        auto* const older = new Stretch(&scene.markers(), given, 10, 20, 24, false, StretchSide::end);
        scene.stack->push(older);
        for (const unsigned int newEnd : {20U, 28U, 30U}) {
            scene.stack->push(
                new Stretch(&scene.markers(), given, 10, 20, newEnd, newEnd == 30, StretchSide::end));
            QCOMPARE(scene.stack->count(), 1);
        }
        QCOMPARE(older->text(), QString("Stretch range from (10; 20) to (10; 30)"));
        QVERIFY(older->isFinalCommand());
        QCOMPARE(framesOf(keys), QString("10 20 30 35"));
        const QString after = scene.state();
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
        scene.stack->redo();
        QCOMPARE(scene.state(), after);
    }

    void bothSidesOfOneRangeMerge() {
        Scene scene;
        const Keys keys = scene.add({10, 20});
        scene.setRange(10, 20);
        const KeysIndexMap given = whereTheyStand(keys);
        scene.stack->push(new Stretch(&scene.markers(), given, 10, 20, 24, false, StretchSide::end));
        scene.stack->push(new Stretch(&scene.markers(), given, 10, 20, 8, false, StretchSide::start));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(framesOf(keys), QString("8 20"));
    }

    void stepsFromAnotherRangeDoNotMerge_data() {
        QTest::addColumn<uint>("start");
        QTest::addColumn<uint>("end");
        QTest::newRow("other start") << 11U << 20U;
        QTest::newRow("other end") << 10U << 21U;
    }
    void stepsFromAnotherRangeDoNotMerge() {
        QFETCH(uint, start);
        QFETCH(uint, end);
        Scene scene;
        const Keys keys = scene.add({10, 20});
        scene.setRange(10, 20);
        const QString before = scene.state();
        auto* const older =
            new Stretch(&scene.markers(), whereTheyStand(keys), 10, 20, 24, false, StretchSide::end);
        scene.stack->push(older);
        scene.stack->push(
            new Stretch(&scene.markers(), whereTheyStand(keys), start, end, 30, false, StretchSide::end));
        QCOMPARE(scene.stack->count(), 2);
        QVERIFY(older->isFinalCommand());
        scene.stack->setIndex(0);
        QCOMPARE(scene.state(), before);
    }
};

QTEST_GUILESS_MAIN(StretchRangeCommandTest)
#include "StretchRangeCommandTest.moc"
