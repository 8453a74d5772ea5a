#include "document/Attempt.h"

#include <QtTest>

#include <new>
#include <stdexcept>

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
};

QTEST_GUILESS_MAIN(AttemptTest)
#include "AttemptTest.moc"
