#include "BvhFiles.h"

#include <QtTest>

#include <clocale>
#include <cmath>
#include <fstream>
#include <set>

using BvhFiles::goodFile;
using BvhFiles::problemIn;
using BvhFiles::read;
using BvhFiles::replaced;
using VQ::Animation::Animation;
using VQ::Math::Interpolation::InterpolationType;

namespace {

/// All of an animation, for comparison.
QString show(const Animation& animation) {
    QStringList lines;
    for (const auto& layer : animation) {
        const auto unit = layer.curve->getTimeUnit().count();
        lines.append(QString("%1 %2/%3")
                         .arg(layer.actuatorName.c_str())
                         .arg(unit.numerator())
                         .arg(unit.denominator()));
        for (const auto element : *layer.curve) {
            lines.append(
                QString("%1: %2").arg(element.first).arg(static_cast<double>(element.second->value)));
        }
    }
    return lines.join('\n');
}

} // namespace

class BvhImporterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyChannelBecomesALayerWithAKeyAtEachFrame();
    void importedKeysAreAutomaticOnBothSides();
    void lineEndingsOfAnyKindGiveTheSame_data();
    void lineEndingsOfAnyKindGiveTheSame();
    void wordsOfTheHierarchyMayStandOnAnyLine();
    void aByteOrderMarkIsSkipped();
    void theDecimalPointIsADotInEveryLocale();
    void numbersTooSmallForAFloatAreRead();
    void frameTimesAreExactFractions_data();
    void frameTimesAreExactFractions();
    void aFileMayHoldNoFrames();
    void aFileMayHoldSeveralRoots();
    void jointsOfOneNameGetLayersOfTheirOwn();
    void realCapturesAreRead_data();
    void realCapturesAreRead();
};

void BvhImporterTest::everyChannelBecomesALayerWithAKeyAtEachFrame() {
    QCOMPARE(show(read(goodFile)), QString("Hips.Yposition 1/25\n0: 1.5\n1: 2\n"
                                           "Hips.Xrotation 1/25\n0: -0.25\n1: 100\n"
                                           "Knee.Zrotation 1/25\n0: 30\n1: 0"));
    QVERIFY(std::signbit(read(goodFile).begin()[2].curve->find(1)->second->value)); // Not shown by the text.
}

void BvhImporterTest::importedKeysAreAutomaticOnBothSides() {
    const Animation animation = read(goodFile);
    for (const auto& layer : animation) {
        QVERIFY(!layer.mute);
        for (const auto element : *layer.curve) {
            QVERIFY(element.second->leftTangentType == InterpolationType::bezierAuto);
            QVERIFY(element.second->rightTangentType == InterpolationType::bezierAuto);
        }
    }
}

void BvhImporterTest::lineEndingsOfAnyKindGiveTheSame_data() {
    QTest::addColumn<QByteArray>("text");
    QByteArray text = goodFile;
    QTest::newRow("CRLF") << text.replace("\n", "\r\n");
    text = goodFile;
    QTest::newRow("CR") << text.replace("\n", "\r");
    text = goodFile;
    QTest::newRow("LF and CRLF mixed") << text.replace("}\n", "}\r\n").replace("30\n", "30\r\n");
    text = goodFile;
    QTest::newRow("no end on the last line") << text.left(text.size() - 1);
    QTest::newRow("empty lines and blanks at the ends") << "\n\r\n" + text.replace("\n", " \t\n\n") + "\n \n";
    text = goodFile;
    QTest::newRow("tabs") << text.replace(" ", "\t");
}

void BvhImporterTest::lineEndingsOfAnyKindGiveTheSame() {
    QFETCH(QByteArray, text);
    QCOMPARE(problemIn(text), QString());
    QCOMPARE(show(read(text)), show(read(goodFile)));
}

void BvhImporterTest::wordsOfTheHierarchyMayStandOnAnyLine() {
    QByteArray text = goodFile;
    const auto motion = text.indexOf("Frames:");
    text = text.left(motion).replace("\n", " ") + "\n" + text.mid(motion);
    QCOMPARE(show(read(text)), show(read(goodFile)));
}

void BvhImporterTest::aByteOrderMarkIsSkipped() {
    QCOMPARE(show(read("\xEF\xBB\xBF" + goodFile)), show(read(goodFile)));
}

void BvhImporterTest::theDecimalPointIsADotInEveryLocale() {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const char* locale = nullptr;
    for (const char* const name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "fr_FR"}) {
        locale = locale != nullptr ? locale : std::setlocale(LC_ALL, name);
    }
    const QString shown = show(read(goodFile));
    std::setlocale(LC_ALL, before.c_str());
    QVERIFY(shown.contains("0: -0.25"));
    if (locale == nullptr) { // The test needs one to go wrong under.
        QSKIP("no locale with a decimal comma is installed");
    }
}

void BvhImporterTest::numbersTooSmallForAFloatAreRead() {
    const Animation animation = read(replaced("1.5 -.25", "1e-60 -1e-40"));
    QCOMPARE(animation.begin()[0].curve->find(0)->second->value, 0.0F);
    QVERIFY(animation.begin()[1].curve->find(0)->second->value < 0.0F);
}

void BvhImporterTest::frameTimesAreExactFractions_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("numerator");
    QTest::addColumn<int>("denominator");
    QTest::newRow("120 a second, seven digits") << QByteArray(".0083333") << 1 << 120;
    QTest::newRow("30 a second, six digits") << QByteArray("0.033333") << 1 << 30;
    QTest::newRow("30 a second, rounded up") << QByteArray("0.033334") << 1 << 30;
    QTest::newRow("24 a second") << QByteArray("0.0416667") << 1 << 24;
    QTest::newRow("25 a second") << QByteArray("4e-2") << 1 << 25;
    QTest::newRow("one a second") << QByteArray("1") << 1 << 1;
    QTest::newRow("within a millionth") << QByteArray("0.0400009") << 1 << 25;
    QTest::newRow("further than a millionth") << QByteArray("0.0400011") << 400011 << 10000000;
    QTest::newRow("no 1/n, few digits") << QByteArray("0.0417") << 417 << 10000;
    QTest::newRow("longer than a second") << QByteArray("2.5") << 5 << 2;
    QTest::newRow("the longest") << QByteArray("2147483647") << 2147483647 << 1;
}

void BvhImporterTest::frameTimesAreExactFractions() {
    QFETCH(QByteArray, text);
    QFETCH(int, numerator);
    QFETCH(int, denominator);
    const Animation animation = read(replaced("0.04", text));
    for (const auto& layer : animation) {
        QCOMPARE(layer.curve->getTimeUnit().count().numerator(), numerator);
        QCOMPARE(layer.curve->getTimeUnit().count().denominator(), denominator);
    }
}

void BvhImporterTest::aFileMayHoldNoFrames() {
    QByteArray text = replaced("Frames: 2", "Frames: 0");
    const Animation animation = read(text.left(text.indexOf("1.5")));
    QCOMPARE(animation.size(), std::size_t{3});
    QVERIFY(animation.begin()->curve->empty());
}

void BvhImporterTest::aFileMayHoldSeveralRoots() {
    const QByteArray text = replaced("MOTION", "ROOT Prop\n{ OFFSET 0 0 0 CHANNELS 0 }\nMOTION");
    QCOMPARE(show(read(text)), show(read(goodFile)));
}

void BvhImporterTest::jointsOfOneNameGetLayersOfTheirOwn() {
    const QByteArray text = "HIERARCHY ROOT A { OFFSET 0 0 0 CHANNELS 1 Xrotation\n"
                            "JOINT A_2 { OFFSET 0 0 0 CHANNELS 1 Xrotation\n"
                            "JOINT A { OFFSET 0 0 0 CHANNELS 1 Xrotation\n"
                            "JOINT A { OFFSET 0 0 0 CHANNELS 1 Xrotation } } } }\n"
                            "MOTION Frames: 1 Frame Time: 1\n1 2 3 4\n";
    QCOMPARE(show(read(text)), QString("A.Xrotation 1/1\n0: 1\nA_2.Xrotation 1/1\n0: 2\n"
                                       "A_3.Xrotation 1/1\n0: 3\nA_4.Xrotation 1/1\n0: 4"));
}

void BvhImporterTest::realCapturesAreRead_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("layers");
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("framesInASecond");
    QTest::addColumn<QString>("firstLayer");
    QTest::newRow("walk") << "walk.bvh" << 96 << 524 << 120 << "Hips.Xposition";
    QTest::newRow("dance") << "dance.bvh" << 60 << 455 << 30 << "Hips.Xposition";
}

void BvhImporterTest::realCapturesAreRead() {
    QFETCH(QString, name);
    QFETCH(int, layers);
    QFETCH(int, frames);
    QFETCH(int, framesInASecond);
    QFETCH(QString, firstLayer);
    const QString path = QString(EA_SHARED_DATA) + '/' + name;
    if (!QFile::exists(path)) { // The captures are not part of the repository.
        QSKIP(qPrintable(path + " is missing"));
    }
    std::ifstream stream(path.toStdString(), std::ios::binary);
    const Animation animation = Editor::BvhImporter(stream).read();
    QCOMPARE(animation.size(), static_cast<std::size_t>(layers));
    QCOMPARE(QString::fromStdString(animation.begin()->actuatorName), firstLayer);

    // The frames' lines, read by other means.
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    std::set<std::string> names;
    for (int channel = 0; channel < layers; ++channel) {
        const auto& layer = animation.begin()[channel];
        names.insert(layer.actuatorName);
        QCOMPARE(layer.curve->getTimeUnit().count(), boost::rational<int>(1, framesInASecond));
        QCOMPARE(layer.curve->size(), static_cast<std::size_t>(frames));
    }
    QCOMPARE(names.size(), static_cast<std::size_t>(layers));
    for (int frame = 0; frame < frames; ++frame) {
        const QStringList values = lines[lines.size() - frames + frame].simplified().split(' ');
        QCOMPARE(values.size(), layers);
        for (int channel = 0; channel < layers; ++channel) {
            const auto& curve = *animation.begin()[channel].curve;
            QCOMPARE(curve.find(static_cast<unsigned int>(frame))->second->value, values[channel].toFloat());
        }
    }
}

QTEST_GUILESS_MAIN(BvhImporterTest)
#include "BvhImporterTest.moc"
