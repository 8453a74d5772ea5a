#include "commands/MoveCurveKeysCommand.h"
#include "model/EditableMotionCurveExceptions.h"
#include "tests/faults/FaultOperations.h"

#include <QtTest>

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>
#include <utility>

namespace {

using Curve = FaultScene::Curve;
using Key = FaultScene::Key;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;

/// Edits a scene at some signals, as a careless slot would, in any way that destroys nobody.
class SlotEditor {
public:
    SlotEditor(FaultScene& scene, unsigned int seed)
        : _scene(scene)
        , _random(seed) {
        using Animation = ZT::EditableAnimation;
        using Layer = ZT::EditableAnimationLayer;
        using Markers = ZT::AnimationMarkers;
        for (std::size_t i = 0; i < FaultScene::keyCount; ++i) {
            _listenTo(scene.key(i), &Key::valueChanged, &Key::tangentsChanged, &Key::smoothChanged,
                      &Key::symmetricalChanged, &Key::indexChanged);
        }
        for (std::size_t i = 0; i < 2; ++i) {
            _listenTo(&scene.curve(i), &Curve::keysChanged, &Curve::keyAdded, &Curve::keyAboutToBeRemoved,
                      &Curve::curveCleared, &Curve::greaterIndexChanged);
        }
        for (const Layer* const layer : scene.animation()) {
            _listenTo(layer, &Layer::curveChanged, &Layer::greaterIndexChanged);
        }
        _listenTo(&scene.animation(), &Animation::layersChanged, &Animation::greaterIndexChanged);
        _listenTo(&scene.markers(), &Markers::startIndexChanged, &Markers::endIndexChanged,
                  &Markers::rangeStartIndexChanged, &Markers::rangeEndIndexChanged);
    }

    int edits() const noexcept { return _edits; }

private:
    template <class Sender, class... Signals>
    void _listenTo(const Sender* sender, Signals... heard) {
        (QObject::connect(sender, heard, &_context, [this] { _edit(); }), ...);
    }

    unsigned int _below(unsigned int count) { return static_cast<unsigned int>(_random() % count); }
    Key* _keyOf(Curve& curve) {
        return std::next(curve.begin(), _below(static_cast<unsigned int>(curve.size())))->second;
    }

    void _edit() {
        Curve& curve = _scene.curve(_below(2));
        if (_edits >= 5 || _below(3) == 0 || curve.empty()) {
            return; // A slot that edits at each of its own edits never ends.
        }
        ++_edits;
        Key* const key = _keyOf(curve);
        switch (_below(12)) {
        case 0:
            curve.translateKey(key, _below(14));
            break;
        case 1:
            key->setValue(static_cast<float>(_below(9)));
            break;
        case 2:
            if (Key* const released = curve.release(ZT::index(key))) {
                _scene.receive(released);
            }
            break;
        case 3:
            curve.moveKeys({{key, QPointF(_below(14), 1.0)}});
            break;
        case 4:
            _reorganize(curve, {{key, _below(14)}, {_keyOf(curve), _below(14)}});
            break;
        case 5: {
            const unsigned int frame = _below(20);
            if (curve.isIndexAvailable(frame)) { // Nobody is destroyed.
                curve.insert(frame, _newcomer());
            }
            break;
        }
        case 6: {
            const auto left =
                curve.releaseAndInsertKeys({{key, ZT::index(key)}}, {{_newcomer(), _below(14)}});
            for (auto entry = left.cbegin(); entry != left.cend(); ++entry) {
                _scene.receive(entry.key());
            }
            break;
        }
        case 7:
            curve.setTangentsType({{key, Side::left}}, Type::linear);
            break;
        case 8:
            curve.moveTangents({key}, Side::right, {static_cast<float>(_below(9)), 1.0F});
            break;
        case 9:
            curve.getParentLayer()->setActuatorName(QString::number(_below(9)));
            break;
        case 10:
            _scene.markers().setRangeStartIndex(_below(9));
            break;
        default:
            curve.setKeysSmooth({key}, _below(2) == 0);
            break;
        }
    }

    Key* _newcomer() {
        auto* const newcomer = new Key; // A curve's, or the scene's.
        _scene.watch(newcomer);
        return newcomer;
    }

    void _reorganize(Curve& curve, const Curve::KeysIndexMap& frames) {
        try {
            curve.reorganizeKeys(frames);
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            for (Key* const key : failure.failedKeys) {
                _scene.receive(key);
            }
        }
    }

    FaultScene& _scene;
    std::mt19937 _random;
    int _edits = 0;
    QObject _context;
};

} // namespace

class EditingSlotsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whateverSlotsEditEveryKeyKeepsItsPlaceAndItsOwner_data();
    void whateverSlotsEditEveryKeyKeepsItsPlaceAndItsOwner();
    void aKeyThatASlotTakesInAgainDidNotFail();
    void aKeyThatASlotTakesOutAtItsNewFrameDidNotFail();
    void aNewcomerThatASlotTakesOutAgainDidNotFail_data();
    void aNewcomerThatASlotTakesOutAgainDidNotFail();
    void whereASlotTakesTheNewcomerOutInsertAnswersTheEnd();
    void aKeyThatASlotMovesBeforeItsReleaseStays();
    void aKeyThatASlotPlacesBeforeItsTurnStaysThere();
    void aKeyThatASlotMovesWhenItIsAboutToLeaveStays();
    void aFrameThatASlotFillsIsRefusedToTheKeyThatWasToTakeIt();
    void aKeyWhoseFrameASlotFillsBeforeItIsPutBackStandsBehindTheLast();
    void aKeyThatIsPutBackBehindTheLastPossibleFrameTakesTheFirstFreeOne();
    void aKeyWhoseWayBackASlotBlocksStaysInTheCurveWhenADragIsUndone();
};

void EditingSlotsTest::whateverSlotsEditEveryKeyKeepsItsPlaceAndItsOwner_data() {
    QTest::addColumn<FaultOperation>("operation");
    for (const auto& operations : {faultyEdits(), faultyCommands()}) {
        for (const FaultOperation& operation : operations) {
            QTest::newRow(operation.name) << operation;
        }
    }
}

void EditingSlotsTest::whateverSlotsEditEveryKeyKeepsItsPlaceAndItsOwner() {
    QFETCH(const FaultOperation, operation);
    const int deaths = operation.deaths();
    int edits = 0;
    for (unsigned int seed = 1; seed <= 200; ++seed) {
        FaultScene scene;
        operation.prepare(scene);
        {
            const SlotEditor editor(scene, seed);
            try {
                operation.run(scene);
            } catch (const std::invalid_argument&) {
                // The frame to insert at was filled by a slot.
            }
            edits += editor.edits();
        }
        const QString where = QString("seed %1: ").arg(seed);
        QVERIFY2(scene.deaths() <= deaths, qPrintable(where));
        QCOMPARE(where + scene.fault(), where);
        scene.command.reset();
        QCOMPARE(where + scene.fault(), where);
    }
    QVERIFY(edits > 0);
}

void EditingSlotsTest::aKeyThatASlotTakesInAgainDidNotFail() {
    FaultScene scene;
    Curve& curve = scene.curve();
    connect(&curve, &Curve::keyAboutToBeRemoved, [&](Key* key) { curve.insert(20, key); });
    curve.reorganizeKeys({{scene.key(0), 4}}); // Does not throw.
    QCOMPARE(curve.getIndexOf(scene.key(0)), 20U);
    QCOMPARE(scene.fault(), QString());
}

void EditingSlotsTest::aKeyThatASlotTakesOutAtItsNewFrameDidNotFail() {
    FaultScene scene;
    Curve& curve = scene.curve();
    connect(scene.key(0), &Key::indexChanged, [&] { scene.receive(curve.release(9)); });
    curve.reorganizeKeys({{scene.key(0), 9}}); // Does not throw.
    QCOMPARE(curve.getKey(9), nullptr);
    QCOMPARE(scene.fault(), QString());
}

void EditingSlotsTest::whereASlotTakesTheNewcomerOutInsertAnswersTheEnd() {
    FaultScene scene;
    Curve& curve = scene.curve();
    connect(&curve, &Curve::keyAdded, [&] { scene.receive(curve.release(9)); });
    QVERIFY(curve.insert(9, scene.key(8)) == curve.end());
    QCOMPARE(scene.fault(), QString());
}

void EditingSlotsTest::aNewcomerThatASlotTakesOutAgainDidNotFail_data() {
    QTest::addColumn<bool>("isAdded");
    QTest::newRow("when its frame is said") << false;
    QTest::newRow("when it is said to be added") << true;
}

void EditingSlotsTest::aNewcomerThatASlotTakesOutAgainDidNotFail() {
    QFETCH(const bool, isAdded);
    FaultScene scene;
    Curve& curve = scene.curve();
    const auto takeOut = [&] { scene.receive(curve.release(9)); };
    if (isAdded) {
        connect(&curve, &Curve::keyAdded, takeOut);
    } else {
        connect(scene.key(8), &Key::indexChanged, takeOut);
    }
    curve.reorganizeKeys({{scene.key(8), 9}}); // Does not throw.
    QCOMPARE(curve.getKey(9), nullptr);
    QCOMPARE(scene.fault(), QString());
}

// Their order by address is not that of their frames.
void EditingSlotsTest::aKeyThatASlotMovesBeforeItsReleaseStays() {
    FaultScene scene;
    Curve& curve = scene.curve();
    curve.translateKey(scene.key(0), 10);
    bool isFirst = true;
    connect(&curve, &Curve::keyAboutToBeRemoved, [&] {
        if (std::exchange(isFirst, false)) {
            curve.translateKey(scene.key(1), 3);
        }
    });
    const Curve::KeysIndexMap left =
        curve.releaseAndInsertKeys({{scene.key(0), 10}, {scene.key(1), 4}, {scene.key(2), 6}}, {});
    QCOMPARE(left, (Curve::KeysIndexMap{{scene.key(0), 10}, {scene.key(2), 6}}));
    QCOMPARE(curve.getKey(3), scene.key(1));
    scene.receive(scene.key(0));
    scene.receive(scene.key(2));
    QCOMPARE(scene.fault(), QString());
}

void EditingSlotsTest::aKeyThatASlotPlacesBeforeItsTurnStaysThere() {
    FaultScene scene;
    Curve& curve = scene.curve();
    connect(scene.key(0), &Key::indexChanged, [&] { curve.insert(30, scene.key(3)); });
    curve.reorganizeKeys({{scene.key(0), 1}, {scene.key(3), 9}});
    QCOMPARE(curve.getIndexOf(scene.key(0)), 1U);
    QCOMPARE(curve.getIndexOf(scene.key(3)), 30U);
    QCOMPARE(scene.fault(), QString());
}

void EditingSlotsTest::aKeyThatASlotMovesWhenItIsAboutToLeaveStays() {
    FaultScene scene;
    Curve& curve = scene.curve();
    connect(&curve, &Curve::keyAboutToBeRemoved, [&](Key* key) { curve.translateKey(key, 40); });
    QCOMPARE(curve.release(8), nullptr);
    QCOMPARE(curve.getIndexOf(scene.key(3)), 40U);
    QCOMPARE(scene.fault(), QString());
}

void EditingSlotsTest::aFrameThatASlotFillsIsRefusedToTheKeyThatWasToTakeIt() {
    FaultScene scene;
    Curve& curve = scene.curve();
    connect(&curve, &Curve::keyAboutToBeRemoved, [&](Key* key) {
        curve.translateKey(key, 40);
        curve.translateKey(scene.key(0), 8);
    });
    QVERIFY_EXCEPTION_THROWN(curve.insert(8, scene.key(8)), std::invalid_argument);
    QCOMPARE(curve.getKey(8), scene.key(0));
    QCOMPARE(scene.key(8)->getParentCurve(), nullptr);
    QCOMPARE(scene.fault(), QString());
}

// It was on its way to the caller, who gets an exception instead.
void EditingSlotsTest::aKeyWhoseFrameASlotFillsBeforeItIsPutBackStandsBehindTheLast() {
    FaultScene scene;
    Curve& curve = scene.curve();
    bool isFirst = true;
    connect(&curve, &Curve::greaterIndexChanged, [&] {
        if (std::exchange(isFirst, false)) {
            curve.insert(8, scene.key(8));
            throw std::runtime_error("a slot's");
        }
    });
    QVERIFY_EXCEPTION_THROWN(curve.release(8), std::runtime_error);
    QCOMPARE(curve.getKey(8), scene.key(8));
    QCOMPARE(curve.getKey(9), scene.key(3));
    QCOMPARE(scene.fault(), QString());
}

void EditingSlotsTest::aKeyThatIsPutBackBehindTheLastPossibleFrameTakesTheFirstFreeOne() {
    constexpr unsigned int last = std::numeric_limits<unsigned int>::max();
    FaultScene scene;
    Curve& curve = scene.curve();
    curve.translateKey(scene.key(0), 0);
    curve.translateKey(scene.key(3), last);
    bool isFirst = true;
    connect(&curve, &Curve::greaterIndexChanged, [&] {
        if (std::exchange(isFirst, false)) {
            curve.insert(last, scene.key(8));
            throw std::runtime_error("a slot's");
        }
    });
    QVERIFY_EXCEPTION_THROWN(curve.release(last), std::runtime_error);
    QCOMPARE(curve.getKey(last), scene.key(8));
    QCOMPARE(curve.getKey(1), scene.key(3));
    QCOMPARE(scene.fault(), QString());
}

void EditingSlotsTest::aKeyWhoseWayBackASlotBlocksStaysInTheCurveWhenADragIsUndone() {
    using ZT::AnimCmd::MoveCurveKeysCommand;
    FaultScene scene;
    Curve& curve = scene.curve();
    Key* const one = scene.key(0);   // at 2
    Key* const other = scene.key(1); // at 4
    MoveCurveKeysCommand drag({{one, QPointF(10.0, 0.0)}, {other, QPointF(2.0, 0.0)}}, false);
    drag.redo();
    drag.redo(); // The frame that the one has left is free for the other.
    MoveCurveKeysCommand step({{one, QPointF(4.0, 0.0)}, {other, QPointF(2.0, 0.0)}}, false);
    step.redo();
    QVERIFY(drag.mergeWith(&step));
    QCOMPARE(curve.getKey(4), one);
    QCOMPARE(curve.getKey(2), other);

    Key* const placedFirst = std::min(one, other, std::less<>());
    Key* const placedSecond = std::max(one, other, std::less<>());
    const unsigned int wayBack = placedSecond == one ? 2 : 4;
    connect(placedFirst, &Key::indexChanged, [&] { curve.insert(wayBack, scene.key(8)); });
    drag.undo();
    QCOMPARE(curve.getKey(wayBack), scene.key(8));
    QCOMPARE(curve.getIndexOf(placedSecond), 9U);
    QCOMPARE(scene.fault(), QString());
}

QTEST_GUILESS_MAIN(EditingSlotsTest)
#include "EditingSlotsTest.moc"
