#include "commands/ChangeKeyParamCommand.h"
#include "CommandHarness.h"

#include <functional>
#include <limits>
#include <type_traits>

namespace {

using namespace Harness;
using Base = ZT::AnimCmd::ChangeKeyParamCommand;
using InterpType = ZT::AnimCmd::ChangeInterpTypeCommand;
using Smoothness = ZT::AnimCmd::ChangeSmoothnessCommand;
using Symmetry = ZT::AnimCmd::ChangeSymmetryCommand;
using TangentParam = ZT::AnimCmd::ChangeTangentParamCommand;
using KeysSet = QSet<Key*>;
using Tangents = QMultiMap<Key*, Side>;

template <class Command>
constexpr bool isConcreteParamCommand =
    std::is_convertible_v<Command*, Base*> && !std::is_abstract_v<Command> &&
    !std::is_base_of_v<ZT::MergeableCommand, Command>;
static_assert(std::is_abstract_v<Base> && std::is_convertible_v<Base*, QUndoCommand*>);
static_assert(isConcreteParamCommand<InterpType> && isConcreteParamCommand<TangentParam>);
static_assert(isConcreteParamCommand<Smoothness> && isConcreteParamCommand<Symmetry>);
static_assert(std::is_same_v<decltype(Base::CurveKeySave::tangentTypes), QMultiMap<Key*, QPair<Side, Type>>>);
static_assert(std::is_same_v<decltype(Base::CurveKeySave::leftOffsets), QMap<Key*, QPair<float, float>>>);
static_assert(std::is_same_v<decltype(Base::CurveKeySave::rightOffsets), QMap<Key*, QPair<float, float>>>);
static_assert(std::is_same_v<decltype(Base::CurveKeySave::smooth), QMap<Key*, bool>>);
static_assert(std::is_same_v<decltype(Base::CurveKeySave::symmetrical), QMap<Key*, bool>>);
static_assert(std::is_copy_constructible_v<Base::CurveKeySave>);

/// A command for one key, of each kind and in each direction.
using Maker = std::function<QUndoCommand*(Key*)>;

struct NamedMaker {
    const char* name;
    Maker make;
};

std::vector<NamedMaker> allMakers() {
    std::vector<NamedMaker> makers{
        {"smooth", [](Key* key) { return new Smoothness(key, true); }},
        {"not smooth", [](Key* key) { return new Smoothness(KeysSet{key}, false); }},
        {"symmetrical", [](Key* key) { return new Symmetry(key, true); }},
        {"not symmetrical", [](Key* key) { return new Symmetry(KeysSet{key}, false); }},
    };
    const char* const names[] = {"constant", "linear", "bezier", "bezier auto"};
    for (int i = 0; i < 4; ++i) {
        const Type type = static_cast<Type>(i);
        makers.push_back({names[i], [type](Key* key) { return new InterpType(key, Side::left, type); }});
        makers.push_back({names[i], [type](Key* key) { return new InterpType(key, Side::right, type); }});
        makers.push_back({names[i], [type](Key* key) {
                              return new InterpType(Tangents{{key, Side::left}, {key, Side::right}}, type);
                          }});
        for (const bool smooth : {false, true}) {
            makers.push_back({names[i], [type, smooth](Key* key) {
                                  return new TangentParam({key}, type, smooth, !smooth);
                              }});
        }
    }
    return makers;
}

/// Sets types and handles past the constraints, then the flags.
Key* addFlagged(Scene& scene, unsigned int frame, const Record& wanted, bool smooth, bool symmetrical) {
    Key* const key = scene.addKey(frame, bezier({}, {}));
    key->setSmooth(smooth);
    key->setSymmetrical(symmetrical);
    key->setTangentType(Side::left, Type::bezier);
    key->setTangentType(Side::right, Type::linear);
    key->setTangentOffset(Side::left, {wanted.leftTangentOffset.x, wanted.leftTangentOffset.y});
    key->setTangentType(Side::left, Type::linear);
    key->setTangentType(Side::right, Type::bezier);
    key->setTangentOffset(Side::right, {wanted.rightTangentOffset.x, wanted.rightTangentOffset.y});
    key->setTangentType(Side::right, wanted.rightTangentType);
    key->setTangentType(Side::left, wanted.leftTangentType);
    scene.recorder.take();
    return key;
}

} // namespace

class ChangeKeyParamCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTextNamesTheChange() {
        const Scene scene;
        const KeysSet none;
        QCOMPARE(InterpType(Tangents(), Type::linear).text(),
                 QString("Change interpolation type of a set of tangents to linear"));
        QCOMPARE(InterpType(nullptr, Side::left, Type::bezier).text(),
                 QString("Change interpolation type of a tangent to bezier"));
        QCOMPARE(InterpType(nullptr, Side::right, Type::constant).text(),
                 QString("Change interpolation type of a tangent to constant"));
        QCOMPARE(InterpType(nullptr, Side::right, Type::bezierAuto).text(),
                 QString("Change interpolation type of a tangent to bezier auto"));
        QCOMPARE(TangentParam(none, Type::linear, true, true).text(),
                 QString("Change keys interpolation type"));
        QCOMPARE(Smoothness(none, true).text(), QString("Change keys smoothness"));
        QCOMPARE(Smoothness(static_cast<Key*>(nullptr), true).text(), QString("Change key smoothness"));
        QCOMPARE(Symmetry(none, true).text(), QString("Change keys symmetrical status"));
        QCOMPARE(Symmetry(static_cast<Key*>(nullptr), true).text(), QString("Change key symmetrical status"));
    }

    void theTextOfASetOfOneTangentIsThatOfASet() {
        Scene scene;
        Key* const key = scene.addKey(1);
        QCOMPARE(InterpType(Tangents{{key, Side::left}}, Type::constant).text(),
                 QString("Change interpolation type of a set of tangents to constant"));
    }

    void theTextsAreTranslatedInTheContextOfTheirClass() {
        const RecordingTranslator translator;
        QCOMPARE(InterpType(nullptr, Side::left, Type::bezier).text(),
                 QString("translated Change interpolation type of a tangent to translated bezier"));
        static_cast<void>(InterpType(Tangents(), Type::bezier));
        static_cast<void>(TangentParam(KeysSet(), Type::bezier, true, true));
        static_cast<void>(Smoothness(KeysSet(), true));
        static_cast<void>(Smoothness(static_cast<Key*>(nullptr), true));
        static_cast<void>(Symmetry(KeysSet(), true));
        static_cast<void>(Symmetry(static_cast<Key*>(nullptr), true));
        const QString context = "ZT::AnimCmd::Change";
        QStringList asked = translator.asked;
        asked.removeAll("QObject: bezier");
        QCOMPARE(
            asked.join('\n'),
            QStringList({context + "InterpTypeCommand: Change interpolation type of a tangent to %1",
                         context + "InterpTypeCommand: Change interpolation type of a set of tangents to %1",
                         context + "TangentParamCommand: Change keys interpolation type",
                         context + "SmoothnessCommand: Change keys smoothness",
                         context + "SmoothnessCommand: Change key smoothness",
                         context + "SymmetryCommand: Change keys symmetrical status",
                         context + "SymmetryCommand: Change key symmetrical status"})
                .join('\n'));
    }

    void itNeverMerges() {
        Scene scene;
        Key* const key = scene.addKey(1);
        for (const NamedMaker& maker : allMakers()) {
            const std::unique_ptr<QUndoCommand> first(maker.make(key));
            const std::unique_ptr<QUndoCommand> second(maker.make(key));
            QCOMPARE(first->id(), -1);
            QVERIFY(!first->mergeWith(second.get()));
        }
    }

    void makingLinearTangentsSmoothAndBackRestoresTypesAndHandles() {
        Scene scene;
        Key* const key = scene.addKey(4, record(Type::linear, Type::linear, {-1.0F, 2.0F}, {3.0F, 0.5F}));
        const Walk seen = walk(scene, new Smoothness(key, true));
        QCOMPARE(seen.redoSignals, QString("a.smoothChanged(true), curve0.keysChanged()"));
        // No setter reaches handles of linear tangents: they are written once more at the end.
        QCOMPARE(seen.undoSignals,
                 QString("a.smoothChanged(false), a.tangentsChanged(), a.tangentsChanged(), "
                         "curve0.keysChanged(), a.tangentsChanged(), curve0.keysChanged()"));
        scene.stack->redo();
        QVERIFY(key->isSmooth());
        QCOMPARE(key->getTangentType(Side::left), Type::bezier);
        QCOMPARE(key->getTangentType(Side::right), Type::bezier);
    }

    void undoEmitsNothingMoreWhereItsStepsSuffice() {
        Scene scene;
        Key* const key = scene.addKey(4, bezier({-1.0F, 2.0F}, {3.0F, 0.5F}));
        const Walk seen = walk(scene, new InterpType(key, Side::right, Type::linear));
        QCOMPARE(seen.redoSignals, QString("a.tangentsChanged(), curve0.keysChanged()"));
        QCOMPARE(seen.undoSignals, QString("a.tangentsChanged(), curve0.keysChanged()"));
        const Walk flag = walk(scene, new Symmetry(key, true));
        QCOMPARE(flag.redoSignals, QString("a.symmetricalChanged(true), curve0.keysChanged()"));
        QCOMPARE(flag.undoSignals, QString("a.symmetricalChanged(false), a.tangentsChanged(), "
                                           "a.tangentsChanged(), curve0.keysChanged()"));
    }

    void theParametersAreSetTypesFirstThenFlags() {
        Scene scene;
        Key* const key = scene.addKey(4, record(Type::linear, Type::linear, {-1.0F, 2.0F}, {3.0F, 0.5F}));
        const Walk seen = walk(scene, new TangentParam({key}, Type::constant, true, true));
        QCOMPARE(seen.redoSignals, QString("a.tangentsChanged(), a.tangentsChanged(), a.smoothChanged(true), "
                                           "a.symmetricalChanged(true), curve0.keysChanged()"));
        QVERIFY(seen.undoSignals.startsWith("a.smoothChanged(false), a.symmetricalChanged(false), "
                                            "a.tangentsChanged(), a.tangentsChanged(), "
                                            "curve0.keysChanged()"));
    }

    void changingOneTangentRestoresBothOnUndo() {
        Scene scene;
        Key* const key = addFlagged(scene, 4, record(Type::linear, Type::bezier, {-1.0F, 2.0F}, {3.0F, 0.5F}),
                                    true, false);
        const QString before = Snapshot::of(*key);
        scene.stack->push(new InterpType(key, Side::left, Type::bezier));
        QVERIFY(key->getTangentOffset(Side::right) != qMakePair(3.0F, 0.5F)); // Turned by smoothness.
        scene.stack->undo();
        QCOMPARE(Snapshot::of(*key), before);
    }

    void everyKeyComesBackExactly_data() {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("right");
        QTest::addColumn<bool>("smooth");
        QTest::addColumn<bool>("symmetrical");
        for (int i = 0; i < 64; ++i) {
            QTest::addRow("types %d %d%s%s", i & 3, (i >> 2) & 3, (i & 16) != 0 ? " smooth" : "",
                          (i & 32) != 0 ? " symmetrical" : "")
                << (i & 3) << ((i >> 2) & 3) << ((i & 16) != 0) << ((i & 32) != 0);
        }
    }
    void everyKeyComesBackExactly() {
        QFETCH(int, left);
        QFETCH(int, right);
        QFETCH(bool, smooth);
        QFETCH(bool, symmetrical);
        constexpr float infinity = std::numeric_limits<float>::infinity();
        constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
        for (const auto& handles : {std::pair<Position2D, Position2D>{{-1.0F, 2.0F}, {3.0F, 0.5F}},
                                    {{-0.0F, 0.0F}, {0.0F, -0.0F}},
                                    {{notANumber, 1.0F}, {1e30F, -infinity}}}) {
            Scene scene;
            scene.addKey(1)->setValue(-3.0F);
            Key* const key = addFlagged(
                scene, 4,
                record(static_cast<Type>(left), static_cast<Type>(right), handles.first, handles.second),
                smooth, symmetrical);
            Key* const next = scene.addKey(9);
            next->setValue(5.0F);
            scene.curve().updateBezierAutoTangents();
            for (const NamedMaker& maker : allMakers()) {
                walk(scene, maker.make(key));
                if (QTest::currentTestFailed()) {
                    qWarning("with the change to: %s", maker.name);
                    return;
                }
            }
        }
    }

    void aThousandRoundsDoNotDrift() {
        Scene scene;
        Key* const key = scene.addKey(4, bezier({-1.1F, 0.3F}, {2.7F, 0.9F}));
        scene.stack->push(new Smoothness(key, true));
        const QString redone = scene.state();
        scene.stack->undo();
        const QString undone = scene.state();
        for (int round = 0; round < 1000; ++round) {
            scene.stack->redo();
            scene.stack->undo();
        }
        QCOMPARE(scene.state(), undone);
        scene.stack->redo();
        QCOMPARE(scene.state(), redone);
    }

    void aRedoMakesTheSameHandlesOfAutomaticOnesAsTheFirstTime_data() {
        QTest::addColumn<uint>("frame");
        QTest::addColumn<bool>("ahead");
        // At frame 0 the automatic left handle is (0, 0): its zeros' signs are a direction, too.
        QTest::newRow("without length") << 0U << true;
        QTest::newRow("rounded") << 4U << true;
        QTest::newRow("last key") << 4U << false;
    }
    void aRedoMakesTheSameHandlesOfAutomaticOnesAsTheFirstTime() {
        QFETCH(uint, frame);
        QFETCH(bool, ahead);
        for (const Position2D right : {Position2D(5.0F, 0.0F), {-5.0F, 0.0F}, {1e30F, 1.0F}, {-1.0F, 2.0F}}) {
            Scene scene;
            if (frame > 1) {
                scene.addKey(1)->setValue(-3.0F);
            }
            Key* const key =
                scene.addKey(frame, record(Type::bezierAuto, Type::bezier, {-1e9F, 1e9F}, right));
            if (ahead) {
                scene.addKey(frame + 5)->setValue(5.0F);
            }
            scene.curve().updateBezierAutoTangents();
            scene.stack->push(new Smoothness(key, true));
            const QString redone = scene.state();
            for (int round = 0; round < 1000; ++round) {
                scene.stack->undo();
                scene.stack->redo();
            }
            QCOMPARE(scene.state(), redone);
        }
    }

    void theStateBeforeIsThatOfTheConstruction() {
        Scene scene;
        Key* const key = scene.addKey(4, bezier({-1.0F, 2.0F}, {3.0F, 0.5F}));
        auto* const command = new Smoothness(key, true);
        const QString built = scene.state();
        key->setTangentOffset(Side::left, {-5.0F, 5.0F});
        scene.stack->push(command);
        scene.stack->undo();
        QCOMPARE(scene.state(), built);
    }

    void eachCurveIsEditedOnce() {
        Scene scene(2);
        const Keys first = scene.add({1, 2}, 0, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        const Keys second = scene.add({3}, 1, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        const KeysSet all{first[0], first[1], second[0]};
        Tangents tangents;
        for (Key* const key : all) {
            tangents.insert(key, Side::left);
            tangents.insert(key, Side::right);
        }
        for (QUndoCommand* const command :
             {static_cast<QUndoCommand*>(new Smoothness(all, true)),
              static_cast<QUndoCommand*>(new Symmetry(all, true)),
              static_cast<QUndoCommand*>(new TangentParam(all, Type::bezier, false, true)),
              static_cast<QUndoCommand*>(new InterpType(tangents, Type::bezier))}) {
            const Walk seen = walk(scene, command);
            for (const char* const curve : {"curve0.keysChanged()", "curve1.keysChanged()"}) {
                QCOMPARE(seen.redoSignals.count(curve), 1);
                QVERIFY(seen.undoSignals.contains(curve));
            }
        }
        // Nothing to finish after restoring the types of bezier tangents: one batch for each curve.
        const Walk seen = walk(scene, new InterpType(tangents, Type::linear));
        QCOMPARE(seen.redoSignals.count("keysChanged()"), 2);
        QCOMPARE(seen.undoSignals.count("keysChanged()"), 2);
        QCOMPARE(seen.redoSignals.count("tangentsChanged()"), 6);
    }

    void eachFlagIsSetAsItIsTold() {
        for (const bool isSmooth : {false, true}) {
            Scene scene;
            Key* const key = scene.addKey(5, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
            TangentParam(KeysSet{key}, Type::bezier, isSmooth, !isSmooth).redo();
            QCOMPARE(key->isSmooth(), isSmooth);
            QCOMPARE(key->isSymmetrical(), !isSmooth);
        }
    }

    void bothTangentsOfAKeyChangeWhenBothAreNamed() {
        Scene scene;
        const Keys keys = scene.add({1, 2});
        walk(scene, new InterpType(Tangents{{keys[0], Side::left},
                                            {keys[0], Side::right},
                                            {keys[1], Side::right},
                                            {nullptr, Side::left}},
                                   Type::constant));
        scene.stack->redo();
        QCOMPARE(keys[0]->getTangentType(Side::left), Type::constant);
        QCOMPARE(keys[0]->getTangentType(Side::right), Type::constant);
        QCOMPARE(keys[1]->getTangentType(Side::left), Type::linear);
        QCOMPARE(keys[1]->getTangentType(Side::right), Type::constant);
    }

    void keysThatWereInNoCurveAreIgnored() {
        Scene scene;
        scene.addKey(1);
        Key* const loose = scene.makeKey(record(Type::linear, Type::bezier, {-1.0F, 2.0F}, {3.0F, 0.5F}));
        for (const NamedMaker& maker : allMakers()) {
            for (Key* const key : {loose, static_cast<Key*>(nullptr)}) {
                const QString before = Snapshot::of(*loose);
                const Walk seen = walk(scene, maker.make(key));
                QCOMPARE(Snapshot::of(*loose), before);
                QCOMPARE(seen.redoSignals, QString());
                QCOMPARE(seen.undoSignals, QString());
            }
        }
        // A command that found no key leaves the curves' batches alone.
        scene.curve().insert(5, loose);
        scene.recorder.take();
        loose->setValue(8.0F);
        QCOMPARE(scene.recorder.take(), QString("b.valueChanged(8), curve0.keysChanged()"));
    }

    void itOwnsNoKeys() {
        Scene scene;
        const auto keys = watch(scene.add({1, 2}));
        scene.stack->push(new Smoothness(KeysSet{keys[0], keys[1]}, true));
        scene.stack->push(new Symmetry(keys[0], true));
        scene.stack->undo();
        scene.stack->clear();
        QCOMPARE(alive(keys), 2);
        scene.stack->push(new Smoothness(keys[0], false));
        scene.animation.reset();
        scene.stack.reset();
        QCOMPARE(alive(keys), 0);
    }
};

QTEST_GUILESS_MAIN(ChangeKeyParamCommandTest)
#include "ChangeKeyParamCommandTest.moc"
