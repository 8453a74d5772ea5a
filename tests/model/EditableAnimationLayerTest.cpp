#include "tests/support/SignalRecorder.h"

#include <QPointer>
#include <QtTest>

#include <memory>

using ZT::EditableAnimationLayer;
using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

class EditableAnimationLayerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewLayerHoldsAnEmptyConnectedCurve() {
        EditableAnimationLayer layer;
        QVERIFY(layer.getCurve() != nullptr);
        QVERIFY(layer.getCurve()->empty());
        QCOMPARE(layer.getCurve()->getParentLayer(), &layer);
        QCOMPARE(layer.getParentAnimation(), nullptr);
        QCOMPARE(layer.parent(), nullptr);
        QCOMPARE(layer.getActuatorName(), QString());
    }

    void aWrappedLayerIsACopy() {
        VQ::Animation::AnimationLayer plain;
        plain.actuatorName = "wrist";
        plain.mute = true;
        plain.curve->insert(4, new VQ::Math::Interpolation::Key);
        EditableAnimationLayer layer(plain);
        plain.actuatorName = "elbow";
        plain.curve->clear();
        QCOMPARE(layer.getActuatorName(), QString("wrist"));
        QVERIFY(layer.isMute());
        QCOMPARE(layer.getCurve()->getGreaterIndex(), 4U);
    }

    void aNewNameIsAnnouncedOnce() {
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        layer.setActuatorName("arm");
        layer.setActuatorName("arm");
        QCOMPARE(recorder.take(), QString("layer.nameChanged(\"arm\")"));
    }

    void namesAreKeptAsUtf8() {
        EditableAnimationLayer layer;
        const QString name = QString::fromUtf8("Ärmel 腕 \U0001F9BE");
        layer.setActuatorName(name);
        QCOMPARE(layer.getActuatorName(), name);
        QCOMPARE(layer.baseAnimationLayer().actuatorName, std::string("Ärmel 腕 \U0001F9BE"));
    }

    void mutingTwiceIsAnnouncedOnce() {
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        layer.setMute(true);
        layer.setMute(true);
        QCOMPARE(recorder.take(), QString("layer.muteChanged(true)"));
        QVERIFY(layer.baseAnimationLayer().mute);
    }

    void settingTheHeldCurveOrNullDoesNothing() {
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        const QPointer<EditableMotionCurve> held = layer.getCurve();
        layer.setCurve(held);
        layer.setCurve(nullptr);
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(layer.getCurve(), held.data());
    }

    void aNewCurveReplacesAndDeletesTheOldOne() {
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        const QPointer<EditableMotionCurve> old = layer.getCurve();
        auto* const replacement = new EditableMotionCurve;
        layer.setCurve(replacement);
        QVERIFY(old.isNull());
        QCOMPARE(layer.getCurve(), replacement);
        QCOMPARE(replacement->getParentLayer(), &layer);
        QCOMPARE(recorder.take(), QString("layer.curveChanged()"));
        EditableMotionCurveKey* const key = replacement->insert(5, new EditableMotionCurveKey)->second;
        key->setValue(1.0F);
        QCOMPARE(recorder.take(), QString("layer.greaterIndexChanged(5, 0), layer.curveChanged()"));
    }

    void eachForwardedSignalOfTheCurveArrivesOnce_data() {
        QTest::addColumn<QByteArray>("signal");
        QTest::newRow("keys") << QByteArray("keysChanged");
        QTest::newRow("time unit") << QByteArray("timeUnitChanged");
        QTest::newRow("derivative") << QByteArray("maxAbsoluteDerivativeChanged");
        QTest::newRow("limits") << QByteArray("valueLimitsChanged");
    }
    void eachForwardedSignalOfTheCurveArrivesOnce() {
        QFETCH(QByteArray, signal);
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        EditableMotionCurve* const curve = layer.getCurve();
        if (signal == "maxAbsoluteDerivativeChanged") {
            Q_EMIT curve->maxAbsoluteDerivativeChanged(1.0F);
        } else if (signal == "valueLimitsChanged") {
            Q_EMIT curve->valueLimitsChanged({0.0F, 1.0F});
        } else {
            QVERIFY(QMetaObject::invokeMethod(curve, signal.constData()));
        }
        QCOMPARE(recorder.take(), QString("layer.curveChanged()"));
    }

    void structuralSignalsOfTheCurveAreNotForwarded() {
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        layer.getCurve()->insert(0, new EditableMotionCurveKey);
        layer.getCurve()->remove(0U);
        layer.getCurve()->clear();
        QCOMPARE(recorder.take(), QString());
    }

    void addingKeysInBulkReachesTheLayer() {
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        layer.getCurve()->releaseAndInsertKeys({}, {{new EditableMotionCurveKey, 6}});
        QCOMPARE(recorder.take(), QString("layer.curveChanged(), layer.greaterIndexChanged(6, 0)"));
    }

    void aCreatedCurveIsConnectedButNotInstalled() {
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        EditableMotionCurve* const held = layer.getCurve();
        const std::unique_ptr<VQ::Animation::MotionCurve> created(layer.createCurve());
        QCOMPARE(layer.getCurve(), held);
        EditableMotionCurve* const curve = EditableMotionCurve::_toEditable(created.get());
        QCOMPARE(curve->getParentLayer(), &layer);
        curve->insert(9, new EditableMotionCurveKey);
        QCOMPARE(recorder.take(), QString("layer.greaterIndexChanged(9, 0)"));
    }

    void theBaseCopyIsIndependent() {
        EditableAnimationLayer layer;
        layer.setActuatorName("arm");
        layer.getCurve()->insert(2, new EditableMotionCurveKey);
        VQ::Animation::AnimationLayer copy = layer.baseAnimationLayer();
        copy.actuatorName = "leg";
        copy.curve->clear();
        QCOMPARE(layer.getActuatorName(), QString("arm"));
        QCOMPARE(layer.getCurve()->size(), std::size_t{1});
    }

    void theCurveDiesWithTheLayer() {
        QPointer<EditableMotionCurve> curve;
        QPointer<EditableMotionCurveKey> key;
        {
            EditableAnimationLayer layer;
            curve = layer.getCurve();
            key = curve->insert(1, new EditableMotionCurveKey)->second;
        }
        QVERIFY(curve.isNull());
        QVERIFY(key.isNull());
    }

    void theOldCurveDiesWhenTheNewOneAlreadyStands() {
        EditableAnimationLayer layer;
        auto* const replacement = new EditableMotionCurve;
        bool stood = false;
        QObject::connect(layer.getCurve(), &QObject::destroyed,
                         [&] { stood = layer.getCurve() == replacement; });
        layer.setCurve(replacement);
        QVERIFY(stood);
    }

    void theGreatestFrameIsForwardedWithItsArguments() {
        EditableAnimationLayer layer;
        SignalRecorder recorder;
        recorder.watch(layer);
        Q_EMIT layer.getCurve()->greaterIndexChanged(7, 3);
        QCOMPARE(recorder.take(), QString("layer.greaterIndexChanged(7, 3)"));
    }

    void eachConnectionIsMadeOnceAndByName_data() {
        QTest::addColumn<QByteArray>("ofCurve");
        QTest::addColumn<QByteArray>("ofLayer");
        const QByteArray changed = SIGNAL(curveChanged());
        QTest::newRow("keys") << QByteArray(SIGNAL(keysChanged())) << changed;
        QTest::newRow("time unit") << QByteArray(SIGNAL(timeUnitChanged())) << changed;
        QTest::newRow("limits") << QByteArray(SIGNAL(valueLimitsChanged(QPair<float, float>))) << changed;
        QTest::newRow("derivative") << QByteArray(SIGNAL(maxAbsoluteDerivativeChanged(float))) << changed;
        QTest::newRow("greatest frame") << QByteArray(SIGNAL(greaterIndexChanged(uint, uint)))
                                        << QByteArray(SIGNAL(greaterIndexChanged(uint, uint)));
    }
    void eachConnectionIsMadeOnceAndByName() {
        QFETCH(QByteArray, ofCurve);
        QFETCH(QByteArray, ofLayer);
        EditableAnimationLayer layer;
        const auto disconnect = [&] {
            return QObject::disconnect(layer.getCurve(), ofCurve.constData(), &layer, ofLayer.constData());
        };
        QVERIFY(disconnect());
        QVERIFY(!disconnect());
    }

    void unmutingIsAnnouncedToo() {
        EditableAnimationLayer layer;
        layer.setMute(true);
        SignalRecorder recorder;
        recorder.watch(layer);
        layer.setMute(false);
        QCOMPARE(recorder.take(), QString("layer.muteChanged(false)"));
    }
};

QTEST_GUILESS_MAIN(EditableAnimationLayerTest)
#include "EditableAnimationLayerTest.moc"
