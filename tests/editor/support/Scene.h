#pragma once

#include "base/animation/AnimationXml.h"
#include "document/AnimationData.h"
#include "document/Document.h"
#include "document/KeySelection.h"
#include "tests/base/Records.h"
#include "tests/editor/support/DocumentState.h"

#include <QStringList>
#include <QtTest>

#include <initializer_list>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

/// What the tests of the editor share: a document with layers, and the walk through undo and redo that every
/// edit must stand.
namespace EditorScene {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Keys = Editor::KeySelection::Keys;
using Record = VQ::Math::Interpolation::Key;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;

inline Record record(float value, Type left = Type::linear, Type right = Type::linear,
                     VQ::Math::Position2D leftHandle = {}, VQ::Math::Position2D rightHandle = {}) {
    return Records::makeKey(value, left, leftHandle, right, rightHandle);
}

inline Record bezier(float value, VQ::Math::Position2D left, VQ::Math::Position2D right) {
    return record(value, Type::bezier, Type::bezier, left, right);
}

inline Editor::AnimationData animationOf(const QStringList& names) {
    Editor::AnimationData data;
    data.animation = std::make_unique<ZT::EditableAnimation>();
    for (const QString& name : names) {
        auto* const layer = new ZT::EditableAnimationLayer;
        layer->setActuatorName(name);
        data.animation->push_back(layer);
    }
    return data;
}

/// A document with the layers "arm", "leg" and "head", all without keys.
class Scene {
public:
    explicit Scene(const QStringList& names = {"arm", "leg", "head"}) {
        document.replace(animationOf(names), QString());
    }

    Editor::History& history() { return document.history(); }
    ZT::AnimationMarkers& markers() { return document.markers(); }
    Curve& curve(int layer = 0) { return *document.layer(layer)->getCurve(); }
    /// Of the layers, in their order.
    QString names() {
        QStringList texts;
        for (const ZT::EditableAnimationLayer* const layer : document.animation()) {
            texts.append(layer->getActuatorName());
        }
        return texts.join(' ');
    }
    QString frames(int layer = 0) { return Snapshot::frames(curve(layer)); }
    DocumentState state() { return DocumentState(document); }
    /// What is other than it was; empty where nothing is.
    QString changesSince(const DocumentState& before) { return state().differenceFrom(before); }
    std::string tree() {
        std::ostringstream stream;
        VQ::Animation::writeAnimationXml(stream, document.tree());
        return stream.str();
    }

    /// A key that is there from the beginning, outside the history.
    Key* add(int layer, unsigned int frame, const Record& prototype = record(0.0F)) {
        auto* const key = new Key(prototype);
        curve(layer).insert(frame, key);
        curve(layer).updateBezierAutoTangents();
        return key;
    }
    /// Linear keys whose values are their frames.
    Keys add(int layer, std::initializer_list<unsigned int> atFrames) {
        Keys keys;
        for (const unsigned int frame : atFrames) {
            keys.insert(add(layer, frame, record(static_cast<float>(frame))));
        }
        return keys;
    }
    Key* key(int layer, unsigned int frame) { return curve(layer).getKey(frame); }

    void setRange(unsigned int start, unsigned int end) {
        markers().setRangeStartIndex(start);
        markers().setRangeEndIndex(end);
        markers().setRangeVisible(true);
    }
    QString range() {
        return QString("%1-%2").arg(markers().rangeStartIndex()).arg(markers().rangeEndIndex());
    }

    /// Lets go of layers' keys: locked or hidden.
    void lock(int layer) {
        Editor::LayerLook look = document.look(layer);
        look.isLocked = true;
        document.setLook(layer, look);
    }
    void hide(int layer) {
        Editor::LayerLook look = document.look(layer);
        look.isVisible = false;
        document.setLook(layer, look);
    }

    Editor::Document document;
};

/// Does the edit, which must leave one entry, and goes undo, redo, undo, redo: each must give the whole state
/// from before and after. Ends with the edit done.
template <class Edit>
void checkEdit(Scene& scene, Edit edit) {
    const int entries = scene.history().index();
    const DocumentState before = scene.state();
    edit();
    QCOMPARE(scene.history().index(), entries + 1);
    QCOMPARE(scene.history().count(), entries + 1);
    QVERIFY(!scene.history().undoText().isEmpty());
    const DocumentState after = scene.state();
    QVERIFY2(!after.differenceFrom(before).isEmpty(), "the edit changed nothing");
    for (int time = 0; time < 2; ++time) {
        scene.history().undo();
        QCOMPARE(scene.changesSince(before), QString());
        scene.history().redo();
        QCOMPARE(scene.changesSince(after), QString());
    }
}

/// Does what must neither change anything nor leave an entry.
template <class Edit>
void checkNothingHappens(Scene& scene, Edit edit) {
    const int entries = scene.history().count();
    const int position = scene.history().index();
    const DocumentState before = scene.state();
    edit();
    QCOMPARE(scene.history().count(), entries);
    QCOMPARE(scene.history().index(), position);
    QCOMPARE(scene.changesSince(before), QString());
}

/// The text of the std::runtime_error that an action throws; empty when it throws none.
template <class Action>
QString problemOf(Action action) {
    try {
        action();
        return {};
    } catch (const std::runtime_error& error) {
        return QString::fromUtf8(error.what());
    }
}

} // namespace EditorScene
