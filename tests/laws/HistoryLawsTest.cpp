#include "HistoryStory.h"

#include <QtTest>

class HistoryLawsTest : public QObject {
    Q_OBJECT

    static bool holds(Draw::Automatic automatic) {
        return rc::check("undoing and redoing lead back to what was there and to what was made", [automatic] {
            HistoryStory story(automatic);
            for (int steps = 1 + Draw::size(24); steps > 0; --steps) {
                story.goOn();
            }
            story.end();
        });
    }

private Q_SLOTS:
    void anyWalkThroughAnyHistoryAgreesWithWhatWasMadeToTheBit() { QVERIFY(holds(Draw::Automatic::no)); }
    void anyWalkThroughAnyHistoryAgreesWithWhatWasMadeUpToAutomaticHandles() {
        QVERIFY(holds(Draw::Automatic::yes));
    }
};

QTEST_GUILESS_MAIN(HistoryLawsTest)
#include "HistoryLawsTest.moc"
