#include "SignalScene.h"
#include "commands/ChangeKeyParamCommand.h"
#include "commands/ChangeRangeCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "commands/StretchRangeCommand.h"
#include "model/EditableMotionCurveExceptions.h"

#include <boost/property_tree/ptree.hpp>

namespace Signals {

namespace {

using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;

template <class Command, class... Arguments>
std::unique_ptr<QUndoCommand> make(Arguments... arguments) {
    return std::make_unique<Command>(arguments...);
}

void redo(Scene& s) {
    s.command->redo();
}
void undo(Scene& s) {
    s.command->undo();
}

// The right handle of b is as its neighbours were.
void outdateHandle(Scene& s) {
    s.b()->setValue(4);
    s.c()->setValue(8);
    s.b()->setRightTangentType(Type::bezierAuto);
    s.c()->setValue(80);
}

Section keyOperations() {
    return {"Keys",
            {
                {"setValue(5)", [](Scene& s) { s.b()->setValue(5); }},
                {"setValue() with the value it has", [](Scene& s) { s.b()->setValue(0); }},
                {"setLeftTangentType(linear)", [](Scene& s) { s.b()->setLeftTangentType(Type::linear); }},
                {"setRightTangentType(linear)", [](Scene& s) { s.b()->setRightTangentType(Type::linear); }},
                {"setTangentType(left, linear)",
                 [](Scene& s) { s.b()->setTangentType(Side::left, Type::linear); }},
                {"setRightTangentType(bezierAuto), whose handle is recomputed",
                 [](Scene& s) { s.b()->setRightTangentType(Type::bezierAuto); }},
                {"setLeftTangentOffset()",
                 [](Scene& s) {
                     s.b()->setLeftTangentOffset({-2, 1});
                 }},
                {"setRightTangentOffset()",
                 [](Scene& s) {
                     s.b()->setRightTangentOffset({2, 1});
                 }},
                {"setTangentOffset(right)",
                 [](Scene& s) {
                     s.b()->setTangentOffset(Side::right, {2, 1});
                 }},
                {"setLeftTangentOffset() of a tangent that is not \"bezier\"",
                 [](Scene& s) {
                     s.b()->setLeftTangentOffset({-2, 1});
                 },
                 [](Scene& s) { s.b()->setLeftTangentType(Type::linear); }},
                {"setSmooth(true)", [](Scene& s) { s.b()->setSmooth(true); }},
                {"setSymmetrical(true)", [](Scene& s) { s.b()->setSymmetrical(true); }},
                {"updateBezierAutoTangents() where a handle is out of date",
                 [](Scene& s) { s.b()->updateBezierAutoTangents(); }, outdateHandle},
                {"deserialize() of a smooth key", [](Scene& s) { s.b()->deserialize(s.x()->serialize()); },
                 [](Scene& s) { s.x()->setSmooth(true); }},
            }};
}

Section singleEdits() {
    return {
        "One key of a curve",
        {
            {"insert(20, x)", [](Scene& s) { s.curve->insert(20, s.x()); }},
            {"insert(6, x), where b stands", [](Scene& s) { s.curve->insert(6, s.x()); }},
            {"insert(12, a), of a key that stands elsewhere", [](Scene& s) { s.curve->insert(12, s.a()); }},
            {"remove(10)", [](Scene& s) { s.curve->remove(10); }},
            {"remove(6)", [](Scene& s) { s.curve->remove(6); }},
            {"release(10)", [](Scene& s) { s.curve->release(10); }},
            {"clear()", [](Scene& s) { s.curve->clear(); }},
            {"translateKey(c, 12)", [](Scene& s) { s.curve->translateKey(s.c(), 12); }},
            {"translateKey(c, 6), which is taken", [](Scene& s) { s.curve->translateKey(s.c(), 6); }},
            {"updateBezierAutoTangents()", [](Scene& s) { s.curve->updateBezierAutoTangents(); },
             outdateHandle},
            {"deserialize()", [](Scene& s) { s.curve->deserialize(Curve().serialize()); }},
            {"setTimeUnit(), setFps(), setValueLimits(), setMinValue(), setMaxValue(), "
             "setMaxAbsoluteDerivative()",
             [](Scene& s) {
                 s.curve->setTimeUnit(s.curve->getTimeUnit() * 2);
                 s.curve->setFps(10);
                 s.curve->setValueLimits({0, 1});
                 s.curve->setMinValue(0);
                 s.curve->setMaxValue(1);
                 s.curve->setMaxAbsoluteDerivative(1);
             }},
        }};
}

Section bulkEdits() {
    return {
        "Many keys of a curve",
        {
            {"moveKeys(b to 8 and 1, c to 12 and 1)",
             [](Scene& s) {
                 s.curve->moveKeys({{s.b(), QPointF(8, 1)}, {s.c(), QPointF(12, 1)}});
             }},
            {"moveKeys(c to 6 and 1), which is taken",
             [](Scene& s) {
                 s.curve->moveKeys({{s.c(), QPointF(6, 1)}});
             }},
            {"reorganizeKeys(a to 6, b to 2)",
             [](Scene& s) {
                 s.curve->reorganizeKeys({{s.a(), 6}, {s.b(), 2}});
             }},
            {"reorganizeKeys(b to 2, x to 12), where a stands in the way of b",
             [](Scene& s) {
                 try {
                     s.curve->reorganizeKeys({{s.b(), 2}, {s.x(), 12}});
                 } catch (const ZT::EditableMotionCurveReorganizedFail&) {
                 }
             }},
            {"releaseAndInsertKeys({a from 2}, {x to 6})",
             [](Scene& s) {
                 s.curve->releaseAndInsertKeys({{s.a(), 2}}, {{s.x(), 6}});
             }},
            {"moveTangents({b, c}, right, offset)",
             [](Scene& s) {
                 s.curve->moveTangents(Curve::KeysSet{s.b(), s.c()}, Side::right, {1, 1});
             },
             [](Scene& s) { // Sets have no order: one key shows it.
                 s.b()->setRightTangentOffset({1, 1});
             }},
            {"moveTangents({a: offset, b: offset}, right)",
             [](Scene& s) {
                 s.curve->moveTangents(Curve::TangentPosMap{{s.a(), {1, 1}}, {s.b(), {1, 2}}}, Side::right);
             }},
            {"setTangentsType({a: left, b: right}, linear)",
             [](Scene& s) {
                 s.curve->setTangentsType(Curve::KeySideMap{{s.a(), Side::left}, {s.b(), Side::right}},
                                          Type::linear);
             }},
            {"setTangentsType({a: left linear})",
             [](Scene& s) {
                 s.curve->setTangentsType(Curve::TangentTypeMap{{s.a(), {Side::left, Type::linear}}});
             }},
            {"setKeysSmooth({b}, true)",
             [](Scene& s) { s.curve->setKeysSmooth(Curve::KeysSet{s.b()}, true); }},
            {"setKeysSymmetrical({a: true, b: true})",
             [](Scene& s) {
                 s.curve->setKeysSymmetrical(Curve::KeyStateMap{{s.a(), true}, {s.b(), true}});
             }},
            {"setKeysParam({b}, bezier, smooth, symmetrical)",
             [](Scene& s) { s.curve->setKeysParam({s.b()}, Type::bezier, true, true); }},
            {"restoreKeys(b: right linear, left handle, neither smooth nor symmetrical)",
             [](Scene& s) {
                 s.curve->restoreKeys({{s.b(), {Side::right, Type::linear}}}, {{s.b(), {-1, 1}}},
                                      {{s.b(), {0, 0}}}, {{s.b(), false}}, {{s.b(), false}});
             },
             [](Scene& s) { s.b()->setSmooth(true); }},
            {"moveKeys({})", [](Scene& s) { s.curve->moveKeys({}); }},
            {"reorganizeKeys({})", [](Scene& s) { s.curve->reorganizeKeys({}); }},
            {"releaseAndInsertKeys({}, {})", [](Scene& s) { s.curve->releaseAndInsertKeys({}, {}); }},
            {"moveTangents({}, right, offset)",
             [](Scene& s) {
                 s.curve->moveTangents(Curve::KeysSet{}, Side::right, {1, 1});
             }},
            {"setTangentsType({}, linear)",
             [](Scene& s) { s.curve->setTangentsType(Curve::KeySideMap{}, Type::linear); }},
            {"setKeysSmooth({}, true)", [](Scene& s) { s.curve->setKeysSmooth(Curve::KeysSet{}, true); }},
            {"setKeysSymmetrical({}, true)",
             [](Scene& s) { s.curve->setKeysSymmetrical(Curve::KeysSet{}, true); }},
            {"setKeysParam({}, bezier, smooth, symmetrical)",
             [](Scene& s) { s.curve->setKeysParam({}, Type::bezier, true, true); }},
            {"restoreKeys() of no keys", [](Scene& s) { s.curve->restoreKeys({}, {}, {}, {}, {}); }},
        }};
}

Section layerOperations() {
    return {
        "Layers and the animation",
        {
            {"layer: setActuatorName(\"wrist\")", [](Scene& s) { s.layer->setActuatorName("wrist"); }},
            {"layer: setMute(true)", [](Scene& s) { s.layer->setMute(true); }},
            {"layer: deserialize()", [](Scene& s) { s.layer->deserialize(Layer().serialize()); }},
            {"layer: setCurve(another)", [](Scene& s) { s.layer->setCurve(new Curve); }},
            {"animation: push_back()", [](Scene& s) { s.animation->push_back(new Layer); }},
            {"animation: insert()", [](Scene& s) { s.animation->insert(s.animation->begin(), new Layer); }},
            {"animation: erase()", [](Scene& s) { s.animation->erase(s.animation->begin()); }},
            {"animation: release()", [](Scene& s) { s.animation->release(s.animation->begin()); }},
            {"animation: clear()", [](Scene& s) { s.animation->clear(); }},
            {"animation: deserialize()", [](Scene& s) { s.animation->deserialize(Animation().serialize()); }},
        }};
}

Section markerOperations() {
    return {"Markers",
            {
                {"setSelectedIndex(7)", [](Scene& s) { s.markers().setSelectedIndex(7); }},
                {"setStartIndex(7), past the end", [](Scene& s) { s.markers().setStartIndex(7); }},
                {"setEndIndex(3), before the start", [](Scene& s) { s.markers().setEndIndex(3); },
                 [](Scene& s) { s.markers().setStartIndex(7); }},
                {"setRangeStartIndex(9), past the end", [](Scene& s) { s.markers().setRangeStartIndex(9); }},
                {"setRangeEndIndex(1), before the start", [](Scene& s) { s.markers().setRangeEndIndex(1); }},
                {"setRangeVisible(true)", [](Scene& s) { s.markers().setRangeVisible(true); }},
                {"resetStartFrame()", [](Scene& s) { s.markers().resetStartFrame(); },
                 [](Scene& s) { s.markers().setStartIndex(7); }},
                {"resetEndFrame()", [](Scene& s) { s.markers().resetEndFrame(); }},
            }};
}

Section commandOperations() {
    using namespace ZT::AnimCmd;
    const Step moved = [](Scene& s) {
        s.begin(make<MoveCurveKeysCommand>(MoveCurveKeysCommand::KeyPosMap{{s.c(), QPointF(12, 1)}}, true));
    };
    const Step added = [](Scene& s) { s.begin(make<AddCurveKeysCommand>(s.x(), s.curve, 6U)); };
    const Step removed = [](Scene& s) { s.begin(make<RemoveCurveKeysCommand>(s.c())); };
    const Step replaced = [](Scene& s) {
        using Maps = QMap<Curve*, Curve::KeysIndexMap>;
        s.begin(make<ReplaceCurveKeysCommand>(Maps{{s.curve, {{s.a(), 2}}}}, Maps{{s.curve, {{s.x(), 4}}}}));
    };
    const Step turned = [](Scene& s) {
        s.begin(make<MoveTangentCommand>(s.b(), Side::right, 2.0F, 1.0F, true));
    };
    const Step typed = [](Scene& s) {
        s.begin(make<ChangeInterpTypeCommand>(s.b(), Side::left, Type::linear));
    };
    const Step smoothed = [](Scene& s) { s.begin(make<ChangeSmoothnessCommand>(s.b(), true)); };
    const Step mirrored = [](Scene& s) { s.begin(make<ChangeSymmetryCommand>(s.b(), true)); };
    const Step given = [](Scene& s) {
        s.begin(make<ChangeTangentParamCommand>(QSet<Key*>{s.b()}, Type::linear, false, false));
    };
    const Step bounded = [](Scene& s) {
        s.begin(make<ChangeRangeCommand>(&s.markers(), Curve::KeysIndexMap(), 4U, 12U, true));
    };
    const Step shifted = [](Scene& s) {
        s.begin(make<MoveRangeCommand>(&s.markers(), s.places(), 2U, 8U, 3U, true));
    };
    const Step stretched = [](Scene& s) {
        s.begin(make<StretchRangeCommand>(&s.markers(), s.places(), 2U, 8U, 14U, true, StretchSide::end));
    };
    // Done and undone, so that redo is what is recorded.
    const auto again = [](const Step& done) {
        return [done](Scene& s) {
            done(s);
            s.command->undo();
        };
    };
    return {"Commands",
            {
                {"MoveCurveKeysCommand (c to 12 and 1): redo", redo, again(moved)},
                {"MoveCurveKeysCommand: undo", undo, moved},
                {"AddCurveKeysCommand (x to 6, where b stands): redo", redo, again(added)},
                {"AddCurveKeysCommand: undo", undo, added},
                {"RemoveCurveKeysCommand (c): redo", redo, again(removed)},
                {"RemoveCurveKeysCommand: undo", undo, removed},
                {"ReplaceCurveKeysCommand (a by x at 4): redo", redo, again(replaced)},
                {"ReplaceCurveKeysCommand: undo", undo, replaced},
                {"MoveTangentCommand (b, right): redo", redo, again(turned)},
                {"MoveTangentCommand: undo", undo, turned},
                {"ChangeInterpTypeCommand (b, left, linear): redo", redo, again(typed)},
                {"ChangeInterpTypeCommand: undo", undo, typed},
                {"ChangeSmoothnessCommand (b): redo", redo, again(smoothed)},
                {"ChangeSmoothnessCommand: undo", undo, smoothed},
                {"ChangeSymmetryCommand (b): redo", redo, again(mirrored)},
                {"ChangeSymmetryCommand: undo", undo, mirrored},
                {"ChangeTangentParamCommand (b, linear): redo", redo, again(given)},
                {"ChangeTangentParamCommand: undo", undo, given},
                {"ChangeRangeCommand ([2, 8] to [4, 12]): redo", redo, again(bounded)},
                {"ChangeRangeCommand: undo", undo, bounded},
                {"MoveRangeCommand ([2, 8] to 3): redo", redo, again(shifted)},
                {"MoveRangeCommand: undo", undo, shifted},
                {"StretchRangeCommand ([2, 8] to [2, 14]): redo", redo, again(stretched)},
                {"StretchRangeCommand: undo", undo, stretched},
            }};
}

} // namespace

std::vector<Section> sections() {
    return {keyOperations(),   singleEdits(),      bulkEdits(),
            layerOperations(), markerOperations(), commandOperations()};
}

} // namespace Signals
