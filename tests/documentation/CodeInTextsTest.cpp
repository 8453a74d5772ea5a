#include "tests/documentation/Documentation.h"

#include <QDirIterator>
#include <QtTest>

namespace {

// Blocks stand further left than where they were cut from.
QString unindented(const QString& code) {
    QStringList lines = code.split('\n');
    for (QString& line : lines) {
        line = line.trimmed();
    }
    return lines.join('\n');
}

QStringList examples() {
    QStringList found;
    QDirIterator files(QStringLiteral(EA_SOURCE_DIR "/examples"), {"*.cpp", "*.h"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly)) {
            found.append(unindented(QString::fromUtf8(file.readAll())));
        }
    }
    return found;
}

} // namespace

class CodeInTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theReadmeShowsTheWholeEmbeddingExample();
    void codeInTextsIsPartOfAnExampleThatIsBuiltAndRun_data();
    void codeInTextsIsPartOfAnExampleThatIsBuiltAndRun();
};

void CodeInTextsTest::theReadmeShowsTheWholeEmbeddingExample() {
    const QStringList code = Documentation::blocks("README.md", "cpp");
    QVERIFY(!code.isEmpty());
    QCOMPARE(code.first() + '\n', Documentation::textOf("examples/embedding/main.cpp"));
}

void CodeInTextsTest::codeInTextsIsPartOfAnExampleThatIsBuiltAndRun_data() {
    QTest::addColumn<QString>("code");
    for (const QString& page : Documentation::pages()) {
        int number = 0;
        for (const QString& code : Documentation::blocks(page, "cpp")) {
            QTest::addRow("%s, block %d", qPrintable(page), ++number) << code;
        }
    }
}

void CodeInTextsTest::codeInTextsIsPartOfAnExampleThatIsBuiltAndRun() {
    QFETCH(const QString, code);
    const QString wanted = unindented(code).trimmed();
    QVERIFY(!wanted.isEmpty());
    bool isShown = false;
    for (const QString& example : examples()) {
        isShown = isShown || example.contains(wanted);
    }
    QVERIFY2(isShown, qPrintable("in no example:\n" + code));
}

QTEST_GUILESS_MAIN(CodeInTextsTest)
#include "CodeInTextsTest.moc"
