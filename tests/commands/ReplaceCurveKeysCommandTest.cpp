#include "commands/ReplaceCurveKeysCommand.h"
#include "CommandHarness.h"

#include <type_traits>

namespace {

using namespace Harness;
using Add = ZT::AnimCmd::AddCurveKeysCommand;
using Remove = ZT::AnimCmd::RemoveCurveKeysCommand;
using Replace = ZT::AnimCmd::ReplaceCurveKeysCommand;
using CurvesKeysMap = QMap<Curve*, KeysIndexMap>;

static_assert(std::is_convertible_v<Replace*, QUndoCommand*>);
static_assert(std::is_convertible_v<Add*, Replace*> && std::is_convertible_v<Remove*, Replace*>);
static_assert(!std::is_base_of_v<ZT::MergeableCommand, Replace>);
static_assert(!std::is_base_of_v<QObject, Replace>);
static_assert(std::is_constructible_v<Replace, CurvesKeysMap, CurvesKeysMap>);
static_assert(std::is_constructible_v<Replace, QList<Key*>, CurvesKeysMap>);
static_assert(std::is_constructible_v<Add, CurvesKeysMap>);
static_assert(std::is_constructible_v<Add, Key*, Curve*, unsigned int>);
static_assert(std::is_constructible_v<Remove, QList<Key*>> && std::is_constructible_v<Remove, Key*>);

const char* const emptyReplacement = "Replace 0 curve keys by %2 other curve keys";

/// So many curves, each with no keys to remove or insert.
CurvesKeysMap entriesFor(const Scene& scene, int count) {
    CurvesKeysMap result;
    for (int i = 0; i < count; ++i) {
        result.insert(scene.curves[static_cast<std::size_t>(i)], KeysIndexMap());
    }
    return result;
}

} // namespace

class ReplaceCurveKeysCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theReplaceTextUsesTheSecondCountAsFieldWidth_data() {
        QTest::addColumn<int>("removed");
        QTest::addColumn<int>("inserted");
        QTest::addColumn<QString>("number");
        QTest::newRow("nothing") << 0 << 0 << "0";
        QTest::newRow("two by three") << 2 << 3 << "  2";
        QTest::newRow("one by twelve") << 1 << 12 << "           1";
        QTest::newRow("nothing by two") << 0 << 2 << " 0";
        QTest::newRow("wider than its width") << 12 << 1 << "12";
        QTest::newRow("just as wide") << 12 << 2 << "12";
    }
    void theReplaceTextUsesTheSecondCountAsFieldWidth() {
        QFETCH(int, removed);
        QFETCH(int, inserted);
        QFETCH(QString, number);
        const Scene scene(12);
        const Replace command(entriesFor(scene, removed), entriesFor(scene, inserted));
        QCOMPARE(command.text(), "Replace " + number + " curve keys by %2 other curve keys");
    }

    void theListFormCountsTheCurvesOfItsKeys() {
        Scene scene(3);
        const Keys first = scene.add({1, 2});
        const Keys second = scene.add({1}, 1);
        const Replace command(QList<Key*>{first[0], second[0], first[1]}, entriesFor(scene, 3));
        QCOMPARE(command.text(), QString("Replace   2 curve keys by %2 other curve keys"));
    }

    void theSingleKeyCommandsKeepTheTextOfAnEmptyReplacement() {
        Scene scene;
        Key* const held = scene.addKey(3);
        QCOMPARE(Add(scene.makeKey(), &scene.curve(), 5).text(), QString(emptyReplacement));
        QCOMPARE(Remove(held).text(), QString(emptyReplacement));
        QCOMPARE(Remove(static_cast<Key*>(nullptr)).text(), QString(emptyReplacement));
    }

    void theTextsOfAddAndRemoveCountCurvesNotKeys() {
        Scene scene(3);
        KeysIndexMap five;
        for (Key* const key : scene.makeKeys(5)) {
            five.insert(key, static_cast<unsigned int>(five.size()));
        }
        QCOMPARE(Add(CurvesKeysMap{{&scene.curve(), five}}).text(), QString("Add 1 curve keys"));
        QCOMPARE(Add(CurvesKeysMap()).text(), QString("Add 0 curve keys"));
        QList<Key*> keys{nullptr};
        for (std::size_t i = 0; i < 3; ++i) {
            keys << scene.addKey(1, record(), i) << scene.addKey(2, record(), i) << nullptr;
        }
        QCOMPARE(Remove(keys).text(), QString("Remove 3 curve keys"));
        QCOMPARE(Remove(QList<Key*>()).text(), QString("Remove 0 curve keys"));
    }

    void theTextsAreTranslatedInTheContextOfTheirClass() {
        const RecordingTranslator translator;
        const QString replace = "ZT::AnimCmd::ReplaceCurveKeysCommand: "
                                "Replace %1 curve keys by %2 other curve keys";
        QCOMPARE(Replace(CurvesKeysMap(), CurvesKeysMap()).text(),
                 QString("translated Replace 0 curve keys by %2 other curve keys"));
        QCOMPARE(translator.asked, QStringList{replace});
        QCOMPARE(Add(CurvesKeysMap()).text(), QString("translated Add 0 curve keys"));
        QCOMPARE(translator.asked.last(), QString("ZT::AnimCmd::AddCurveKeysCommand: Add %1 curve keys"));
        QCOMPARE(Remove(QList<Key*>()).text(), QString("translated Remove 0 curve keys"));
        QCOMPARE(translator.asked.last(),
                 QString("ZT::AnimCmd::RemoveCurveKeysCommand: Remove %1 curve keys"));
        QCOMPARE(Remove(static_cast<Key*>(nullptr)).text(),
                 QString("translated Replace 0 curve keys by %2 other curve keys"));
        QCOMPARE(translator.asked.last(), replace);
    }

    void itNeverMerges() {
        Scene scene;
        const Keys keys = scene.makeKeys(2);
        Add first(keys[0], &scene.curve(), 1);
        const Add second(keys[1], &scene.curve(), 2);
        QCOMPARE(first.id(), -1);
        QCOMPARE(Remove(QList<Key*>()).id(), -1);
        QCOMPARE(Replace(CurvesKeysMap(), CurvesKeysMap()).id(), -1);
        QVERIFY(!first.mergeWith(&second));
        scene.stack->push(new Add(scene.makeKey(), &scene.curve(), 3));
        scene.stack->push(new Add(scene.makeKey(), &scene.curve(), 4));
        QCOMPARE(scene.stack->count(), 2);
    }

    void commandsWithoutKeysTouchNoCurve() {
        Scene scene;
        scene.add({3});
        const std::unique_ptr<Key> loose(scene.makeKey());
        for (QUndoCommand* const command :
             {static_cast<QUndoCommand*>(new Replace(CurvesKeysMap(), CurvesKeysMap())),
              static_cast<QUndoCommand*>(new Remove(static_cast<Key*>(nullptr))),
              static_cast<QUndoCommand*>(new Remove(loose.get())),
              static_cast<QUndoCommand*>(new Remove(QList<Key*>{nullptr, loose.get()})),
              static_cast<QUndoCommand*>(new Add(nullptr, &scene.curve(), 5)),
              static_cast<QUndoCommand*>(new Add(loose.get(), nullptr, 5))}) {
            const Walk seen = walk(scene, command);
            QCOMPARE(seen.redoSignals, QString());
            QCOMPARE(seen.undoSignals, QString());
        }
        scene.stack.reset(); // A key that came without a curve was not handed over.
        QVERIFY(loose->getParentCurve() == nullptr);
    }

    void aCurveIsEditedOnceEvenWhenNothingIsNamedForIt() {
        Scene scene(2);
        const Walk seen =
            walk(scene, new Replace(entriesFor(scene, 1), CurvesKeysMap{{&scene.curve(1), KeysIndexMap()}}));
        QCOMPARE(seen.redoSignals.count("curve0.keysChanged()"), 1);
        QCOMPARE(seen.redoSignals.count("curve1.keysChanged()"), 1);
        QCOMPARE(seen.undoSignals.count("keysChanged()"), 2);
    }

    void addingAtAFreeFrameIsUndoneByTakingTheKeyOut() {
        Scene scene;
        scene.add({3});
        const Walk seen = walk(scene, new Add(scene.makeKey(), &scene.curve(), 5));
        QCOMPARE(seen.redoSignals,
                 QString("curve0.keyAdded(b), curve0.keysChanged(), curve0.greaterIndexChanged(5, 3)"));
        QCOMPARE(seen.undoSignals, QString("curve0.keyAboutToBeRemoved(b), curve0.keysChanged(), "
                                           "curve0.greaterIndexChanged(3, 5)"));
    }

    void addingAtATakenFramePutsTheDisplacedKeyBackOnUndo() {
        Scene scene;
        Key* const displaced = scene.addKey(3);
        const Walk seen = walk(scene, new Add(scene.makeKey(), &scene.curve(), 3));
        QCOMPARE(seen.redoSignals,
                 QString("curve0.keyAboutToBeRemoved(a), curve0.keyAdded(b), curve0.keysChanged()"));
        QCOMPARE(seen.undoSignals,
                 QString("curve0.keyAboutToBeRemoved(b), curve0.keyAdded(a), curve0.keysChanged()"));
        QCOMPARE(scene.curve().getKey(3), displaced);
    }

    void removingIsUndoneByPuttingTheKeysBack() {
        Scene scene(2);
        const Keys first = scene.add({1, 4, 9});
        const Keys second = scene.add({2}, 1);
        walk(scene, new Remove(QList<Key*>{first[0], nullptr, second[0], first[2], first[0]}));
        scene.stack->redo();
        QCOMPARE(frames(scene.curve()), QString("4"));
        QCOMPARE(frames(scene.curve(1)), QString());
        QCOMPARE(framesOf({first[0], first[2], second[0]}), QString("- - -"));
    }

    void replacingGoesThroughEachCurveOnce() {
        Scene scene(2);
        const Keys old = scene.add({1, 4});
        scene.add({7}, 1);
        const Keys fresh = scene.makeKeys(3);
        const CurvesKeysMap toRemove{{&scene.curve(), whereTheyStand(old)}};
        const CurvesKeysMap toInsert{{&scene.curve(), {{fresh[0], 4}, {fresh[1], 5}}},
                                     {&scene.curve(1), {{fresh[2], 7}}}};
        const Walk seen = walk(scene, new Replace(toRemove, toInsert));
        QCOMPARE(seen.redoSignals.count("curve0.keysChanged()"), 1);
        QCOMPARE(seen.redoSignals.count("curve1.keysChanged()"), 1);
        scene.stack->redo();
        QCOMPARE(framesOf(fresh), QString("4 5 7"));
        QCOMPARE(framesOf(old), QString("- -"));
    }

    void aKeyMayBeTakenOutAndPutBackElsewhereByOneCommand() {
        Scene scene;
        const Keys keys = scene.add({3, 7});
        const auto watched = watch(keys);
        walk(scene, new Replace({{&scene.curve(), {{keys[0], 3}}}}, {{&scene.curve(), {{keys[0], 7}}}}));
        scene.stack->redo();
        QCOMPARE(framesOf(keys), QString("7 -"));
        scene.stack.reset();
        QVERIFY(!watched[0].isNull());
        QVERIFY(watched[1].isNull());
    }

    void aKeyThatDoesNotStandAtItsFrameDropsOut() {
        Scene scene;
        const Keys keys = scene.add({3, 7});
        const QString before = scene.state();
        scene.stack->push(new Replace({{&scene.curve(), {{keys[0], 4}, {keys[1], 3}}}}, CurvesKeysMap()));
        QCOMPARE(scene.state(), before);
        scene.curve().translateKey(keys[0], 4); // Where the command first sought it.
        scene.stack->undo();
        scene.stack->redo();
        QCOMPARE(framesOf(keys), QString("4 7"));
    }

    void aKeyThatMovedSinceTheCommandWasBuiltStays() {
        Scene scene;
        Key* const key = scene.addKey(3);
        auto* const command = new Remove(key);
        scene.curve().translateKey(key, 8);
        walk(scene, command);
        scene.stack->redo();
        QCOMPARE(frames(scene.curve()), QString("8"));
    }

    void nullKeysInTheMapsAreSkipped() {
        Scene scene;
        scene.add({3, 4});
        Key* const fresh = scene.makeKey();
        walk(scene,
             new Replace({{&scene.curve(), {{nullptr, 3}}}}, {{&scene.curve(), {{nullptr, 4}, {fresh, 5}}}}));
        scene.stack->redo();
        QCOMPARE(frames(scene.curve()), QString("3 4 5"));
    }

    void undoTakesBothOfTwoKeysInsertedAtOneFrameAway() {
        Scene scene;
        Key* const occupant = scene.addKey(5);
        const Keys fresh = scene.makeKeys(2);
        const auto watched = watch(fresh);
        walk(scene, new Add(CurvesKeysMap{{&scene.curve(), {{fresh[0], 5}, {fresh[1], 5}}}}));
        QCOMPARE(scene.curve().getKey(5), occupant);
        scene.stack->redo();
        QCOMPARE(framesOf(fresh), QString("- 5"));
        scene.stack->undo();
        scene.stack.reset();
        QCOMPARE(alive(watched), 0);
    }

    void aMovedKeyThatIsDisplacedAtOnceGoesBackToWhereItStood() {
        Scene scene;
        const Keys keys = scene.makeKeys(2);
        scene.curve().insert(3, keys[0]);
        const auto watched = watch(keys);
        walk(scene, new Replace({{&scene.curve(), {{keys[0], 3}}}},
                                {{&scene.curve(), {{keys[0], 7}, {keys[1], 7}}}}));
        QCOMPARE(framesOf(keys), QString("3 -"));
        scene.stack.reset();
        QCOMPARE(alive(watched), 1);
    }

    void aKeyThatOnlySeemedToStandInTheCurveIsNotPutThereByUndo() {
        Scene scene;
        const Keys fresh = scene.makeKeys(2);
        walk(scene, new Replace({{&scene.curve(), {{fresh[0], 3}}}},
                                {{&scene.curve(), {{fresh[0], 7}, {fresh[1], 7}}}}));
        QCOMPARE(frames(scene.curve()), QString());
    }

    // A stack takes turns; whoever does not gets what was asked for.
    void aRedoOrUndoInARowIsDoneAsWell() {
        Scene scene;
        Key* const key = scene.makeKey();
        Add command(key, &scene.curve(), 5);
        command.redo();
        QCOMPARE(scene.curve().release(5), key);
        command.redo();
        QCOMPARE(scene.curve().getKey(5), key);

        Key* const other = scene.addKey(9);
        Remove removal(other);
        removal.redo();
        removal.undo();
        QCOMPARE(scene.curve().release(9), other);
        removal.undo();
        QCOMPARE(scene.curve().getKey(9), other);
    }
};

QTEST_GUILESS_MAIN(ReplaceCurveKeysCommandTest)
#include "ReplaceCurveKeysCommandTest.moc"
