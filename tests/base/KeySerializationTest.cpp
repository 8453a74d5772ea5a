#include "base/animation/KeySerialization.h"

#include "AnyFloat.h"
#include "Damages.h"

#include <QtTest>

#include <clocale>

using Records::Key;
using Records::Tree;
using Records::Type;
using VQ::Animation::deserializeMotionCurveKey;
using VQ::Animation::serialize;

namespace {

bool everyKeyReadsBack() {
    return rc::check([] {
        const Key key = *Records::anyKey();
        RC_ASSERT(Records::of(deserializeMotionCurveKey(serialize(key))) == Records::of(key));
    });
}

bool everyRemarkableFloatReadsBackInEveryField() {
    const auto& floats = Records::remarkableFloats();
    for (std::size_t at = 0; at < floats.size(); ++at) {
        const auto next = [&](std::size_t step) { return floats[(at + step) % floats.size()]; };
        const Key key =
            Records::makeKey(next(0), Type::bezier, {next(1), next(2)}, Type::constant, {next(3), next(4)});
        if (Records::of(deserializeMotionCurveKey(serialize(key))) != Records::of(key)) {
            return false;
        }
    }
    return true;
}

} // namespace

class KeySerializationTest : public QObject {
    Q_OBJECT

private slots:
    void everyKeyReadsBackBitForBit() {
        QVERIFY(everyKeyReadsBack());
        QVERIFY(everyRemarkableFloatReadsBackInEveryField());
    }

    void aCommaInTheGlobalLocaleChangesNothing() {
        const Key key = Records::unusualKey(1234567.875F);
        const Tree expected = serialize(key);
        const Records::CommaLocale comma;
        QVERIFY(serialize(key) == expected);
        QVERIFY(everyKeyReadsBack());
        QVERIFY(everyRemarkableFloatReadsBackInEveryField());
    }

    void aCommaInTheCLocaleChangesNothing() {
        const Key key = Records::unusualKey(1234567.875F);
        const Tree expected = serialize(key);
        const std::string previous = std::setlocale(LC_ALL, nullptr);
        bool isFound = false;
        for (const char* const name :
             {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR.utf8", "fr_FR"}) {
            isFound = isFound || std::setlocale(LC_ALL, name) != nullptr;
        }
        if (!isFound) { // The test needs one to go wrong under.
            QSKIP("no C locale with a decimal comma is installed");
        }
        const bool sameTree = serialize(key) == expected;
        const bool readsBack = everyKeyReadsBack() && everyRemarkableFloatReadsBackInEveryField();
        std::setlocale(LC_ALL, previous.c_str());
        QVERIFY(sameTree);
        QVERIFY(readsBack);
    }

    void theTreeHoldsTheValueAndBothTangents() {
        const Tree tree = serialize(Records::unusualKey());
        QCOMPARE(tree.get<std::string>("<xmlattr>.value"), std::string("1.5"));
        QCOMPARE(tree.get<std::string>("left.<xmlattr>.type"), std::string("bezier"));
        QCOMPARE(tree.get<std::string>("left.<xmlattr>.dx"), std::string("-1.25"));
        QCOMPARE(tree.get<std::string>("left.<xmlattr>.dy"), std::string("0.1"));
        QCOMPARE(tree.get<std::string>("right.<xmlattr>.type"), std::string("linear"));
        QCOMPARE(tree.get<std::string>("right.<xmlattr>.dx"), std::string("2.5"));
        QCOMPARE(tree.get<std::string>("right.<xmlattr>.dy"), std::string("-7"));
    }

    void aTreeThatIsNoKeyThrowsInvalidArgument_data() { Damages::addRows(Damages::ofKey()); }

    void aTreeThatIsNoKeyThrowsInvalidArgument() {
        QFETCH(int, index);
        const Damages::Damage damage = Damages::ofKey().at(static_cast<std::size_t>(index));
        Tree tree = serialize(Records::unusualKey());
        damage.apply(tree);
        QString problem;
        try {
            deserializeMotionCurveKey(tree);
        } catch (const std::invalid_argument& error) {
            problem = error.what();
        }
        QVERIFY(!problem.isEmpty());
        for (const std::string& mention : damage.mentions) {
            QVERIFY2(problem.contains(QString::fromStdString(mention)), qPrintable(problem));
        }
    }

    void furtherAttributesAndElementsAreSkipped() {
        const Key key = Records::unusualKey();
        Tree tree = serialize(key);
        tree.put("<xmlattr>.symmetrical", true);
        tree.put("<xmlattr>.smooth", false);
        Damages::addUnknownItems(tree);
        QCOMPARE(Records::of(deserializeMotionCurveKey(tree)), Records::of(key));
    }

    void theOrderOfItemsDoesNotMatter() {
        const Key key = Records::unusualKey();
        Tree tree = serialize(key);
        tree.reverse();
        tree.get_child("left.<xmlattr>").reverse();
        QCOMPARE(Records::of(deserializeMotionCurveKey(tree)), Records::of(key));
    }

    void aTypeOutsideTheEnumerationIsWrittenAsAutomatic() {
        for (const int unknown : {-1, 4, 2147483647}) {
            Key key = Records::unusualKey();
            key.leftTangentType = static_cast<Type>(unknown);
            key.rightTangentType = static_cast<Type>(unknown);
            const Tree tree = serialize(key);
            QCOMPARE(tree.get<std::string>("left.<xmlattr>.type"), std::string("bezier auto"));
            const Key read = deserializeMotionCurveKey(tree);
            QCOMPARE(static_cast<int>(read.leftTangentType), 3);
            QCOMPARE(static_cast<int>(read.rightTangentType), 3);
        }
    }
};

QTEST_GUILESS_MAIN(KeySerializationTest)
#include "KeySerializationTest.moc"
