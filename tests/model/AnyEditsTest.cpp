#include "Twins.h"

#include <QtTest>

#include <rapidcheck.h>

class AnyEditsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anySequenceOfEditsDoesWhatAPlainListDoes() {
        QVERIFY(rc::check("state and signals are those of a plain list of keys", [] {
            Twins twins;
            for (int count = *rc::gen::inRange(1, 80); count > 0; --count) {
                twins.edit();
                twins.compare();
            }
        }));
    }
};

QTEST_GUILESS_MAIN(AnyEditsTest)
#include "AnyEditsTest.moc"
