#include "commands/ChangeRangeCommand.h"
#include "BlockedRange.h"

#include <type_traits>

namespace {

using namespace Harness;
using Change = ZT::AnimCmd::ChangeRangeCommand;
using Move = ZT::AnimCmd::MoveRangeCommand;

static_assert(std::is_same_v<decltype(std::declval<const Change&>().failedKeys()), const std::vector<Key*>&>);

/// Thinks better of the frames that it had for its keys.
class Forgetful : public Change {
public:
    Forgetful(ZT::AnimationMarkers* markers, Key* key)
        : Change(markers, {{key, 10}}, 3, 4, true) {
        newIndices[key->getParentCurve()].insert(key, 20);
        forgetKeys();
    }
};

} // namespace

class ChangeRangeCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTextRunsFromTheMarkersRangeToTheNewOne() {
        Scene scene;
        scene.setRange(5, 4000000000U);
        QCOMPARE(Change(&scene.markers(), {}, 10000, 2, false).text(),
                 QString("Range command from (5; 4000000000) to (10000; 2)"));
    }

    void theTextIsTranslatedInTheContextOfTheClass() {
        const RecordingTranslator translator;
        Scene scene;
        QCOMPARE(Change(&scene.markers(), {}, 3, 4, false).text(),
                 QString("translated Range command from (1; 1) to (3; 4)"));
        QCOMPARE(translator.asked,
                 QStringList{"ZT::AnimCmd::ChangeRangeCommand: Range command from (%1; %2) to (%3; %4)"});
    }

    void keysThatItForgetsStayWhereTheyAre() {
        Scene scene;
        Key* const key = scene.addKey(10);
        Forgetful command(&scene.markers(), key);
        command.redo();
        QCOMPARE(ZT::index(key), 10U);
        key->getParentCurve()->translateKey(key, 12);
        command.undo();
        QCOMPARE(ZT::index(key), 12U);
    }

    void itChangesTheRangeBothWays() {
        Scene scene;
        scene.setRange(10, 20);
        const Walk seen = walk(scene, new Change(&scene.markers(), {}, 15, 30, false));
        QCOMPARE(seen.redoSignals,
                 QString("markers.rangeStartIndexChanged(15), markers.rangeEndIndexChanged(30)"));
        QCOMPARE(seen.undoSignals,
                 QString("markers.rangeStartIndexChanged(10), markers.rangeEndIndexChanged(20)"));
    }

    void theRangeComesBackExactly_data() {
        QTest::addColumn<uint>("start");
        QTest::addColumn<uint>("end");
        QTest::addColumn<QString>("shown");
        QTest::newRow("the same") << 10U << 20U << "10-20";
        QTest::newRow("behind") << 30U << 40U << "30-40";
        QTest::newRow("before") << 1U << 2U << "1-2";
        QTest::newRow("reversed") << 30U << 5U << "5-5";
        QTest::newRow("reversed inside") << 18U << 12U << "12-12";
        QTest::newRow("all") << 0U << 4294967295U << "0-4294967295";
        QTest::newRow("reversed at the ends") << 4294967295U << 0U << "0-0";
    }
    void theRangeComesBackExactly() {
        QFETCH(uint, start);
        QFETCH(uint, end);
        QFETCH(QString, shown);
        Scene scene;
        scene.setRange(10, 20);
        walk(scene, new Change(&scene.markers(), {}, start, end, false));
        scene.stack->redo();
        QCOMPARE(scene.range(), shown);
    }

    void itMovesNoKeyButPutsItsKeysBackOnUndo() {
        Scene scene(2);
        const Keys keys = scene.add({3, 5});
        Key* const other = scene.addKey(8, record(), 1);
        // The frames in the map are not used.
        const KeysIndexMap given{{keys[0], 70}, {keys[1], 71}, {other, 72}, {nullptr, 73}};
        scene.stack->push(new Change(&scene.markers(), given, 2, 6, false));
        QCOMPARE(framesOf({keys[0], keys[1], other}), QString("3 5 8"));
        QVERIFY(!scene.recorder.take().contains("curve"));
        scene.curve().translateKey(keys[0], 4);
        scene.curve(1).translateKey(other, 9);
        scene.recorder.take();
        scene.stack->undo();
        QCOMPARE(framesOf({keys[0], keys[1], other}), QString("3 5 8"));
        QCOMPARE(scene.recorder.take(),
                 QString("a.indexChanged(3), b.indexChanged(5), curve0.keysChanged(), "
                         "c.indexChanged(8), curve1.keysChanged(), curve1.greaterIndexChanged(8, 9), "
                         "markers.rangeStartIndexChanged(1), markers.rangeEndIndexChanged(1)"));
    }

    void keysThatWereInNoCurveAreIgnored() {
        Scene scene;
        const std::unique_ptr<Key> loose(scene.makeKey());
        const Walk seen =
            walk(scene, new Change(&scene.markers(), {{loose.get(), 3}, {nullptr, 4}}, 2, 6, false));
        QVERIFY(!seen.undoSignals.contains("curve"));
        QVERIFY(loose->getParentCurve() == nullptr);
    }

    void aDragIsOneEntryWhoseTextRunsFromItsStartToTheMarkers() {
        Scene scene;
        scene.setRange(10, 20);
        const QString before = scene.state();
        scene.stack->push(new Change(&scene.markers(), {}, 11, 21, false));
        scene.stack->push(new Change(&scene.markers(), {}, 12, 22, false));
        scene.stack->push(new Change(&scene.markers(), {}, 30, 5, true));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(scene.stack->text(0), QString("Range command from (10; 20) to (5; 5)"));
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
        scene.stack->redo();
        QCOMPARE(scene.range(), QString("5-5"));
        QCOMPARE(scene.stack->text(0), QString("Range command from (10; 20) to (5; 5)"));
    }

    void aMergeKeepsTheOlderFrameOfAKeyAndAddsKeysNotHeldYet() {
        Scene scene;
        const Keys keys = scene.add({3, 5});
        scene.stack->push(new Change(&scene.markers(), {{keys[0], 0}}, 2, 6, false));
        scene.curve().translateKey(keys[0], 30);
        scene.stack->push(new Change(&scene.markers(), {{keys[0], 0}, {keys[1], 0}}, 2, 7, false));
        QCOMPARE(scene.stack->count(), 1);
        scene.curve().translateKey(keys[0], 40);
        scene.curve().translateKey(keys[1], 50);
        scene.stack->undo();
        QCOMPARE(framesOf(keys), QString("3 5"));
    }

    void aMergeTakesTheNewFramesOver() {
        Scene scene;
        const Keys keys = scene.add({10, 12, 15});
        const KeysIndexMap given = whereTheyStand(keys);
        const QString before = scene.state();
        scene.stack->push(new Move(&scene.markers(), given, 10, 12, 11, false));
        scene.stack->push(new Move(&scene.markers(), given, 10, 12, 20, true));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(framesOf(keys), QString("20 22 12"));
        const QString after = scene.state();
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
        scene.stack->redo();
        QCOMPARE(scene.state(), after);
    }

    void aKeyThatCannotBePlacedIsReportedAndComesBackOnUndo() {
        Blocked blocked;
        Scene& scene = blocked.scene;
        auto* const command = blocked.move();
        const Walk seen = walk(scene, command);
        QCOMPARE(seen.redoSignals,
                 QString("a.indexChanged(12), curve0.keyAboutToBeRemoved(b), curve0.keysChanged(), "
                         "markers.rangeStartIndexChanged(12), markers.rangeEndIndexChanged(12), "
                         "markers.rangeEndIndexChanged(13)"));
        QCOMPARE(seen.undoSignals, QString("a.indexChanged(10), b.indexChanged(11), curve0.keyAdded(b), "
                                           "curve0.keysChanged(), markers.rangeStartIndexChanged(1), "
                                           "markers.rangeEndIndexChanged(1)"));
        QVERIFY(command->failedKeys().empty());
        scene.stack->redo();
        QCOMPARE(command->failedKeys(), Keys{blocked.keys[1]});
        QCOMPARE(framesOf(blocked.keys), QString("12 - 13"));
        QCOMPARE(scene.range(), QString("12-13"));
    }

    void anotherCurveIsReorganisedAllTheSame() {
        Scene scene(2);
        const Keys first = scene.add({10, 12});
        const Keys second = scene.add({10, 12}, 1);
        auto* const command = new Move(&scene.markers(), {{first[0], 10}, {second[0], 10}}, 10, 10, 12, true);
        walk(scene, command);
        scene.curve(1).remove(12U);
        scene.stack->redo();
        QCOMPARE(command->failedKeys(), Keys{first[0]});
        QCOMPARE(ZT::index(second[0]), 12U);
    }
};

QTEST_GUILESS_MAIN(ChangeRangeCommandTest)
#include "ChangeRangeCommandTest.moc"
