#include "OneOfEach.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <boost/property_tree/ptree.hpp>

#include <memory>

using VQ::Math::Interpolation::InterpolationType;
using ZT::AnimationMarkers;
using ZT::EditableAnimation;
using ZT::EditableAnimationLayer;
using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

namespace {

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

} // namespace

class CallingByNameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theKeyCanBeEditedByName() {
        const OneOfEach model;
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
        const OneOfEach model;
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
        const OneOfEach model;
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
        const OneOfEach model;
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
        const OneOfEach model;
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
};

QTEST_GUILESS_MAIN(CallingByNameTest)
#include "CallingByNameTest.moc"
