// Which characters a file may hold, and how: what is read is what stands there, or it is refused.
#include "Records.h"
#include "XmlFiles.h"

#include <QtTest>

using Records::Animation;
using Records::AnimationLayer;
using XmlFiles::fromXml;
using XmlFiles::problemOf;
using XmlFiles::toXml;

namespace {

std::string layer(const std::string& name) {
    return "<animation>\n<layer name=\"" + name + "\"/></animation>";
}

std::string nameIn(const std::string& text) {
    return fromXml(text).get<std::string>("layer.<xmlattr>.name");
}

Animation named(const std::string& name) {
    Animation animation;
    animation.push_back(new AnimationLayer(Records::makeLayer("arm")));
    animation.push_back(new AnimationLayer(Records::makeLayer(name)));
    return animation;
}

QByteArray bytes(const char* text, int size) {
    return {text, size};
}

} // namespace

class AnimationXmlEncodingTest : public QObject {
    Q_OBJECT

private slots:
    void theTextIsUtf8WhateverTheFileSaysOfIt_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("nothing said") << QByteArray();
        QTest::newRow("a byte order mark") << QByteArray("\xef\xbb\xbf");
        QTest::newRow("no encoding") << QByteArray("<?xml version=\"1.0\"?>\n");
        QTest::newRow("declared") << QByteArray("<?xml version=\"1.0\" encoding=\"utf-8\"?>");
        QTest::newRow("declared in capitals") << QByteArray("<?xml version='1.0' encoding='UTF-8'?>");
        QTest::newRow("declared with blanks") << QByteArray("<?xml version='1.0'\n encoding =\t'UTF-8' ?>");
        QTest::newRow("declared and marked")
            << QByteArray("\xef\xbb\xbf<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>");
        QTest::newRow("another instruction")
            << QByteArray("<?xml-stylesheet encoding=\"ISO-8859-1\"?><?note encoding='latin1'?>");
    }

    void theTextIsUtf8WhateverTheFileSaysOfIt() {
        QFETCH(QByteArray, before);
        QCOMPARE(nameIn(before.toStdString() + layer("t\xc3\xaate")), std::string("t\xc3\xaate"));
    }

    void anotherEncodingIsRefused_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char* name, const QByteArray& text, const char* problem) {
            QTest::newRow(name) << text << QString(problem);
        };
        const auto declared = [](const char* encoding) {
            return QByteArray("<?xml version=\"1.0\" encoding=") + encoding + "?>\n<animation/>";
        };
        row("Latin-1", declared("\"ISO-8859-1\""), "line 1: the encoding \"iso-8859-1\"; only UTF-8 is read");
        row("ASCII", declared("'us-ascii'"), "line 1: the encoding \"us-ascii\"; only UTF-8 is read");
        row("with the first and the last letter", declared("'AZ'"),
            "line 1: the encoding \"az\"; only UTF-8 is read");
        row("UTF-16 declared only", declared("'UTF-16'"),
            "line 1: the encoding \"utf-16\"; only UTF-8 is read");
        row("no encoding's name", declared("''"), "line 1: the encoding \"\"; only UTF-8 is read");
        row("declared behind a byte order mark", "\xef\xbb\xbf" + declared("'latin1'"),
            "line 1: the encoding \"latin1\"; only UTF-8 is read");
        row("declared in capitals", "<?XML ENCODING='latin1'?><animation/>",
            "line 1: the encoding \"latin1\"; only UTF-8 is read");
        row("no value", declared("latin1"), "line 1: an XML declaration that cannot be read");
        row("a value without end", declared("\"utf-8"), "line 1: an XML declaration that cannot be read");
        row("a value that ends behind the declaration", "<?xml encoding='utf-8?>'<animation/>",
            "line 1: an XML declaration that cannot be read");
        row("no sign", "<?xml encoding 'utf-8'?><animation/>",
            "line 1: an XML declaration that cannot be read");
        row("another sign", "<?xml encoding:'utf-8'?><animation/>",
            "line 1: an XML declaration that cannot be read");
        row("nothing behind", "<?xml encoding", "line 1: an XML declaration that cannot be read");
        row("declared late", "<animation>\n<?xml version='1.0' encoding='latin1'?></animation>",
            "line 2: an XML declaration that does not stand at the beginning");
        row("declared behind a blank", "\n<?xml version='1.0'?><animation/>",
            "line 2: an XML declaration that does not stand at the beginning");
        const char* const wide = "line 1: the text is UTF-16 or UTF-32; only UTF-8 is read";
        row("UTF-16, low byte first", bytes("\xff\xfe<\0a\0/\0>\0", 10), wide);
        row("UTF-16, high byte first", bytes("\xfe\xff\0<\0a\0/\0>", 10), wide);
        row("UTF-16 unmarked, low byte first", bytes("<\0a\0/\0>\0", 8), wide);
        row("UTF-16 unmarked, high byte first", bytes("\0<\0a\0/\0>", 8), wide);
        row("UTF-32, low byte first", bytes("\xff\xfe\0\0<\0\0\0", 8), wide);
        row("UTF-32, high byte first", bytes("\0\0\xfe\xff\0\0\0<", 8), wide);
        row("UTF-32 unmarked", bytes("\0\0\0<\0\0\0a", 8), wide);
    }

    void anotherEncodingIsRefused() {
        QFETCH(QByteArray, text);
        QFETCH(QString, problem);
        QCOMPARE(problemOf(text.toStdString()), problem);
    }

    void whatXmlCannotHoldIsRefusedWithItsLine_data() {
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<QString>("what");
        const QString notUtf8 = ", which is not UTF-8";
        QTest::newRow("Latin-1") << QByteArray("\xfc") << "the byte 0xFC" + notUtf8;
        QTest::newRow("an overlong form") << QByteArray("\xc0\xaf") << "the byte 0xC0" + notUtf8;
        QTest::newRow("a surrogate") << QByteArray("\xed\xa0\xbd\xed\xb8\x80") << "the byte 0xED" + notUtf8;
        QTest::newRow("beyond Unicode") << QByteArray("\xf4\x90\x80\x80") << "the byte 0xF4" + notUtf8;
        const QString notXml = ", which XML cannot hold";
        QTest::newRow("NUL") << bytes("\0", 1) << "the character U+0000" + notXml;
        QTest::newRow("a control character") << QByteArray("\x1b") << "the character U+001B" + notXml;
        QTest::newRow("no character") << QByteArray("\xef\xbf\xbf") << "the character U+FFFF" + notXml;
    }

    void whatXmlCannotHoldIsRefusedWithItsLine() {
        QFETCH(QByteArray, fault);
        QFETCH(QString, what);
        const std::string text = fault.toStdString();
        QCOMPARE(problemOf(layer("t\xc3\xaa" + text + "te")), "line 2: " + what);
        QCOMPARE(problemOf("<animation/>\n<!-- \n" + text + " -->"), "line 3: " + what);
        QCOMPARE(problemOf("<animation/>\n" + text), "line 2: " + what);
    }

    // The text is read in pieces, whose ends may divide a character.
    void charactersAreReadWholeWhereverTheyStand() {
        for (const std::string character : {"\xc3\xaa", "\xe8\x85\x95", "\xf0\x9f\xa6\xbe"}) {
            for (std::size_t filler = 65536 - 40; filler < 65536; ++filler) {
                const std::string name = std::string(filler, 'x') + character;
                QCOMPARE(nameIn(layer(name)), name);
            }
            const std::string half = character.substr(0, character.size() - 1);
            for (std::size_t filler = 65536 - 6; filler <= 65536; ++filler) {
                const QString problem = problemOf(std::string(filler, '\n') + half);
                QVERIFY2(problem.endsWith("which is not UTF-8"), qPrintable(problem));
                QVERIFY2(problem.startsWith(QString("line %1: ").arg(filler + 1)), qPrintable(problem));
            }
        }
    }

    void referencesStandForTheirCharacters_data() {
        QTest::addColumn<QByteArray>("reference");
        QTest::addColumn<QByteArray>("character");
        QTest::newRow("named") << QByteArray("&lt;&gt;&amp;&quot;&apos;") << QByteArray("<>&\"'");
        QTest::newRow("decimal") << QByteArray("&#234;") << QByteArray("\xc3\xaa");
        QTest::newRow("hexadecimal") << QByteArray("&#xeA;") << QByteArray("\xc3\xaa");
        QTest::newRow("leading zeros") << QByteArray("&#0000000000065;") << QByteArray("A");
        QTest::newRow("line ends and tab") << QByteArray("&#13;&#xA;&#9;") << QByteArray("\r\n\t");
        QTest::newRow("the largest") << QByteArray("&#x10FFFF;") << QByteArray("\xf4\x8f\xbf\xbf");
        QTest::newRow("what looks like another") << QByteArray("&amp;lt;") << QByteArray("&lt;");
    }

    void referencesStandForTheirCharacters() {
        QFETCH(QByteArray, reference);
        QFETCH(QByteArray, character);
        QCOMPARE(QByteArray::fromStdString(nameIn(layer(reference.toStdString()))), character);
    }

    void referencesThatStandForNothingAreRefusedWithTheirLine_data() {
        QTest::addColumn<QByteArray>("reference");
        QTest::addColumn<QString>("quoted");
        const auto row = [](const char* name, const QByteArray& reference) {
            QTest::newRow(name) << reference + ';' << QString(reference);
        };
        row("NUL", "&#0");
        row("a control character", "&#x1b");
        row("a surrogate", "&#xD83D");
        row("the first surrogate", "&#xD800");
        row("the last surrogate", "&#xDFFF");
        row("no character", "&#xFFFE");
        row("beyond Unicode", "&#x110000");
        row("a number that wraps around", "&#x10000000000000041");
        row("a decimal number that wraps around", "&#18446744073709551681");
        row("no number", "&#");
        row("no hexadecimal number", "&#x");
        row("a capital X", "&#X41");
        row("a negative number", "&#-65");
        row("a number with a sign", "&#+65");
        row("not a number", "&#6f");
        row("an entity of HTML", "&nbsp");
        row("a name in capitals", "&LT");
        row("no name", "&");
        QTest::newRow("no end") << QByteArray("&amp") << QString("&amp");
        QTest::newRow("no end but a blank") << QByteArray("&amp ;") << QString("&amp");
        QTest::newRow("a sign alone") << QByteArray("a & b") << QString("&");
        QTest::newRow("a second one") << QByteArray("&amp&lt;") << QString("&amp");
    }

    void referencesThatStandForNothingAreRefusedWithTheirLine() {
        QFETCH(QByteArray, reference);
        QFETCH(QString, quoted);
        const QString expected = "line 2: the reference \"" + quoted + "\" stands for nothing";
        QCOMPARE(problemOf(layer(reference.toStdString())), expected);
        QCOMPARE(problemOf("<animation>\n" + reference.toStdString() + "</animation>"), expected);
    }

    // Tags in a comment are none, and what stands between two comments or instructions is outside of both.
    void commentsAndInstructionsEndWhereTheirFirstEndStands() {
        QCOMPARE(problemOf("<animation><!-- > <b> <c --></animation>"), QString());
        for (const char* const empty : {"<!---->", "<?a?>",
                                        "<?"
                                        "?>"}) {
            for (const char* const other : {"<!-- -->", "<?a ?>"}) {
                const std::string text = std::string("<animation>") + empty + "</b>" + other + "</animation>";
                QCOMPARE(problemOf(text), QString("line 1: \"b\" closes what is not open"));
            }
        }
    }

    void bracketsBehindADocumentTypeAreText() {
        QCOMPARE(problemOf("<?xml version='1.0'?><!DOCTYPE animation><animation note='[1]'/>"), QString());
        QVERIFY(
            problemOf("<?xml version='1.0'?>\n<!DOCTYPE animation [ ]><animation/>").startsWith("line 2"));
        QVERIFY(problemOf("<!DOCTYPE animation [ ]><animation/>").startsWith("line 1"));
        QCOMPARE(problemOf("<!--          [ --><!DOCTYPE a><animation/>"), QString());
    }

    void whereNoReferencesAreReadTheirSignIsText() {
        QCOMPARE(problemOf("<!-- & --><?note & ?><animation><![CDATA[&#0;]]></animation>"), QString());
    }

    void everyCharacterOfANameReadsBack() {
        for (const std::string name : {"arm\n\tleft\r", "\r\n", "\t", "\n", "\r", " ", " \n ",
                                       "a\xc2\x85"
                                       "b\xe2\x80\xa8"
                                       "c",
                                       "\x7f\xc2\x80",
                                       "\xef\xbb\xbf"
                                       "arm",
                                       "]]>", "&#10;", "\xf4\x8f\xbf\xbf"}) {
            Animation copy;
            QVERIFY(copy.deserialize(fromXml(toXml(named(name).serialize()))));
            QCOMPARE(copy.begin()[1].actuatorName, name);
            QCOMPARE(Records::of(copy), Records::of(named(name)));
        }
    }

    void namesThatNoFileCanHoldAreRefusedBeforeAnythingIsWritten_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("what");
        QTest::newRow("NUL") << bytes("a\0b", 3) << "the character U+0000, which XML cannot hold";
        QTest::newRow("a control character")
            << QByteArray("\x01") << "the character U+0001, which XML cannot hold";
        QTest::newRow("no character")
            << QByteArray("\xef\xbf\xbe") << "the character U+FFFE, which XML cannot hold";
        QTest::newRow("Latin-1") << QByteArray("t\xeate") << "the byte 0xEA, which is not UTF-8";
        QTest::newRow("half a character")
            << QByteArray("\xf0\x9f\xa6") << "the byte 0xF0, which is not UTF-8";
    }

    void namesThatNoFileCanHoldAreRefusedBeforeAnythingIsWritten() {
        QFETCH(QByteArray, name);
        QFETCH(QString, what);
        std::ostringstream stream;
        try {
            VQ::Animation::writeAnimationXml(stream, named(name.toStdString()).serialize());
            QFAIL("it was written");
        } catch (const std::runtime_error& error) {
            QCOMPARE(QString::fromStdString(error.what()), "layer 2: attribute \"name\" holds " + what);
        }
        QCOMPARE(stream.str(), std::string());
    }

    void namesAndTextsThatNoFileCanHoldAreRefusedToo() {
        boost::property_tree::ptree element;
        element.push_back({"l\x01", {}});
        boost::property_tree::ptree text;
        text.push_back({"note", boost::property_tree::ptree("\x02")});
        boost::property_tree::ptree attribute;
        attribute.push_back({"<xmlattr>", {}});
        attribute.front().second.push_back({"\xff", {}});
        const auto problemOfWriting = [](const boost::property_tree::ptree& tree) {
            std::ostringstream stream;
            try {
                VQ::Animation::writeAnimationXml(stream, tree);
            } catch (const std::runtime_error& error) {
                return QString(error.what());
            }
            return QString();
        };
        QCOMPARE(problemOfWriting(element),
                 "an element's name holds the character U+0001, which XML cannot hold");
        QCOMPARE(problemOfWriting(attribute), "an attribute's name holds the byte 0xFF, which is not UTF-8");
        QCOMPARE(problemOfWriting(text),
                 "note 1: its text holds the character U+0002, which XML cannot hold");
    }

    // A tree is no text: what it holds is kept as it is.
    void treesKeepNamesOfAnyBytes() {
        const Animation animation = named(std::string("\xff\0\r", 3));
        Animation copy;
        QVERIFY(copy.deserialize(animation.serialize()));
        QCOMPARE(copy.begin()[1].actuatorName, animation.begin()[1].actuatorName);
    }
};

QTEST_GUILESS_MAIN(AnimationXmlEncodingTest)
#include "AnimationXmlEncodingTest.moc"

#include <boost/property_tree/ptree.hpp>
