// Files that are made to cost time or memory: read, or refused, at a cost that their size or a limit bounds.
#include "Records.h"
#include "XmlFiles.h"

#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <streambuf>

using Records::Animation;
using Records::AnimationLayer;
using VQ::Animation::XmlLimits;
using XmlFiles::fromXml;
using XmlFiles::problemOf;
using XmlFiles::toXml;

namespace {

constexpr std::size_t chunk = std::size_t{1} << 16U;

/// A text that has no end and counts how much of it was read.
class EndlessText : public std::streambuf {
public:
    explicit EndlessText(std::string piece)
        : _piece(std::move(piece)) {}

    std::size_t bytesRead() const { return _count * _piece.size(); }

protected:
    int_type underflow() override {
        ++_count;
        setg(_piece.data(), _piece.data(), _piece.data() + _piece.size());
        return traits_type::to_int_type(_piece.front());
    }

private:
    std::string _piece;
    std::size_t _count = 0;
};

QString problemOf(EndlessText& text, const XmlLimits& limits) {
    std::istream stream(&text);
    try {
        VQ::Animation::readAnimationXml(stream, limits);
        return {};
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

std::string repeated(const std::string& text, int times) {
    return QByteArray::fromStdString(text).repeated(times).toStdString();
}

std::string nested(int levels) {
    return "<animation>\n" + repeated("<a>\n", levels - 1) + repeated("</a>", levels - 1) + "</animation>";
}

} // namespace

class AnimationXmlLimitsTest : public QObject {
    Q_OBJECT

private slots:
    void elementsAreNestedUpToTheLimit() {
        QCOMPARE(XmlLimits().depth, std::size_t{64});
        QCOMPARE(XmlLimits().bytes, std::size_t{536'870'912});
        QCOMPARE(XmlLimits().items, std::size_t{33'554'432});
        QCOMPARE(problemOf(nested(64)), QString());
        QCOMPARE(problemOf(nested(65)), QString("line 65: elements are nested too deep"));
        QCOMPARE(problemOf(nested(200000)), QString("line 65: elements are nested too deep"));
        QCOMPARE(problemOf(nested(2), {1000, 1000, 2}), QString());
        QCOMPARE(problemOf(nested(3), {1000, 1000, 2}), QString("line 3: elements are nested too deep"));
    }

    // What the search for the depth would take for quoted, commented or declared, but the tree's reader would
    // not.
    void elementsCannotHideFromTheLimitOfNesting_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("behind");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("a quote in an element's name")
            << QByteArray("<a'/>") << QByteArray("<a'/>") << QByteArray("line 2");
        QTest::newRow("a value in an element's name")
            << QByteArray("<a='>'/>") << QByteArray("<a='>'/>") << QByteArray("no element name");
        QTest::newRow("a quote in an attribute's name")
            << QByteArray("<a b\"c='x'/>") << QByteArray("<a b\"c='x'/>") << QByteArray("no value begins");
        QTest::newRow("a comment in a declaration")
            << QByteArray("<!DOCTYPE x [ <y> <!-- ]>") << QByteArray("-->") << QByteArray("declarations");
        QTest::newRow("an instruction that seems to end at once")
            << QByteArray("<?>") << QByteArray("?>") << QByteArray();
    }

    void elementsCannotHideFromTheLimitOfNesting() {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, behind);
        QFETCH(QByteArray, problem);
        const QByteArray deep = QByteArray("<b>").repeated(100000);
        for (const QByteArray& end : {QByteArray("</b>").repeated(100000), QByteArray()}) {
            const QString said =
                problemOf(("<animation>\n" + before + deep + end + behind + "</animation>").toStdString());
            QVERIFY2(said.contains(problem) && said.isEmpty() == problem.isEmpty(), qPrintable(said));
        }
    }

    void theSizeOfTheTextIsLimited() {
        const std::string text = "<animation>\n\n</animation>";
        QCOMPARE(problemOf(text, {text.size(), 10, 10}), QString());
        QCOMPARE(problemOf(text, {text.size() - 1, 10, 10}),
                 QString("line 3: the text is longer than 24 bytes"));
    }

    void noMoreIsReadThanTheLimit_data() {
        QTest::addColumn<QByteArray>("piece");
        QTest::newRow("blanks") << QByteArray(1000, ' ');
        QTest::newRow("lines") << QByteArray(1000, '\n');
        QTest::newRow("elements") << QByteArray("<a>");
        QTest::newRow("characters that the pieces divide") << QByteArray("\xe8\x85\x95");
    }

    void noMoreIsReadThanTheLimit() {
        QFETCH(QByteArray, piece);
        EndlessText text(piece.toStdString());
        const QString problem = problemOf(text, {1000000, 1000, 64});
        QVERIFY2(problem.endsWith(": the text is longer than 1000000 bytes"), qPrintable(problem));
        QVERIFY2(text.bytesRead() < 1000000 + 2 * chunk, qPrintable(QString::number(text.bytesRead())));
    }

    void whatIsNoTextIsNotReadToItsEnd_data() {
        QTest::addColumn<QByteArray>("piece");
        QTest::addColumn<QString>("problem");
        QTest::newRow("zeros") << QByteArray(1000, '\0')
                               << "line 1: the character U+0000, which XML cannot hold";
        QTest::newRow("Latin-1") << QByteArray(1000, '\xe4') << "line 1: the byte 0xE4, which is not UTF-8";
        QTest::newRow("UTF-16") << QByteArray("<\0a\0>\0", 6)
                                << "line 1: the text is UTF-16 or UTF-32; only UTF-8 is read";
    }

    void whatIsNoTextIsNotReadToItsEnd() {
        QFETCH(QByteArray, piece);
        QFETCH(QString, problem);
        EndlessText text(piece.toStdString());
        QCOMPARE(problemOf(text, {}), problem);
        QVERIFY2(text.bytesRead() < 2 * chunk, qPrintable(QString::number(text.bytesRead())));
    }

    void whatMarkupBuildsIsCounted() {
        const std::string text = "<animation a='' b=\"\">\n<a/>\n<b c='x'/></animation>";
        QCOMPARE(problemOf(text, {1000, 6, 64}), QString());
        QCOMPARE(problemOf(text, {1000, 5, 64}), QString("line 3: there are more than 5 pieces of markup"));
        QCOMPARE(problemOf(text, {1000, 4, 64}), QString("line 3: there are more than 4 pieces of markup"));
        QCOMPARE(problemOf("<?a?><!-- --><animation><![CDATA[]]></animation>", {1000, 3, 64}),
                 QString("line 1: there are more than 3 pieces of markup"));
        QCOMPARE(problemOf(text, {1000, 2, 64}), QString("line 1: there are more than 2 pieces of markup"));
    }

    void attributesOfAnyNumberAreRead_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("of one name") << QByteArray("a");
        QTest::newRow("of many names") << QByteArray("a%1");
    }

    void attributesOfAnyNumberAreRead() {
        QFETCH(QByteArray, name);
        std::string attributes;
        for (int i = 0; i < 100000; ++i) {
            attributes += ' ' + QByteArray(name).replace("%1", QByteArray::number(i)).toStdString() + "=''";
        }
        const auto tree = fromXml("<animation><layer" + attributes + "/></animation>");
        QCOMPARE(tree.get_child("layer.<xmlattr>").size(), std::size_t{100000});
        QVERIFY(QString::fromStdString(Animation::problemIn(tree)).contains("\"name\" is missing"));
    }

    void whatIsSkippedMayBeOfAnyNumber_data() {
        QTest::addColumn<QByteArray>("piece");
        QTest::newRow("comments") << QByteArray("<!-- <!-- -->");
        QTest::newRow("instructions") << QByteArray("<?a?>");
        QTest::newRow("empty document types") << QByteArray("<!DOCTYPE a>");
        QTest::newRow("raw text") << QByteArray("<![CDATA[]]>");
        QTest::newRow("references") << QByteArray("&#65;&lt;");
    }

    void whatIsSkippedMayBeOfAnyNumber() {
        QFETCH(QByteArray, piece);
        const std::string text = "<animation>" + repeated(piece.toStdString(), 250000) + "</animation>";
        Animation animation = Records::makeAnimation();
        QVERIFY(animation.deserialize(fromXml(text)));
        QVERIFY(animation.empty());
    }

    void whatHasNoEndIsRefused_data() {
        QTest::addColumn<QByteArray>("piece");
        QTest::newRow("comments") << QByteArray("<!--");
        QTest::newRow("instructions") << QByteArray("<?");
        QTest::newRow("declarations") << QByteArray("<!");
        QTest::newRow("raw text") << QByteArray("<![CDATA[");
        QTest::newRow("tags") << QByteArray("<a ");
        QTest::newRow("quotes") << QByteArray("<a b='");
        QTest::newRow("values") << QByteArray("<a b=                 \"");
        QTest::newRow("references") << QByteArray("&");
        QTest::newRow("long references") << QByteArray("&#0000000000");
        QTest::newRow("brackets") << QByteArray("<!DOCTYPE [");
    }

    void whatHasNoEndIsRefused() {
        QFETCH(QByteArray, piece);
        const QString problem = problemOf("<animation>\n" + repeated(piece.toStdString(), 250000));
        QVERIFY2(problem.startsWith("line 2: ") || problem.startsWith("line 1: "), qPrintable(problem));
    }

    void entitiesCannotGrow() {
        QCOMPARE(problemOf("<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY b 'bb'><!ENTITY c '&b;&b;'>]>\n"
                           "<animation><layer name='&c;'/></animation>"),
                 QString("line 2: declarations of a document's own, which are not read"));
        QCOMPARE(problemOf("<!DOCTYPE a SYSTEM 'file:///dev/zero'>\n<animation>\n&b;</animation>"),
                 QString("line 3: the reference \"&b\" stands for nothing"));
    }

    void aLongNameReadsBack() {
        Animation animation;
        animation.push_back(new AnimationLayer(Records::makeLayer(repeated("\xc3\xaa<", 1000000))));
        Animation copy;
        QVERIFY(copy.deserialize(fromXml(toXml(animation.serialize()))));
        QVERIFY(copy.begin()->actuatorName == animation.begin()->actuatorName);
    }

    void longWordsAreShortenedInMessages_data() {
        QTest::addColumn<QByteArray>("text");
        const QByteArray word(1000000, 'x');
        QTest::newRow("a root's name") << '<' + word + "/>";
        QTest::newRow("a reference") << "<animation>&" + word + ";</animation>";
        QTest::newRow("an encoding") << "<?xml encoding='" + word + "'?><animation/>";
        QTest::newRow("a name that closes nothing") << "<animation></" + word + '>';
        QTest::newRow("a name that is none") << "<animation><" + word + "=/></animation>";
    }

    void longWordsAreShortenedInMessages() {
        QFETCH(QByteArray, text);
        const QString problem = problemOf(text.toStdString());
        QVERIFY(problem.contains("xxx"));
        QVERIFY(problem.size() < 200);
    }
};

QTEST_GUILESS_MAIN(AnimationXmlLimitsTest)
#include "AnimationXmlLimitsTest.moc"
