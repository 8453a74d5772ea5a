#include "commands/ReplaceCurveKeysCommand.h"
#include "tests/faults/FaultOperations.h"
#include "tests/faults/SlotThrower.h"
#include "tests/support/SignalRecorder.h"

#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

QString stateAfter(const FaultOperation& operation, bool isRun) {
    FaultScene scene;
    operation.prepare(scene);
    if (isRun) {
        operation.run(scene);
    }
    return scene.state();
}

// A scene's state ends each curve with a line of its own.
bool isOneOfThemCurveByCurve(const QString& state, const QString& before, const QString& after) {
    const QStringList parts = state.split("\n--");
    const QStringList old = before.split("\n--");
    const QStringList made = after.split("\n--");
    for (int i = 0; i < parts.size(); ++i) {
        if (parts[i] != old.value(i) && parts[i] != made.value(i)) {
            return false;
        }
    }
    return true;
}

} // namespace

class ThrowingSlotsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whateverSlotThrowsTheOperationIsCarriedThroughOrTakenBack_data();
    void whateverSlotThrowsTheOperationIsCarriedThroughOrTakenBack();
    void theFirstOfSeveralExceptionsIsTheOneThatArrives();
    void aTypeWhoseHandleWasAnnouncedToASlotThatThrowsIsAnnouncedToo();
    void aKeyThatIsDisplacedAndInsertedAgainIsTakenBackToItsFrame();
    void aReplacementThatASlotStoppedCanBeDoneAgain();
    void aReplacementThatASlotStoppedInOneOfTwoCurvesCanBeDoneAgain();
    void aReplacementThatASlotStoppedIsTakenBackByTheOpposite();
    void aReplacementWhoseUndoASlotStoppedCanBeUndoneAgain();
    void takingBackAnnouncesNoFrameThatWasNeverTheGreatest();
    void takingBackAnnouncesTheGreatestFrameAgain();
    void theWayBackOfAReleasedKeyIsAnnounced();
    void theWayBackOfAnInsertedKeyIsAnnouncedOnce_data();
    void theWayBackOfAnInsertedKeyIsAnnouncedOnce();
    void aKeyThatASlotTakesOnItsWayBackIsLeftToIt();
};

void ThrowingSlotsTest::whateverSlotThrowsTheOperationIsCarriedThroughOrTakenBack_data() {
    QTest::addColumn<FaultOperation>("operation");
    QTest::addColumn<bool>("throwsOnAndOn");
    for (const auto& operations : {faultyEdits(), faultyCommands()}) {
        for (const FaultOperation& operation : operations) {
            QTest::newRow(operation.name) << operation << false;
            QTest::addRow("%s, and on", operation.name) << operation << true;
        }
    }
}

void ThrowingSlotsTest::whateverSlotThrowsTheOperationIsCarriedThroughOrTakenBack() {
    QFETCH(const FaultOperation, operation);
    QFETCH(const bool, throwsOnAndOn);
    const QString before = stateAfter(operation, false);
    const QString after = stateAfter(operation, true);
    const auto afterThat = throwsOnAndOn ? SlotThrower::AfterThat::throwToo : SlotThrower::AfterThat::pass;
    int emission = 1;
    for (bool hasThrown = true; hasThrown; ++emission) {
        FaultScene scene;
        operation.prepare(scene);
        bool hasArrived = false;
        {
            const SlotThrower thrower(scene, emission, afterThat);
            try {
                operation.run(scene);
            } catch (const SlotFailure&) {
                hasArrived = true;
            }
            hasThrown = thrower.hasThrown();
        }
        const QString where = QString("emission %1: ").arg(emission);
        QCOMPARE(where + scene.fault(), where);
        const QString state = scene.state();
        scene.command.reset();
        QCOMPARE(where + scene.fault(), where);
        if (!hasThrown) {
            QVERIFY(!hasArrived);
            QCOMPARE(state, after);
            break;
        }
        QVERIFY(hasArrived || operation.handsOverByException);
        switch (operation.law) {
        case Law::carriedThrough:
            QCOMPARE(where + state, where + after);
            break;
        case Law::takenBack:
            QCOMPARE(where + state, where + before);
            break;
        case Law::eitherWay:
            QVERIFY2(state == before || state == after, qPrintable(where + state));
            break;
        case Law::curveByCurve:
            QVERIFY2(isOneOfThemCurveByCurve(state, before, after), qPrintable(where + state));
            break;
        }
    }
    QVERIFY2(emission > 1, "no slot was called");
}

void ThrowingSlotsTest::theFirstOfSeveralExceptionsIsTheOneThatArrives() {
    FaultScene scene;
    int number = 0;
    for (std::size_t i = 0; i < FaultScene::keysOfACurve; ++i) {
        connect(scene.key(i), &FaultScene::Key::valueChanged, [&] { throw ++number; });
    }
    int arrived = 0;
    try {
        scene.curve().moveKeys(scene.forEachStanding<QPointF>(
            [](FaultScene::Key* key) { return QPointF(ZT::index(key), 100.0); }));
    } catch (const int thrown) {
        arrived = thrown;
    }
    QCOMPARE(number, static_cast<int>(FaultScene::keysOfACurve));
    QCOMPARE(arrived, 1);
}

void ThrowingSlotsTest::aTypeWhoseHandleWasAnnouncedToASlotThatThrowsIsAnnouncedToo() {
    const FaultScene scene;
    FaultScene::Key* const key = scene.key(1);
    using Type = VQ::Math::Interpolation::InterpolationType;
    key->setLeftTangentType(Type::linear);
    key->setTangentOffset(ZT::TangentSide::left, {-7.0F, 7.0F});
    int announced = 0;
    connect(key, &FaultScene::Key::tangentsChanged, [&] {
        if (++announced == 1) {
            throw std::runtime_error("a slot's");
        }
    });
    QVERIFY_EXCEPTION_THROWN(key->setLeftTangentType(Type::bezierAuto), std::runtime_error);
    QCOMPARE(announced, 2);
}

// Its neighbour by address takes its place before its own turn.
void ThrowingSlotsTest::aKeyThatIsDisplacedAndInsertedAgainIsTakenBackToItsFrame() {
    FaultScene scene;
    FaultScene::Key* const standing = scene.curve().release(6);
    scene.receive(standing);
    FaultScene::Key* const first = std::min(standing, scene.key(8));
    FaultScene::Key* const second = std::max(standing, scene.key(8));
    scene.curve().insert(6, second);
    scene.curve().updateBezierAutoTangents();
    const QString before = scene.state();
    connect(&scene.curve(), &FaultScene::Curve::keyAdded, [] { throw SlotFailure(); });
    QVERIFY_EXCEPTION_THROWN(scene.curve().releaseAndInsertKeys({}, {{first, 6}, {second, 9}}), SlotFailure);
    QCOMPARE(scene.state(), before);
}

void ThrowingSlotsTest::aReplacementThatASlotStoppedCanBeDoneAgain() {
    int emission = 1;
    for (bool hasThrown = true; hasThrown; ++emission) {
        FaultScene scene;
        auto& curve = scene.curve();
        const QString before = scene.state();
        scene.command = std::make_unique<ZT::AnimCmd::ReplaceCurveKeysCommand>(
            QMap<FaultScene::Curve*, FaultScene::Curve::KeysIndexMap>{{&curve, {{scene.key(3), 8}}}},
            QMap<FaultScene::Curve*, FaultScene::Curve::KeysIndexMap>{
                {&curve, {{scene.key(8), 4}, {scene.key(9), 9}}}});
        {
            const SlotThrower thrower(scene, emission, SlotThrower::AfterThat::pass);
            try {
                scene.command->redo();
            } catch (const SlotFailure&) {
                QCOMPARE(scene.state(), before);
            }
            hasThrown = thrower.hasThrown();
        }
        if (hasThrown) {
            scene.command->redo();
        }
        QCOMPARE(curve.getIndexList(), (std::set<unsigned int>{2, 4, 6, 9}));
        QCOMPARE(curve.getKey(4), scene.key(8));
        scene.command->undo();
        QCOMPARE(scene.state(), before);
    }
    QVERIFY(emission > 5);
}

// What the first try took out of the other curve must be there for undo after the second.
void ThrowingSlotsTest::aReplacementThatASlotStoppedInOneOfTwoCurvesCanBeDoneAgain() {
    using Curves = QMap<FaultScene::Curve*, FaultScene::Curve::KeysIndexMap>;
    for (const std::size_t stopped : {0U, 1U}) {
        FaultScene scene;
        const QString before = scene.state();
        scene.command = std::make_unique<ZT::AnimCmd::ReplaceCurveKeysCommand>(
            Curves{{&scene.curve(0), {{scene.key(0), 2}}}, {&scene.curve(1), {{scene.key(4), 2}}}},
            Curves{{&scene.curve(0), {{scene.key(8), 4}}}, {&scene.curve(1), {{scene.key(9), 6}}}});
        const auto tryOnce = [&](auto step) {
            const auto stop = connect(&scene.curve(stopped), &FaultScene::Curve::keyAboutToBeRemoved,
                                      [] { throw SlotFailure(); });
            QVERIFY_EXCEPTION_THROWN(step(), SlotFailure);
            disconnect(stop);
            QCOMPARE(scene.fault(), QString());
        };
        tryOnce([&] { scene.command->redo(); });
        scene.command->redo();
        QCOMPARE(scene.curve(0).getIndexList(), (std::set<unsigned int>{4, 6, 8}));
        QCOMPARE(scene.curve(1).getIndexList(), (std::set<unsigned int>{4, 6, 8}));
        const QString after = scene.state();
        tryOnce([&] { scene.command->undo(); });
        scene.command->undo();
        QCOMPARE(scene.state(), before);
        scene.command->redo();
        QCOMPARE(scene.state(), after);
        scene.command->undo();
        QCOMPARE(scene.state(), before);
    }
}

// A history may count as undone what was undone in one of two curves only, and go on from there.
void ThrowingSlotsTest::aReplacementThatASlotStoppedIsTakenBackByTheOpposite() {
    using Curves = QMap<FaultScene::Curve*, FaultScene::Curve::KeysIndexMap>;
    for (const std::size_t stopped : {0U, 1U}) {
        FaultScene scene;
        const QString before = scene.state();
        scene.command = std::make_unique<ZT::AnimCmd::ReplaceCurveKeysCommand>(
            Curves{{&scene.curve(0), {{scene.key(0), 2}}}, {&scene.curve(1), {{scene.key(4), 2}}}}, Curves());
        const auto tryOnce = [&](auto signal, auto step) {
            const auto stop = connect(&scene.curve(stopped), signal, [] { throw SlotFailure(); });
            QVERIFY_EXCEPTION_THROWN(step(), SlotFailure);
            disconnect(stop);
            QCOMPARE(scene.fault(), QString());
        };
        tryOnce(&FaultScene::Curve::keyAboutToBeRemoved, [&] { scene.command->redo(); });
        scene.command->undo();
        QCOMPARE(scene.state(), before);
        scene.command->redo();
        const QString after = scene.state();
        for (int times = 0; times < 2; ++times) {
            tryOnce(&FaultScene::Curve::keyAdded, [&] { scene.command->undo(); });
            scene.command->redo();
            QCOMPARE(scene.state(), after);
        }
        scene.command->undo();
        QCOMPARE(scene.state(), before);
    }
}

void ThrowingSlotsTest::aReplacementWhoseUndoASlotStoppedCanBeUndoneAgain() {
    FaultScene scene;
    const QString before = scene.state();
    ZT::AnimCmd::AddCurveKeysCommand command(scene.key(8), &scene.curve(), 8);
    command.redo();
    {
        const SlotThrower thrower(scene, 1, SlotThrower::AfterThat::pass);
        QVERIFY_EXCEPTION_THROWN(command.undo(), SlotFailure);
    }
    command.undo();
    QCOMPARE(scene.state(), before);
}

void ThrowingSlotsTest::takingBackAnnouncesNoFrameThatWasNeverTheGreatest() {
    FaultScene scene;
    const QSignalSpy greatest(&scene.curve(), &FaultScene::Curve::greaterIndexChanged);
    connect(&scene.curve(), &FaultScene::Curve::keyAdded, [] { throw SlotFailure(); });
    QVERIFY_EXCEPTION_THROWN(scene.curve().releaseAndInsertKeys({{scene.key(3), 8}}, {{scene.key(8), 20}}),
                             SlotFailure);
    QCOMPARE(greatest.size(), 0);
}

void ThrowingSlotsTest::theWayBackOfAReleasedKeyIsAnnounced() {
    FaultScene scene;
    SignalRecorder recorder;
    recorder.watch(scene.curve());
    scene.curve().updateBezierAutoTangents();
    recorder.take();
    connect(&scene.curve(), &FaultScene::Curve::greaterIndexChanged, [] { throw SlotFailure(); });
    QVERIFY_EXCEPTION_THROWN(scene.curve().release(8), SlotFailure);
    QCOMPARE(scene.curve().getKey(8), scene.key(3));
    QString heard = recorder.take();
    heard.remove(QRegularExpression("[(][^)]*[)]"));
    QCOMPARE(heard, QString("curve.keyAboutToBeRemoved, curve.greaterIndexChanged, curve.keyAdded, "
                            "curve.greaterIndexChanged"));
}

// Listeners have heard of frame 20 when the batch ends with the exception.
void ThrowingSlotsTest::takingBackAnnouncesTheGreatestFrameAgain() {
    FaultScene scene;
    QList<unsigned int> heard;
    connect(&scene.curve(), &FaultScene::Curve::greaterIndexChanged,
            [&heard](unsigned int greatest) { heard.append(greatest); });
    connect(&scene.curve(), &FaultScene::Curve::keysChanged, [] { throw SlotFailure(); });
    QVERIFY_EXCEPTION_THROWN(scene.curve().releaseAndInsertKeys({}, {{scene.key(8), 20}}), SlotFailure);
    QCOMPARE(heard, (QList<unsigned int>{20, 8}));
}

void ThrowingSlotsTest::theWayBackOfAnInsertedKeyIsAnnouncedOnce_data() {
    QTest::addColumn<bool>("isTakenOut");
    QTest::newRow("by the curve") << false;
    QTest::newRow("by the slot that throws") << true;
}

void ThrowingSlotsTest::theWayBackOfAnInsertedKeyIsAnnouncedOnce() {
    QFETCH(const bool, isTakenOut);
    FaultScene scene;
    QList<FaultScene::Key*> leaving;
    connect(&scene.curve(), &FaultScene::Curve::keyAboutToBeRemoved,
            [&leaving](FaultScene::Key* key) { leaving.append(key); });
    connect(&scene.curve(), &FaultScene::Curve::keyAdded, [&] {
        if (isTakenOut) {
            scene.curve().release(9);
        }
        throw SlotFailure();
    });
    QVERIFY_EXCEPTION_THROWN(scene.curve().releaseAndInsertKeys({}, {{scene.key(8), 9}}), SlotFailure);
    QCOMPARE(leaving, QList<FaultScene::Key*>{scene.key(8)});
    QCOMPARE(scene.key(8)->getParentCurve(), nullptr);
}

void ThrowingSlotsTest::aKeyThatASlotTakesOnItsWayBackIsLeftToIt() {
    FaultScene scene;
    connect(&scene.curve(), &FaultScene::Curve::keyAdded, [] { throw SlotFailure(); });
    bool isFirst = true;
    connect(&scene.curve(), &FaultScene::Curve::keyAboutToBeRemoved, [&] {
        if (std::exchange(isFirst, false)) {
            scene.curve().release(9);
            scene.curve(1).reorganizeKeys({{scene.key(8), 30}});
        }
    });
    QVERIFY_EXCEPTION_THROWN(scene.curve().releaseAndInsertKeys({}, {{scene.key(8), 9}}), SlotFailure);
    QCOMPARE(scene.curve().getKey(9), nullptr);
    QCOMPARE(scene.curve(1).getKey(30), scene.key(8));
    QCOMPARE(scene.fault(), QString());
}

QTEST_GUILESS_MAIN(ThrowingSlotsTest)
#include "ThrowingSlotsTest.moc"
