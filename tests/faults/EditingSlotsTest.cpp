#include "model/EditableMotionCurveExceptions.h"
#include "tests/faults/FaultOperations.h"

#include <QtTest>

#include <memory>
#include <random>

namespace {

using Curve = FaultScene::Curve;
using Key = FaultScene::Key;

/// Edits a scene at some signals, as a careless slot would: with everything that is allowed there.
class SlotEditor {
public:
    SlotEditor(FaultScene& scene, unsigned int seed)
        : _scene(scene)
        , _random(seed) {
        for (std::size_t i = 0; i < FaultScene::keyCount; ++i) {
            const Key* const key = scene.key(i);
            QObject::connect(key, &Key::tangentsChanged, &_context, [this] { _edit(); });
            QObject::connect(key, &Key::valueChanged, &_context, [this] { _edit(); });
            QObject::connect(key, &Key::indexChanged, &_context, [this] { _edit(); });
        }
        for (std::size_t i = 0; i < 2; ++i) {
            const Curve* const curve = &scene.curve(i);
            QObject::connect(curve, &Curve::keysChanged, &_context, [this] { _edit(); });
            QObject::connect(curve, &Curve::keyAdded, &_context, [this] { _edit(); });
            QObject::connect(curve, &Curve::keyAboutToBeRemoved, &_context, [this] { _edit(); });
            QObject::connect(curve, &Curve::greaterIndexChanged, &_context, [this] { _edit(); });
        }
    }

    int edits() const noexcept { return _edits; }

private:
    unsigned int _below(unsigned int count) { return static_cast<unsigned int>(_random() % count); }
    Key* _standingKey() {
        auto position = _scene.curve().begin();
        for (unsigned int i = _below(static_cast<unsigned int>(_scene.curve().size())); i > 0; --i) {
            ++position;
        }
        return position->second;
    }

    void _edit() {
        if (_edits >= 5 || _below(3) == 0 || _scene.curve().empty()) {
            return; // A slot that edits at each of its own edits never ends.
        }
        ++_edits;
        Curve& curve = _scene.curve();
        Key* const key = _standingKey();
        switch (_below(7)) {
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
            _reorganize({{key, _below(14)}, {_standingKey(), _below(14)}});
            break;
        case 5: {
            const unsigned int frame = _below(20);
            if (curve.isIndexAvailable(frame)) { // Nobody is destroyed.
                auto* const newcomer = new Key;
                _scene.watch(newcomer);
                curve.insert(frame, newcomer);
            }
            break;
        }
        default:
            curve.setKeysSmooth({key}, _below(2) == 0);
            break;
        }
    }

    void _reorganize(const Curve::KeysIndexMap& frames) {
        try {
            _scene.curve().reorganizeKeys(frames);
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
    void aKeyThatASlotPlacesBeforeItsTurnStaysThere();
    void aKeyThatASlotMovesWhenItIsAboutToLeaveStays();
    void aFrameThatASlotFillsIsRefusedToTheKeyThatWasToTakeIt();
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
        }
        const QString where = QString("seed %1: ").arg(seed);
        QCOMPARE(where + scene.fault(), where);
        scene.command.reset();
        QCOMPARE(where + scene.fault(), where);
    }
}

void EditingSlotsTest::aKeyThatASlotTakesInAgainDidNotFail() {
    FaultScene scene;
    Curve& curve = scene.curve();
    connect(&curve, &Curve::keyAboutToBeRemoved, [&](Key* key) { curve.insert(20, key); });
    curve.reorganizeKeys({{scene.key(0), 4}}); // Does not throw.
    QCOMPARE(curve.getIndexOf(scene.key(0)), 20U);
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

QTEST_GUILESS_MAIN(EditingSlotsTest)
#include "EditingSlotsTest.moc"
