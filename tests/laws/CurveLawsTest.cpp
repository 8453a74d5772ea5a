#include "TwinEdits.h"

#include <QtTest>

class CurveLawsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anyEditsDoWhatASimpleCurveDoesAndSaySoInTheSameSignals() {
        QVERIFY(rc::check("a curve and a vector of structs agree in state and signals", [] {
            CurveTwins twins;
            TwinEdits edits(twins);
            for (int count = 1 + Draw::size(120); count > 0; --count) {
                edits.makeOne();
                twins.requireAgreement();
            }
        }));
    }
};

QTEST_GUILESS_MAIN(CurveLawsTest)
#include "CurveLawsTest.moc"
