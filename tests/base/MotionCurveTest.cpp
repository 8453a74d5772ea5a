#include "base/animation/MotionCurve.h"

#include "Records.h"
#include "WatchedCurve.h"

#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

using Records::Key;
using Records::MotionCurve;
using Records::RationalSeconds;
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

    void aReleasedKeyBelongsToItsHolder() {
        Watched::Curve curve;
        curve.add(3);
        const std::unique_ptr<WatchedKey> key(
            static_cast<WatchedKey*>(curve.detach(curve.find(3)).release()));
        QVERIFY(curve.empty());
        QVERIFY(WatchedKey::dead().empty());
        QCOMPARE(key->serial, 0);
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

    void keysOfACurveThatIsMovedDieAsWhatTheyAre() {
        Watched::Curve curve;
        curve.add(3);
        { const MotionCurve taken(std::move(static_cast<MotionCurve&>(curve))); }
        QVERIFY(curve.empty());
        QVERIFY(Watched::everyKeyDiedOnce());
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
};

QTEST_GUILESS_MAIN(MotionCurveTest)
#include "MotionCurveTest.moc"
