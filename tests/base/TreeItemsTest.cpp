// The items are internal to the library; they are tested through the records that are made of them.
#include "AnyFloat.h"
#include "Damages.h"
#include "base/animation/KeySerialization.h"

#include <QtTest>

#include <algorithm>
#include <cstdlib>
#include <sstream>

using Records::Key;
using Records::MotionCurve;
using Records::RationalSeconds;
using Records::Tree;

namespace {

std::string written(float number) {
    Key key;
    key.value = number;
    return VQ::Animation::serialize(key).get<std::string>("<xmlattr>.value");
}

float read(const std::string& text) {
    Tree tree = VQ::Animation::serialize(Key());
    Damages::setAttribute(tree, "value", text);
    return VQ::Animation::deserializeMotionCurveKey(tree).value;
}

// The shortest of the forms with a fixed number of digits that read back, in the classic locale.
std::string::size_type shortestLength(float number) {
    std::string::size_type shortest = std::string::npos;
    for (int digits = 1; digits <= 9; ++digits) {
        for (const auto format : {std::ios::scientific, std::ios::fmtflags{}}) {
            std::ostringstream text;
            text.imbue(std::locale::classic());
            text.setf(format, std::ios::floatfield);
            text.precision(format == std::ios::scientific ? digits - 1 : digits);
            text << number;
            if (std::strtof(text.str().c_str(), nullptr) == number) {
                shortest = std::min(shortest, text.str().size());
            }
        }
    }
    return shortest;
}

RationalSeconds readUnit(const RationalSeconds& unit) {
    MotionCurve curve;
    curve.setTimeUnit(unit);
    MotionCurve copy;
    return copy.deserialize(curve.serialize()) ? copy.getTimeUnit() : RationalSeconds(-1);
}

} // namespace

class TreeItemsTest : public QObject {
    Q_OBJECT

private slots:
    void numbersAreWrittenShort_data() {
        QTest::addColumn<float>("number");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0.0F << "0";
        QTest::newRow("negative zero") << -0.0F << "-0";
        QTest::newRow("tenth") << 0.1F << "0.1";
        QTest::newRow("whole") << 25.0F << "25";
        QTest::newRow("thousands") << 1234567.0F << "1234567";
        QTest::newRow("large") << 1e20F << "1e+20";
        QTest::newRow("infinite") << std::numeric_limits<float>::infinity() << "inf";
        QTest::newRow("minus infinite") << -std::numeric_limits<float>::infinity() << "-inf";
        QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << "nan";
        QTest::newRow("not a number with a sign") << VQ::Math::floatFromBits(0xffc00000) << "-nan";
        QTest::newRow("an unusual one with a sign")
            << VQ::Math::floatFromBits(0xffc00001) << "nan(0xffc00001)";
    }

    void numbersAreWrittenShort() {
        QFETCH(float, number);
        QFETCH(QString, text);
        QCOMPARE(QString::fromStdString(written(number)), text);
        const Records::CommaLocale comma;
        QCOMPARE(QString::fromStdString(written(number)), text);
    }

    void noShorterFormWouldReadBack() {
        QVERIFY(rc::check([] {
            const float number = *Records::anyFiniteFloat();
            RC_ASSERT(written(number).size() <= shortestLength(number));
        }));
    }

    void everyFloatReadsBackBitForBit() {
        QVERIFY(rc::check([] {
            const float number = *Records::anyFloat();
            RC_ASSERT(VQ::Math::floatBits(read(written(number))) == VQ::Math::floatBits(number));
        }));
    }

    void otherSpellingsOfANumberAreRead() {
        QCOMPARE(read("1.50"), 1.5F);
        QCOMPARE(read("15e-1"), 1.5F);
        QVERIFY(std::signbit(read("-0.0")));
        QVERIFY(std::isnan(read("nan")));
    }

    void fractionsReadBack_data() {
        QTest::addColumn<int>("numerator");
        QTest::addColumn<int>("denominator");
        const int largest = std::numeric_limits<int>::max();
        QTest::newRow("film") << 1 << 24;
        QTest::newRow("broadcast") << 1001 << 30000;
        QTest::newRow("whole") << 3 << 1;
        QTest::newRow("largest") << largest << 1;
        QTest::newRow("finest") << 1 << largest;
        QTest::newRow("largest of both") << largest << largest - 1;
    }

    void fractionsReadBack() {
        QFETCH(int, numerator);
        QFETCH(int, denominator);
        const boost::rational<int> fraction(numerator, denominator);
        QVERIFY(readUnit(RationalSeconds(fraction)).count() == fraction);
    }

    // Neither set nor read, so that whatever is written can be read.
    void aFrameThatLastsNoTimeIsRefused_data() {
        QTest::addColumn<int>("numerator");
        QTest::addColumn<int>("denominator");
        QTest::newRow("zero") << 0 << 1;
        QTest::newRow("negative") << -1 << 25;
        QTest::newRow("most negative") << std::numeric_limits<int>::min() << 1;
        QTest::newRow("most negative numerator") << std::numeric_limits<int>::min() << 3;
        QTest::newRow("most negative of both")
            << -std::numeric_limits<int>::max() << std::numeric_limits<int>::max() - 1;
    }

    void aFrameThatLastsNoTimeIsRefused() {
        QFETCH(int, numerator);
        QFETCH(int, denominator);
        const boost::rational<int> fraction =
            denominator == 1 ? boost::rational<int>(numerator) : boost::rational<int>(numerator, denominator);
        MotionCurve curve;
        Records::fill(curve);
        const QString before = Records::withIdentity(curve);
        QVERIFY_EXCEPTION_THROWN(curve.setTimeUnit(RationalSeconds(fraction)), std::invalid_argument);
        Tree tree = MotionCurve().serialize();
        Damages::setAttribute(tree, "timeUnit",
                              std::to_string(numerator) + '/' + std::to_string(denominator));
        QVERIFY(!curve.deserialize(tree));
        QVERIFY(MotionCurve::problemIn(tree).find("timeUnit") != std::string::npos);
        QCOMPARE(Records::withIdentity(curve), before);
    }

    void limitsReadBackWhateverTheyAre() {
        for (const float first : Records::remarkableFloats()) {
            for (const float second : Records::remarkableFloats()) {
                MotionCurve curve;
                curve.setValueLimits({first, second});
                curve.setMaxAbsoluteDerivative(first);
                MotionCurve copy;
                QVERIFY(copy.deserialize(curve.serialize()));
                QCOMPARE(Records::of(copy), Records::of(curve));
            }
        }
    }

    void aFractionIsWrittenAsNumeratorAndDenominator() {
        MotionCurve curve;
        curve.setTimeUnit(RationalSeconds(boost::rational<int>(2000, 50000)));
        const Records::CommaLocale comma;
        QCOMPARE(curve.serialize().get<std::string>("<xmlattr>.timeUnit"), std::string("1/25"));
    }

    void aFractionNeedNotBeReduced() {
        Tree tree = MotionCurve().serialize();
        Damages::setAttribute(tree, "timeUnit", "2/50");
        MotionCurve curve;
        QVERIFY(curve.deserialize(tree));
        QVERIFY(curve.getTimeUnit().count() == boost::rational<int>(1, 25));
    }

    void framesAreWrittenWithoutGrouping() {
        MotionCurve curve;
        curve.insert(4294967295U, new Key);
        const Records::CommaLocale comma;
        const Tree tree = curve.serialize();
        QCOMPARE(tree.get<std::string>("key.<xmlattr>.frame"), std::string("4294967295"));
        MotionCurve copy;
        QVERIFY(copy.deserialize(tree));
        QCOMPARE(copy.begin()->first, 4294967295U);
    }

    void attributesStandInOneList() {
        Tree tree = VQ::Animation::serialize(Key());
        const Tree attributes = Damages::attributesOf(tree);
        for (const Tree& more : {Tree(), attributes}) {
            Tree twice = tree;
            twice.push_back({"<xmlattr>", more});
            QVERIFY_EXCEPTION_THROWN(VQ::Animation::deserializeMotionCurveKey(twice), std::invalid_argument);
        }
    }

    void aFlagIsTrueOrFalseOrMissing() {
        Tree tree = Records::makeLayer("arm", true).serialize();
        Records::AnimationLayer layer;
        QVERIFY(layer.deserialize(tree));
        QVERIFY(layer.mute);
        Damages::setAttribute(tree, "mute", "false");
        QVERIFY(layer.deserialize(tree));
        QVERIFY(!layer.mute);
        layer.mute = true;
        Damages::erase(Damages::attributesOf(tree), "mute");
        QVERIFY(layer.deserialize(tree));
        QVERIFY(!layer.mute);
    }

    void aProblemQuotesOnlyTheBeginningOfALongText() {
        Tree tree = Records::makeLayer("arm", true).serialize();
        Damages::setAttribute(tree, "mute", std::string(100000, 'x'));
        const std::string problem = Records::AnimationLayer::problemIn(tree);
        QVERIFY(problem.find("xxx") != std::string::npos);
        QVERIFY(problem.size() < 500);
    }

    void aProblemQuotesNoBytesThatAreNotUtf8() {
        Tree tree = Records::makeLayer("arm", true).serialize();
        Damages::setAttribute(tree, "mute", "\xff\n");
        QCOMPARE(QString::fromStdString(Records::AnimationLayer::problemIn(tree)),
                 QString("attribute \"mute\" is \"?\?\", not \"true\" or \"false\""));
    }
};

QTEST_GUILESS_MAIN(TreeItemsTest)
#include "TreeItemsTest.moc"
