#include "model/EditableMotionCurve.h"

#include "OneKey.h"
#include "RecordedCurve.h"
#include "base/animation/MotionCurve.h"
#include "base/math/BezierTangents.h"
#include "model/EditableAnimationLayer.h"
#include "tests/support/Snapshot.h"

#include <QPointer>
#include <QTest>

#include <boost/property_tree/ptree.hpp>

#include <memory>
#include <type_traits>

using namespace OneKey;

namespace {

using BaseCurve = VQ::Animation::MotionCurve;

static_assert(std::is_same_v<Curve::Index, unsigned int>);
static_assert(std::is_same_v<Curve::KeysIndexMap, QMap<Key*, unsigned int>>);
static_assert(std::is_same_v<Curve::KeyPosMap, QMap<Key*, QPointF>>);
static_assert(std::is_same_v<Curve::KeysSet, QSet<Key*>>);
static_assert(std::is_same_v<Curve::TangentPosMap, QMap<Key*, QPair<float, float>>>);
static_assert(std::is_same_v<Curve::KeySideMap, QMultiMap<Key*, Side>>);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
static_assert(std::is_same_v<Curve::TangentTypeMap, QMap<Key*, QPair<Side, Type>>>);
#else
static_assert(std::is_same_v<Curve::TangentTypeMap, QMultiMap<Key*, QPair<Side, Type>>>);
#endif
static_assert(std::is_same_v<Curve::KeyStateMap, QMap<Key*, bool>>);
static_assert(std::is_same_v<Curve::RationalSeconds,
                             boost::chrono::duration<boost::rational<int>, boost::ratio<1, 1>>>);

Record automatic(float value, Position2D handle = {}) {
    return record(Type::bezierAuto, handle, Type::bezierAuto, handle, value);
}

Record linear(float value, Position2D handle) {
    return record(Type::linear, handle, Type::linear, handle, value);
}

} // namespace

class EditableMotionCurveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Construction and the base record

    void aNewCurveIsEmpty() {
        Curve curve;
        QCOMPARE(curve.getParentLayer(), nullptr);
        QCOMPARE(curve.parent(), nullptr);
        QVERIFY(curve.begin() == curve.end());
        QVERIFY(std::as_const(curve).begin() == std::as_const(curve).end());
        QCOMPARE(curve.getGreaterIndex(), 0U);
        QVERIFY(curve.getIndexList().empty());
        const auto limits = BaseCurve().getValueLimits();
        QCOMPARE(curve.getValueLimits(), qMakePair(limits.first, limits.second));
    }

    void theParentLayerIsStoredAsGiven() {
        RecordedCurve watched;
        ZT::EditableAnimationLayer layer;
        watched.curve._setParentLayer(&layer);
        QCOMPARE(watched.curve.getParentLayer(), &layer);
        QVERIFY(layer.getCurve() != &watched.curve);
        QCOMPARE(watched.recorder.take(), QString());
        watched.curve._setParentLayer(nullptr);
        QCOMPARE(watched.curve.getParentLayer(), nullptr);
    }

    void wrappingACurveWrapsItsKeysAndRecomputesAutomaticHandles() {
        BaseCurve base;
        base.setValueLimits({-2.0F, 3.0F});
        base.setTimeUnit(Curve::RationalSeconds(boost::rational<int>(1, 24)));
        base.setMaxAbsoluteDerivative(7.0F);
        base.insert(19, new Record(linear(6.0F, {5.0F, 5.0F})));
        base.insert(2, new Record(automatic(1.0F, {5.0F, 5.0F})));
        base.insert(7, new Record(automatic(4.0F)));
        const Record* const source = base.find(7)->second;
        Curve curve(base);
        QCOMPARE(Snapshot::frames(curve), QString("2 7 19"));
        QCOMPARE(curve.getParentLayer(), nullptr);
        QCOMPARE(curve.getValueLimits(), qMakePair(-2.0F, 3.0F));
        QVERIFY(curve.getTimeUnit() == base.getTimeUnit());
        QCOMPARE(curve.getMaxAbsoluteDerivative(), 7.0F);

        const auto first = VQ::Math::computeBezierKeyTangents(2.0F, 5.0F, 0.0F, 3.0F);
        const auto second = VQ::Math::computeBezierKeyTangents(5.0F, 12.0F, 3.0F, 2.0F);
        QVERIFY(handle(*curve.getKey(2), Side::left) == first.first);
        QVERIFY(handle(*curve.getKey(2), Side::right) == first.second);
        QVERIFY(handle(*curve.getKey(7), Side::left) == second.first);
        QVERIFY(handle(*curve.getKey(7), Side::right) == second.second);
        QCOMPARE(Snapshot::of(*curve.getKey(19)), Snapshot::of(Key(linear(6.0F, {5.0F, 5.0F}))));

        SignalRecorder recorder;
        recorder.watch(curve);
        for (const auto element : curve) {
            QCOMPARE(element.second->getParentCurve(), &curve);
            QVERIFY(!element.second->isSmooth() && !element.second->isSymmetrical());
            element.second->setValue(9.0F);
            QCOMPARE(recorder.take(), QString("curve.keysChanged()"));
        }
        // The source is only read.
        QVERIFY(base.find(7)->second == source);
        QCOMPARE(source->value, 4.0F);
        QVERIFY(source->rightTangentOffset == Position2D());
    }

    void wrappingAnEmptyCurveGivesAnEmptyCurve() {
        const BaseCurve base;
        const Curve curve(base);
        QVERIFY(curve.begin() == curve.end());
    }

    void theBaseCurveIsAPlainAndIndependentCopy() {
        auto curve = std::make_unique<Curve>();
        Key* const key = curve->insert(4, new Key(automatic(1.5F, {2.0F, 3.0F})))->second;
        key->setSmooth(true);
        const Record before = key->baseMotionCurveKey();
        BaseCurve base = curve->baseMotionCurve();
        QCOMPARE(static_cast<int>(base.size()), 1);
        QCOMPARE(base.begin()->first, 4U);
        QCOMPARE(Snapshot::of(Key(*base.begin()->second)), Snapshot::of(Key(before)));
        base.begin()->second->value = 8.0F;
        base.insert(9, new Record);
        QCOMPARE(key->getValue(), 1.5F);
        QCOMPARE(Snapshot::frames(*curve), QString("4"));
        curve.reset();
        QCOMPARE(base.find(4)->second->value, 8.0F);
    }

    // Connections

    void eachSignalOfAKeyIsRelayedOnce() {
        RecordedCurve watched;
        Key* const key = watched.add(3, "a");
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1), curve.keysChanged()"));
        key->setLeftTangentType(Type::bezier);
        // The automatic right handle stays where its formula has it, so there is one signal.
        QCOMPARE(watched.recorder.take(), QString("a.tangentsChanged(), curve.keysChanged()"));
        key->setSmooth(true);
        key->setSymmetrical(true);
        QCOMPARE(watched.recorder.take(), QString("a.smoothChanged(true), a.symmetricalChanged(true)"));
    }

    void aConnectedKeyIsHeardUntilItIsDisconnected() {
        RecordedCurve watched;
        const std::unique_ptr<Key> key(watched.make("a"));
        std::as_const(watched.curve)._connectKey(key.get());
        QCOMPARE(key->getParentCurve(), &watched.curve);
        QCOMPARE(watched.recorder.take(), QString());
        Q_EMIT key->valueChanged(1.0F);
        Q_EMIT key->tangentsChanged();
        Q_EMIT key->indexChanged(2U);
        QCOMPARE(watched.recorder.take(),
                 QString("a.valueChanged(1), curve.keysChanged(), a.tangentsChanged(), curve.keysChanged(), "
                         "a.indexChanged(2), curve.keysChanged()"));
        std::as_const(watched.curve)._disconnectKey(key.get());
        QCOMPARE(key->getParentCurve(), nullptr);
        Q_EMIT key->valueChanged(1.0F);
        Q_EMIT key->tangentsChanged();
        Q_EMIT key->indexChanged(2U);
        QCOMPARE(watched.recorder.take(),
                 QString("a.valueChanged(1), a.tangentsChanged(), a.indexChanged(2)"));
        QVERIFY(watched.curve.begin() == watched.curve.end());
    }

    void aCreatedKeyIsConnectedButNotHeld() {
        RecordedCurve watched;
        Record* const created = std::as_const(watched.curve).createCurveKey();
        const std::unique_ptr<Key> key(
            Key::_toEditable(std::pair<unsigned int, Record*>(0U, created)).second);
        QCOMPARE(watched.recorder.take(), QString());
        QVERIFY(watched.curve.begin() == watched.curve.end());
        QCOMPARE(key->getParentCurve(), &watched.curve);
        QCOMPARE(Snapshot::of(*key), Snapshot::of(Key()));
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("curve.keysChanged()"));
    }

    // Automatic handles and trees

    void automaticHandlesAreRecomputedInFrameOrder() {
        RecordedCurve watched;
        watched.add(9, "c")->setValue(5.0F);
        watched.add(3, "a");
        watched.add(6, "b")->setValue(2.0F);
        watched.recorder.take();
        watched.curve.updateBezierAutoTangents();
        QCOMPARE(watched.recorder.take(),
                 QString("a.tangentsChanged(), curve.keysChanged(), b.tangentsChanged(), "
                         "curve.keysChanged(), c.tangentsChanged(), curve.keysChanged()"));
        watched.curve.updateBezierAutoTangents();
        QCOMPARE(watched.recorder.take(), QString());
    }

    void theCurveRecomputesOnlyKeysWhoseParentItIs() {
        Curve first;
        Curve second;
        auto* const key = new Key;
        first.insert(3, key);
        second.insert(5, key);
        second.insert(8, new Key);
        first.release(3); // The key is parentless now, although the second curve holds it.
        second.updateBezierAutoTangents();
        QCOMPARE(key->getTangentOffset(Side::right), qMakePair(0.0F, 0.0F));
        second._connectKey(key);
        second.updateBezierAutoTangents();
        QCOMPARE(key->getTangentOffset(Side::right), qMakePair(1.0F, 0.0F));
    }

    void readingATreeReplacesKeysWithoutStructuralSignals() {
        Curve source;
        source.insert(9, new Key(linear(5.0F, {1.0F, 1.0F})));
        source.insert(3, new Key(automatic(0.0F)));
        source.insert(6, new Key(automatic(2.0F)))->second->setSmooth(true);
        source.insert(12, new Key(automatic(1.0F)));
        // Stored handles are far from their formula, and the keys stand in the tree from the last to the
        // first.
        boost::property_tree::ptree tree = source.serialize();
        boost::property_tree::ptree reversed;
        for (auto node = tree.rbegin(); node != tree.rend(); ++node) {
            reversed.push_back(*node);
        }

        RecordedCurve watched;
        const QPointer<Key> old = watched.add(20, "old");
        QStringList recomputed;
        connect(&watched.curve, &Curve::keysChanged, this, [&] {
            QStringList moved;
            for (const auto element : watched.curve) {
                if (handle(*element.second, Side::left).x != 0.0F) {
                    moved.append(QString::number(element.first));
                }
            }
            recomputed.append(moved.join(' '));
        });
        QVERIFY(watched.curve.deserialize(reversed));
        QVERIFY(old.isNull());
        QCOMPARE(watched.recorder.take(), QString("curve.keysChanged(), curve.keysChanged()"));
        QCOMPARE(recomputed, QStringList({"3 9", "3 9 12"}));
        QCOMPARE(Snapshot::frames(watched.curve), QString("3 6 9 12"));
        QVERIFY(watched.curve.getKey(6)->isSmooth());
        QCOMPARE(Snapshot::of(*watched.curve.getKey(9)), Snapshot::of(Key(linear(5.0F, {1.0F, 1.0F}))));
        for (const auto element : watched.curve) {
            QCOMPARE(element.second->getParentCurve(), &watched.curve);
            element.second->setValue(100.0F);
            QCOMPARE(watched.recorder.take(), QString("curve.keysChanged()"));
        }
    }

    void aTreeThatIsNoCurveChangesNothing() {
        RecordedCurve watched;
        watched.add(20, "a");
        const QString before = Snapshot::of(watched.curve);
        boost::property_tree::ptree tree = watched.curve.serialize();
        tree.push_back({"key", boost::property_tree::ptree()});
        QVERIFY(!watched.curve.deserialize(tree));
        QCOMPARE(Snapshot::of(watched.curve), before);
        QCOMPARE(watched.recorder.take(), QString());
    }
};

QTEST_GUILESS_MAIN(EditableMotionCurveTest)
#include "EditableMotionCurveTest.moc"
