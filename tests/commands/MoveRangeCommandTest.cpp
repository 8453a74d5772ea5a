#include "commands/MoveRangeCommand.h"
#include "CommandHarness.h"

namespace {

using namespace Harness;
using Move = ZT::AnimCmd::MoveRangeCommand;

} // namespace

Q_DECLARE_METATYPE(std::vector<unsigned int>)

class MoveRangeCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTextNamesBothRanges() {
        Scene scene;
        Key* const key = scene.addKey(3);
        QCOMPARE(Move(&scene.markers(), {{key, 3}}, 10, 14, 12, false).text(),
                 QString("Move range from (10; 14) to (12; 16)"));
        QCOMPARE(Move(&scene.markers(), {}, 10, 14, 7, false).text(),
                 QString("Move range from (10; 14) to (7; 11)"));
        QCOMPARE(Move(&scene.markers(), {}, 10, 14, 4294967294U, false).text(),
                 QString("Move range from (10; 14) to (4294967294; 2)"));
    }

    void theTextIsTranslatedInTheContextOfTheClass() {
        const RecordingTranslator translator;
        Scene scene;
        QCOMPARE(Move(&scene.markers(), {}, 10, 14, 12, false).text(),
                 QString("translated Move range from (10; 14) to (12; 16)"));
        QCOMPARE(translator.asked.last(),
                 QString("ZT::AnimCmd::MoveRangeCommand: Move range from (%1; %2) to (%3; %4)"));
    }

    void theRangeAndTheFramesItPassesOverExchangePlaces_data() {
        using Frames = std::vector<unsigned int>;
        QTest::addColumn<Frames>("from");
        QTest::addColumn<uint>("oldStart");
        QTest::addColumn<uint>("oldEnd");
        QTest::addColumn<uint>("newStart");
        QTest::addColumn<QString>("targets");
        QTest::newRow("to the right")
            << Frames{10, 11, 12, 13, 14, 15, 16} << 10U << 14U << 12U << "12 13 14 15 16 10 11";
        QTest::newRow("to the left") << Frames{7, 8, 9, 10, 14} << 10U << 14U << 8U << "7 13 14 8 12";
        QTest::newRow("far to the right")
            << Frames{9, 10, 14, 15, 24, 25} << 10U << 14U << 20U << "9 20 24 10 19 25";
        QTest::newRow("far to the left")
            << Frames{0, 1, 9, 10, 14, 15} << 10U << 14U << 0U << "5 6 14 0 4 15";
        QTest::newRow("one frame") << Frames{4, 5, 6, 7} << 5U << 5U << 6U << "4 6 5 7";
        QTest::newRow("at the last frames")
            << Frames{4294967290U, 4294967294U, 4294967295U} << 4294967290U << 4294967293U << 4294967292U
            << "4294967292 4294967290 4294967291";
        // The end wraps around to 2, before the old end: only the frames from 10 to 14 take part.
        QTest::newRow("past the last frame")
            << Frames{2, 10, 14, 15} << 10U << 14U << 4294967294U << "2 4294967294 2 15";
    }
    void theRangeAndTheFramesItPassesOverExchangePlaces() {
        QFETCH(std::vector<unsigned int>, from);
        QFETCH(uint, oldStart);
        QFETCH(uint, oldEnd);
        QFETCH(uint, newStart);
        QFETCH(QString, targets);
        const bool wraps = newStart > newStart - oldStart + oldEnd;
        Scene scene;
        const Keys keys = scene.makeKeys(from.size());
        KeysIndexMap given;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            // What a wrapped range meets is not placed; it is left out so as to see the targets alone.
            if (!wraps || (from[i] >= oldStart && from[i] <= oldEnd)) {
                scene.curve().insert(from[i], keys[i]);
                given.insert(keys[i], from[i]);
            }
        }
        scene.setRange(oldStart, oldEnd);
        walk(scene, new Move(&scene.markers(), given, oldStart, oldEnd, newStart, false));
        scene.stack->redo();
        const QStringList expected = targets.split(' ');
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (given.contains(keys[i])) {
                QCOMPARE(framesOf({keys[i]}), expected[static_cast<int>(i)]);
            } else {
                delete keys[i];
            }
        }
        if (!wraps) {
            QCOMPARE(scene.range(), QString("%1-%2").arg(newStart).arg(newStart - oldStart + oldEnd));
        }
    }

    void theGivenFramesCountNotTheCurrentOnes() {
        Scene scene;
        const Keys keys = scene.add({40, 50, 60});
        walk(scene,
             new Move(&scene.markers(), {{keys[0], 10}, {keys[1], 16}, {keys[2], 30}}, 10, 14, 12, false));
        scene.stack->redo();
        QCOMPARE(framesOf(keys), QString("12 11 60"));
    }

    void aRangeThatStaysWhereItIsMovesNoKey() {
        Scene scene;
        const Keys keys = scene.add({40, 50});
        scene.setRange(3, 4);
        auto* const command = new Move(&scene.markers(), {{keys[0], 10}, {keys[1], 14}}, 10, 14, 10, false);
        QCOMPARE(command->text(), QString("Move range from (10; 14) to (10; 14)"));
        const Walk seen = walk(scene, command);
        QCOMPARE(seen.redoSignals, QString("markers.rangeStartIndexChanged(10), "
                                           "markers.rangeEndIndexChanged(10), "
                                           "markers.rangeEndIndexChanged(14)"));
        QCOMPARE(seen.undoSignals,
                 QString("markers.rangeStartIndexChanged(3), markers.rangeEndIndexChanged(4)"));
    }

    void withoutKeysOnlyTheRangeMoves() {
        Scene scene;
        scene.add({10});
        scene.setRange(10, 14);
        const Walk seen = walk(scene, new Move(&scene.markers(), {}, 10, 14, 12, false));
        QCOMPARE(seen.redoSignals,
                 QString("markers.rangeStartIndexChanged(12), markers.rangeEndIndexChanged(16)"));
        QCOMPARE(seen.undoSignals,
                 QString("markers.rangeStartIndexChanged(10), markers.rangeEndIndexChanged(14)"));
    }

    void keysInNoCurveStayThere() {
        Scene scene;
        const std::unique_ptr<Key> loose(scene.makeKey());
        Key* const held = scene.addKey(10);
        walk(scene,
             new Move(&scene.markers(), {{nullptr, 11}, {loose.get(), 12}, {held, 10}}, 10, 14, 12, false));
        scene.stack->redo();
        QCOMPARE(framesOf({loose.get(), held}), QString("- 12"));
    }

    void eachCurveIsReorganisedOnce() {
        Scene scene(2);
        Keys keys = scene.add({10, 15});
        keys.push_back(scene.addKey(11, record(), 1));
        scene.setRange(10, 14);
        const Walk seen = walk(scene, new Move(&scene.markers(), whereTheyStand(keys), 10, 14, 12, false));
        QCOMPARE(seen.redoSignals,
                 QString("a.indexChanged(12), b.indexChanged(10), curve0.keysChanged(), "
                         "curve0.greaterIndexChanged(12, 15), c.indexChanged(13), curve1.keysChanged(), "
                         "curve1.greaterIndexChanged(13, 11), markers.rangeStartIndexChanged(12), "
                         "markers.rangeEndIndexChanged(16)"));
        QCOMPARE(seen.undoSignals,
                 QString("a.indexChanged(10), b.indexChanged(15), curve0.keysChanged(), "
                         "curve0.greaterIndexChanged(15, 12), c.indexChanged(11), curve1.keysChanged(), "
                         "curve1.greaterIndexChanged(11, 13), markers.rangeStartIndexChanged(10), "
                         "markers.rangeEndIndexChanged(14)"));
    }

    void everyDragOfTheRangeMergesAndKeepsItsStart() {
        Scene scene;
        const Keys keys = scene.add({10, 14, 15, 16, 17});
        const KeysIndexMap given = whereTheyStand(keys);
        scene.setRange(10, 14);
        const QString before = scene.state();
        for (const unsigned int newStart : {11U, 12U, 8U, 13U}) {
            scene.stack->push(new Move(&scene.markers(), given, 10, 14, newStart, false));
        }
        // Another range and other keys: no further test is made.
        scene.stack->push(new Move(&scene.markers(), {}, 13, 17, 20, true));
        QCOMPARE(scene.stack->count(), 1);
        QCOMPARE(scene.stack->text(0), QString("Move range from (10; 14) to (20; 24)"));
        QCOMPARE(framesOf(keys), QString("13 17 10 11 12"));
        const QString after = scene.state();
        scene.stack->undo();
        QCOMPARE(scene.state(), before);
        scene.stack->redo();
        QCOMPARE(scene.state(), after);
    }
};

QTEST_GUILESS_MAIN(MoveRangeCommandTest)
#include "MoveRangeCommandTest.moc"
