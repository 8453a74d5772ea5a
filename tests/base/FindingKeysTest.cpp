#include "CurveModel.h"
#include "WatchedCurve.h"

#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <iterator>
#include <limits>
#include <stdexcept>

using CurveModel::agrees;
using CurveModel::atOrBeforeAgrees;
using CurveModel::Model;
using CurveModel::modelOf;
using Records::Key;
using Records::MotionCurve;
using Watched::WatchedKey;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

} // namespace

class FindingKeysTest : public QObject {
    Q_OBJECT

private slots:
    void init() { Watched::forget(); }

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
};

QTEST_GUILESS_MAIN(FindingKeysTest)
#include "FindingKeysTest.moc"
