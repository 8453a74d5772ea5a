// Files that are damaged, or made to cost time or memory.
#include "BvhFiles.h"

#include <QtTest>

using BvhFiles::goodFile;
using BvhFiles::problemIn;
using BvhFiles::read;
using BvhFiles::replaced;

class BvhImporterErrorsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void malformedFilesAreRefusedWithTheLine_data() {
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
        row("no name", replaced("ROOT Hips", "ROOT"),
            "line 3: \"{\" stands where a joint's name should stand");
        row("a name of two words", replaced("Knee", "Left Knee"),
            "line 6: \"Knee\" stands where \"{\" should stand");
        row("a control character in a name",
            replaced("Knee", "Kn\x01"
                             "ee"),
            "line 6: the joint's name \"Kn?ee\" holds the character U+0001, which XML cannot hold");
        row("a name that is not UTF-8",
            replaced("Knee", "Kn\xf6"
                             "chel"),
            "line 6: the joint's name \"Kn?chel\" holds the byte 0xF6, which is not UTF-8");
        row("a surrogate in a name", replaced("Knee", "Kn\xed\xa0\x80"),
            "line 6: the joint's name \"Kn???\" holds the byte 0xED, which is not UTF-8");
        row("UTF-16", QByteArray("\xff\xfeH\0I\0\n\0", 8),
            "line 1: \"??H?I?\" stands where \"HIERARCHY\" should stand");
        row("zeros", QByteArray(100, '\0'),
            ("line 1: \"" + QByteArray(40, '?') + "...\" stands where \"HIERARCHY\" should stand")
                .constData());
        row("no offset", replaced("  OFFSET 0.0 1 -2.5\n", ""),
            "line 4: \"CHANNELS\" stands where \"OFFSET\" should stand");
        row("an offset of two numbers", replaced("0.0 1 -2.5", "0.0 1"),
            "line 5: \"CHANNELS\" stands where a number should stand");
        row("an offset of four numbers", replaced("-2.5", "-2.5 7"),
            "line 4: \"7\" stands where \"CHANNELS\" should stand");
        row("a text as offset", replaced("-2.5", "x"), "line 4: \"x\" stands where a number should stand");
        row("no channels", replaced("    CHANNELS 1 Zrotation\n", ""),
            "line 9: \"End\" stands where \"CHANNELS\" should stand");
        row("an endless offset", replaced("-2.5", "inf"),
            "line 4: \"inf\" stands where a number should stand");
        row("an offset beyond a float", replaced("-2.5", "1e39"),
            "line 4: the number \"1e39\" is out of range");
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
        row("a negative frame time", replaced("0.04", "-0.04"),
            "line 18: a frame cannot last \"-0.04\" seconds");
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
        row("a frame too few", replaced("Frames: 2", "Frames: 3"),
            "line 20: the file ends after 2 of 3 frames");
        row("a frame count that lies", replaced("Frames: 2", "Frames: 4294967295"),
            "line 20: the file ends after 2 of 4294967295 frames");
        row("a frame too many", replaced("Frames: 2", "Frames: 1"),
            "line 20: there is more behind the last of 1 frames");
        row("data behind the end", goodFile + "\nend\n",
            "line 22: there is more behind the last of 2 frames");
        row("lines that end with CR LF count once", replaced("1e2", "x").replace("\n", "\r\n"),
            "line 20: \"x\" stands where a number should stand");
        row("lines that end with CR count once", replaced("1e2", "x").replace("\n", "\r"),
            "line 20: \"x\" stands where a number should stand");
        row("a long word is shortened", replaced("1e2", QByteArray(1000, 'x')),
            "line 20: \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...\" stands where a number should stand");
    }

    void malformedFilesAreRefusedWithTheLine() {
        QFETCH(QByteArray, text);
        QFETCH(QString, problem);
        QCOMPARE(problemIn(text), problem);
    }

    void everyTruncatedFileIsRefused() {
        // The last value is "-0.0": what is cut off its end changes nothing or leaves no number.
        for (int size = 0; size < goodFile.size() - 4; ++size) {
            QVERIFY2(problemIn(goodFile.left(size)).startsWith("line "), QByteArray::number(size));
        }
    }

    void linesLongerThanTheLimitAreRefused() {
        const auto blanks = [](std::size_t count) { return QByteArray(static_cast<int>(count), ' '); };
        const QByteArray line = "1.5 -.25 30";
        const std::size_t room =
            Editor::BvhImporter::maximumLineLength - static_cast<std::size_t>(line.size());
        QCOMPARE(problemIn(replaced(line, line + blanks(room))), QString());
        QCOMPARE(problemIn(replaced(line, line + blanks(room + 1))),
                 QString("line 19: the line is longer than 1048576 characters"));
    }

    void jointsMayBeNestedUpToTheLimit() {
        const auto chain = [](int joints) {
            QByteArray text = "HIERARCHY\n";
            for (int i = 0; i < joints; ++i) {
                text += i == 0 ? "ROOT" : "JOINT";
                text += " J { OFFSET 0 0 0 CHANNELS 1 Xrotation\n";
            }
            text += QByteArray(joints, '}').replace("}", "} ");
            return text + "\nMOTION\nFrames: 0\nFrame Time: 1\n";
        };
        QCOMPARE(read(chain(Editor::BvhImporter::maximumDepth)).size(),
                 std::size_t{Editor::BvhImporter::maximumDepth});
        QCOMPARE(problemIn(chain(Editor::BvhImporter::maximumDepth + 1)),
                 QString("line 258: joints are nested deeper than 256"));
        QCOMPARE(problemIn(chain(100000)), QString("line 258: joints are nested deeper than 256"));
    }

    void aJointsNameThatXmlCanHoldIsKept() {
        const auto animation = read("\xEF\xBB\xBF" + replaced("Hips", "H\xc3\xbc"
                                                                      "fte&<\x7f"));
        QCOMPARE(animation.begin()->actuatorName, std::string("H\xc3\xbc"
                                                              "fte&<\x7f.Yposition"));
    }

    void aNameIsAsLongAsItsLine() {
        const QByteArray name(static_cast<int>(Editor::BvhImporter::maximumLineLength) - 8, 'x');
        const QByteArray text = replaced("JOINT Knee", "JOINT " + name);
        QCOMPARE(read(text).begin()[2].actuatorName, name.toStdString() + ".Zrotation");
    }

    // Each is refused by what it holds before it is refused for what it lacks.
    void filesThatGoOnForeverAreRefusedWhereTheyGoWrong_data() {
        QTest::addColumn<QByteArray>("piece");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char* name, const QByteArray& piece, const char* problem) {
            QTest::newRow(name) << piece << QString(problem);
        };
        row("zeros", QByteArray(1, '\0'), "line 1: the line is longer than 1048576 characters");
        row("a word", "HIERARCHY", "line 1: the line is longer than 1048576 characters");
        row("words", "HIERARCHY\n", "line 2: \"HIERARCHY\" stands where \"ROOT\" should stand");
        row("line ends", "\r\n", "line 5000000: the file ends where \"HIERARCHY\" should stand");
    }

    void filesThatGoOnForeverAreRefusedWhereTheyGoWrong() {
        QFETCH(QByteArray, piece);
        QFETCH(QString, problem);
        QCOMPARE(problemIn(piece.repeated(5000000)), problem);
    }

    // Numbers for repeated names go on where the last one ended: no name is tried twice.
    void manyJointsOfOneNameAreReadInTime() {
        const QByteArray joint = "JOINT A { OFFSET 0 0 0 CHANNELS 1 Xrotation }\n";
        const int count = 50000;
        const auto animation = read("HIERARCHY ROOT A { OFFSET 0 0 0 CHANNELS 0\n" + joint.repeated(count) +
                                    "}\nMOTION Frames: 0 Frame Time: 1\n");
        QCOMPARE(animation.size(), std::size_t{count});
        QCOMPARE(animation.begin()[count - 1].actuatorName, std::string("A_50001.Xrotation"));
    }
};

QTEST_GUILESS_MAIN(BvhImporterErrorsTest)
#include "BvhImporterErrorsTest.moc"
