#include "model/EditableMotionCurve.h"

#include <QMetaMethod>
#include <QtTest>

#include <functional>
#include <memory>

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;
using Type = VQ::Math::Interpolation::InterpolationType;

/// Counts what it hears, for connections by name and by position.
class Listener : public QObject {
    Q_OBJECT

public:
    int count = 0;

public Q_SLOTS:
    void hear() { ++count; }
};

namespace {

struct Connecting {
    const char* name;
    std::function<void(EditableMotionCurveKey&, Listener&)> connect;
};

const Connecting connectings[] = {
    {"by name",
     [](auto& key, auto& listener) {
         QObject::connect(&key, SIGNAL(valueChanged(float)), &listener, SLOT(hear()));
     }},
    {"by member",
     [](auto& key, auto& listener) {
         QObject::connect(&key, &EditableMotionCurveKey::valueChanged, &listener, &Listener::hear);
     }},
    {"a functor",
     [](auto& key, auto& listener) {
         QObject::connect(&key, &EditableMotionCurveKey::valueChanged, [&listener] { listener.hear(); });
     }},
    {"by method",
     [](auto& key, auto& listener) {
         const QMetaObject& meta = Listener::staticMetaObject;
         QObject::connect(&key, QMetaMethod::fromSignal(&EditableMotionCurveKey::valueChanged), &listener,
                          meta.method(meta.indexOfSlot("hear()")));
     }},
    {"by position",
     [](auto& key, auto& listener) {
         QMetaObject::connect(&key, key.metaObject()->indexOfSignal("valueChanged(float)"), &listener,
                              Listener::staticMetaObject.indexOfSlot("hear()"));
     }},
};

/// A bulk edit that gives the key another value.
void changeInABatch(EditableMotionCurve& curve, EditableMotionCurveKey* key) {
    curve.moveKeys({{key, QPointF(ZT::index(key) + 1.0, key->getValue() + 1.0)}});
}

} // namespace

/// While a batch runs, a curve ignores its keys, and a key that nobody else listens to saves its signals.
/// Whoever listens must not notice.
class KeyListenersTest : public QObject {
    Q_OBJECT

private slots:
    void aListenerHearsBulkEditsHoweverItConnects_data() {
        QTest::addColumn<int>("connecting");
        for (int i = 0; i < static_cast<int>(std::size(connectings)); ++i) {
            QTest::newRow(connectings[i].name) << i;
        }
    }

    void aListenerHearsBulkEditsHoweverItConnects() {
        QFETCH(int, connecting);
        EditableMotionCurve curve;
        auto* const key = new EditableMotionCurveKey;
        curve.insert(3, key);
        changeInABatch(curve, key);
        Listener listener;
        connectings[connecting].connect(*key, listener);
        changeInABatch(curve, key);
        QCOMPARE(listener.count, 1);
    }

    void aListenerFromBeforeTheKeyWasInACurveHearsBulkEdits() {
        EditableMotionCurve curve;
        auto* const key = new EditableMotionCurveKey;
        const QSignalSpy spy(key, &EditableMotionCurveKey::indexChanged);
        curve.insert(3, key);
        changeInABatch(curve, key);
        QCOMPARE(spy.count(), 1);
    }

    void eachOfTheThreeSignalsIsHeardInABatch() {
        EditableMotionCurve curve;
        auto* const key = new EditableMotionCurveKey;
        curve.insert(3, key);
        curve.insert(9, new EditableMotionCurveKey);
        const QSignalSpy values(key, &EditableMotionCurveKey::valueChanged);
        const QSignalSpy tangents(key, &EditableMotionCurveKey::tangentsChanged);
        const QSignalSpy indices(key, &EditableMotionCurveKey::indexChanged);
        changeInABatch(curve, key);
        QCOMPARE(values.count(), 1);
        QCOMPARE(tangents.count(), 1);
        QCOMPARE(indices.count(), 1);
    }

    void aKeyThatWentToAnotherCurveIsHeardByItsListener() {
        EditableMotionCurve first;
        EditableMotionCurve second;
        auto* const key = new EditableMotionCurveKey;
        first.insert(3, key);
        const QSignalSpy spy(key, &EditableMotionCurveKey::valueChanged);
        second.insert(5, first.release(3));
        changeInABatch(second, key);
        QCOMPARE(spy.count(), 1);
    }

    void aCurveHearsTheKeyThatItMadeAndAnotherCurveHolds() {
        EditableMotionCurve maker;
        EditableMotionCurve holder;
        auto* const key =
            EditableMotionCurveKey::_toEditable(std::make_pair(0U, maker.createCurveKey())).second;
        holder.insert(5, key);
        const QSignalSpy spy(&maker, &EditableMotionCurve::keysChanged);
        changeInABatch(holder, key);
        QCOMPARE(spy.count(), 3); // value, frame and, from the end of the batch, handles
    }

    void aCurveHearsAKeyWhoseParentSomebodyElseSet() {
        EditableMotionCurve connected;
        EditableMotionCurve parent;
        auto* const key = new EditableMotionCurveKey;
        connected.insert(5, key);
        const QSignalSpy spy(&connected, &EditableMotionCurve::keysChanged);
        parent.moveKeys({});
        key->_setParentCurve(&parent);
        key->setValue(4.0F);
        QCOMPARE(spy.count(), 1);
        key->_setParentCurve(&connected);
    }

    void aKeyOutlivesTheCurveThatOnlyMadeIt() {
        auto curve = std::make_unique<EditableMotionCurve>();
        const std::unique_ptr<EditableMotionCurveKey> key(
            EditableMotionCurveKey::_toEditable(std::make_pair(0U, curve->createCurveKey())).second);
        curve.reset();
        key->setValue(3.0F);
        key->setSmooth(true);
        key->setRightTangentOffset({2.0F, 1.0F});
        QCOMPARE(key->getValue(), 3.0F);
    }

    void aCurveHearsAKeyThatAStrangerDisconnected() {
        EditableMotionCurve connected;
        EditableMotionCurve stranger;
        EditableMotionCurve holder;
        auto* const key = new EditableMotionCurveKey;
        connected.insert(3, key);
        stranger._disconnectKey(key);
        QCOMPARE(connected.getKey(3), key);
        holder.insert(5, key);
        const QSignalSpy spy(&connected, &EditableMotionCurve::keysChanged);
        holder.moveKeys({{key, QPointF(6.0, 4.0)}});
        QVERIFY(spy.count() > 0);
        connected.release(3); // It has one owner again, ...
        holder._connectKey(key);
    }

    void outsideABatchTheCurveHearsAKeyWithoutListeners() {
        EditableMotionCurve curve;
        auto* const key = new EditableMotionCurveKey;
        curve.insert(3, key);
        const QSignalSpy spy(&curve, &EditableMotionCurve::keysChanged);
        changeInABatch(curve, key);
        QCOMPARE(spy.count(), 1);
        key->setValue(7.0F);
        QCOMPARE(spy.count(), 2);
    }

    void aReleasedKeySpeaksToItsListenerOnly() {
        EditableMotionCurve curve;
        curve.insert(3, new EditableMotionCurveKey);
        const std::unique_ptr<EditableMotionCurveKey> key(curve.release(3));
        const QSignalSpy curveSpy(&curve, &EditableMotionCurve::keysChanged);
        const QSignalSpy keySpy(key.get(), &EditableMotionCurveKey::valueChanged);
        key->setValue(2.0F);
        QCOMPARE(keySpy.count(), 1);
        QCOMPARE(curveSpy.count(), 0);
    }
};

QTEST_APPLESS_MAIN(KeyListenersTest)
#include "KeyListenersTest.moc"
