#include "base/animation/Utf8.h"

#include <QtTest>

#include <rapidcheck.h>

using VQ::Animation::inQuotes;
using VQ::Animation::utf8CharacterAt;

namespace {

/// By the table of the encoding, one row at a time.
std::string encoded(std::uint32_t code) {
    const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
    const auto rest = [&](int shift) {
        return byte(0x80U | (code >> static_cast<unsigned int>(shift) & 0x3fU));
    };
    if (code < 0x80) {
        return {byte(code)};
    }
    if (code < 0x800) {
        return {byte(0xc0U | code >> 6U), rest(0)};
    }
    if (code < 0x10000) {
        return {byte(0xe0U | code >> 12U), rest(6), rest(0)};
    }
    return {byte(0xf0U | code >> 18U), rest(12), rest(6), rest(0)};
}

bool isSurrogate(std::uint32_t code) {
    return code >= 0xd800 && code <= 0xdfff;
}

} // namespace

class Utf8Test : public QObject {
    Q_OBJECT

private slots:
    void everyCharacterIsRead() {
        for (std::uint32_t code = 0; code <= 0x10ffff; ++code) {
            const std::string text = "x" + encoded(code) + "y";
            const auto character = utf8CharacterAt(text, 1);
            QCOMPARE(character.length, isSurrogate(code) ? std::size_t{0} : text.size() - 2);
            QCOMPARE(static_cast<std::uint32_t>(character.code), isSurrogate(code) ? 0U : code);
        }
    }

    void whatStandsBehindTheTextIsNotRead() {
        for (const std::uint32_t code : {0x80U, 0x800U, 0x10000U}) {
            const std::string whole = encoded(code);
            for (std::size_t length = 1; length < whole.size(); ++length) {
                QCOMPARE(utf8CharacterAt(std::string_view(whole.data(), length), 0).length, std::size_t{0});
            }
        }
    }

    void nothingBeyondUnicodeIsRead() {
        for (std::uint32_t code = 0x110000; code < 0x200000; ++code) {
            QCOMPARE(utf8CharacterAt(encoded(code), 0).length, std::size_t{0});
        }
    }

    // Whatever is read is what its number is written as: no character has two forms.
    void aCharacterHasOneForm() {
        QVERIFY(rc::check([] {
            const auto bytes = *rc::gen::container<std::string>(
                4, rc::gen::oneOf(rc::gen::inRange<char>(-128, 127), rc::gen::inRange<char>(-128, -64)));
            for (const std::string& text : {bytes, "\xe0" + bytes, "\xed" + bytes, "\xf0" + bytes}) {
                const auto [code, length] = utf8CharacterAt(text, 0);
                if (length != 0) {
                    RC_ASSERT(text.substr(0, length) == encoded(code));
                }
            }
        }));
    }

    void aCharacterThatIsCutIsNone_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("two bytes") << QByteArray("\xc3\xbc");
        QTest::newRow("three bytes") << QByteArray("\xe8\x85\x95");
        QTest::newRow("four bytes") << QByteArray("\xf0\x9f\xa6\xbe");
    }

    void aCharacterThatIsCutIsNone() {
        QFETCH(QByteArray, text);
        const std::string whole = text.toStdString();
        QCOMPARE(utf8CharacterAt(whole, 0).length, whole.size());
        for (std::size_t size = 1; size < whole.size(); ++size) {
            QCOMPARE(utf8CharacterAt(whole.substr(0, size), 0).length, std::size_t{0});
            QCOMPARE(utf8CharacterAt(whole.substr(0, size) + "a", 0).length, std::size_t{0});
            QCOMPARE(utf8CharacterAt(whole, size).length, std::size_t{0});
        }
    }

    void overlongFormsAreNoCharacters_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("NUL in two bytes") << QByteArray("\xc0\x80");
        QTest::newRow("U+007F in two bytes") << QByteArray("\xc1\xbf");
        QTest::newRow("U+07FF in three bytes") << QByteArray("\xe0\x9f\xbf");
        QTest::newRow("U+FFFF in four bytes") << QByteArray("\xf0\x8f\xbf\xbf");
        QTest::newRow("U+03FFFF in five bytes") << QByteArray("\xf8\x80\xbf\xbf\xbf");
    }

    void overlongFormsAreNoCharacters() {
        QFETCH(QByteArray, text);
        QCOMPARE(utf8CharacterAt(text.toStdString(), 0).length, std::size_t{0});
    }

    void aMessageQuotesWholeCharactersAndNoControls_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("quoted");
        const auto row = [](const char* name, const QByteArray& text, const QByteArray& quoted) {
            QTest::newRow(name) << text << '"' + quoted + '"';
        };
        row("nothing", "", "");
        row("accents", "t\xc3\xaate", "t\xc3\xaate");
        row("controls", QByteArray("a\0\n\x1f b\x7f", 7), "a??? b?");
        row("later controls", "\xc2\x80\xc2\x9f\xc2\xa0", "??\xc2\xa0");
        row("bytes that are not UTF-8", "a\xff\xc3z\xe2\x82", "a??z??");
        row("as much as fits", QByteArray(40, 'x'), QByteArray(40, 'x'));
        row("more than fits", QByteArray(41, 'x'), QByteArray(40, 'x') + "...");
        row("characters, not bytes", QByteArray("\xf0\x9f\xa6\xbe").repeated(41),
            QByteArray("\xf0\x9f\xa6\xbe").repeated(40) + "...");
    }

    void aMessageQuotesWholeCharactersAndNoControls() {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, quoted);
        QCOMPARE(QByteArray::fromStdString(inQuotes(text.toStdString())), quoted);
    }
};

QTEST_GUILESS_MAIN(Utf8Test)
#include "Utf8Test.moc"
