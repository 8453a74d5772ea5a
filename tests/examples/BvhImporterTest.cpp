#include "BvhImporter.h"

#include <QtTest>

#include <clocale>
#include <cmath>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

using VQ::Animation::Animation;
using VQ::Math::Interpolation::InterpolationType;

namespace {

// Two joints, three channels, two frames; the lines' numbers are what the tests of errors count on.
const QByteArray goodFile = "HIERARCHY\n"                        // 1
                            "ROOT Hips\n"                        // 2
                            "{\n"                                // 3
                            "  OFFSET 0.0 1 -2.5\n"              // 4
                            "  CHANNELS 2 Yposition Xrotation\n" // 5
                            "  JOINT Knee\n"                     // 6
                            "  {\n"                              // 7
                            "    OFFSET 0 -4 0\n"                // 8
                            "    CHANNELS 1 Zrotation\n"         // 9
                            "    End Site\n"                     // 10
                            "    {\n"                            // 11
                            "      OFFSET 0 -3 0\n"              // 12
                            "    }\n"                            // 13
                            "  }\n"                              // 14
                            "}\n"                                // 15
                            "MOTION\n"                           // 16
                            "Frames: 2\n"                        // 17
                            "Frame Time: 0.04\n"                 // 18
                            "1.5 -.25 30\n"                      // 19
                            "2 1e2 -0.0\n";                      // 20

Animation read(const QByteArray& text) {
    std::istringstream stream(text.toStdString());
    return BvhImporter(stream).read();
}

/// The error of reading @p text; empty when it is read.
QString problemIn(const QByteArray& text) {
    try {
        read(text);
        return {};
    } catch (const std::runtime_error& error) {
        return QString::fromUtf8(error.what());
    }
}

QByteArray replaced(const char* before, const char* after) {
    QByteArray text = goodFile;
    Q_ASSERT(text.contains(before));
    return text.replace(before, after);
}

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
    void jointsMayBeNestedUpToTheLimit();
    void malformedFilesAreRefusedWithTheLine_data();
    void malformedFilesAreRefusedWithTheLine();
    void everyTruncatedFileIsRefused();
    void linesLongerThanTheLimitAreRefused();
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
    const int motion = text.indexOf("Frames:");
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
    if (locale == nullptr) {
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

void BvhImporterTest::jointsMayBeNestedUpToTheLimit() {
    const auto chain = [](int joints) {
        QByteArray text = "HIERARCHY\n";
        for (int i = 0; i < joints; ++i) {
            text += i == 0 ? "ROOT" : "JOINT";
            text += " J { OFFSET 0 0 0 CHANNELS 1 Xrotation\n";
        }
        text += QByteArray(joints, '}').replace("}", "} ");
        return text + "\nMOTION\nFrames: 0\nFrame Time: 1\n";
    };
    QCOMPARE(read(chain(BvhImporter::maximumDepth)).size(), std::size_t{BvhImporter::maximumDepth});
    QCOMPARE(problemIn(chain(BvhImporter::maximumDepth + 1)),
             QString("line 258: joints are nested deeper than 256"));
    QCOMPARE(problemIn(chain(100000)), QString("line 258: joints are nested deeper than 256"));
}

void BvhImporterTest::malformedFilesAreRefusedWithTheLine_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char* name, const QByteArray& text, const char* problem) {
        QTest::newRow(name) << text << QString::fromUtf8(problem);
    };
    row("nothing", "", "line 1: the file ends where \"HIERARCHY\" should stand");
    row("only empty lines", "\n\n\n", "line 3: the file ends where \"HIERARCHY\" should stand");
    row("another format", "<?xml version=\"1.0\"?>",
        "line 1: \"<?xml\" stands where \"HIERARCHY\" should stand");
    row("no root", replaced("ROOT", "JOINT"), "line 2: \"JOINT\" stands where \"ROOT\" should stand");
    row("no name", replaced("ROOT Hips", "ROOT"), "line 3: \"{\" stands where a joint's name should stand");
    row("a name of two words", replaced("Knee", "Left Knee"),
        "line 6: \"Knee\" stands where \"{\" should stand");
    row("a control character in a name",
        replaced("Knee", "Kn\x01"
                         "ee"),
        "line 6: the joint's name \"Kn?ee\" holds a control character");
    row("no offset", replaced("  OFFSET 0.0 1 -2.5\n", ""),
        "line 4: \"CHANNELS\" stands where \"OFFSET\" should stand");
    row("an offset of two numbers", replaced("0.0 1 -2.5", "0.0 1"),
        "line 5: \"CHANNELS\" stands where a number should stand");
    row("an offset of four numbers", replaced("-2.5", "-2.5 7"),
        "line 4: \"7\" stands where \"CHANNELS\" should stand");
    row("a text as offset", replaced("-2.5", "x"), "line 4: \"x\" stands where a number should stand");
    row("no channels", replaced("    CHANNELS 1 Zrotation\n", ""),
        "line 9: \"End\" stands where \"CHANNELS\" should stand");
    row("fewer channels than counted", replaced("CHANNELS 2", "CHANNELS 3"),
        "line 6: \"JOINT\" stands where a channel's name, like \"Xrotation\" should stand");
    row("more channels than counted", replaced("CHANNELS 2", "CHANNELS 1"),
        "line 5: \"Xrotation\" stands where \"JOINT\", \"End Site\" or \"}\" should stand");
    row("too many channels", replaced("CHANNELS 2", "CHANNELS 7"),
        "line 5: \"7\" channels; a joint has at most 6");
    row("a channel count that lies", replaced("CHANNELS 2", "CHANNELS 4294967295"),
        "line 5: \"4294967295\" channels; a joint has at most 6");
    row("a negative channel count", replaced("CHANNELS 2", "CHANNELS -1"),
        "line 5: \"-1\" stands where a whole number from 0 to 4294967295 should stand");
    row("an unknown channel", replaced("Yposition", "Yscale"),
        "line 5: \"Yscale\" stands where a channel's name, like \"Xrotation\" should stand");
    row("a channel twice", replaced("Yposition", "Xrotation"),
        "line 5: the channel \"Xrotation\" stands twice");
    row("no channel at all",
        "HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 0\n}\nMOTION\nFrames: 0\nFrame Time: 1\n",
        "line 7: no joint has a channel");
    row("an end that is no site", replaced("End Site", "End Point"),
        "line 10: \"Point\" stands where \"Site\" should stand");
    row("channels in an end site", replaced("OFFSET 0 -3 0", "OFFSET 0 -3 0 CHANNELS 0"),
        "line 12: \"CHANNELS\" stands where \"}\" should stand");
    row("a brace too few", replaced("}\nMOTION", "MOTION"),
        "line 15: \"MOTION\" stands where \"JOINT\", \"End Site\" or \"}\" should stand");
    row("a brace too many", replaced("}\nMOTION", "}\n}\nMOTION"),
        "line 16: \"}\" stands where \"MOTION\" should stand");
    row("no motion", goodFile.left(goodFile.indexOf("MOTION")),
        "line 15: the file ends where \"MOTION\" should stand");
    row("no frame count", replaced("Frames: 2", "Frames:"),
        "line 18: \"Frame\" stands where a whole number from 0 to 4294967295 should stand");
    row("a fraction of frames", replaced("Frames: 2", "Frames: 2.5"),
        "line 17: \"2.5\" stands where a whole number from 0 to 4294967295 should stand");
    row("a frame count out of range", replaced("Frames: 2", "Frames: 4294967296"),
        "line 17: \"4294967296\" stands where a whole number from 0 to 4294967295 should stand");
    row("no frame time", replaced("Frame Time: 0.04\n", ""),
        "line 18: \"1.5\" stands where \"Frame\" should stand");
    row("a frame time of zero", replaced("0.04", "0"), "line 18: a frame cannot last \"0\" seconds");
    row("a negative frame time", replaced("0.04", "-0.04"), "line 18: a frame cannot last \"-0.04\" seconds");
    row("a frame time out of range", replaced("0.04", "2147483648"),
        "line 18: a frame cannot last \"2147483648\" seconds");
    row("an infinite frame time", replaced("0.04", "inf"),
        "line 18: \"inf\" stands where the length of a frame in seconds should stand");
    row("a decimal comma", replaced("0.04", "0,04"),
        "line 18: \"0,04\" stands where the length of a frame in seconds should stand");
    row("more behind the frame time", replaced("0.04", "0.04 1.5"),
        "line 18: \"1.5\" stands where the end of the line should stand");
    row("a value too few", replaced("2 1e2 -0.0", "2 1e2"), "line 20: 2 values for 3 channels");
    row("a value too many", replaced("1.5 -.25 30", "1.5 -.25 30 1"),
        "line 19: more than 3 values for 3 channels");
    row("a text as value", replaced("-.25", "-.25x"),
        "line 19: \"-.25x\" stands where a number should stand");
    row("a plus sign", replaced("-.25", "+.25"), "line 19: \"+.25\" stands where a number should stand");
    row("a number without digits", replaced("-.25", "-."),
        "line 19: \"-.\" stands where a number should stand");
    row("a hexadecimal number", replaced("-.25", "0x10"),
        "line 19: \"0x10\" stands where a number should stand");
    row("not a number", replaced("-.25", "nan"), "line 19: \"nan\" stands where a number should stand");
    row("infinity", replaced("1e2", "-inf"), "line 20: \"-inf\" stands where a number should stand");
    row("beyond a float", replaced("1e2", "1e39"), "line 20: the number \"1e39\" is out of range");
    row("beyond a double", replaced("1e2", "-1e999"), "line 20: the number \"-1e999\" is out of range");
    row("a zero byte", replaced("-.25", "-.2#").replace('#', '\0'),
        "line 19: \"-.2?\" stands where a number should stand");
    row("a frame too few", replaced("Frames: 2", "Frames: 3"), "line 20: the file ends after 2 of 3 frames");
    row("a frame count that lies", replaced("Frames: 2", "Frames: 4294967295"),
        "line 20: the file ends after 2 of 4294967295 frames");
    row("a frame too many", replaced("Frames: 2", "Frames: 1"),
        "line 20: there is more behind the last of 1 frames");
    row("data behind the end", goodFile + "\nend\n", "line 22: there is more behind the last of 2 frames");
    row("lines that end with CR LF count once", replaced("1e2", "x").replace("\n", "\r\n"),
        "line 20: \"x\" stands where a number should stand");
    row("lines that end with CR count once", replaced("1e2", "x").replace("\n", "\r"),
        "line 20: \"x\" stands where a number should stand");
    row("a long word is shortened", replaced("1e2", QByteArray(1000, 'x')),
        "line 20: \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...\" stands where a number should stand");
}

void BvhImporterTest::malformedFilesAreRefusedWithTheLine() {
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    QCOMPARE(problemIn(text), problem);
}

void BvhImporterTest::everyTruncatedFileIsRefused() {
    // The last value is "-0.0": what is cut off its end changes nothing or leaves no number.
    for (int size = 0; size < goodFile.size() - 4; ++size) {
        QVERIFY2(problemIn(goodFile.left(size)).startsWith("line "), QByteArray::number(size));
    }
}

void BvhImporterTest::linesLongerThanTheLimitAreRefused() {
    const auto blanks = [](std::size_t count) { return QByteArray(static_cast<int>(count), ' '); };
    const QByteArray line = "1.5 -.25 30";
    const std::size_t room = BvhImporter::maximumLineLength - static_cast<std::size_t>(line.size());
    QCOMPARE(problemIn(replaced(line, line + blanks(room))), QString());
    QCOMPARE(problemIn(replaced(line, line + blanks(room + 1))),
             QString("line 19: the line is longer than 1048576 characters"));
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
    if (!QFile::exists(path)) {
        QSKIP(qPrintable(path + " is missing"));
    }
    std::ifstream stream(path.toStdString(), std::ios::binary);
    const Animation animation = BvhImporter(stream).read();
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
