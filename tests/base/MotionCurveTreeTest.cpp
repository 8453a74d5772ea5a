#include "AnyFloat.h"
#include "Damages.h"
#include "WatchedCurve.h"

#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

using Records::Key;
using Records::MotionCurve;
using Records::RationalSeconds;
using Records::Tree;
using Watched::WatchedKey;

class MotionCurveTreeTest : public QObject {
    Q_OBJECT

private slots:
    void init() { Watched::forget(); }

    void everyCurveReadsBackBitForBit() {
        QVERIFY(rc::check([] {
            MotionCurve curve;
            const int numerator = *rc::gen::inRange(1, 1000);
            curve.setTimeUnit(RationalSeconds(boost::rational<int>(numerator, *rc::gen::inRange(1, 100000))));
            const float minimum = *Records::anyFloat();
            curve.setValueLimits({minimum, *Records::anyFloat()});
            curve.setMaxAbsoluteDerivative(*Records::anyFloat());
            for (const unsigned int frame :
                 *rc::gen::container<std::set<unsigned int>>(Records::anyFrame())) {
                curve.insert(frame, new Key(*Records::anyKey()));
            }
            const Records::CommaLocale comma;
            MotionCurve copy;
            Records::fill(copy);
            RC_ASSERT(copy.deserialize(curve.serialize()));
            RC_ASSERT(Records::of(copy) == Records::of(curve));
        }));
    }

    void remarkableSettingsReadBack() {
        const auto& floats = Records::remarkableFloats();
        for (std::size_t at = 0; at < floats.size(); ++at) {
            MotionCurve curve;
            curve.setValueLimits({floats[at], floats[(at + 1) % floats.size()]});
            curve.setMaxAbsoluteDerivative(floats[(at + 2) % floats.size()]);
            MotionCurve copy;
            QVERIFY(copy.deserialize(curve.serialize()));
            QCOMPARE(Records::of(copy), Records::of(curve));
        }
    }

    void aTypeOutsideTheEnumerationIsReadAsAutomatic() {
        MotionCurve curve;
        Key* const key = curve.insert(1, new Key(Records::unusualKey()))->second;
        key->leftTangentType = static_cast<Records::Type>(17);
        MotionCurve copy;
        QVERIFY(copy.deserialize(curve.serialize()));
        QCOMPARE(static_cast<int>(copy.begin()->second->leftTangentType), 3);
    }

    void whatBelongsToLargerKeysReadsBack() {
        Watched::Curve curve;
        curve.add(1, 7);
        curve.add(2, 8);
        const MotionCurve& base = curve;
        Watched::Curve copy;
        QVERIFY(copy.deserialize(base.serialize()));
        QCOMPARE(static_cast<WatchedKey*>(copy.find(1)->second)->mark, 7);
        QCOMPARE(static_cast<WatchedKey*>(copy.find(2)->second)->mark, 8);
    }

    void readingMakesEachKeyThroughTheFactory() {
        MotionCurve plain;
        Records::fill(plain);
        Watched::Curve curve;
        QVERIFY(curve.deserialize(plain.serialize()));
        std::vector<Key*> held;
        for (const auto element : curve) {
            held.push_back(element.second);
        }
        QVERIFY(held == curve.created());
        QCOMPARE(WatchedKey::made(), 3);
    }

    void readingDestroysTheFormerKeysOnce() {
        {
            Watched::Curve curve;
            curve.add(1);
            curve.add(2);
            QVERIFY(curve.deserialize(curve.serialize()));
            QCOMPARE(WatchedKey::dead().size(), std::size_t{2});
        }
        QCOMPARE(WatchedKey::made(), 4);
        QVERIFY(Watched::everyKeyDiedOnce());
    }

    void keysNeedNotStandInFrameOrder() {
        MotionCurve curve;
        Records::fill(curve);
        Tree tree = curve.serialize();
        tree.reverse();
        MotionCurve copy;
        QVERIFY(copy.deserialize(tree));
        QCOMPARE(Records::of(copy), Records::of(curve));
    }

    void unknownItemsAreSkipped() {
        MotionCurve curve;
        Records::fill(curve);
        Tree tree = curve.serialize();
        Damages::addUnknownItems(tree);
        MotionCurve copy;
        QVERIFY(copy.deserialize(tree));
        QCOMPARE(Records::of(copy), Records::of(curve));
    }

    void aTreeThatIsNoCurveLeavesTheCurveUnchanged_data() { Damages::addRows(Damages::ofCurve()); }
    void aTreeThatIsNoCurveLeavesTheCurveUnchanged() {
        QFETCH(int, index);
        const Damages::Damage damage = Damages::ofCurve().at(static_cast<std::size_t>(index));
        {
            MotionCurve plain;
            Records::fill(plain);
            Tree tree = plain.serialize();
            damage.apply(tree);
            Watched::Curve curve;
            curve.add(4, 3);
            const QString before = Records::withIdentity(curve);
            QVERIFY(!curve.deserialize(tree));
            QCOMPARE(Records::withIdentity(curve), before);
            QVERIFY(curve.findKey(*curve.find(4)->second) == curve.find(4));
            const QString problem = QString::fromStdString(MotionCurve::problemIn(tree));
            QVERIFY(!problem.isEmpty());
            for (const std::string& mention : damage.mentions) {
                QVERIFY2(problem.contains(QString::fromStdString(mention)), qPrintable(problem));
            }
        }
        QVERIFY(Watched::everyKeyDiedOnce());
    }

    void aReadableTreeHasNoProblem() {
        MotionCurve curve;
        Records::fill(curve);
        Tree tree = curve.serialize();
        QCOMPARE(MotionCurve::problemIn(tree), std::string());
        Damages::addUnknownItems(tree);
        QCOMPARE(MotionCurve::problemIn(tree), std::string());
    }

    void anExceptionOfTheFactoryLeavesTheCurveUnchanged() {
        MotionCurve plain;
        Records::fill(plain);
        for (const std::size_t allowed : {0U, 1U, 2U}) {
            Watched::Curve curve(allowed);
            curve.add(4);
            const QString before = Records::withIdentity(curve);
            QVERIFY_EXCEPTION_THROWN(curve.deserialize(plain.serialize()), Watched::Refusal);
            QCOMPARE(Records::withIdentity(curve), before);
            QCOMPARE(curve.created().size(), allowed);
        }
        QVERIFY(Watched::everyKeyDiedOnce());
    }
};

QTEST_GUILESS_MAIN(MotionCurveTreeTest)
#include "MotionCurveTreeTest.moc"
