#include "base/animation/Animation.h"
#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurve.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <type_traits>

using VQ::Animation::SerializationInterface;
using VQ::Math::Interpolation::InterpolationType;
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

/// One object of each class, each in its parent.
struct Model {
    Model() {
        animation->push_back(layer);
        curve->insert(3, key);
    }

    QObject& object(const QString& name) const {
        const QMap<QString, QObject*> objects{
            {"key", key}, {"curve", curve}, {"layer", layer}, {"animation", animation}, {"markers", markers}};
        return *objects.value(name);
    }

    std::unique_ptr<EditableAnimation> owner = std::make_unique<EditableAnimation>();
    EditableAnimation* animation = owner.get();
    AnimationMarkers* markers = animation->getMarkers();
    EditableAnimationLayer* layer = new EditableAnimationLayer;
    EditableMotionCurve* curve = layer->getCurve();
    EditableMotionCurveKey* key = new EditableMotionCurveKey;
};

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
        texts.append(access +
                     (isSlot     ? "slot "
                      : isSignal ? "signal "
                                 : "other ") +
                     method.typeName() + ' ' + method.methodSignature() + ": " +
                     method.parameterNames().join(' '));
    }
    return texts;
}

template <class T>
QArgument<T> as(const char* type, const T& value) {
    return QArgument<T>(type, value);
}

/// Calls slots by name and remembers which.
class Caller {
public:
    explicit Caller(QObject& object)
        : _object(object) {}

    template <class... Arguments>
    bool call(const char* name, const Arguments&... arguments) {
        return callFor(QGenericReturnArgument(), name, arguments...);
    }

    template <class... Arguments>
    bool callFor(QGenericReturnArgument result, const char* name, const Arguments&... arguments) {
        QByteArrayList types;
        (types.append(arguments.name()), ...);
        _called.append(QMetaObject::normalizedSignature(name + ('(' + types.join(',') + ')')));
        return QMetaObject::invokeMethod(&_object, name, Qt::DirectConnection, result, arguments...);
    }

    /// The slots of the object's class that nobody has called yet.
    QByteArrayList missing() const {
        QByteArrayList slotsLeft;
        const QMetaObject& meta = *_object.metaObject();
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            if (method.methodType() == QMetaMethod::Slot && !_called.contains(method.methodSignature())) {
                slotsLeft.append(method.methodSignature());
            }
        }
        return slotsLeft;
    }

private:
    QObject& _object;
    QByteArrayList _called;
};

/// A value to send for each type that a signal carries; two frames of one signal differ.
QVariant sample(int type, int position) {
    if (type == qMetaTypeId<EditableMotionCurveKey*>()) {
        static EditableMotionCurveKey key;
        return QVariant::fromValue(&key);
    }
    if (type == qMetaTypeId<QPair<float, float>>()) {
        return QVariant::fromValue(qMakePair(-1.5F, 2.5F));
    }
    switch (type) {
    case QMetaType::Bool:
        return true;
    case QMetaType::Float:
        return 3.25F;
    case QMetaType::UInt:
        return 4294967290U + static_cast<unsigned int>(position);
    case QMetaType::QString:
        return QString::fromUtf8("Gr\xc3\xb6\xc3\x9f"
                                 "e");
    default:
        return {};
    }
}

QString show(const QVariant& value) {
    if (value.userType() == qMetaTypeId<EditableMotionCurveKey*>()) {
        return QString::number(reinterpret_cast<quintptr>(value.value<EditableMotionCurveKey*>()));
    }
    if (value.userType() == qMetaTypeId<QPair<float, float>>()) {
        const auto pair = value.value<QPair<float, float>>();
        return QString("%1 %2").arg(static_cast<double>(pair.first)).arg(static_cast<double>(pair.second));
    }
    return value.toString();
}

} // namespace

/// Hears any signal of the model.
class Receiver : public QObject {
    Q_OBJECT

public:
    QStringList texts;

public Q_SLOTS:
    void hear() { texts.append(""); }
    void hear(bool value) { texts.append(show(value)); }
    void hear(float value) { texts.append(show(value)); }
    void hear(unsigned int value) { texts.append(show(value)); }
    void hear(unsigned int first, unsigned int second) { texts.append(show(first) + ' ' + show(second)); }
    void hear(const QString& value) { texts.append(value); }
    void hear(QPair<float, float> value) { texts.append(show(QVariant::fromValue(value))); }
    void hear(ZT::EditableMotionCurveKey* value) { texts.append(show(QVariant::fromValue(value))); }
};

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
        const Model model;
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
        const Model model;
        QVERIFY(model.object(name).qt_metacast(base) == nullptr);
    }

    void theQObjectPartComesFirstAndTheRecordSecond() {
        const Model model;
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

    // Calls by name

    void theKeyCanBeEditedByName() {
        const Model model;
        EditableMotionCurveKey& key = *model.key;
        Caller caller(key);
        const auto left = ZT::TangentSide::left;
        const auto right = ZT::TangentSide::right;
        const char* const type = "VQ::Math::Interpolation::InterpolationType";
        const char* const pair = "QPair<float,float>";
        QVERIFY(caller.call("setValue", Q_ARG(float, 2.5F)));
        QCOMPARE(key.getValue(), 2.5F);
        QVERIFY(caller.call("setLeftTangentType", as(type, InterpolationType::bezier)));
        QCOMPARE(key.getTangentType(left), InterpolationType::bezier);
        QVERIFY(caller.call("setLeftTangentOffset", as(pair, qMakePair(-1.0F, 2.0F))));
        QCOMPARE(key.getTangentOffset(left), qMakePair(-1.0F, 2.0F));
        QVERIFY(caller.call("setRightTangentType", as(type, InterpolationType::bezier)));
        QCOMPARE(key.getTangentType(right), InterpolationType::bezier);
        QVERIFY(caller.call("setRightTangentOffset", as(pair, qMakePair(3.0F, 4.0F))));
        QCOMPARE(key.getTangentOffset(right), qMakePair(3.0F, 4.0F));
        QVERIFY(
            caller.call("setTangentOffset", as("ZT::TangentSide", left), as(pair, qMakePair(-5.0F, 6.0F))));
        QCOMPARE(key.getTangentOffset(left), qMakePair(-5.0F, 6.0F));
        QVERIFY(caller.call("setSmooth", Q_ARG(bool, true)));
        QVERIFY(key.isSmooth());
        QVERIFY(caller.call("setSymmetrical", Q_ARG(bool, true)));
        QVERIFY(key.isSymmetrical());
        QVERIFY(
            caller.call("setTangentType", as("ZT::TangentSide", right), as(type, InterpolationType::linear)));
        QCOMPARE(key.getTangentType(right), InterpolationType::linear);
        bool changed = true;
        QVERIFY(caller.callFor(Q_RETURN_ARG(bool, changed), "updateBezierAutoTangents"));
        QVERIFY(!changed);
        QCOMPARE(caller.missing(), QByteArrayList());
    }

    void theCurveCanBeEditedByName() {
        using Index = EditableMotionCurve::Index;
        using KeyPosMap = EditableMotionCurve::KeyPosMap;
        using KeySideMap = EditableMotionCurve::KeySideMap;
        using KeyStateMap = EditableMotionCurve::KeyStateMap;
        using KeysIndexMap = EditableMotionCurve::KeysIndexMap;
        using KeysSet = EditableMotionCurve::KeysSet;
        using RationalSeconds = EditableMotionCurve::RationalSeconds;
        using TangentPosMap = EditableMotionCurve::TangentPosMap;
        using TangentTypeMap = EditableMotionCurve::TangentTypeMap;
        using iterator = EditableMotionCurve::iterator;
        const Model model;
        EditableMotionCurve& curve = *model.curve;
        EditableMotionCurveKey* const key = model.key;
        Caller caller(curve);
        const auto left = ZT::TangentSide::left;
        const auto right = ZT::TangentSide::right;
        const char* const side = "ZT::TangentSide";
        const char* const type = "VQ::Math::Interpolation::InterpolationType";
        const char* const pair = "QPair<float,float>";

        QVERIFY(caller.call("setTangentsType", Q_ARG(KeySideMap, KeySideMap({{key, left}})),
                            as(type, InterpolationType::bezier)));
        QCOMPARE(key->getTangentType(left), InterpolationType::bezier);
        QVERIFY(
            caller.call("setTangentsType",
                        Q_ARG(TangentTypeMap, TangentTypeMap({{key, {right, InterpolationType::bezier}}}))));
        QCOMPARE(key->getTangentType(right), InterpolationType::bezier);
        QVERIFY(caller.call("moveTangents", Q_ARG(KeysSet, KeysSet({key})), as(side, left),
                            as(pair, qMakePair(-1.0F, 2.0F))));
        QCOMPARE(key->getTangentOffset(left), qMakePair(-1.0F, 2.0F));
        QVERIFY(caller.call("moveTangents", Q_ARG(TangentPosMap, TangentPosMap({{key, {3.0F, 4.0F}}})),
                            as(side, right)));
        QCOMPARE(key->getTangentOffset(right), qMakePair(3.0F, 4.0F));
        QVERIFY(caller.call("setKeysSmooth", Q_ARG(KeysSet, KeysSet({key})), Q_ARG(bool, true)));
        QVERIFY(key->isSmooth());
        QVERIFY(caller.call("setKeysSmooth", Q_ARG(KeyStateMap, KeyStateMap({{key, false}}))));
        QVERIFY(!key->isSmooth());
        QVERIFY(caller.call("setKeysSymmetrical", Q_ARG(KeysSet, KeysSet({key})), Q_ARG(bool, true)));
        QVERIFY(key->isSymmetrical());
        QVERIFY(caller.call("setKeysSymmetrical", Q_ARG(KeyStateMap, KeyStateMap({{key, false}}))));
        QVERIFY(!key->isSymmetrical());
        QVERIFY(caller.call("setKeysParam", Q_ARG(KeysSet, KeysSet({key})),
                            as(type, InterpolationType::linear), Q_ARG(bool, false), Q_ARG(bool, false)));
        QCOMPARE(key->getTangentType(left), InterpolationType::linear);
        QVERIFY(caller.call("restoreKeys",
                            Q_ARG(TangentTypeMap, TangentTypeMap({{key, {left, InterpolationType::bezier}}})),
                            Q_ARG(TangentPosMap, TangentPosMap({{key, {-7.0F, 1.0F}}})),
                            Q_ARG(TangentPosMap, TangentPosMap({{key, {7.0F, 1.0F}}})),
                            Q_ARG(KeyStateMap, KeyStateMap({{key, false}})),
                            Q_ARG(KeyStateMap, KeyStateMap({{key, false}}))));
        QCOMPARE(key->getTangentOffset(left), qMakePair(-7.0F, 1.0F));
        QVERIFY(caller.call("updateBezierAutoTangents"));
        QSignalSpy keysChanged(&curve, &EditableMotionCurve::keysChanged);
        QVERIFY(caller.call("onKeysChanged"));
        QCOMPARE(keysChanged.count(), 1);

        QVERIFY(caller.call("setTimeUnit", Q_ARG(RationalSeconds, RationalSeconds(2))));
        QVERIFY(caller.call("setFps", Q_ARG(int, 50)));
        QVERIFY(caller.call("setValueLimits", as(pair, qMakePair(0.0F, 1.0F))));
        QVERIFY(caller.call("setMinValue", Q_ARG(float, 0.0F)));
        QVERIFY(caller.call("setMaxValue", Q_ARG(float, 1.0F)));
        QVERIFY(caller.call("setMaxAbsoluteDerivative", Q_ARG(float, 1.0F)));

        bool success = false;
        QVERIFY(caller.callFor(Q_RETURN_ARG(bool, success), "translateKey",
                               Q_ARG(EditableMotionCurveKey*, key), Q_ARG(Index, 4U)));
        QVERIFY(success);
        QCOMPARE(ZT::index(key), 4U);
        QVERIFY(caller.call("moveKeys", Q_ARG(KeyPosMap, KeyPosMap({{key, QPointF(5.0, 1.5)}}))));
        QCOMPARE(ZT::index(key), 5U);
        QVERIFY(caller.call("reorganizeKeys", Q_ARG(KeysIndexMap, KeysIndexMap({{key, 6U}}))));
        QCOMPARE(ZT::index(key), 6U);

        iterator position = curve.end();
        auto* const second = new EditableMotionCurveKey;
        QVERIFY(caller.callFor(Q_RETURN_ARG(iterator, position), "insert", Q_ARG(Index, 9U),
                               Q_ARG(EditableMotionCurveKey*, second)));
        QCOMPARE(position->second, second);
        KeysIndexMap left6;
        auto* const third = new EditableMotionCurveKey;
        QVERIFY(caller.callFor(Q_RETURN_ARG(KeysIndexMap, left6), "releaseAndInsertKeys",
                               Q_ARG(KeysIndexMap, KeysIndexMap({{key, 6U}})),
                               Q_ARG(KeysIndexMap, KeysIndexMap({{third, 12U}}))));
        const std::unique_ptr<EditableMotionCurveKey> releasedKey(key);
        QCOMPARE(left6, KeysIndexMap({{key, 6U}}));
        QCOMPARE(curve.getKey(12), third);
        EditableMotionCurveKey* released = nullptr;
        QVERIFY(
            caller.callFor(Q_RETURN_ARG(EditableMotionCurveKey*, released), "release", Q_ARG(Index, 12U)));
        const std::unique_ptr<EditableMotionCurveKey> releasedThird(third);
        QCOMPARE(released, third);
        QVERIFY(caller.call("remove", Q_ARG(iterator, position)));
        QVERIFY(curve.isIndexAvailable(9));
        curve.insert(1, new EditableMotionCurveKey);
        curve.insert(2, new EditableMotionCurveKey);
        QVERIFY(caller.call("remove", Q_ARG(Index, 1U)));
        QVERIFY(curve.isIndexAvailable(1));
        const boost::property_tree::ptree tree = curve.serialize();
        QVERIFY(caller.call("clear"));
        QVERIFY(curve.isIndexAvailable(2));
        success = false;
        QVERIFY(caller.callFor(Q_RETURN_ARG(bool, success), "deserialize",
                               Q_ARG(boost::property_tree::ptree, tree)));
        QVERIFY(success);
        QVERIFY(!curve.isIndexAvailable(2));
        QCOMPARE(caller.missing(), QByteArrayList());
    }

    void theLayerCanBeEditedByName() {
        const Model model;
        Caller caller(*model.layer);
        QVERIFY(caller.call("setActuatorName", Q_ARG(QString, "wrist")));
        QCOMPARE(model.layer->getActuatorName(), QString("wrist"));
        QVERIFY(caller.call("setMute", Q_ARG(bool, true)));
        QVERIFY(model.layer->isMute());
        auto* const curve = new EditableMotionCurve;
        QVERIFY(caller.call("setCurve", Q_ARG(EditableMotionCurve*, curve)));
        QCOMPARE(model.layer->getCurve(), curve);
        QCOMPARE(caller.missing(), QByteArrayList());
    }

    void theAnimationCanBeEditedByName() {
        using iterator = EditableAnimation::iterator;
        const Model model;
        EditableAnimation& animation = *model.animation;
        Caller caller(animation);
        auto* const last = new EditableAnimationLayer;
        QVERIFY(caller.call("push_back", Q_ARG(EditableAnimationLayer*, last)));
        QCOMPARE(animation[1], last);
        auto* const first = new EditableAnimationLayer;
        iterator position = animation.end();
        QVERIFY(caller.callFor(Q_RETURN_ARG(iterator, position), "insert", Q_ARG(iterator, animation.begin()),
                               Q_ARG(EditableAnimationLayer*, first)));
        QCOMPARE(animation[0], first);
        QCOMPARE(*position, first);
        QVERIFY(
            caller.callFor(Q_RETURN_ARG(iterator, position), "erase", Q_ARG(iterator, animation.begin())));
        QCOMPARE(*position, model.layer);
        QCOMPARE(animation[0], model.layer);
        QSignalSpy greaterIndexChanged(&animation, &EditableAnimation::greaterIndexChanged);
        QVERIFY(
            caller.call("_onGreaterCurveIndexChanged", Q_ARG(unsigned int, 30U), Q_ARG(unsigned int, 3U)));
        QCOMPARE(greaterIndexChanged.count(), 1);
        QVERIFY(caller.call("clear"));
        QCOMPARE(animation[0], nullptr);
        QCOMPARE(caller.missing(), QByteArrayList());
    }

    void theMarkersCanBeEditedByName() {
        const Model model;
        AnimationMarkers& markers = *model.markers;
        Caller caller(markers);
        QVERIFY(caller.call("setSelectedIndex", Q_ARG(unsigned int, 2U)));
        QCOMPARE(markers.selectedIndex(), 2U);
        QVERIFY(caller.call("setStartIndex", Q_ARG(unsigned int, 4U)));
        QCOMPARE(markers.startIndex(), 4U);
        QVERIFY(caller.call("setEndIndex", Q_ARG(unsigned int, 5U)));
        QCOMPARE(markers.endIndex(), 5U);
        QVERIFY(caller.call("setRangeStartIndex", Q_ARG(unsigned int, 6U)));
        QCOMPARE(markers.rangeStartIndex(), 6U);
        QVERIFY(caller.call("setRangeEndIndex", Q_ARG(unsigned int, 7U)));
        QCOMPARE(markers.rangeEndIndex(), 7U);
        QVERIFY(caller.call("setRangeVisible", Q_ARG(bool, true)));
        QVERIFY(markers.isRangeVisible());
        QVERIFY(caller.call("resetStartFrame"));
        QCOMPARE(markers.startIndex(), 1U);
        QVERIFY(caller.call("resetEndFrame"));
        QCOMPARE(markers.endIndex(), 3U);
        QCOMPARE(caller.missing(), QByteArrayList());
    }

    // Signals

    void signalsCanBeSpiedOnAndQueued_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("index");
        const Model model;
        for (const char* const name : {"key", "curve", "layer", "animation", "markers"}) {
            const QMetaObject& meta = *model.object(name).metaObject();
            for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
                if (meta.method(i).methodType() == QMetaMethod::Signal) {
                    QTest::addRow("%s.%s", name, meta.method(i).methodSignature().constData()) << name << i;
                }
            }
        }
    }
    void signalsCanBeSpiedOnAndQueued() {
        QFETCH(QString, name);
        QFETCH(int, index);
        const Model model;
        QObject& sender = model.object(name);
        const QMetaMethod signal = sender.metaObject()->method(index);
        QSignalSpy spy(&sender, signal);
        QVERIFY(spy.isValid());
        Receiver receiver;
        const QByteArray slot = "hear(" + signal.parameterTypes().join(',') + ')';
        const int slotIndex = Receiver::staticMetaObject.indexOfSlot(QMetaObject::normalizedSignature(slot));
        QVERIFY2(slotIndex >= 0, slot);
        QVERIFY(QMetaObject::connect(&sender, index, &receiver, slotIndex, Qt::QueuedConnection));

        QVariantList values;
        QStringList texts;
        for (int i = 0; i < signal.parameterCount(); ++i) {
            QVERIFY(signal.parameterType(i) != QMetaType::UnknownType);
            values.append(sample(signal.parameterType(i), i));
            QVERIFY(values.last().isValid());
            texts.append(show(values.last()));
        }
        const auto argument = [&](int i) {
            return i < values.size() ? QGenericArgument(values.at(i).typeName(), values.at(i).constData())
                                     : QGenericArgument();
        };
        QVERIFY(signal.invoke(&sender, Qt::DirectConnection, argument(0), argument(1)));

        QCOMPARE(spy.count(), 1);
        QStringList spied;
        for (const QVariant& value : spy.first()) {
            spied.append(show(value));
        }
        QCOMPARE(spied, texts);
        QCOMPARE(receiver.texts, QStringList());
        QCoreApplication::processEvents();
        QCOMPARE(receiver.texts, QStringList(texts.join(' ')));
    }
};

QTEST_GUILESS_MAIN(MetaObjectTest)

#include "MetaObjectTest.moc"
