#include "curves/ViewAxis.h"

#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

using Editor::ViewAxis;

class ViewAxisTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsShownIsAnnouncedOnceAndOnlyWhenItIsAnother() {
        const std::unique_ptr<ViewAxis> axis(ViewAxis::forFrames(nullptr));
        QSignalSpy changes(axis.get(), &ViewAxis::changed);
        axis->show(10.0, 60.0);
        QCOMPARE(axis->first(), 10.0);
        QCOMPARE(axis->last(), 60.0);
        QCOMPARE(axis->span(), 50.0);
        axis->show(10.0, 60.0);
        QCOMPARE(changes.count(), 1);
    }

    void pixelsAndPositionsAreInverse() {
        const std::unique_ptr<ViewAxis> axis(ViewAxis::forFrames(nullptr));
        axis->show(10.0, 60.0);
        QCOMPARE(axis->toPixel(10.0, 500), 0.0);
        QCOMPARE(axis->toPixel(60.0, 500), 500.0);
        QCOMPARE(axis->fromPixel(250.0, 500), 35.0);
        QVERIFY(std::isfinite(axis->fromPixel(3.0, 0)));
        QVERIFY(std::isfinite(axis->toPixel(3.0, 0)));
    }

    void zoomingKeepsThePositionUnderThePointer() {
        const std::unique_ptr<ViewAxis> axis(ViewAxis::forFrames(nullptr));
        axis->show(0.0, 100.0);
        axis->zoom(0.5, 20.0);
        QCOMPARE(axis->first(), 10.0);
        QCOMPARE(axis->last(), 60.0);
    }

    void zoomingFurtherThanTheLimitShiftsNothing() {
        const std::unique_ptr<ViewAxis> axis(ViewAxis::forFrames(nullptr));
        axis->show(0.0, 100.0);
        for (int i = 0; i < 100; ++i) {
            axis->zoom(0.8, 20.0);
        }
        QCOMPARE(axis->span(), 4.0);
        QVERIFY(std::abs(axis->toPixel(20.0, 1000) - 200.0) < 1e-6);
    }

    void neitherAxisEverLeavesItsLimits_data() {
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("last");
        constexpr double huge = std::numeric_limits<double>::max();
        QTest::newRow("all doubles") << -huge << huge;
        QTest::newRow("one point") << 5.0 << 5.0;
        QTest::newRow("one point far away") << 1e300 << 1e300;
        QTest::newRow("reversed") << 100.0 << -100.0;
        QTest::newRow("neighbouring doubles") << 4e9 << std::nextafter(4e9, 5e9);
        QTest::newRow("before the beginning") << -1e30 << -1e29;
        QTest::newRow("denormal") << 0.0 << std::numeric_limits<double>::denorm_min();
    }
    void neitherAxisEverLeavesItsLimits() {
        QFETCH(double, first);
        QFETCH(double, last);
        const std::unique_ptr<ViewAxis> frames(ViewAxis::forFrames(nullptr));
        const std::unique_ptr<ViewAxis> values(ViewAxis::forValues(nullptr));
        for (ViewAxis* const axis : {frames.get(), values.get()}) {
            axis->show(first, last);
            QVERIFY(std::isfinite(axis->first()));
            QVERIFY(std::isfinite(axis->last()));
            QVERIFY(axis->first() < axis->last());
            QVERIFY(axis->tickStep(1, 50.0) > 0.0);
        }
        QVERIFY(frames->span() >= 4.0);
        QVERIFY(frames->last() <= 1.2 * std::numeric_limits<unsigned int>::max());
    }

    void whatIsNotFiniteIsIgnored() {
        const std::unique_ptr<ViewAxis> axis(ViewAxis::forValues(nullptr));
        axis->show(1.0, 2.0);
        constexpr double infinity = std::numeric_limits<double>::infinity();
        const double nan = std::nan("");
        axis->show(nan, 3.0);
        axis->show(0.0, infinity);
        axis->zoom(nan, 1.5);
        axis->zoom(infinity, 1.5);
        axis->zoom(0.5, nan);
        axis->pan(nan);
        axis->pan(-infinity);
        QCOMPARE(axis->first(), 1.0);
        QCOMPARE(axis->last(), 2.0);
    }

    void ticksAreOneTwoOrFiveTimesAPowerOfTenApart_data() {
        QTest::addColumn<double>("least");
        QTest::addColumn<double>("step");
        QTest::newRow("1") << 1.0 << 1.0;
        QTest::newRow("1.1") << 1.1 << 2.0;
        QTest::newRow("3") << 3.0 << 5.0;
        QTest::newRow("7") << 7.0 << 10.0;
        QTest::newRow("0.03") << 0.03 << 0.05;
        QTest::newRow("1e-30") << 1.5e-30 << 2e-30;
        QTest::newRow("1e38") << 3e38 << 5e38;
    }
    void ticksAreOneTwoOrFiveTimesAPowerOfTenApart() {
        QFETCH(double, least);
        QFETCH(double, step);
        QVERIFY(std::abs(ViewAxis::niceStep(least) / step - 1.0) < 1e-9);
    }

    void ticksAreAsFarApartAsAskedFor() {
        const std::unique_ptr<ViewAxis> axis(ViewAxis::forValues(nullptr));
        axis->show(0.0, 70.0);
        QCOMPARE(axis->tickStep(700, 40.0), 5.0);
        QCOMPARE(axis->tickStep(700, 60.0), 10.0);
    }
};

QTEST_GUILESS_MAIN(ViewAxisTest)
#include "ViewAxisTest.moc"
