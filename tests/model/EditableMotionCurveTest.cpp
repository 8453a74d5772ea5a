#include "model/EditableMotionCurve.h"
#include "base/animation/MotionCurve.h"
#include "base/math/BezierTangents.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurveExceptions.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QPointer>
#include <QTest>

#include <rapidcheck.h>

#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <type_traits>

namespace {

using BaseCurve = VQ::Animation::MotionCurve;
using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Record = VQ::Math::Interpolation::Key;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;
using VQ::Math::Position2D;

static_assert(std::is_same_v<Curve::Index, unsigned int>);
static_assert(std::is_same_v<Curve::KeysIndexMap, QMap<Key*, unsigned int>>);
static_assert(std::is_same_v<Curve::KeyPosMap, QMap<Key*, QPointF>>);
static_assert(std::is_same_v<Curve::KeysSet, QSet<Key*>>);
static_assert(std::is_same_v<Curve::TangentPosMap, QMap<Key*, QPair<float, float>>>);
static_assert(std::is_same_v<Curve::KeySideMap, QMultiMap<Key*, Side>>);
static_assert(std::is_same_v<Curve::TangentTypeMap, QMap<Key*, QPair<Side, Type>>>);
static_assert(std::is_same_v<Curve::KeyStateMap, QMap<Key*, bool>>);
static_assert(std::is_same_v<Curve::RationalSeconds,
                             boost::chrono::duration<boost::rational<int>, boost::ratio<1, 1>>>);

Record automatic(float value, Position2D handle = {}) {
    Record key;
    key.value = value;
    key.leftTangentOffset = handle;
    key.rightTangentOffset = handle;
    return key;
}

Record linear(float value, Position2D handle) {
    Record key = automatic(value, handle);
    key.leftTangentType = Type::linear;
    key.rightTangentType = Type::linear;
    return key;
}

Position2D handle(const Key& key, Side side) {
    const auto offset = key.getTangentOffset(side);
    return {offset.first, offset.second};
}

QString frames(const Curve& curve) {
    QStringList texts;
    for (const auto element : curve) {
        texts.append(QString::number(element.first));
    }
    return texts.join(' ');
}

/// A curve all of whose signals are recorded, its keys' ones before its own.
struct Watched {
    Watched() { recorder.watch(curve); }

    Key* add(unsigned int frame, const QString& name) {
        Key* const key = make(name);
        curve.insert(frame, key);
        recorder.take();
        return key;
    }

    Key* make(const QString& name) {
        auto* const key = new Key;
        recorder.watch(*key, name);
        return key;
    }

    Curve curve;
    SignalRecorder recorder;
};

} // namespace

class EditableMotionCurveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Construction and the base record

    void theCurveRecomputesOnlyKeysWhoseParentItIs() {
        ZT::EditableMotionCurve first;
        ZT::EditableMotionCurve second;
        auto* const key = new ZT::EditableMotionCurveKey;
        first.insert(3, key);
        second.insert(5, key);
        second.insert(8, new ZT::EditableMotionCurveKey);
        first.release(3); // The key is parentless now, although the second curve holds it.
        second.updateBezierAutoTangents();
        QCOMPARE(key->getTangentOffset(ZT::TangentSide::right), qMakePair(0.0F, 0.0F));
        second._connectKey(key);
        second.updateBezierAutoTangents();
        QCOMPARE(key->getTangentOffset(ZT::TangentSide::right), qMakePair(1.0F, 0.0F));
    }

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
        Watched watched;
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
        QCOMPARE(frames(curve), QString("2 7 19"));
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
        QCOMPARE(frames(*curve), QString("4"));
        curve.reset();
        QCOMPARE(base.find(4)->second->value, 8.0F);
    }

    // Lookups

    void keysAreFoundByFrameAndByPointer() {
        Curve curve;
        Key* const a = curve.insert(0, new Key)->second;
        Key* const b = curve.insert(7, new Key)->second;
        Key* const c = curve.insert(4294967295U, new Key)->second;
        const Curve& constant = curve;

        QCOMPARE(curve.find(7)->first, 7U);
        QCOMPARE(curve.find(7)->second, b);
        QVERIFY(curve.find(8) == curve.end());
        QVERIFY(constant.find(8) == constant.end());
        QCOMPARE(curve.getKey(0), a);
        QCOMPARE(curve.getKey(8), nullptr);
        QCOMPARE(constant.getKey(8), nullptr);
        QVERIFY(!curve.isIndexAvailable(7));
        QVERIFY(curve.isIndexAvailable(8));
        QCOMPARE(curve.getGreaterIndex(), 4294967295U);
        QVERIFY(curve.getIndexList() == (std::set<unsigned int>{0U, 7U, 4294967295U}));
        QCOMPARE(curve.getIndexOf(c), 4294967295U);

        QCOMPARE(curve.getPreviousKey(a), nullptr);
        QCOMPARE(curve.getPreviousKey(b), a);
        QCOMPARE(curve.getPreviousKey(c), b);
        QCOMPARE(curve.getNextKey(a), b);
        QCOMPARE(curve.getNextKey(b), c);
        QCOMPARE(curve.getNextKey(c), nullptr);
        QVERIFY(curve._find(b) == curve.find(7));
        QVERIFY(curve._toEditableIterator(curve.find(7).base()) == curve.find(7));
        QVERIFY(constant._toEditableIterator(constant.find(7).base()) == constant.find(7));
    }

    void constantLookupsAgreeWithTheOthers() {
        Curve curve;
        for (const unsigned int frame : {3U, 5U, 9U}) {
            curve.insert(frame, new Key);
        }
        const Curve& constant = curve;
        static_assert(std::is_same_v<decltype(constant.getKey(0)), const Key*>);
        static_assert(std::is_same_v<decltype(constant.begin()->second), const Key*>);
        static_assert(std::is_same_v<decltype(curve.begin()->second), Key*>);
        QCOMPARE(std::distance(curve.begin(), curve.end()), 3);
        QCOMPARE(std::distance(constant.begin(), constant.end()), 3);
        for (const auto element : curve) {
            const Key* const key = element.second;
            QCOMPARE(constant.find(element.first)->second, key);
            QCOMPARE(constant.getKey(element.first), key);
            QCOMPARE(constant._find(key)->first, element.first);
            QCOMPARE(curve._find(key)->first, element.first);
            QCOMPARE(constant.getPreviousKey(key), const_cast<const Key*>(curve.getPreviousKey(key)));
            QCOMPARE(constant.getNextKey(key), const_cast<const Key*>(curve.getNextKey(key)));
        }
        auto last = constant.end();
        QCOMPARE((--last)->first, 9U);
        QCOMPARE((--last)->first, 5U);
    }

    void aKeyThatTheCurveDoesNotHoldIsNotFound_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("in no curve") << "detached";
        QTest::newRow("of another curve, at a frame that is taken here") << "foreign";
        QTest::newRow("created but not held") << "created";
    }
    void aKeyThatTheCurveDoesNotHoldIsNotFound() {
        QFETCH(QString, kind);
        Watched watched;
        Curve& curve = watched.curve;
        watched.add(3, "a");
        watched.add(5, "b");
        Curve foreign;
        const auto element = Key::_toEditable(std::pair<unsigned int, Record*>(
            0U, kind == "created" ? curve.createCurveKey() : (new Key)->_record()));
        std::unique_ptr<Key> key(element.second);
        if (kind == "foreign") {
            foreign.insert(3, key.get());
        }
        QVERIFY_EXCEPTION_THROWN(curve.getIndexOf(key.get()), ZT::EditableMotionCurveKeyNotFound);
        try {
            std::as_const(curve).getIndexOf(key.get());
        } catch (const std::logic_error& error) {
            QCOMPARE(error.what(), "Editable motion curve key not found in the editable motion curve.");
        }
        QCOMPARE(curve.getPreviousKey(key.get()), nullptr);
        QCOMPARE(curve.getNextKey(key.get()), nullptr);
        QVERIFY(curve._find(key.get()) == curve.end());
        QVERIFY(std::as_const(curve)._find(key.get()) == std::as_const(curve).end());
        QVERIFY(!curve.translateKey(key.get(), 9));
        QCOMPARE(frames(curve), QString("3 5"));
        QCOMPARE(watched.recorder.take(), QString());
        if (kind == "foreign") {
            QCOMPARE(frames(foreign), QString("3"));
            foreign.release(3);
        }
    }

    void theCurveActsLikeAnOrderedMap() {
        const bool holds = rc::check("lookups agree with a plain map after any edits", [] {
            Curve curve;
            std::map<unsigned int, Key*> expected;
            const int count = *rc::gen::inRange(1, 40);
            for (int i = 0; i < count; ++i) {
                const auto from = *rc::gen::inRange(0U, 8U);
                const auto to = *rc::gen::inRange(0U, 8U);
                const auto held = expected.find(from);
                switch (*rc::gen::inRange(0, 5)) {
                case 0: {
                    Key* const key = new Key;
                    RC_ASSERT(curve.insert(to, key)->second == key);
                    expected[to] = key;
                    break;
                }
                case 1:
                    if (held != expected.end()) {
                        Key* const key = held->second;
                        RC_ASSERT(curve.insert(to, key)->second == key);
                        expected.erase(held);
                        expected[to] = key;
                    }
                    break;
                case 2:
                    if (held != expected.end()) {
                        Key* const key = held->second;
                        const bool moves = from == to || expected.count(to) == 0;
                        RC_ASSERT(curve.translateKey(key, to) == moves);
                        if (moves) {
                            expected.erase(held);
                            expected[to] = key;
                        }
                    }
                    break;
                case 3: {
                    const std::unique_ptr<Key> released(curve.release(from));
                    RC_ASSERT(released.get() == (held == expected.end() ? nullptr : held->second));
                    expected.erase(from);
                    break;
                }
                default:
                    curve.remove(from);
                    expected.erase(from);
                }
            }
            std::map<unsigned int, Key*> actual;
            for (const auto element : curve) {
                actual.emplace(element.first, element.second);
                RC_ASSERT(curve.getIndexOf(element.second) == element.first);
                RC_ASSERT(element.second->getParentCurve() == &curve);
            }
            RC_ASSERT(actual == expected);
            RC_ASSERT(curve.getGreaterIndex() == (expected.empty() ? 0U : expected.rbegin()->first));
        });
        QVERIFY(holds);
    }

    // Connections

    void eachSignalOfAKeyIsRelayedOnce() {
        Watched watched;
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
        Watched watched;
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
        Watched watched;
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
        Watched watched;
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

        Watched watched;
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
        QCOMPARE(frames(watched.curve), QString("3 6 9 12"));
        QVERIFY(watched.curve.getKey(6)->isSmooth());
        QCOMPARE(Snapshot::of(*watched.curve.getKey(9)), Snapshot::of(Key(linear(5.0F, {1.0F, 1.0F}))));
        for (const auto element : watched.curve) {
            QCOMPARE(element.second->getParentCurve(), &watched.curve);
            element.second->setValue(100.0F);
            QCOMPARE(watched.recorder.take(), QString("curve.keysChanged()"));
        }
    }

    void aTreeThatIsNoCurveChangesNothing() {
        Watched watched;
        watched.add(20, "a");
        const QString before = Snapshot::of(watched.curve);
        boost::property_tree::ptree tree = watched.curve.serialize();
        tree.push_back({"key", boost::property_tree::ptree()});
        QVERIFY(!watched.curve.deserialize(tree));
        QCOMPARE(Snapshot::of(watched.curve), before);
        QCOMPARE(watched.recorder.take(), QString());
    }

    // Insertion

    void insertingAtAFreeFrameAnnouncesTheKey_data() {
        QTest::addColumn<unsigned int>("frame");
        QTest::addColumn<QString>("signalled");
        QTest::newRow("before the last key") << 4U << "curve.keyAdded(new)";
        QTest::newRow("behind the last key")
            << 11U << "curve.keyAdded(new), curve.greaterIndexChanged(11, 10)";
    }
    void insertingAtAFreeFrameAnnouncesTheKey() {
        QFETCH(unsigned int, frame);
        QFETCH(QString, signalled);
        Watched watched;
        watched.add(10, "a");
        Key* const key = watched.make("new");
        QString heard;
        connect(&watched.curve, &Curve::keyAdded, this,
                [&](Key* added) { heard = QString("%1 at %2").arg(added == key).arg(ZT::index(added)); });
        const Curve::iterator position = watched.curve.insert(frame, key);
        QCOMPARE(watched.recorder.take(), signalled);
        QCOMPARE(heard, QString("1 at %1").arg(frame));
        QCOMPARE(position->first, frame);
        QCOMPARE(position->second, key);
        QCOMPARE(key->getParentCurve(), &watched.curve);
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("new.valueChanged(1), curve.keysChanged()"));
    }

    void theFirstKeyAtFrameZeroChangesNoGreatestFrame() {
        Watched watched;
        watched.curve.insert(0, watched.make("a"));
        QCOMPARE(watched.recorder.take(), QString("curve.keyAdded(a)"));
    }

    void insertingOverAnotherKeyDestroysIt() {
        Watched watched;
        QPointer<Key> occupant = watched.add(10, "old");
        Key* const key = watched.make("new");
        QStringList states;
        connect(&watched.curve, &Curve::keyAboutToBeRemoved, this, [&](Key* removed) {
            states.append(QString("old %1 at %2").arg(removed == occupant).arg(ZT::index(removed)));
        });
        connect(&watched.curve, &Curve::keyAdded, this,
                [&] { states.append(QString("gone %1").arg(occupant.isNull())); });
        QCOMPARE(watched.curve.insert(10, key)->second, key);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(old), curve.keyAdded(new)"));
        QCOMPARE(states, QStringList({"old 1 at 10", "gone 1"}));
        QCOMPARE(frames(watched.curve), QString("10"));
    }

    void insertingAKeyWhereItAlreadyStandsDoesNothing() {
        Watched watched;
        Key* const key = watched.add(10, "a");
        const Curve::iterator position = watched.curve.insert(10, key);
        QCOMPARE(position->second, key);
        QCOMPARE(position->first, 10U);
        QCOMPARE(watched.recorder.take(), QString());
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1), curve.keysChanged()"));
    }

    void insertingAHeldKeyAtAFreeFrameMovesIt() {
        Watched watched;
        Key* const key = watched.add(5, "a");
        watched.add(10, "b");
        QCOMPARE(watched.curve.insert(7, key)->second, key);
        QCOMPARE(watched.recorder.take(), QString("a.indexChanged(7), curve.keysChanged()"));
        QCOMPARE(watched.curve.insert(12, key)->first, 12U);
        QCOMPARE(watched.recorder.take(),
                 QString("a.indexChanged(12), curve.keysChanged(), curve.greaterIndexChanged(12, 10)"));
        QCOMPARE(frames(watched.curve), QString("10 12"));
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1), curve.keysChanged()"));
    }

    void insertingAHeldKeyComparesTheGreatestFrameAfterTheOccupantIsGone_data() {
        QTest::addColumn<unsigned int>("from");
        QTest::addColumn<unsigned int>("to");
        QTest::addColumn<unsigned int>("third");
        QTest::addColumn<QString>("announced");
        // The greatest frame is 10 before and after; the key moves up from 5, which is the last while nothing
        // is at 10.
        QTest::newRow("onto the last key") << 5U << 10U << 0U << ", curve.greaterIndexChanged(10, 5)";
        QTest::newRow("onto the last but one") << 5U << 10U << 20U << "";
        QTest::newRow("from the last onto the first")
            << 10U << 5U << 0U << ", curve.greaterIndexChanged(5, 10)";
    }
    void insertingAHeldKeyComparesTheGreatestFrameAfterTheOccupantIsGone() {
        QFETCH(unsigned int, from);
        QFETCH(unsigned int, to);
        QFETCH(unsigned int, third);
        QFETCH(QString, announced);
        Watched watched;
        Key* const key = watched.add(from, "a");
        const QPointer<Key> occupant = watched.add(to, "b");
        watched.add(third, "c");
        QString heard;
        connect(key, &Key::indexChanged, this,
                [&] { heard = QString("occupant gone %1").arg(occupant.isNull()); });
        const Curve::iterator position = watched.curve.insert(to, key);
        QCOMPARE(watched.recorder.take(),
                 QString("curve.keyAboutToBeRemoved(b), a.indexChanged(%1), curve.keysChanged()").arg(to) +
                     announced);
        QCOMPARE(heard, QString("occupant gone 1"));
        QCOMPARE(position->first, to);
        QCOMPARE(position->second, key);
        QVERIFY(watched.curve.isIndexAvailable(from));
    }

    void aKeyOfAnotherCurveIsInsertedWithoutLeavingThatCurve() {
        Watched watched;
        Watched other;
        Key* const key = watched.make("a");
        other.curve.insert(3, key);
        other.recorder.take();
        watched.curve.insert(8, key);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAdded(a), curve.greaterIndexChanged(8, 0)"));
        QCOMPARE(other.recorder.take(), QString());
        QCOMPARE(key->getParentCurve(), &watched.curve);
        QCOMPARE(other.curve.getKey(3), key);
        // It has two owners now: one must let it go.
        QCOMPARE(other.curve.release(3), key);
        QCOMPARE(watched.curve.getKey(8), key);
    }

    // Translation

    void translatingAKey_data() {
        QTest::addColumn<unsigned int>("target");
        QTest::addColumn<bool>("succeeds");
        QTest::addColumn<QString>("signalled");
        QTest::addColumn<QString>("standing");
        const QString moved = "b.indexChanged(%1), curve.keysChanged()";
        QTest::newRow("to its own frame does nothing") << 5U << true << ""
                                                       << "2 5";
        QTest::newRow("onto another key fails") << 2U << false << ""
                                                << "2 5";
        QTest::newRow("up") << 9U << true << moved.arg(9) + ", curve.greaterIndexChanged(9, 5)"
                            << "2 9";
        QTest::newRow("past another key") << 0U << true << moved.arg(0) + ", curve.greaterIndexChanged(2, 5)"
                                          << "0 2";
        QTest::newRow("to the last frame there is")
            << 4294967295U << true << moved.arg(4294967295U) + ", curve.greaterIndexChanged(4294967295, 5)"
            << "2 4294967295";
    }
    void translatingAKey() {
        QFETCH(unsigned int, target);
        QFETCH(bool, succeeds);
        QFETCH(QString, signalled);
        QFETCH(QString, standing);
        Watched watched;
        watched.add(2, "a");
        Key* const key = watched.add(5, "b");
        QString heard;
        connect(key, &Key::indexChanged, this, [&](unsigned int frame) {
            heard = QString("%1 %2")
                        .arg(watched.curve.getKey(frame) == key)
                        .arg(watched.curve.isIndexAvailable(5));
        });
        QCOMPARE(watched.curve.translateKey(key, target), succeeds);
        QCOMPARE(watched.recorder.take(), signalled);
        QCOMPARE(frames(watched.curve), standing);
        QCOMPARE(heard, QString(signalled.isEmpty() ? "" : "1 1"));
        QCOMPARE(key->getParentCurve(), &watched.curve);
    }

    void translatingAKeyBelowTheLastOneKeepsTheGreatestFrame() {
        Watched watched;
        Key* const key = watched.add(2, "a");
        watched.add(5, "b");
        QVERIFY(watched.curve.translateKey(key, 4));
        QCOMPARE(watched.recorder.take(), QString("a.indexChanged(4), curve.keysChanged()"));
    }

    // Leaving

    void aKeyThatLeavesIsAnnouncedWhileItStillStandsThere_data() {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<unsigned int>("frame");
        QTest::addColumn<QString>("announced");
        for (const char* const operation : {"release", "remove the frame", "remove the position"}) {
            const auto name = [&](const char* text) {
                return QString("%1: %2").arg(operation, text).toUtf8();
            };
            QTest::newRow(name("first key")) << operation << 2U << "";
            QTest::newRow(name("last key")) << operation << 5U << ", curve.greaterIndexChanged(2, 5)";
        }
    }
    void aKeyThatLeavesIsAnnouncedWhileItStillStandsThere() {
        QFETCH(QString, operation);
        QFETCH(unsigned int, frame);
        QFETCH(QString, announced);
        Watched watched;
        watched.add(2, "key2");
        watched.add(5, "key5");
        QPointer<Key> key = watched.curve.getKey(frame);
        QStringList states;
        connect(&watched.curve, &Curve::keyAboutToBeRemoved, this, [&](Key* leaving) {
            states.append(QString("%1 %2")
                              .arg(watched.curve.getKey(frame) == leaving)
                              .arg(leaving->getParentCurve() == &watched.curve));
        });
        connect(&watched.curve, &Curve::greaterIndexChanged, this, [&] {
            states.append(QString("%1 %2")
                              .arg(watched.curve.isIndexAvailable(frame))
                              .arg(key.isNull() || key->getParentCurve() == nullptr));
        });
        std::unique_ptr<Key> released;
        if (operation == "release") {
            released.reset(watched.curve.release(frame));
            QCOMPARE(released.get(), key.data());
            QCOMPARE(released->getParentCurve(), nullptr);
        } else if (operation == "remove the frame") {
            watched.curve.remove(frame);
        } else {
            watched.curve.remove(watched.curve.find(frame));
        }
        QCOMPARE(key.isNull(), operation != "release");
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(key%1)").arg(frame) + announced);
        QCOMPARE(states, announced.isEmpty() ? QStringList("1 1") : QStringList({"1 1", "1 1"}));
        QVERIFY(watched.curve.isIndexAvailable(frame));
        if (released != nullptr) {
            released->setValue(1.0F);
            released->setLeftTangentType(Type::linear);
            Q_EMIT released->indexChanged(1U);
            QCOMPARE(watched.recorder.count("curve.keysChanged()"), 0);
        }
    }

    void nothingLeavesAFrameWithoutAKey() {
        Watched watched;
        watched.add(2, "a");
        QCOMPARE(watched.curve.release(3), nullptr);
        watched.curve.remove(3U);
        watched.curve.remove(watched.curve.end());
        QCOMPARE(watched.recorder.take(), QString());
        QCOMPARE(frames(watched.curve), QString("2"));
    }

    void theLastKeyAtFrameZeroLeavesTheGreatestFrame() {
        Watched watched;
        watched.add(0, "a");
        watched.curve.remove(0U);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(a)"));
        watched.add(0, "b");
        const std::unique_ptr<Key> released(watched.curve.release(0));
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(b)"));
    }

    void aReleasedKeyOutlivesTheCurveAndCanReturn() {
        auto curve = std::make_unique<Curve>();
        QPointer<Key> kept = curve->insert(1, new Key)->second;
        QPointer<Key> held = curve->insert(2, new Key)->second;
        QCOMPARE(curve->release(1), kept.data());
        curve.reset();
        QVERIFY(held.isNull());
        QVERIFY(!kept.isNull());
        Watched watched;
        watched.curve.insert(4, kept);
        watched.recorder.take();
        kept->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("curve.keysChanged()"));
    }

    void aKeyReleasedAndInsertedAgainIsHeardOnce() {
        Watched watched;
        Key* const key = watched.add(1, "a");
        QCOMPARE(watched.curve.release(1), key);
        watched.curve.insert(1, key);
        watched.recorder.take();
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1), curve.keysChanged()"));
    }

    void clearingDestroysEveryKeyWithOneSignal_data() {
        QTest::addColumn<unsigned int>("last");
        QTest::addColumn<QString>("signalled");
        QTest::newRow("keys up to 5") << 5U << "curve.curveCleared(), curve.greaterIndexChanged(0, 5)";
        QTest::newRow("a key at 0") << 0U << "curve.curveCleared()";
    }
    void clearingDestroysEveryKeyWithOneSignal() {
        QFETCH(unsigned int, last);
        QFETCH(QString, signalled);
        Watched watched;
        const QPointer<Key> first = watched.add(0, "a");
        const QPointer<Key> other = last == 0 ? first : QPointer<Key>(watched.add(last, "b"));
        bool allGone = false;
        connect(&watched.curve, &Curve::curveCleared, this,
                [&] { allGone = first.isNull() && other.isNull() && watched.curve.empty(); });
        watched.curve.clear();
        QCOMPARE(watched.recorder.take(), signalled);
        QVERIFY(allGone);
    }

    void clearingAnEmptyCurveIsAnnouncedToo() {
        Watched watched;
        watched.curve.clear();
        QCOMPARE(watched.recorder.take(), QString("curve.curveCleared()"));
    }

    void aCurveDestroysTheKeysThatItHolds() {
        auto curve = std::make_unique<Curve>();
        const QPointer<Key> key = curve->insert(1, new Key)->second;
        curve.reset();
        QVERIFY(key.isNull());
    }

    // Batches

    void insideABatchSingleEditsAnnounceNeitherKeysNorTheGreatestFrame() {
        Watched watched;
        watched.curve.moveKeys({}); // Leaves the curve inside a batch.
        QCOMPARE(watched.recorder.take(), QString());
        Key* const a = watched.make("a");
        watched.curve.insert(5, a);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAdded(a)"));
        a->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1)"));
        QVERIFY(watched.curve.translateKey(a, 8));
        watched.curve.insert(9, a);
        QCOMPARE(watched.recorder.take(), QString("a.indexChanged(8), a.indexChanged(9)"));
        watched.curve.updateBezierAutoTangents();
        QCOMPARE(watched.recorder.take(), QString("a.tangentsChanged()"));
        const std::unique_ptr<Key> released(watched.curve.release(9));
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(a)"));
        watched.add(5, "b");
        watched.curve.remove(5U);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(b)"));
        watched.add(5, "c");
        watched.curve.clear();
        QCOMPARE(watched.recorder.take(), QString("curve.curveCleared()"));
    }
};

QTEST_GUILESS_MAIN(EditableMotionCurveTest)

#include "EditableMotionCurveTest.moc"
