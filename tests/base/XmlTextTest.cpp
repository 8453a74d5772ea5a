#include "base/animation/XmlText.h"

#include <QtTest>

using VQ::Animation::findXmlTextFault;

class XmlTextTest : public QObject {
    Q_OBJECT

private slots:
    void textThatXmlCanHoldHasNoFault_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("blanks and line ends") << QByteArray(" \t\r\n");
        QTest::newRow("markup") << QByteArray("<a b='c'>&d;");
        QTest::newRow("U+007F") << QByteArray("\x7f");
        QTest::newRow("U+0080") << QByteArray("\xc2\x80");
        QTest::newRow("the last before surrogates") << QByteArray("\xed\x9f\xbf");
        QTest::newRow("the first behind surrogates") << QByteArray("\xee\x80\x80");
        QTest::newRow("U+FFFD") << QByteArray("\xef\xbf\xbd");
        QTest::newRow("U+10000") << QByteArray("\xf0\x90\x80\x80");
        QTest::newRow("U+10FFFF") << QByteArray("\xf4\x8f\xbf\xbf");
        QTest::newRow("a byte order mark") << QByteArray("\xef\xbb\xbf");
    }

    void textThatXmlCanHoldHasNoFault() {
        QFETCH(QByteArray, text);
        QVERIFY(!findXmlTextFault(text.toStdString()).has_value());
    }

    void theFirstFaultIsNamedWithItsPosition_data() {
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<QString>("what");
        const auto byte = [](const char* name, const QByteArray& fault, const QString& number) {
            QTest::newRow(name) << fault << "the byte 0x" + number + ", which is not UTF-8";
        };
        byte("inside a character", "\x80", "80");
        byte("an overlong form", "\xc0\xaf", "C0");
        byte("half a character", "\xe8\x85", "E8");
        byte("a surrogate", "\xed\xa0\x80", "ED");
        byte("beyond Unicode", "\xf4\x90\x80\x80", "F4");
        byte("no first byte", "\xff", "FF");
        byte("another encoding", "\xfc", "FC");
        const auto character = [](const char* name, const QByteArray& fault, const QString& number) {
            QTest::newRow(name) << fault << "the character U+" + number + ", which XML cannot hold";
        };
        character("NUL", QByteArray(1, '\0'), "0000");
        character("the last control before tab", "\x08", "0008");
        character("vertical tab", "\x0b", "000B");
        character("escape", "\x1b", "001B");
        character("U+FFFE", "\xef\xbf\xbe", "FFFE");
        character("U+FFFF", "\xef\xbf\xbf", "FFFF");
    }

    void theFirstFaultIsNamedWithItsPosition() {
        QFETCH(QByteArray, fault);
        QFETCH(QString, what);
        const auto found = findXmlTextFault(("t\xc3\xaate " + fault + " \xff").toStdString());
        QVERIFY(found.has_value());
        QCOMPARE(found->position, std::size_t{6});
        QCOMPARE(QString::fromStdString(found->what), what);
    }

    void everyControlCharacterButThreeIsAFault() {
        for (int code = 0; code < 0x20; ++code) {
            const bool isAllowed = code == '\t' || code == '\n' || code == '\r';
            QCOMPARE(findXmlTextFault(std::string(1, static_cast<char>(code))).has_value(), !isAllowed);
        }
    }
};

QTEST_GUILESS_MAIN(XmlTextTest)
#include "XmlTextTest.moc"
