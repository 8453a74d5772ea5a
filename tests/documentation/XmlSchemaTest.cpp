#include "base/animation/AnimationXml.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "tests/documentation/Documentation.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <cstring>
#include <fstream>
#include <random>

namespace {

using Key = VQ::Math::Interpolation::Key;
using Type = VQ::Math::Interpolation::InterpolationType;

/// Animations of any content: numbers of any bits, NaNs and infinities among them, time units, flags.
class AnyAnimation {
public:
    explicit AnyAnimation(unsigned int seed)
        : _random(seed) {}

    VQ::Animation::Animation draw() {
        VQ::Animation::Animation animation;
        for (unsigned int layers = _below(4); layers > 0; --layers) {
            auto* const layer = new VQ::Animation::AnimationLayer; // the animation owns it
            layer->actuatorName = _name();
            layer->mute = _below(2) == 0;
            layer->curve->setValueLimits({_number(), _number()});
            layer->curve->setMaxAbsoluteDerivative(_number());
            layer->curve->setTimeUnit(
                VQ::Animation::RationalSeconds(boost::rational<int>(1 + static_cast<int>(_below(3)), 120)));
            for (unsigned int keys = _below(20); keys > 0; --keys) {
                const unsigned int frame = _below(_below(3) == 0 ? 0xFFFFFFFFU : 100U);
                if (layer->curve->find(frame) == layer->curve->end()) {
                    layer->curve->insert(frame, _key());
                }
            }
            animation.push_back(layer);
        }
        return animation;
    }
    /// Gives some keys constraints, as only live ones have them.
    void constrain(ZT::EditableAnimation& animation) {
        for (ZT::EditableAnimationLayer* const layer : animation) {
            for (const auto [frame, key] : *layer->getCurve()) {
                key->setSmooth(_below(2) == 0);
                key->setSymmetrical(_below(2) == 0);
            }
        }
    }

private:
    unsigned int _below(unsigned int count) { return static_cast<unsigned int>(_random() % count); }

    float _number() {
        const auto bits = static_cast<std::uint32_t>(_random());
        float number = 0.0F;
        std::memcpy(&number, &bits, sizeof number);
        return _below(2) == 0 ? number : static_cast<float>(_below(100)) / 8.0F;
    }

    std::string _name() {
        const char* const names[] = {"elbow",         "",       "  two words ",
                                     "\xC3\xA9paule", "<&\"'>", "\xF0\x9F\xA6\xBE"};
        return names[_below(6)];
    }

    Key* _key() {
        auto* const key = new Key; // the curve owns it
        key->value = _number();
        key->leftTangentType = static_cast<Type>(_below(4));
        key->rightTangentType = static_cast<Type>(_below(4));
        key->leftTangentOffset = {_number(), _number()};
        key->rightTangentOffset = {_number(), _number()};
        return key;
    }

    std::mt19937 _random;
};

/// What xmllint says of the files; empty when all are as the schema wants them.
QString problemsIn(const QStringList& files) {
    QProcess lint;
    lint.start("xmllint",
               QStringList{"--noout", "--schema", QStringLiteral(EA_SOURCE_DIR "/docs/animation.xsd")} +
                   files);
    if (!lint.waitForFinished()) {
        return "xmllint could not be run: " + lint.errorString();
    }
    return lint.exitCode() == 0 ? QString() : QString::fromUtf8(lint.readAllStandardError());
}

} // namespace

class XmlSchemaTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theShippedAnimationsAreAsTheSchemaWantsThem();
    void whateverIsSavedIsAsTheSchemaWantsIt();
    void theExampleInTheTextsIsAsTheSchemaWantsItAndCanBeRead();
    void whatTheReaderRefusesTheSchemaRefusesToo_data();
    void whatTheReaderRefusesTheSchemaRefusesToo();
};

void XmlSchemaTest::theShippedAnimationsAreAsTheSchemaWantsThem() {
    QCOMPARE(problemsIn({QStringLiteral(EA_SOURCE_DIR "/examples/wave.xml")}), QString());
}

void XmlSchemaTest::whateverIsSavedIsAsTheSchemaWantsIt() {
    const QTemporaryDir folder;
    QStringList files;
    for (unsigned int seed = 1; seed <= 100; ++seed) {
        AnyAnimation any(seed);
        const VQ::Animation::Animation plain = any.draw();
        ZT::EditableAnimation live(plain);
        any.constrain(live);
        for (const auto& tree : {plain.serialize(), live.serialize()}) {
            files.append(folder.filePath(QStringLiteral("%1.xml").arg(files.size())));
            std::ofstream file(files.last().toStdString());
            VQ::Animation::writeAnimationXml(file, tree);
        }
    }
    QCOMPARE(problemsIn(files), QString());
}

void XmlSchemaTest::theExampleInTheTextsIsAsTheSchemaWantsItAndCanBeRead() {
    const QTemporaryDir folder;
    int examples = 0;
    for (const QString& page : Documentation::pages()) {
        for (const QString& example : Documentation::blocks(page, "xml")) {
            ++examples;
            const QString path = folder.filePath(QStringLiteral("%1.xml").arg(examples));
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(example.toUtf8());
            file.close();
            QCOMPARE(problemsIn({path}), QString());
            std::ifstream stream(path.toStdString());
            const auto tree = VQ::Animation::readAnimationXml(stream);
            QVERIFY(VQ::Animation::Animation().deserialize(tree));
        }
    }
    QVERIFY(examples > 0);
}

void XmlSchemaTest::whatTheReaderRefusesTheSchemaRefusesToo_data() {
    QTest::addColumn<QString>("was");
    QTest::addColumn<QString>("is");
    QTest::newRow("a frame that is no whole number") << "frame=\"12\""
                                                     << "frame=\"1.5\"";
    QTest::newRow("a frame below zero") << "frame=\"12\""
                                        << "frame=\"-1\"";
    QTest::newRow("a frame that is too large") << "frame=\"12\""
                                               << "frame=\"4294967296\"";
    QTest::newRow("no value") << "value=\"0.5\" "
                              << "";
    QTest::newRow("a value that is no number") << "value=\"0.5\""
                                               << "value=\"half\"";
    QTest::newRow("a decimal comma") << "value=\"0.5\""
                                     << "value=\"0,5\"";
    QTest::newRow("an unknown type") << "type=\"bezier\""
                                     << "type=\"cubic\"";
    QTest::newRow("no time unit") << "timeUnit=\"1/25\" "
                                  << "";
    QTest::newRow("a time unit that is no fraction") << "timeUnit=\"1/25\""
                                                     << "timeUnit=\"1\"";
    QTest::newRow("no left tangent") << "<left type=\"bezier\" dx=\"-3\" dy=\"-0.25\"/>"
                                     << "";
}

void XmlSchemaTest::whatTheReaderRefusesTheSchemaRefusesToo() {
    QFETCH(const QString, was);
    QFETCH(const QString, is);
    QString text = Documentation::blocks("docs/file-format.md", "xml").value(0);
    QVERIFY(text.contains(was));
    text.replace(text.indexOf(was), was.size(), is);
    std::istringstream stream(text.toStdString());
    QVERIFY(!VQ::Animation::Animation().deserialize(VQ::Animation::readAnimationXml(stream)));
    const QTemporaryDir folder;
    QFile file(folder.filePath("damaged.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
    file.close();
    QVERIFY(!problemsIn({file.fileName()}).isEmpty());
}

QTEST_GUILESS_MAIN(XmlSchemaTest)
#include "XmlSchemaTest.moc"
