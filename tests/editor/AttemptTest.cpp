#include "document/Attempt.h"

#include <QCoreApplication>
#include <QTranslator>
#include <QtTest>

#include <new>
#include <stdexcept>

namespace {

/// Texts for which there is no memory.
class ShortTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* /*context*/, const char* /*text*/, const char* /*comment*/,
                      int /*n*/) const override {
        throw std::bad_alloc();
    }
};

} // namespace

class AttemptTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsDoneLeavesNothingToSay() {
        bool isDone = false;
        QCOMPARE(Editor::attempt([&isDone] { isDone = true; }), QString());
        QVERIFY(isDone);
    }

    void anExceptionBecomesWhatItSays() {
        QCOMPARE(Editor::attempt([] { throw std::runtime_error("no room \xc3\xa4"); }),
                 QString::fromUtf8("no room \xc3\xa4"));
        QCOMPARE(Editor::attempt([] { throw std::bad_alloc(); }), QString("there is not enough memory"));
        QCOMPARE(Editor::attempt([] { throw std::runtime_error(""); }), QString("something went wrong"));
        QCOMPARE(Editor::attempt([] { throw 5; }), QString("something went wrong"));
    }

    void whereTheTextItselfFindsNoMemoryThereIsOneLeft() {
        ShortTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        const QString memory = Editor::attempt([] { throw std::bad_alloc(); });
        const QString nothing = Editor::attempt([] { throw std::runtime_error(""); });
        const QString unknown = Editor::attempt([] { throw 5; });
        QCoreApplication::removeTranslator(&translator);
        for (const QString& text : {memory, nothing, unknown}) {
            QCOMPARE(text, QString("there is not enough memory"));
        }
    }
};

QTEST_GUILESS_MAIN(AttemptTest)
#include "AttemptTest.moc"
