#include "model/EditableMotionCurveExceptions.h"
#include "tests/faults/FaultOperations.h"

#include <boost/property_tree/ptree.hpp>

namespace {

using Curve = FaultScene::Curve;
using Key = FaultScene::Key;
using Scene = FaultScene;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;

void nothing(Scene& /*scene*/) {}

void receiveAll(Scene& scene, const Curve::KeysIndexMap& keys) {
    for (auto key = keys.keyBegin(); key != keys.keyEnd(); ++key) {
        scene.receive(*key);
    }
}

void reorganize(Scene& scene, const Curve::KeysIndexMap& frames) {
    try {
        scene.curve().reorganizeKeys(frames);
    } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
        for (Key* const key : failure.failedKeys) {
            scene.receive(key);
        }
    }
}

QPointF position(const Key* key, double frames, double value) {
    return {ZT::index(key) + frames, static_cast<double>(key->getValue()) + value};
}

} // namespace

std::vector<FaultOperation> faultyEdits() {
    const auto moveAll = [](double frames, double value) {
        return [=](Scene& s) {
            s.curve().moveKeys(
                s.forEachStanding<QPointF>([=](Key* key) { return position(key, frames, value); }));
        };
    };
    const auto handles = [](Scene& s) {
        return s.forEachStanding<QPair<float, float>>([](Key*) { return QPair<float, float>(0.5F, 1.5F); });
    };
    const auto flags = [](Scene& s) { return s.forEachStanding<bool>([](Key*) { return true; }); };
    const auto types = [](Scene& s) {
        Curve::TangentTypeMap map;
        for (Key* const key : s.standing()) {
            map.insert(key, {Side::left, Type::bezier});
        }
        return map;
    };
    return {
        {"insert", Law::carriedThrough, nothing, [](Scene& s) { s.curve().insert(9, s.key(8)); }},
        {"insert onto a key", Law::eitherWay, nothing, [](Scene& s) { s.curve().insert(8, s.key(8)); }},
        {"insert a key that stands elsewhere", Law::eitherWay, nothing,
         [](Scene& s) { s.curve().insert(4, s.key(3)); }},
        {"deserialize of a key", Law::carriedThrough,
         [](Scene& s) {
             s.key(8)->setSymmetrical(true);
             s.key(8)->setSmooth(true);
         },
         [](Scene& s) { s.key(1)->deserialize(s.key(8)->serialize()); }},
        {"remove", Law::eitherWay, nothing, [](Scene& s) { s.curve().remove(8U); }},
        {"release", Law::takenBack, nothing, [](Scene& s) { s.receive(s.curve().release(8)); }},
        {"clear", Law::carriedThrough, nothing, [](Scene& s) { s.curve().clear(); }},
        {"translateKey", Law::carriedThrough, nothing,
         [](Scene& s) { s.curve().translateKey(s.key(1), 20); }},
        {"moveKeys in frames and value", Law::carriedThrough, nothing, moveAll(3, 0.5)},
        {"moveKeys in value", Law::carriedThrough, nothing, moveAll(0, 0.5)},
        {"reorganizeKeys", Law::carriedThrough, nothing,
         [](Scene& s) {
             reorganize(s, {{s.key(0), 4}, {s.key(1), 2}, {s.key(3), 11}, {s.key(8), 8}});
         }},
        {"reorganizeKeys with collisions",
         Law::carriedThrough,
         nothing,
         [](Scene& s) {
             reorganize(s, {{s.key(0), 4}, {s.key(3), 6}, {s.key(8), 6}, {s.key(9), 12}});
         },
         {},
         true},
        {"releaseAndInsertKeys", Law::takenBack, nothing,
         [](Scene& s) {
             receiveAll(s, s.curve().releaseAndInsertKeys({{s.key(0), 2}, {s.key(3), 8}},
                                                          {{s.key(8), 2}, {s.key(9), 4}, {s.key(10), 4}}));
         }},
        {"releaseAndInsertKeys in another order than that of frames", Law::takenBack,
         [](Scene& s) {
             reorganize(s, {{s.key(0), 8}, {s.key(1), 6}, {s.key(2), 4}, {s.key(3), 2}});
         },
         [](Scene& s) {
             receiveAll(s, s.curve().releaseAndInsertKeys({{s.key(0), 8}, {s.key(2), 4}, {s.key(3), 2}},
                                                          {{s.key(8), 2}, {s.key(9), 6}}));
         }},
        {"moveTangents of a set", Law::carriedThrough, nothing,
         [](Scene& s) {
             s.curve().moveTangents(s.standing(), Side::left, {-0.5F, 2.0F});
         }},
        {"moveTangents of a map", Law::carriedThrough, nothing,
         [=](Scene& s) { s.curve().moveTangents(handles(s), Side::right); }},
        {"setTangentsType", Law::carriedThrough, nothing,
         [=](Scene& s) { s.curve().setTangentsType(types(s)); }},
        {"setKeysSmooth", Law::carriedThrough, nothing,
         [](Scene& s) { s.curve().setKeysSmooth(s.standing(), true); }},
        {"setKeysSymmetrical", Law::carriedThrough, nothing,
         [=](Scene& s) { s.curve().setKeysSymmetrical(flags(s)); }},
        {"setKeysParam", Law::carriedThrough, nothing,
         [](Scene& s) { s.curve().setKeysParam(s.standing(), Type::bezierAuto, true, true); }},
        {"restoreKeys", Law::carriedThrough, nothing,
         [=](Scene& s) { s.curve().restoreKeys(types(s), handles(s), handles(s), flags(s), flags(s)); }},
        {"setValue", Law::carriedThrough, nothing, [](Scene& s) { s.key(1)->setValue(50.0F); }},
        {"setTangentType", Law::carriedThrough, nothing,
         [](Scene& s) { s.key(1)->setTangentType(Side::right, Type::bezierAuto); }},
        {"updateBezierAutoTangents", Law::carriedThrough, [](Scene& s) { s.key(1)->setValue(50.0F); },
         [](Scene& s) { s.curve().updateBezierAutoTangents(); }},
        {"setRangeStartIndex", Law::carriedThrough, nothing,
         [](Scene& s) { s.markers().setRangeStartIndex(7); }},
        {"setRangeEndIndex", Law::carriedThrough, [](Scene& s) { s.markers().setRangeStartIndex(7); },
         [](Scene& s) { s.markers().setRangeEndIndex(3); }},
        {"setStartIndex", Law::carriedThrough, nothing, [](Scene& s) { s.markers().setStartIndex(7); }},
        {"setEndIndex", Law::carriedThrough, [](Scene& s) { s.markers().setStartIndex(7); },
         [](Scene& s) { s.markers().setEndIndex(3); }},
    };
}
