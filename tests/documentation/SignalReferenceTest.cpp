#include "SignalScene.h"
#include "tests/documentation/Documentation.h"

#include <QMetaMethod>
#include <QRegularExpression>
#include <QtTest>

using namespace Signals;

namespace {

QString signalsOf(const Operation& operation) {
    Scene scene;
    operation.prepare(scene);
    scene.recorder.take();
    operation.run(scene);
    const QString heard = scene.recorder.take();
    return heard.isEmpty() ? QStringLiteral("none") : '`' + heard + '`';
}

// The tables as the page has them.
QString tables() {
    QString text;
    for (const Section& section : sections()) {
        text += QStringLiteral("## %1\n\n| operation | signals |\n|---|---|\n").arg(section.title);
        for (const Operation& operation : section.operations) {
            text += QStringLiteral("| %1 | %2 |\n").arg(operation.name, signalsOf(operation));
        }
        text += '\n';
    }
    return text.trimmed() + '\n';
}

} // namespace

class SignalReferenceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePageGivesTheSignalsOfEachOperationInTheirOrder();
    void thePageKnowsEachSlotAndEachSignalOfTheModel_data();
    void thePageKnowsEachSlotAndEachSignalOfTheModel();
    void thePageKnowsEachCommand();
};

void SignalReferenceTest::thePageGivesTheSignalsOfEachOperationInTheirOrder() {
    const QString page = Documentation::textOf("docs/signals.md");
    const QString written = page.mid(page.indexOf("\n## Keys\n") + 1);
    const QString heard = tables();
    if (written != heard) {
        QFile file(QStringLiteral("signals.md")); // To be compared, or taken over.
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(heard.toUtf8());
    }
    const QStringList writtenLines = written.split('\n');
    const QStringList heardLines = heard.split('\n');
    for (int i = 0; i < heardLines.size(); ++i) {
        QCOMPARE(writtenLines.value(i), heardLines.at(i));
    }
    QCOMPARE(writtenLines.size(), heardLines.size());
}

void SignalReferenceTest::thePageKnowsEachSlotAndEachSignalOfTheModel_data() {
    QTest::addColumn<QString>("method");
    for (const QMetaObject* const type :
         {&Key::staticMetaObject, &Curve::staticMetaObject, &Layer::staticMetaObject,
          &Animation::staticMetaObject, &Markers::staticMetaObject}) {
        for (int i = type->methodOffset(); i < type->methodCount(); ++i) {
            const QMetaMethod method = type->method(i);
            if (method.access() == QMetaMethod::Public) {
                QTest::addRow("%s %s", type->className(), method.methodSignature().constData())
                    << QString::fromUtf8(method.name());
            }
        }
    }
}

void SignalReferenceTest::thePageKnowsEachSlotAndEachSignalOfTheModel() {
    QFETCH(const QString, method);
    QVERIFY(Documentation::textOf("docs/signals.md").contains(method + '('));
}

void SignalReferenceTest::thePageKnowsEachCommand() {
    const QString page = Documentation::textOf("docs/signals.md");
    const QString commands = Documentation::textOf("docs/commands.md");
    auto names = QRegularExpression("`(\\w+Command)`").globalMatch(commands.left(commands.indexOf("\n## ")));
    QVERIFY(names.hasNext());
    while (names.hasNext()) {
        const QString name = names.next().captured(1);
        QVERIFY2(page.contains(name + ": undo"), qPrintable(name));
    }
}

QTEST_GUILESS_MAIN(SignalReferenceTest)
#include "SignalReferenceTest.moc"
