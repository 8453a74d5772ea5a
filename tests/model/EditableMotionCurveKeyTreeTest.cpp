#include "base/animation/KeySerialization.h"
#include "model/EditableMotionCurve.h"
#include "model/EditableMotionCurveKey.h"
#include "tests/base/Records.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>

#include <rapidcheck.h>

#include <cstdint>
#include <cstring>
#include <locale>
#include <string>
#include <vector>

namespace {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Record = VQ::Math::Interpolation::Key;
using Side = ZT::TangentSide;
using Tree = boost::property_tree::ptree;
using Type = VQ::Math::Interpolation::InterpolationType;

Record record(Type leftType, Type rightType) {
    return Records::makeKey(1234.5F, leftType, {-1.0F, 0.0F}, rightType, {3.0F, 2.0F});
}

/// The tree of such a record with flags in the given texts; empty for none.
Tree tree(const Record& key, const std::string& symmetrical, const std::string& smooth = {}) {
    Tree written = VQ::Animation::serialize(key);
    if (!symmetrical.empty()) {
        written.put("<xmlattr>.symmetrical", symmetrical);
    }
    if (!smooth.empty()) {
        written.put("<xmlattr>.smooth", smooth);
    }
    return written;
}

/// Groups digits and spells the truth values in its own way, as a user's locale may.
class OddNumbers : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    std::string do_truename() const override { return "wahr"; }
    std::string do_falsename() const override { return "falsch"; }
};

class [[nodiscard]] OddLocale {
public:
    OddLocale()
        : _previous(std::locale::global(std::locale(std::locale::classic(), new OddNumbers))) {}
    OddLocale(const OddLocale&) = delete;
    OddLocale& operator=(const OddLocale&) = delete;
    ~OddLocale() { std::locale::global(_previous); }

private:
    std::locale _previous;
};

/// Answers texts of one context in capital letters.
class Capitals : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char* disambiguation,
                      int n) const override {
        const bool isPlain = disambiguation == nullptr && n == -1;
        return isPlain && qstrcmp(context, "QObject") == 0 ? QString(sourceText).toUpper() : QString();
    }
};

} // namespace

class EditableMotionCurveKeyTreeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyFlagsThatAreSetAreWritten_data() {
        QTest::addColumn<bool>("symmetrical");
        QTest::addColumn<bool>("smooth");
        QTest::newRow("none") << false << false;
        QTest::newRow("symmetrical") << true << false;
        QTest::newRow("smooth") << false << true;
        QTest::newRow("both") << true << true;
    }
    void onlyFlagsThatAreSetAreWritten() {
        QFETCH(bool, symmetrical);
        QFETCH(bool, smooth);
        Key key(record(Type::bezier, Type::linear));
        key.setSmooth(smooth);
        key.setSymmetrical(symmetrical);
        const Tree base = VQ::Animation::serialize(key.baseMotionCurveKey());
        QVERIFY(key.serialize() ==
                tree(key.baseMotionCurveKey(), symmetrical ? "true" : "", smooth ? "true" : ""));
        QCOMPARE(key.serialize() == base, !symmetrical && !smooth);
    }

    void theFlagsFollowTheBaseKeySymmetricalFirst() {
        Key key(record(Type::bezier, Type::bezier));
        key.setSmooth(true);
        key.setSymmetrical(true);
        const Tree written = key.serialize();
        std::vector<std::string> names;
        for (const auto& [name, node] : written.get_child("<xmlattr>")) {
            names.push_back(name);
        }
        QVERIFY(names.size() >= 2);
        QCOMPARE(names.at(names.size() - 2), std::string("symmetrical"));
        QCOMPARE(names.back(), std::string("smooth"));
        QCOMPARE(written.get<std::string>("<xmlattr>.symmetrical"), std::string("true"));
        QCOMPARE(written.get<std::string>("<xmlattr>.smooth"), std::string("true"));
    }

    void whatIsWrittenReadsBack() {
        const bool holds = rc::check("a key read from another key's tree equals it to the bit", [] {
            const auto number = rc::gen::map(rc::gen::arbitrary<std::uint32_t>(), [](std::uint32_t bits) {
                float value = 0.0F;
                std::memcpy(&value, &bits, sizeof value);
                return value;
            });
            const auto type =
                rc::gen::map(rc::gen::inRange(0, 4), [](int value) { return static_cast<Type>(value); });
            Record source;
            source.value = *number;
            source.leftTangentOffset = {*number, *number};
            source.rightTangentOffset = {*number, *number};
            Key key(source);
            if (*rc::gen::arbitrary<bool>()) {
                key.setSmooth(true);
            }
            key.setLeftTangentType(*type);
            key.setRightTangentType(*type);
            Key read;
            RC_ASSERT(read.deserialize(VQ::Animation::serialize(key.baseMotionCurveKey())));
            RC_ASSERT(Snapshot::of(read).toStdString() ==
                      Snapshot::of(Key(key.baseMotionCurveKey())).toStdString());
            const std::string before = Snapshot::of(key).toStdString();
            RC_ASSERT(key.deserialize(key.serialize()));
            RC_ASSERT(Snapshot::of(key).toStdString() == before);
        });
        QVERIFY(holds);
    }

    void aSmoothKeyOfAnyTypesReadsBackIntoASmoothKey() {
        Key key(record(Type::linear, Type::constant));
        key.setSmooth(true);
        key.setSymmetrical(true);
        key.setLeftTangentType(Type::linear);
        key.setRightTangentType(Type::bezierAuto);
        Key read;
        read.setSmooth(true);
        read.setSymmetrical(true);
        QVERIFY(read.deserialize(key.serialize()));
        QCOMPARE(Snapshot::of(read), Snapshot::of(key));
    }

    void readingARecordEmitsAndRecomputesNothing() {
        Curve curve;
        Key* const key = curve.insert(3, new Key)->second;
        SignalRecorder recorder;
        recorder.watch(*key, "key");
        recorder.watch(curve);
        const Record source = record(Type::bezierAuto, Type::linear);
        QVERIFY(key->deserialize(tree(source, "")));
        QCOMPARE(Snapshot::of(*key), Snapshot::of(Key(source)));
        QCOMPARE(recorder.take(), QString());
    }

    void flagsAreReadAsTheirSettersWouldSetThem_data() {
        QTest::addColumn<QString>("symmetrical");
        QTest::addColumn<QString>("smooth");
        QTest::addColumn<QString>("signalled");
        QTest::newRow("true") << "true"
                              << "true"
                              << "key.symmetricalChanged(true), key.smoothChanged(true)";
        QTest::newRow("1") << "1"
                           << "1"
                           << "key.symmetricalChanged(true), key.smoothChanged(true)";
        QTest::newRow("symmetrical") << "true"
                                     << "false"
                                     << "key.symmetricalChanged(true)";
        QTest::newRow("smooth") << "false"
                                << "true"
                                << "key.smoothChanged(true)";
        QTest::newRow("false") << "false"
                               << "false"
                               << "";
        QTest::newRow("0") << "0"
                           << "0"
                           << "";
        QTest::newRow("missing") << ""
                                 << ""
                                 << "";
        QTest::newRow("a word") << "maybe"
                                << "yes"
                                << "";
        QTest::newRow("another number") << "2"
                                        << "-1"
                                        << "";
        QTest::newRow("capitals") << "TRUE"
                                  << "True"
                                  << "";
        QTest::newRow("more text") << "true false"
                                   << "1 2"
                                   << "";
        QTest::newRow("an unreadable flag does not spoil the other") << "maybe"
                                                                     << "1"
                                                                     << "key.smoothChanged(true)";
    }
    void flagsAreReadAsTheirSettersWouldSetThem() {
        QFETCH(QString, symmetrical);
        QFETCH(QString, smooth);
        QFETCH(QString, signalled);
        Key key;
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const Record source = record(Type::linear, Type::bezierAuto);
        QVERIFY(key.deserialize(tree(source, symmetrical.toStdString(), smooth.toStdString())));
        QCOMPARE(recorder.take(), signalled);
        Key expected(source);
        expected.setSymmetrical(signalled.contains("symmetrical"));
        expected.setSmooth(signalled.contains("smooth"));
        QCOMPARE(Snapshot::of(key), Snapshot::of(expected));
        QCOMPARE(key.isSymmetrical(), signalled.contains("symmetrical"));
        QCOMPARE(key.isSmooth(), signalled.contains("smooth"));
    }

    void aSymmetricalFlagMakesBothTangentsBezierAndMirrorsThem() {
        Key key;
        QVERIFY(key.deserialize(tree(record(Type::linear, Type::linear), "true")));
        QCOMPARE(key.getTangentType(Side::left), Type::bezier);
        QCOMPARE(key.getTangentType(Side::right), Type::bezier);
        QCOMPARE(key.getTangentOffset(Side::left), qMakePair(-2.0F, -1.0F));
        QCOMPARE(key.getTangentOffset(Side::right), qMakePair(2.0F, 1.0F));
        QCOMPARE(key.getValue(), 1234.5F);
    }

    void aFlagThatEqualsTheCurrentOneKeepsTheTypesAsRead_data() {
        QTest::addColumn<bool>("smooth");
        QTest::newRow("symmetrical") << false;
        QTest::newRow("smooth") << true;
    }
    void aFlagThatEqualsTheCurrentOneKeepsTheTypesAsRead() {
        QFETCH(bool, smooth);
        Key key;
        smooth ? key.setSmooth(true) : key.setSymmetrical(true);
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const Record source = record(Type::linear, Type::linear);
        QVERIFY(key.deserialize(smooth ? tree(source, "", "true") : tree(source, "true")));
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(Snapshot::of(Key(key.baseMotionCurveKey())), Snapshot::of(Key(source)));
        QCOMPARE(key.isSmooth(), smooth);
        QCOMPARE(key.isSymmetrical(), !smooth);
    }

    void flagsThatTheTreeLacksAreSwitchedOff() {
        Key key;
        key.setSmooth(true);
        key.setSymmetrical(true);
        SignalRecorder recorder;
        recorder.watch(key, "key");
        QStringList states;
        connect(&key, &Key::symmetricalChanged, this, [&] { states.append(Snapshot::of(key)); });
        const Record source = record(Type::linear, Type::constant);
        QVERIFY(key.deserialize(tree(source, "maybe")));
        QCOMPARE(recorder.take(), QString("key.symmetricalChanged(false), key.smoothChanged(false)"));
        QCOMPARE(Snapshot::of(key), Snapshot::of(Key(source)));
        // The record was there before the first flag was announced.
        QCOMPARE(states, QStringList(Snapshot::of(Key(source)) + " smooth"));
    }

    void aTreeThatIsNoKeyLeavesTheKeyUnchanged_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("text");
        QTest::newRow("value") << "<xmlattr>.value"
                               << "many";
        QTest::newRow("left type") << "left.<xmlattr>.type"
                                   << "curly";
        QTest::newRow("right dy, read last") << "right.<xmlattr>.dy"
                                             << "1,5";
        QTest::newRow("nothing at all") << ""
                                        << "";
    }
    void aTreeThatIsNoKeyLeavesTheKeyUnchanged() {
        QFETCH(QString, path);
        QFETCH(QString, text);
        Key key(record(Type::constant, Type::linear));
        key.setSmooth(true);
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const QString before = Snapshot::of(key);
        Tree broken;
        if (!path.isEmpty()) {
            broken = tree(Record(), "true", "false");
            QVERIFY(broken.get_child_optional(path.toStdString()));
            broken.put(path.toStdString(), text.toStdString());
        }
        QVERIFY(!key.deserialize(broken));
        QCOMPARE(Snapshot::of(key), before);
        QCOMPARE(recorder.take(), QString());
    }

    void theGlobalLocaleChangesNoTree() {
        Key key(record(Type::bezier, Type::bezier));
        key.setSmooth(true);
        key.setSymmetrical(true);
        key.setValue(1234567.5F);
        const Tree written = key.serialize();
        const OddLocale locale;
        QVERIFY(key.serialize() == written);
        Key read;
        QVERIFY(read.deserialize(written));
        QCOMPARE(Snapshot::of(read), Snapshot::of(key));
        Key readAgain;
        QVERIFY(readAgain.deserialize(tree(record(Type::linear, Type::linear), "1", "wahr")));
        QVERIFY(readAgain.isSymmetrical());
        QVERIFY(!readAgain.isSmooth());
    }

    void typesHaveDisplayNames_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("name");
        QTest::newRow("constant") << 0 << "constant";
        QTest::newRow("linear") << 1 << "linear";
        QTest::newRow("bezier") << 2 << "bezier";
        QTest::newRow("bezier auto") << 3 << "bezier auto";
        QTest::newRow("no type") << 7 << "bezier auto";
        QTest::newRow("negative") << -1 << "bezier auto";
    }
    void typesHaveDisplayNames() {
        QFETCH(int, type);
        QFETCH(QString, name);
        QCOMPARE(ZT::interpolTypeToString(static_cast<Type>(type)), name);
        Capitals translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        const QString translated = ZT::interpolTypeToString(static_cast<Type>(type));
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(translated, name.toUpper());
    }
};

QTEST_GUILESS_MAIN(EditableMotionCurveKeyTreeTest)

#include "EditableMotionCurveKeyTreeTest.moc"
