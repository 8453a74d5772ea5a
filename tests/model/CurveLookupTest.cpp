#include "RecordedCurve.h"
#include "model/EditableMotionCurveExceptions.h"
#include "tests/support/Snapshot.h"

#include <QTest>

#include <rapidcheck.h>

#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <type_traits>
#include <utility>

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Record = VQ::Math::Interpolation::Key;

class CurveLookupTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
        RecordedCurve watched;
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
        QCOMPARE(Snapshot::frames(curve), QString("3 5"));
        QCOMPARE(watched.recorder.take(), QString());
        if (kind == "foreign") {
            QCOMPARE(Snapshot::frames(foreign), QString("3"));
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
};

QTEST_GUILESS_MAIN(CurveLookupTest)
#include "CurveLookupTest.moc"
