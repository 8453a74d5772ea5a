#include "document/SampleRate.h"

#include <QtTest>

#include <cmath>
#include <vector>

using Editor::framesAt;
using Editor::sampleRate;
using Editor::SampleTimes;

namespace {

// As a program writes them that rounds to so many digits, 17 for all.
SampleTimes samples(double rate, int count, int digits, int first = 0) {
    SampleTimes times;
    const double unit = std::pow(10.0, digits);
    for (int i = first; i < first + count; ++i) {
        const double time = i / rate;
        times.seconds.push_back(digits < 17 ? std::round(time * unit) / unit : time);
    }
    times.digit = digits < 17 ? 1.0 / unit : 0.0;
    return times;
}

QString text(const SampleTimes& times) {
    const auto length = sampleRate(times);
    return length ? QString("%1/%2").arg(length->count().numerator()).arg(length->count().denominator())
                  : QString("none");
}

} // namespace

class SampleRateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void usualRatesAreFoundInRoundedTimes_data();
    void usualRatesAreFoundInRoundedTimes();
    void televisionRatesAreFound();
    void sparseTimesGetTheLowestRateThatFits();
    void oneTimeIsAtTheUsualRateWhereItFits();
    void timesThatFitNoRateHaveNone();
    void framesAreThoseOfTheTimes();
    void framesBeyondTheLastAreRefused();
};

void SampleRateTest::usualRatesAreFoundInRoundedTimes_data() {
    QTest::addColumn<int>("rate");
    QTest::addColumn<int>("digits");
    for (const int rate : {24, 25, 30, 48, 50, 60, 90, 100, 120, 200, 240, 250, 500, 1000}) {
        for (const int digits : {3, 4, 6, 9, 17}) {
            if (rate * std::pow(10.0, -digits) < 0.2) { // Otherwise the digits do not tell them apart.
                QTest::addRow("%d frames a second, %d digits", rate, digits) << rate << digits;
            }
        }
    }
}

void SampleRateTest::usualRatesAreFoundInRoundedTimes() {
    QFETCH(int, rate);
    QFETCH(int, digits);
    for (const int first : {0, 7, 1000}) {
        QCOMPARE(text(samples(rate, 500, digits, first)), QString("1/%1").arg(rate));
    }
}

void SampleRateTest::televisionRatesAreFound() {
    QCOMPARE(text(samples(30000.0 / 1001.0, 2000, 6)), QString("1001/30000"));
    QCOMPARE(text(samples(24000.0 / 1001.0, 2000, 17)), QString("1001/24000"));
}

void SampleRateTest::sparseTimesGetTheLowestRateThatFits() {
    QCOMPARE(text({{0.0, 0.5, 2.0, 3.25}, 0.01}), QString("1/4"));
    QCOMPARE(text({{0.0, 2.0, 4.0}, 1.0}), QString("1/1"));
    QCOMPARE(text({{0.5, 0.75}, 0.01}), QString("1/4"));
    QCOMPARE(text({{0.0, 0.01, 0.02}, 0.01}), QString("1/100"));
    QCOMPARE(text({{0.0, 1.0, 1.1}, 0.1}), QString("1/10"));
}

void SampleRateTest::oneTimeIsAtTheUsualRateWhereItFits() {
    QCOMPARE(text({{0.0}, 1.0}), QString("1/25"));
    QCOMPARE(text({{0.04}, 0.01}), QString("1/25"));
    QCOMPARE(text({{}, 1.0}), QString("1/25"));
}

void SampleRateTest::timesThatFitNoRateHaveNone() {
    QCOMPARE(text({{0.0, 0.1, 0.2137000001}, 1e-10}), QString("none"));
    QCOMPARE(text({{0.0, 0.0001}, 1e-4}), QString("none"));
    QCOMPARE(text({{1e300}, 0.0}), QString("none"));
}

void SampleRateTest::framesAreThoseOfTheTimes() {
    const VQ::Animation::RationalSeconds length(boost::rational<int>(1, 10));
    const auto frames = framesAt({{0.0, 0.3, 0.7}, 0.1}, length);
    QVERIFY(frames && *frames == (std::vector<unsigned int>{0, 3, 7}));
    QVERIFY(!framesAt({{0.0, 0.35}, 0.01}, length));
    QVERIFY(!framesAt({{0.1, 0.12}, 0.1}, length)); // Both on one frame.
}

void SampleRateTest::framesBeyondTheLastAreRefused() {
    const VQ::Animation::RationalSeconds length(boost::rational<int>(1, 1));
    QVERIFY(framesAt({{4294967295.0}, 1.0}, length));
    QVERIFY(!framesAt({{4294967296.0}, 1.0}, length));
}

QTEST_GUILESS_MAIN(SampleRateTest)
#include "SampleRateTest.moc"
