#include "RecordedCurve.h"
#include "tests/support/Snapshot.h"

#include <QPointer>
#include <QTest>

#include <memory>

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Type = VQ::Math::Interpolation::InterpolationType;

class RemovingKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aKeyThatLeavesIsAnnouncedWhileItStillStandsThere_data() {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<unsigned int>("frame");
        QTest::addColumn<QString>("announced");
        for (const char* const operation : {"release", "remove the frame", "remove the position"}) {
            const auto name = [&](const char* text) {
                return QString("%1: %2").arg(operation, text).toUtf8();
            };
            QTest::newRow(name("first key")) << operation << 2U << "";
            QTest::newRow(name("last key")) << operation << 5U << ", curve.greaterIndexChanged(2, 5)";
        }
    }
    void aKeyThatLeavesIsAnnouncedWhileItStillStandsThere() {
        QFETCH(QString, operation);
        QFETCH(unsigned int, frame);
        QFETCH(QString, announced);
        RecordedCurve watched;
        watched.add(2, "key2");
        watched.add(5, "key5");
        QPointer<Key> key = watched.curve.getKey(frame);
        QStringList states;
        connect(&watched.curve, &Curve::keyAboutToBeRemoved, this, [&](Key* leaving) {
            states.append(QString("%1 %2")
                              .arg(watched.curve.getKey(frame) == leaving)
                              .arg(leaving->getParentCurve() == &watched.curve));
        });
        connect(&watched.curve, &Curve::greaterIndexChanged, this, [&] {
            states.append(QString("%1 %2")
                              .arg(watched.curve.isIndexAvailable(frame))
                              .arg(key.isNull() || key->getParentCurve() == nullptr));
        });
        std::unique_ptr<Key> released;
        if (operation == "release") {
            released.reset(watched.curve.release(frame));
            QCOMPARE(released.get(), key.data());
            QCOMPARE(released->getParentCurve(), nullptr);
        } else if (operation == "remove the frame") {
            watched.curve.remove(frame);
        } else {
            watched.curve.remove(watched.curve.find(frame));
        }
        QCOMPARE(key.isNull(), operation != "release");
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(key%1)").arg(frame) + announced);
        QCOMPARE(states, announced.isEmpty() ? QStringList("1 1") : QStringList({"1 1", "1 1"}));
        QVERIFY(watched.curve.isIndexAvailable(frame));
        if (released != nullptr) {
            released->setValue(1.0F);
            released->setLeftTangentType(Type::linear);
            Q_EMIT released->indexChanged(1U);
            QCOMPARE(watched.recorder.count("curve.keysChanged()"), 0);
        }
    }

    void nothingLeavesAFrameWithoutAKey() {
        RecordedCurve watched;
        watched.add(2, "a");
        QCOMPARE(watched.curve.release(3), nullptr);
        watched.curve.remove(3U);
        watched.curve.remove(watched.curve.end());
        QCOMPARE(watched.recorder.take(), QString());
        QCOMPARE(Snapshot::frames(watched.curve), QString("2"));
    }

    void theLastKeyAtFrameZeroLeavesTheGreatestFrame() {
        RecordedCurve watched;
        watched.add(0, "a");
        watched.curve.remove(0U);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(a)"));
        watched.add(0, "b");
        const std::unique_ptr<Key> released(watched.curve.release(0));
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(b)"));
    }

    void aReleasedKeyOutlivesTheCurveAndCanReturn() {
        auto curve = std::make_unique<Curve>();
        QPointer<Key> kept = curve->insert(1, new Key)->second;
        QPointer<Key> held = curve->insert(2, new Key)->second;
        QCOMPARE(curve->release(1), kept.data());
        curve.reset();
        QVERIFY(held.isNull());
        QVERIFY(!kept.isNull());
        RecordedCurve watched;
        watched.curve.insert(4, kept);
        watched.recorder.take();
        kept->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("curve.keysChanged()"));
    }

    void aKeyReleasedAndInsertedAgainIsHeardOnce() {
        RecordedCurve watched;
        Key* const key = watched.add(1, "a");
        QCOMPARE(watched.curve.release(1), key);
        watched.curve.insert(1, key);
        watched.recorder.take();
        key->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1), curve.keysChanged()"));
    }

    void clearingDestroysEveryKeyWithOneSignal_data() {
        QTest::addColumn<unsigned int>("last");
        QTest::addColumn<QString>("signalled");
        QTest::newRow("keys up to 5") << 5U << "curve.curveCleared(), curve.greaterIndexChanged(0, 5)";
        QTest::newRow("a key at 0") << 0U << "curve.curveCleared()";
    }
    void clearingDestroysEveryKeyWithOneSignal() {
        QFETCH(unsigned int, last);
        QFETCH(QString, signalled);
        RecordedCurve watched;
        const QPointer<Key> first = watched.add(0, "a");
        const QPointer<Key> other = last == 0 ? first : QPointer<Key>(watched.add(last, "b"));
        bool allGone = false;
        connect(&watched.curve, &Curve::curveCleared, this,
                [&] { allGone = first.isNull() && other.isNull() && watched.curve.empty(); });
        watched.curve.clear();
        QCOMPARE(watched.recorder.take(), signalled);
        QVERIFY(allGone);
    }

    void clearingAnEmptyCurveIsAnnouncedToo() {
        RecordedCurve watched;
        watched.curve.clear();
        QCOMPARE(watched.recorder.take(), QString("curve.curveCleared()"));
    }

    void aCurveDestroysTheKeysThatItHolds() {
        auto curve = std::make_unique<Curve>();
        const QPointer<Key> key = curve->insert(1, new Key)->second;
        curve.reset();
        QVERIFY(key.isNull());
    }
};

QTEST_GUILESS_MAIN(RemovingKeysTest)
#include "RemovingKeysTest.moc"
