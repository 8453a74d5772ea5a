#include "base/animation/AnimationXml.h"

#include "Damages.h"
#include "XmlFiles.h"

#include <QtTest>

#include <boost/property_tree/xml_parser.hpp>

#include <fstream>
#include <sstream>

using Records::Animation;
using Records::AnimationLayer;
using Records::Tree;
using VQ::Animation::readAnimationXml;
using VQ::Animation::writeAnimationXml;
using XmlFiles::fromXml;
using XmlFiles::problemOf;
using XmlFiles::toXml;

class AnimationXmlTest : public QObject {
    Q_OBJECT

private slots:
    void whatWasWrittenReadsBack() {
        const Animation animation = Records::makeAnimation();
        Animation copy;
        QVERIFY(copy.deserialize(fromXml(toXml(animation.serialize()))));
        QCOMPARE(Records::of(copy), Records::of(animation));
    }

    void theFileIsWhatThePropertyTreesOwnWriterMakesOfTheDocument() {
        for (const Animation& animation : {Animation(), Records::makeAnimation()}) {
            Tree document;
            document.put_child("animation", animation.serialize());
            std::ostringstream stream;
            boost::property_tree::write_xml(
                stream, document, boost::property_tree::xml_writer_make_settings<std::string>(' ', 2));
            QCOMPARE(toXml(animation.serialize()), stream.str());
        }
    }

    void anAnimationWithoutLayersReadsBack() {
        Animation copy = Records::makeAnimation();
        QVERIFY(copy.deserialize(fromXml(toXml(Animation().serialize()))));
        QVERIFY(copy.empty());
    }

    void everyRemarkableFloatReadsBack() {
        Animation animation;
        animation.push_back(new AnimationLayer);
        unsigned int frame = 0;
        for (const float number : Records::remarkableFloats()) {
            animation.begin()->curve->insert(frame++, new Records::Key(Records::unusualKey(number)));
        }
        const Records::CommaLocale comma;
        Animation copy;
        QVERIFY(copy.deserialize(fromXml(toXml(animation.serialize()))));
        QCOMPARE(Records::of(copy), Records::of(animation));
    }

    void theDocumentHasTheRootAnimationAndIsIndentedByTwoBlanks() {
        const QStringList lines = QString::fromStdString(toXml(Records::makeAnimation().serialize()))
                                      .split('\n', Qt::SkipEmptyParts);
        QVERIFY(lines.at(0).startsWith("<?xml"));
        QVERIFY(lines.at(0).contains("utf-8", Qt::CaseInsensitive));
        QCOMPARE(lines.at(1), QString("<animation>"));
        QVERIFY(lines.at(2).startsWith("  <layer "));
        QVERIFY(lines.at(3).startsWith("    <curve "));
        QCOMPARE(lines.last(), QString("</animation>"));
    }

    void namesReadBack_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("accents") << QByteArray("t\xc3\xaate");
        QTest::newRow("beyond the basic plane") << QByteArray("\xf0\x9f\xa6\xbe \xe8\x85\x95");
        QTest::newRow("markup") << QByteArray("<a b=\"c\" d='e'>&amp;&#65;</a>]]>");
        QTest::newRow("one blank") << QByteArray(" ");
        QTest::newRow("blanks around") << QByteArray("  arm  left ");
        QTest::newRow("lines and tabs") << QByteArray("arm\n\tleft\r");
    }

    void namesReadBack() {
        QFETCH(QByteArray, name);
        Animation animation;
        animation.push_back(new AnimationLayer(Records::makeLayer(name.toStdString())));
        Animation copy;
        QVERIFY(copy.deserialize(fromXml(toXml(animation.serialize()))));
        QCOMPARE(QByteArray::fromStdString(copy.begin()->actuatorName), name);
    }

    void textThatIsNotXmlIsRefusedWithItsLine_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("line");
        QTest::newRow("attribute without text")
            << QByteArray("<animation>\n<layer\n name=/>\n</animation>") << "line 3:";
        QTest::newRow("cut short") << QByteArray("<animation>\n  <layer name=\"a\">\n") << "line 3:";
        QTest::newRow("cut within a tag") << QByteArray("<animation>\n  <lay") << "line 2:";
        QTest::newRow("cut within an attribute") << QByteArray("<animation>\n<layer name=\"a") << "line 2:";
        QTest::newRow("no tag") << QByteArray("\nanimation") << "line 2:";
        QTest::newRow("text behind the root") << QByteArray("<animation/>\n\nx") << "line 3:";
        QTest::newRow("closed by another name")
            << QByteArray("<animation>\n<layer>\n</curve>\n</animation>") << "line 3:";
    }

    void textThatIsNotXmlIsRefusedWithItsLine() {
        QFETCH(QByteArray, text);
        QFETCH(QString, line);
        const QString problem = problemOf(text.toStdString());
        QVERIFY2(problem.contains(line), qPrintable('"' + problem + '"'));
    }

    void aDocumentWithAnotherRootIsRefusedWithItsLine_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("problem");
        QTest::newRow("another name")
            << QByteArray("\n<curve/>") << "line 2: the root element is \"curve\", not \"animation\"";
        QTest::newRow("another case")
            << QByteArray("<Animation/>") << "line 1: the root element is \"Animation\", not \"animation\"";
        QTest::newRow("two roots") << QByteArray("<animation/>\n<animation/>")
                                   << "line 2: there is a second root element";
        QTest::newRow("another root behind the first")
            << QByteArray("<animation></animation>\n<a/>") << "line 2: there is a second root element";
        const char* const none = "line 1: there is no element \"animation\"";
        QTest::newRow("declaration only") << QByteArray("<?xml version=\"1.0\"?>") << none;
        QTest::newRow("a comment only") << QByteArray("<!-- <animation/> -->") << none;
        QTest::newRow("nothing") << QByteArray() << none;
        QTest::newRow("a byte order mark") << QByteArray("\xef\xbb\xbf") << none;
        QTest::newRow("blanks") << QByteArray("  \n ") << "line 2: there is no element \"animation\"";
    }

    void aDocumentWithAnotherRootIsRefusedWithItsLine() {
        QFETCH(QByteArray, text);
        QFETCH(QString, problem);
        QCOMPARE(problemOf(text.toStdString()), problem);
    }

    void aFileThatCannotBeOpenedIsRefusedWithoutALine() {
        std::ifstream stream(std::string(EA_SOURCE_DIR) + "/no such file");
        QString problem;
        try {
            readAnimationXml(stream);
        } catch (const std::runtime_error& error) {
            problem = error.what();
        }
        QVERIFY(!problem.isEmpty());
        QVERIFY2(!problem.contains("line"), qPrintable(problem));
    }

    void aTagEndInAQuotedAttributeDoesNotEndTheTag() {
        std::istringstream stream("<animation><layer name='a/>b' note=\"it's > 0\"></layer></animation>");
        QCOMPARE(readAnimationXml(stream).get<std::string>("layer.<xmlattr>.name"), std::string("a/>b"));
    }

    void aStreamThatFailsIsReported() {
        std::ostringstream stream;
        stream.setstate(std::ios::badbit);
        QVERIFY_EXCEPTION_THROWN(writeAnimationXml(stream, Animation().serialize()), std::runtime_error);
    }

    void newerFilesAreRead() {
        const Animation animation = Records::makeAnimation();
        Tree tree = animation.serialize();
        Damages::addUnknownItems(tree);
        Animation copy;
        QVERIFY(copy.deserialize(fromXml(toXml(tree))));
        QCOMPARE(Records::of(copy), Records::of(animation));
    }

    void commentsDeclarationsAndByteOrderMarksAreSkipped() {
        const Animation animation = Records::makeAnimation();
        QString text = QString::fromStdString(toXml(animation.serialize()));
        text.replace("<animation>", "<!DOCTYPE animation>\n<!-- a -->\n<animation><!-- b -->\n<?note x?>");
        text.replace("<layer ", "<!-- c --><layer ");
        Animation copy;
        QVERIFY(copy.deserialize(fromXml("\xef\xbb\xbf" + text.toStdString())));
        QCOMPARE(Records::of(copy), Records::of(animation));
    }

    void anItemThatStandsTwiceInAFileIsFound() {
        const Tree tree = fromXml("<animation><layer name=\"a\" name=\"b\"/></animation>");
        QVERIFY(QString::fromStdString(Animation::problemIn(tree)).contains("name"));
    }
};

QTEST_GUILESS_MAIN(AnimationXmlTest)
#include "AnimationXmlTest.moc"
