#include "commands/DetachedKeys.h"

#include "model/EditableMotionCurve.h"

#include <QPointer>
#include <QTest>

#include <memory>
#include <type_traits>

namespace {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Keys = ZT::AnimCmd::DetachedKeys;

// Two lists of one key would delete it twice.
static_assert(!std::is_copy_constructible_v<Keys> && !std::is_copy_assignable_v<Keys>);

/// A key that the given curve made and names as its parent, without holding it.
Key* createdBy(const Curve& curve) {
    return Key::_toEditable(std::make_pair(0U, curve.createCurveKey())).second;
}

} // namespace

class DetachedKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysInNoCurveDieWithTheList() {
        auto keys = std::make_unique<Keys>();
        const QPointer<Key> first = new Key;
        const QPointer<Key> second = new Key;
        keys->add({first});
        keys->add({second});
        QVERIFY(!first.isNull() && !second.isNull());
        keys.reset();
        QVERIFY(first.isNull());
        QVERIFY(second.isNull());
    }

    void aKeyThatIsAddedTwiceDiesOnce() {
        auto keys = std::make_unique<Keys>();
        auto* const key = new Key;
        int deaths = 0;
        connect(key, &QObject::destroyed, this, [&] { ++deaths; });
        keys->add({key});
        keys->add({key});
        keys.reset();
        QCOMPARE(deaths, 1);
    }

    void nullIsLeftOut() {
        Keys keys;
        keys.add({nullptr});
        keys.letGoOfHeldKeys();
    }

    void aKeyThatACurveHoldsIsLeftOut() {
        Curve curve;
        const QPointer<Key> key = new Key;
        curve.insert(5, key);
        auto keys = std::make_unique<Keys>();
        keys->add({key});
        QCOMPARE(key->getParentCurve(), &curve);
        QCOMPARE(curve.release(5), key.data());
        keys.reset();
        QVERIFY(!key.isNull());
        delete key;
    }

    void aHeldKeyStillSpeaksToItsCurveAfterBeingOffered() {
        Curve curve;
        auto* const key = new Key;
        curve.insert(5, key);
        Keys keys;
        keys.add({key});
        int changes = 0;
        connect(&curve, &Curve::keysChanged, this, [&] { ++changes; });
        key->setValue(1.0F);
        QCOMPARE(changes, 1);
    }

    void aKeyThatACurveMadeIsCutLooseFromIt() {
        auto curve = std::make_unique<Curve>();
        auto keys = std::make_unique<Keys>();
        const QPointer<Key> key = createdBy(*curve);
        QCOMPARE(key->getParentCurve(), curve.get());
        int changes = 0;
        connect(curve.get(), &Curve::keysChanged, this, [&] { ++changes; });
        keys->add({key});
        QVERIFY(key->getParentCurve() == nullptr);
        key->setValue(1.0F);
        QCOMPARE(changes, 0);
        curve.reset();
        QVERIFY(!key.isNull());
        keys.reset();
        QVERIFY(key.isNull());
    }

    void aKeyThatACurveTookBackIsTheCurvesOwn() {
        Curve curve;
        auto keys = std::make_unique<Keys>();
        const QPointer<Key> key = new Key;
        keys->add({key});
        curve.insert(3, key);
        keys.reset();
        QVERIFY(!key.isNull());
        QCOMPARE(curve.getKey(3), key.data());
    }

    void aKeyThatDiedInACurveIsNotTouched() {
        auto keys = std::make_unique<Keys>();
        const QPointer<Key> key = new Key;
        const QPointer<Key> other = new Key;
        keys->add({key});
        keys->add({other});
        {
            Curve curve;
            curve.insert(3, key);
        }
        QVERIFY(key.isNull());
        keys->letGoOfHeldKeys();
        keys.reset();
        QVERIFY(other.isNull());
    }

    void aHeldKeyThatWasLetGoBelongsToWhoeverTakesItOut() {
        Curve curve;
        auto keys = std::make_unique<Keys>();
        const QPointer<Key> key = new Key;
        keys->add({key});
        curve.insert(3, key);
        keys->letGoOfHeldKeys();
        QCOMPARE(curve.release(3), key.data());
        keys.reset();
        QVERIFY(!key.isNull());
        delete key;
    }

    void lettingGoKeepsTheKeysThatNoCurveHolds() {
        Curve curve;
        auto keys = std::make_unique<Keys>();
        const QPointer<Key> before = new Key;
        const QPointer<Key> held = new Key;
        const QPointer<Key> behind = new Key;
        for (Key* const key : {before.data(), held.data(), behind.data()}) {
            keys->add({key});
        }
        curve.insert(3, held);
        keys->letGoOfHeldKeys();
        keys.reset();
        QVERIFY(before.isNull());
        QVERIFY(!held.isNull());
        QVERIFY(behind.isNull());
    }

    void takingOverLeavesTheOtherListWithoutKeys() {
        auto keys = std::make_unique<Keys>();
        auto others = std::make_unique<Keys>();
        const QPointer<Key> own = new Key;
        const QPointer<Key> taken = new Key;
        keys->add({own});
        others->add({taken});
        keys->addAll(*others);
        others.reset();
        QVERIFY(!taken.isNull());
        keys.reset();
        QVERIFY(own.isNull());
        QVERIFY(taken.isNull());
    }

    void aListThatGaveItsKeysAwayTakesNewOnes() {
        Keys keys;
        auto others = std::make_unique<Keys>();
        const QPointer<Key> given = new Key;
        const QPointer<Key> later = new Key;
        others->add({given});
        keys.addAll(*others);
        others->add({later});
        others.reset();
        QVERIFY(!given.isNull());
        QVERIFY(later.isNull());
    }
};

QTEST_APPLESS_MAIN(DetachedKeysTest)
#include "DetachedKeysTest.moc"
