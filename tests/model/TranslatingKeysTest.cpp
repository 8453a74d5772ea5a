#include "RecordedCurve.h"
#include "tests/support/Snapshot.h"

#include <QTest>

using Key = ZT::EditableMotionCurveKey;

class TranslatingKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void translatingAKey_data() {
        QTest::addColumn<unsigned int>("target");
        QTest::addColumn<bool>("succeeds");
        QTest::addColumn<QString>("signalled");
        QTest::addColumn<QString>("standing");
        const QString moved = "b.indexChanged(%1), curve.keysChanged()";
        QTest::newRow("to its own frame does nothing") << 5U << true << ""
                                                       << "2 5";
        QTest::newRow("onto another key fails") << 2U << false << ""
                                                << "2 5";
        QTest::newRow("up") << 9U << true << moved.arg(9) + ", curve.greaterIndexChanged(9, 5)"
                            << "2 9";
        QTest::newRow("past another key") << 0U << true << moved.arg(0) + ", curve.greaterIndexChanged(2, 5)"
                                          << "0 2";
        QTest::newRow("to the last frame there is")
            << 4294967295U << true << moved.arg(4294967295U) + ", curve.greaterIndexChanged(4294967295, 5)"
            << "2 4294967295";
    }
    void translatingAKey() {
        QFETCH(unsigned int, target);
        QFETCH(bool, succeeds);
        QFETCH(QString, signalled);
        QFETCH(QString, standing);
        RecordedCurve watched;
        watched.add(2, "a");
        Key* const key = watched.add(5, "b");
        QString heard;
        connect(key, &Key::indexChanged, this, [&](unsigned int frame) {
            heard = QString("%1 %2")
                        .arg(watched.curve.getKey(frame) == key)
                        .arg(watched.curve.isIndexAvailable(5));
        });
        QCOMPARE(watched.curve.translateKey(key, target), succeeds);
        QCOMPARE(watched.recorder.take(), signalled);
        QCOMPARE(Snapshot::frames(watched.curve), standing);
        QCOMPARE(heard, QString(signalled.isEmpty() ? "" : "1 1"));
        QCOMPARE(key->getParentCurve(), &watched.curve);
    }

    void translatingAKeyBelowTheLastOneKeepsTheGreatestFrame() {
        RecordedCurve watched;
        Key* const key = watched.add(2, "a");
        watched.add(5, "b");
        QVERIFY(watched.curve.translateKey(key, 4));
        QCOMPARE(watched.recorder.take(), QString("a.indexChanged(4), curve.keysChanged()"));
    }
};

QTEST_GUILESS_MAIN(TranslatingKeysTest)
#include "TranslatingKeysTest.moc"
