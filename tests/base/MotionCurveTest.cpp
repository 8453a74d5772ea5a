#include "base/animation/MotionCurve.h"

#include "AnyFloat.h"
#include "CurveModel.h"
#include "Damages.h"
#include "WatchedCurve.h"

#include <QtTest>

#include <iterator>
#include <memory>
#include <type_traits>

using CurveModel::agrees;
using CurveModel::atOrBeforeAgrees;
using CurveModel::Model;
using CurveModel::modelOf;
using Records::Key;
using Records::MotionCurve;
using Records::RationalSeconds;
using Records::Tree;
using Watched::WatchedKey;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

} // namespace

class MotionCurveTest : public QObject {
    Q_OBJECT

private slots:
    void init() { Watched::forget(); }

    void aNewCurveIsEmptyAndUnlimited() {
        const MotionCurve curve;
        QVERIFY(curve.empty());
        QCOMPARE(curve.size(), std::size_t{0});
        QVERIFY(curve.begin() == curve.end());
        QVERIFY(curve.find(0) == curve.end());
        QVERIFY(curve.findAtOrBefore(lastFrame) == curve.end());
        QVERIFY(curve.getTimeUnit() == RationalSeconds(boost::rational<int>(1, 25)));
        const float infinity = std::numeric_limits<float>::infinity();
        QVERIFY(curve.getValueLimits() == std::make_pair(-infinity, infinity));
        QCOMPARE(curve.getMaxAbsoluteDerivative(), infinity);
        static_assert(std::has_virtual_destructor_v<MotionCurve>);
    }

    void theFactoryMakesAKeyWithDefaultValues() {
        const std::unique_ptr<Key> key(MotionCurve().createCurveKey());
        QCOMPARE(Records::of(*key), Records::of(Key()));
    }

    void findingAFrameWithoutKeyGivesTheEnd() {
        MotionCurve curve;
        Records::fill(curve);
        const MotionCurve& readOnly = curve;
        QVERIFY(curve.find(6) == curve.end());
        QVERIFY(readOnly.find(8) == readOnly.end());
        QCOMPARE(Records::of(*curve.find(7)->second), Records::of(Records::unusualKey()));
        QCOMPARE(readOnly.find(lastFrame)->first, lastFrame);
    }

    void keysAreVisitedInFrameOrder() {
        MotionCurve curve;
        for (const unsigned int frame : {5U, lastFrame, 0U, 2147483648U, 4U}) {
            curve.insert(frame, new Key);
        }
        std::vector<unsigned int> frames;
        for (const auto element : curve) {
            frames.push_back(element.first);
        }
        QVERIFY((frames == std::vector<unsigned int>{0, 4, 5, 2147483648U, lastFrame}));
    }

    void lookupsAgreeWithAWalkAfterAnyOperations() {
        QVERIFY(rc::check([] {
            MotionCurve curve;
            Model model;
            const int operations = *rc::gen::inRange(1, 60);
            for (int count = 0; count < operations; ++count) {
                CurveModel::performAnyOperation(curve, model);
                RC_ASSERT(agrees(curve, model));
                const unsigned int frame = *rc::gen::inRange(0U, 20U);
                RC_ASSERT(atOrBeforeAgrees(curve, model, frame));
                RC_ASSERT(atOrBeforeAgrees(curve, model, lastFrame));
            }
        }));
    }

    void lookupsAgreeWithAWalkWhileKeysAreDetached() {
        QVERIFY(rc::check([] {
            Watched::Curve curve;
            for (unsigned int frame = 0; frame < 8; ++frame) {
                curve.add(frame * 3);
            }
            Model model = modelOf(curve);
            for (int count = 0; count < 20; ++count) {
                const auto from = std::next(model.begin(), *rc::gen::inRange(0, 8));
                Key* const key = from->second;
                auto detached = curve.detach(curve.find(from->first));
                model.erase(from);
                RC_ASSERT(detached.key() == key && agrees(curve, model) && curve.findsEachKey());
                RC_ASSERT(curve.findKey(*key) == curve.end());
                unsigned int frame = *rc::gen::inRange(0U, 30U);
                while (model.count(frame) != 0) {
                    ++frame;
                }
                RC_ASSERT(curve.attach(detached, frame));
                model.emplace(frame, key);
                RC_ASSERT(agrees(curve, model) && curve.findsEachKey());
            }
        }));
        QVERIFY(Watched::everyKeyDiedOnce());
    }

    void aDetachedKeyStaysInItsHandleWhereTheFrameIsTaken() {
        Watched::Curve curve;
        curve.add(3);
        curve.add(5);
        auto detached = curve.detach(curve.find(3));
        Key* const key = detached.key();
        QVERIFY(!curve.attach(detached, 5));
        QCOMPARE(detached.key(), key);
        QCOMPARE(curve.size(), std::size_t{1});
        QVERIFY(curve.findKey(*key) == curve.end());
        QVERIFY(curve.attach(detached, 4));
        QVERIFY(curve.findKey(*key) == curve.find(4));
    }

    void lookupsAgreeWithAWalkWhileKeysMove() {
        QVERIFY(rc::check([] {
            Watched::Curve curve;
            for (unsigned int frame = 0; frame < 8; ++frame) {
                curve.add(frame * 3);
            }
            Model model = modelOf(curve);
            for (int count = 0; count < 40; ++count) {
                const auto from = std::next(model.begin(), *rc::gen::inRange(0, 8));
                const auto [standing, key] = *from;
                const unsigned int frame = *rc::gen::inRange(0U, 30U);
                const std::size_t before = curve.revision();
                const bool isFree = model.count(frame) == 0;
                RC_ASSERT(curve.relocate(curve.findKey(*key), frame) == isFree);
                RC_ASSERT((curve.revision() != before) == isFree);
                if (isFree) {
                    model.erase(standing);
                    model.emplace(frame, key);
                }
                RC_ASSERT(agrees(curve, model) && curve.findsEachKey());
            }
        }));
        QVERIFY(Watched::everyKeyDiedOnce());
    }

    void aKeyThatAnotherCurveTookInIsFoundInBoth() {
        Watched::Curve first;
        Watched::Curve second;
        first.add(3);
        Key* const key = first.find(3)->second;
        second.insert(5, key);
        QVERIFY(second.findKey(*key) == second.find(5));
        QVERIFY(first.findKey(*key) == first.find(3));
        QVERIFY_EXCEPTION_THROWN(first.insert(4, key), std::invalid_argument);
        first.add(8);
        first.detach(first.find(3)).release();
        QVERIFY(first.findKey(*key) == first.end());
        QVERIFY(second.findKey(*key) == second.find(5));
    }

    void aKeyThatTheSecondCurveLetGoIsFoundInTheFirst() {
        Watched::Curve first;
        Watched::Curve second;
        first.add(3);
        Key* const key = first.find(3)->second;
        second.insert(5, key);
        second.detach(second.find(5)).release();
        first.add(4);
        QVERIFY(second.findKey(*key) == second.end());
        QVERIFY(first.findKey(*key) == first.find(3));
        QVERIFY(first.relocate(first.findKey(*key), 7));
        QVERIFY(first.findKey(*key) == first.find(7));
    }

    void keysThatWereReadStandInTheCurveThatReadThem() {
        Watched::Curve written;
        for (unsigned int frame = 0; frame < 9; ++frame) {
            written.add(frame * frame);
        }
        Watched::Curve curve;
        curve.add(7);
        QVERIFY(curve.deserialize(written.serialize()));
        QCOMPARE(curve.size(), std::size_t{9});
        QVERIFY(curve.findsEachKey());
    }

    void noKeyIsFoundWhenTheFirstOfThemDies() {
        Watched::Curve curve;
        curve.add(1);
        curve.add(2);
        const Key* const second = curve.find(2)->second;
        bool wasFound = true;
        WatchedKey::onDeath() = [&](const WatchedKey&) { wasFound = curve.findKey(*second) != curve.end(); };
        curve.clear();
        QVERIFY(!wasFound);
    }

    void aReleasedKeyBelongsToItsHolder() {
        Watched::Curve curve;
        curve.add(3);
        const std::unique_ptr<WatchedKey> key(
            static_cast<WatchedKey*>(curve.detach(curve.find(3)).release()));
        QVERIFY(curve.empty());
        QVERIFY(WatchedKey::dead().empty());
        QCOMPARE(key->serial, 0);
    }

    void insertingNothingIsRefused() {
        MotionCurve curve;
        Records::fill(curve);
        const QString before = Records::withIdentity(curve);
        QVERIFY_EXCEPTION_THROWN(curve.insert(1, nullptr), std::invalid_argument);
        QCOMPARE(Records::withIdentity(curve), before);
    }

    void insertingWhereAKeyStandsIsRefusedAndLeavesTheKeyToItsCaller() {
        Watched::Curve curve;
        curve.add(4);
        const QString before = Records::withIdentity(curve);
        auto key = std::make_unique<WatchedKey>();
        QVERIFY_EXCEPTION_THROWN(curve.insert(4, key.get()), std::invalid_argument);
        QVERIFY(WatchedKey::dead().empty());
        QCOMPARE(Records::withIdentity(curve), before);
        QVERIFY(curve.findKey(*key) == curve.end());
        const auto position = curve.insert(5, key.get());
        key.release();
        QVERIFY(position == curve.find(5));
    }

    void insertingAKeyThatIsHeldIsRefused() {
        Watched::Curve curve;
        curve.add(4);
        curve.add(6);
        const QString before = Records::withIdentity(curve);
        Key* const held = curve.find(4)->second;
        for (const unsigned int frame : {4U, 5U, 6U}) {
            QVERIFY_EXCEPTION_THROWN(curve.insert(frame, held), std::invalid_argument);
            QCOMPARE(Records::withIdentity(curve), before);
            QVERIFY(curve.findKey(*held) == curve.find(4));
        }
        QVERIFY(WatchedKey::dead().empty());
    }

    void erasingDestroysTheKeyAndGivesTheNext() {
        Watched::Curve curve;
        curve.add(1);
        const int middle = curve.add(2);
        curve.add(3);
        const auto behind = curve.erase(curve.find(2));
        QVERIFY(WatchedKey::dead() == std::vector<int>{middle});
        QCOMPARE(behind->first, 3U);
        QVERIFY(curve.find(2) == curve.end());
        QVERIFY(curve.erase(behind) == curve.end());
        QCOMPARE(curve.size(), std::size_t{1});
    }

    void clearingDestroysEveryKeyOnceAndKeepsTheSettings() {
        Watched::Curve curve;
        curve.setMaxAbsoluteDerivative(2.0F);
        curve.add(1);
        curve.add(2);
        curve.clear();
        QVERIFY(curve.empty());
        QVERIFY(Watched::everyKeyDiedOnce());
        QCOMPARE(curve.getMaxAbsoluteDerivative(), 2.0F);
        curve.clear();
        QVERIFY(Watched::everyKeyDiedOnce());
    }

    void aDyingCurveDestroysEveryKeyOnce() {
        std::unique_ptr<MotionCurve> curve = std::make_unique<Watched::Curve>();
        static_cast<Watched::Curve&>(*curve).add(1);
        static_cast<Watched::Curve&>(*curve).add(2);
        curve.reset();
        QCOMPARE(WatchedKey::made(), 2);
        QVERIFY(Watched::everyKeyDiedOnce());
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

    void copiesAreIndependent() {
        MotionCurve curve;
        Records::fill(curve);
        MotionCurve copy(curve);
        const QString before = Records::withIdentity(curve);
        QCOMPARE(Records::of(copy), Records::of(curve));
        copy.find(7)->second->value = 99.0F;
        copy.setValueLimits({0.0F, 1.0F});
        copy.erase(copy.find(0));
        QCOMPARE(Records::withIdentity(curve), before);
        curve = copy;
        QCOMPARE(Records::of(curve), Records::of(copy));
        curve.clear();
        QCOMPARE(copy.size(), std::size_t{2});
    }

    void aCopyOfACurveOfLargerKeysIsPlain() {
        auto curve = std::make_unique<Watched::Curve>();
        curve->add(1, 7);
        MotionCurve copy(*curve);
        QCOMPARE(Records::of(copy), Records::of(*curve));
        QVERIFY(copy.serialize().get_child("key").get_optional<int>("<xmlattr>.mark") == boost::none);
        curve.reset();
        QVERIFY(Watched::everyKeyDiedOnce());
        QCOMPARE(copy.size(), std::size_t{1});
        copy.clear();
        QCOMPARE(WatchedKey::dead().size(), std::size_t{1});
    }

    void assigningACurveToItselfChangesNothing() {
        MotionCurve curve;
        Records::fill(curve);
        const QString before = Records::of(curve);
        const MotionCurve& same = curve;
        curve = same;
        QCOMPARE(Records::of(curve), before);
    }

    void movingKeepsTheKeyObjects() {
        MotionCurve curve;
        Records::fill(curve);
        const QString before = Records::withIdentity(curve);
        MotionCurve moved(std::move(curve));
        QCOMPARE(Records::withIdentity(moved), before);
        MotionCurve assigned;
        assigned.insert(1, new Key);
        assigned = std::move(moved);
        QCOMPARE(Records::withIdentity(assigned), before);
    }

    void aDerivedCurveStartsEmptyWithTheSettingsOfAnother() {
        MotionCurve settings;
        Records::fill(settings);
        const Watched::Curve curve(settings);
        settings.clear();
        QVERIFY(curve.empty());
        QCOMPARE(Records::of(curve), Records::of(settings));
    }

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

    void keysNeedNotStandInFrameOrder() {
        MotionCurve curve;
        Records::fill(curve);
        Tree tree = curve.serialize();
        tree.reverse();
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

    void unknownItemsAreSkipped() {
        MotionCurve curve;
        Records::fill(curve);
        Tree tree = curve.serialize();
        Damages::addUnknownItems(tree);
        MotionCurve copy;
        QVERIFY(copy.deserialize(tree));
        QCOMPARE(Records::of(copy), Records::of(curve));
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

QTEST_GUILESS_MAIN(MotionCurveTest)
#include "MotionCurveTest.moc"
