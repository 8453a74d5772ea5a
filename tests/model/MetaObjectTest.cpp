#include "OneOfEach.h"
#include "base/animation/Animation.h"

#include <QMetaMethod>
#include <QTest>

#include <type_traits>

using VQ::Animation::SerializationInterface;
using ZT::AnimationMarkers;
using ZT::EditableAnimation;
using ZT::EditableAnimationLayer;
using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

// Who wants the record asks for a copy of it: no pointer to a model object is one to its record.
static_assert(!std::is_convertible_v<EditableMotionCurveKey*, VQ::Math::Interpolation::Key*>);
static_assert(!std::is_convertible_v<EditableMotionCurveKey*, SerializationInterface*>);
static_assert(!std::is_convertible_v<EditableMotionCurve*, VQ::Animation::MotionCurve*>);
static_assert(!std::is_convertible_v<EditableMotionCurve*, SerializationInterface*>);
static_assert(!std::is_convertible_v<EditableAnimationLayer*, VQ::Animation::AnimationLayer*>);
static_assert(!std::is_convertible_v<EditableAnimationLayer*, SerializationInterface*>);
static_assert(!std::is_convertible_v<EditableAnimation*, VQ::Animation::Animation*>);
static_assert(!std::is_convertible_v<EditableAnimation*, SerializationInterface*>);
static_assert(std::is_base_of_v<VQ::Math::Interpolation::Key, EditableMotionCurveKey>);
static_assert(std::is_base_of_v<SerializationInterface, EditableMotionCurveKey>);
static_assert(std::is_base_of_v<VQ::Animation::MotionCurve, EditableMotionCurve>);
static_assert(std::is_base_of_v<VQ::Animation::AnimationLayer, EditableAnimationLayer>);
static_assert(std::is_base_of_v<VQ::Animation::Animation, EditableAnimation>);

namespace {

/// The methods that a class adds, in order: "slot bool translateKey(EditableMotionCurveKey*,Index): pKey
/// pIndexFinal".
QStringList methods(const QMetaObject& meta) {
    QStringList texts;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const bool isSlot = method.methodType() == QMetaMethod::Slot;
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        const QString access = method.access() == QMetaMethod::Public    ? ""
                               : method.access() == QMetaMethod::Private ? "private "
                                                                         : "protected ";
        QByteArray signature = method.methodSignature();
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        signature.replace("std::pair<", "QPair<"); // There it is only another name.
#endif
        texts.append(access +
                     (isSlot     ? "slot "
                      : isSignal ? "signal "
                                 : "other ") +
                     method.typeName() + ' ' + signature + ": " + method.parameterNames().join(' '));
    }
    return texts;
}

} // namespace

class MetaObjectTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyClassStandsDirectlyUnderQObject_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("className");
        QTest::newRow("key") << "key"
                             << "ZT::EditableMotionCurveKey";
        QTest::newRow("curve") << "curve"
                               << "ZT::EditableMotionCurve";
        QTest::newRow("layer") << "layer"
                               << "ZT::EditableAnimationLayer";
        QTest::newRow("animation") << "animation"
                                   << "ZT::EditableAnimation";
        QTest::newRow("markers") << "markers"
                                 << "ZT::AnimationMarkers";
    }
    void everyClassStandsDirectlyUnderQObject() {
        QFETCH(QString, name);
        QFETCH(QString, className);
        const OneOfEach model;
        QObject& object = model.object(name);
        const QMetaObject& meta = *object.metaObject();
        QCOMPARE(QString(meta.className()), className);
        QVERIFY(meta.superClass() == &QObject::staticMetaObject);
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
        QVERIFY(object.qt_metacast(meta.className()) == &object);
        QVERIFY(object.qt_metacast("QObject") == &object);
    }

    void castingByNameDoesNotOpenTheRecord_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("base");
        QTest::newRow("key") << "key" << QByteArray("VQ::Math::Interpolation::Key");
        QTest::newRow("key's tree") << "key" << QByteArray("VQ::Animation::SerializationInterface");
        QTest::newRow("curve") << "curve" << QByteArray("VQ::Animation::MotionCurve");
        QTest::newRow("layer") << "layer" << QByteArray("VQ::Animation::AnimationLayer");
        QTest::newRow("animation") << "animation" << QByteArray("VQ::Animation::Animation");
    }
    void castingByNameDoesNotOpenTheRecord() {
        QFETCH(QString, name);
        QFETCH(QByteArray, base);
        const OneOfEach model;
        QVERIFY(model.object(name).qt_metacast(base) == nullptr);
    }

    void theQObjectPartComesFirstAndTheRecordSecond() {
        const OneOfEach model;
        // Only this kind of cast reaches a base that is not public.
        const auto behind = [](const void* object, const void* base) {
            return static_cast<const char*>(base) - static_cast<const char*>(object);
        };
        const void* const key = model.key;
        QVERIFY(static_cast<QObject*>(model.key) == key);
        const auto record = behind(key, (const VQ::Math::Interpolation::Key*)model.key);
        QVERIFY(record > 0);
        QVERIFY(behind(key, (const SerializationInterface*)model.key) > record);
        QVERIFY(static_cast<QObject*>(model.curve) == static_cast<void*>(model.curve));
        QVERIFY(behind(model.curve, (const VQ::Animation::MotionCurve*)model.curve) > 0);
        QVERIFY(static_cast<QObject*>(model.layer) == static_cast<void*>(model.layer));
        QVERIFY(behind(model.layer, (const VQ::Animation::AnimationLayer*)model.layer) > 0);
        QVERIFY(static_cast<QObject*>(model.animation) == static_cast<void*>(model.animation));
        QVERIFY(behind(model.animation, (const VQ::Animation::Animation*)model.animation) > 0);
    }

    void methodsOfTheKey() {
        QCOMPARE(methods(EditableMotionCurveKey::staticMetaObject),
                 QStringList({
                     "signal void valueChanged(float): pValue",
                     "signal void tangentsChanged(): ",
                     "signal void smoothChanged(bool): pSmooth",
                     "signal void symmetricalChanged(bool): pSymmetrical",
                     "signal void indexChanged(uint): ",
                     "slot void setValue(float): pValue",
                     "slot void setLeftTangentType(VQ::Math::Interpolation::InterpolationType): pType",
                     "slot void setLeftTangentOffset(QPair<float,float>): pOffset",
                     "slot void setRightTangentType(VQ::Math::Interpolation::InterpolationType): pType",
                     "slot void setRightTangentOffset(QPair<float,float>): pOffset",
                     "slot void setSmooth(bool): pSmooth",
                     "slot void setSymmetrical(bool): pSymmetrical",
                     "slot void setTangentType(ZT::TangentSide,VQ::Math::Interpolation::InterpolationType): "
                     "side type",
                     "slot void setTangentOffset(ZT::TangentSide,QPair<float,float>): side offset",
                     "slot bool updateBezierAutoTangents(): ",
                 }));
    }

    void methodsOfTheCurve() {
        QCOMPARE(
            methods(EditableMotionCurve::staticMetaObject),
            QStringList({
                "signal void keysChanged(): ",
                "signal void timeUnitChanged(): ",
                "signal void valueLimitsChanged(QPair<float,float>): pValueLimits",
                "signal void maxAbsoluteDerivativeChanged(float): pMaxAbsoluteDerivative",
                "signal void keyAboutToBeRemoved(ZT::EditableMotionCurveKey*): pKey",
                "signal void keyAdded(ZT::EditableMotionCurveKey*): pKey",
                "signal void curveCleared(): ",
                "signal void greaterIndexChanged(uint,uint): newGreater previousGreater",
                "slot bool deserialize(boost::property_tree::ptree): tree",
                "slot iterator insert(Index,EditableMotionCurveKey*): pIndex pKey",
                "slot KeysIndexMap releaseAndInsertKeys(KeysIndexMap,KeysIndexMap): toRelease toInsert",
                "slot void remove(iterator): pPosition",
                "slot void remove(Index): pIndex",
                "slot EditableMotionCurveKey* release(Index): pIndex",
                "slot void clear(): ",
                "slot bool translateKey(EditableMotionCurveKey*,Index): pKey pIndexFinal",
                "slot void moveKeys(KeyPosMap): keysPos",
                "slot void reorganizeKeys(KeysIndexMap): keysPos",
                "slot void moveTangents(KeysSet,ZT::TangentSide,QPair<float,float>): tangents side offset",
                "slot void moveTangents(TangentPosMap,ZT::TangentSide): tangentsPos side",
                "slot void setTangentsType(KeySideMap,VQ::Math::Interpolation::InterpolationType): "
                "tangentsSide type",
                "slot void setTangentsType(TangentTypeMap): tangentsType",
                "slot void setKeysSmooth(KeysSet,bool): keys smooth",
                "slot void setKeysSmooth(KeyStateMap): keysSmooth",
                "slot void setKeysSymmetrical(KeysSet,bool): keys symmetrical",
                "slot void setKeysSymmetrical(KeyStateMap): keysSymmetrical",
                "slot void setKeysParam(KeysSet,VQ::Math::Interpolation::InterpolationType,bool,bool): "
                "keys type smooth symmetrical",
                "slot void restoreKeys(TangentTypeMap,TangentPosMap,TangentPosMap,KeyStateMap,KeyStateMap): "
                "tangentsType leftTangentsOffset rightTangentsOffset keysSmooth keysSymmetrical",
                "slot void setTimeUnit(RationalSeconds): pTimeUnit",
                "slot void setFps(int): pFps",
                "slot void setValueLimits(QPair<float,float>): pLimits",
                "slot void setMinValue(float): pMin",
                "slot void setMaxValue(float): pMax",
                "slot void setMaxAbsoluteDerivative(float): pMaxAbsoluteDerivative",
                "slot void updateBezierAutoTangents(): ",
                "private slot void onKeysChanged(): ",
            }));
    }

    void methodsOfTheLayer() {
        QCOMPARE(methods(EditableAnimationLayer::staticMetaObject),
                 QStringList({
                     "signal void nameChanged(QString): pName",
                     "signal void curveChanged(): ",
                     "signal void muteChanged(bool): pMute",
                     "signal void greaterIndexChanged(uint,uint): newGreater previousGreater",
                     "slot void setActuatorName(QString): pActuatorName",
                     "slot void setCurve(EditableMotionCurve*): pCurve",
                     "slot void setMute(bool): pMute",
                 }));
    }

    void methodsOfTheAnimation() {
        QCOMPARE(methods(EditableAnimation::staticMetaObject),
                 QStringList({
                     "signal void layersChanged(): ",
                     "signal void greaterIndexChanged(): ",
                     "slot void push_back(EditableAnimationLayer*): pLayer",
                     "slot iterator insert(iterator,EditableAnimationLayer*): pBefore pLayer",
                     "slot iterator erase(iterator): pPosition",
                     "slot void clear(): ",
                     "private slot void _onGreaterCurveIndexChanged(uint,uint): newGreater previousGreater",
                 }));
    }

    void methodsOfTheMarkers() {
        QCOMPARE(methods(AnimationMarkers::staticMetaObject),
                 QStringList({
                     "signal void selectedIndexChanged(uint): index",
                     "signal void startIndexChanged(uint): index",
                     "signal void endIndexChanged(uint): index",
                     "signal void rangeStartIndexChanged(uint): index",
                     "signal void rangeEndIndexChanged(uint): index",
                     "signal void rangeVisibilityChanged(bool): visible",
                     "slot void setSelectedIndex(uint): index",
                     "slot void setStartIndex(uint): index",
                     "slot void setEndIndex(uint): index",
                     "slot void setRangeStartIndex(uint): index",
                     "slot void setRangeEndIndex(uint): index",
                     "slot void setRangeVisible(bool): visible",
                     "slot void resetStartFrame(): ",
                     "slot void resetEndFrame(): ",
                 }));
    }
};

QTEST_GUILESS_MAIN(MetaObjectTest)
#include "MetaObjectTest.moc"
