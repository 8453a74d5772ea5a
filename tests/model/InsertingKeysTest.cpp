#include "RecordedCurve.h"
#include "tests/support/Snapshot.h"

#include <QPointer>
#include <QTest>

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;

class InsertingKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void insertingAtAFreeFrameAnnouncesTheKey_data() {
        QTest::addColumn<unsigned int>("frame");
        QTest::addColumn<QString>("signalled");
        QTest::newRow("before the last key") << 4U << "curve.keyAdded(new)";
        QTest::newRow("behind the last key")
            << 11U << "curve.keyAdded(new), curve.greaterIndexChanged(11, 10)";
    }
    void insertingAtAFreeFrameAnnouncesTheKey() {
        QFETCH(unsigned int, frame);
        QFETCH(QString, signalled);
        RecordedCurve watched;
        watched.add(10, "a");
        Key* const key = watched.make("new");
        QString heard;
        connect(&watched.curve, &Curve::keyAdded, this,
                [&](Key* added) { heard = QString("%1 at %2").arg(added == key).arg(ZT::index(added)); });
        const Curve::iterator position = watched.curve.insert(frame, key);
        QCOMPARE(watched.recorder.take(), signalled);
        QCOMPARE(heard, QString("1 at %1").arg(frame));
        QCOMPARE(position->first, frame);
        QCOMPARE(position->second, key);
        QCOMPARE(key->getParentCurve(), &watched.curve);
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("new.valueChanged(1), curve.keysChanged()"));
    }

    void theFirstKeyAtFrameZeroChangesNoGreatestFrame() {
        RecordedCurve watched;
        watched.curve.insert(0, watched.make("a"));
        QCOMPARE(watched.recorder.take(), QString("curve.keyAdded(a)"));
    }

    void insertingOverAnotherKeyDestroysIt() {
        RecordedCurve watched;
        QPointer<Key> occupant = watched.add(10, "old");
        Key* const key = watched.make("new");
        QStringList states;
        connect(&watched.curve, &Curve::keyAboutToBeRemoved, this, [&](Key* removed) {
            states.append(QString("old %1 at %2").arg(removed == occupant).arg(ZT::index(removed)));
        });
        connect(&watched.curve, &Curve::keyAdded, this,
                [&] { states.append(QString("gone %1").arg(occupant.isNull())); });
        QCOMPARE(watched.curve.insert(10, key)->second, key);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(old), curve.keyAdded(new)"));
        QCOMPARE(states, QStringList({"old 1 at 10", "gone 1"}));
        QCOMPARE(Snapshot::frames(watched.curve), QString("10"));
    }

    void insertingAKeyWhereItAlreadyStandsDoesNothing() {
        RecordedCurve watched;
        Key* const key = watched.add(10, "a");
        const Curve::iterator position = watched.curve.insert(10, key);
        QCOMPARE(position->second, key);
        QCOMPARE(position->first, 10U);
        QCOMPARE(watched.recorder.take(), QString());
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1), curve.keysChanged()"));
    }

    void insertingAHeldKeyAtAFreeFrameMovesIt() {
        RecordedCurve watched;
        Key* const key = watched.add(5, "a");
        watched.add(10, "b");
        QCOMPARE(watched.curve.insert(7, key)->second, key);
        QCOMPARE(watched.recorder.take(), QString("a.indexChanged(7), curve.keysChanged()"));
        QCOMPARE(watched.curve.insert(12, key)->first, 12U);
        QCOMPARE(watched.recorder.take(),
                 QString("a.indexChanged(12), curve.keysChanged(), curve.greaterIndexChanged(12, 10)"));
        QCOMPARE(Snapshot::frames(watched.curve), QString("10 12"));
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1), curve.keysChanged()"));
    }

    void insertingAHeldKeyComparesTheGreatestFrameAfterTheOccupantIsGone_data() {
        QTest::addColumn<unsigned int>("from");
        QTest::addColumn<unsigned int>("to");
        QTest::addColumn<unsigned int>("third");
        QTest::addColumn<QString>("announced");
        // The greatest frame is 10 before and after; the key moves up from 5, which is the last while nothing
        // is at 10.
        QTest::newRow("onto the last key") << 5U << 10U << 0U << ", curve.greaterIndexChanged(10, 5)";
        QTest::newRow("onto the last but one") << 5U << 10U << 20U << "";
        QTest::newRow("from the last onto the first")
            << 10U << 5U << 0U << ", curve.greaterIndexChanged(5, 10)";
    }
    void insertingAHeldKeyComparesTheGreatestFrameAfterTheOccupantIsGone() {
        QFETCH(unsigned int, from);
        QFETCH(unsigned int, to);
        QFETCH(unsigned int, third);
        QFETCH(QString, announced);
        RecordedCurve watched;
        Key* const key = watched.add(from, "a");
        const QPointer<Key> occupant = watched.add(to, "b");
        watched.add(third, "c");
        QString heard;
        connect(key, &Key::indexChanged, this,
                [&] { heard = QString("occupant gone %1").arg(occupant.isNull()); });
        const Curve::iterator position = watched.curve.insert(to, key);
        QCOMPARE(watched.recorder.take(),
                 QString("curve.keyAboutToBeRemoved(b), a.indexChanged(%1), curve.keysChanged()").arg(to) +
                     announced);
        QCOMPARE(heard, QString("occupant gone 1"));
        QCOMPARE(position->first, to);
        QCOMPARE(position->second, key);
        QVERIFY(watched.curve.isIndexAvailable(from));
    }

    void aKeyOfAnotherCurveIsInsertedWithoutLeavingThatCurve() {
        RecordedCurve watched;
        RecordedCurve other;
        Key* const key = watched.make("a");
        other.curve.insert(3, key);
        other.recorder.take();
        watched.curve.insert(8, key);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAdded(a), curve.greaterIndexChanged(8, 0)"));
        QCOMPARE(other.recorder.take(), QString());
        QCOMPARE(key->getParentCurve(), &watched.curve);
        QCOMPARE(other.curve.getKey(3), key);
        // It has two owners now: one must let it go.
        QCOMPARE(other.curve.release(3), key);
        QCOMPARE(watched.curve.getKey(8), key);
    }
};

QTEST_GUILESS_MAIN(InsertingKeysTest)
#include "InsertingKeysTest.moc"
