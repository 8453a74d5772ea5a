#include <QFile>
#include <QtTest>

class ReadmeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theEmbeddingCodeIsTheExampleThatIsBuiltAndRun();
};

namespace {

QString textOf(const QString& path) {
    QFile file(QStringLiteral(EA_SOURCE_DIR "/") + path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

void ReadmeTest::theEmbeddingCodeIsTheExampleThatIsBuiltAndRun() {
    const QString code = textOf("README.md").section("```cpp\n", 1, 1).section("```", 0, 0);
    QVERIFY(!code.isEmpty());
    QCOMPARE(code, textOf("examples/embedding/main.cpp"));
}

QTEST_GUILESS_MAIN(ReadmeTest)
#include "ReadmeTest.moc"
