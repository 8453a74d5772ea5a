#pragma once

#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurve.h"
#include "model/EditableMotionCurveKey.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

/// Writes the signals of any number of model objects into one sequence, so that their order across objects is
/// compared as text: "a.indexChanged(4), curve.keysChanged(), layer.curveChanged()".
class SignalRecorder {
public:
    void watch(ZT::EditableMotionCurveKey& key, const QString& name) {
        using Key = ZT::EditableMotionCurveKey;
        _keyNames.insert(&key, name);
        on(key, &Key::valueChanged, name, "valueChanged");
        on(key, &Key::tangentsChanged, name, "tangentsChanged");
        on(key, &Key::smoothChanged, name, "smoothChanged");
        on(key, &Key::symmetricalChanged, name, "symmetricalChanged");
        on(key, &Key::indexChanged, name, "indexChanged");
    }

    void watch(ZT::EditableMotionCurve& curve, const QString& name = "curve") {
        using Curve = ZT::EditableMotionCurve;
        on(curve, &Curve::keysChanged, name, "keysChanged");
        on(curve, &Curve::timeUnitChanged, name, "timeUnitChanged");
        on(curve, &Curve::valueLimitsChanged, name, "valueLimitsChanged");
        on(curve, &Curve::maxAbsoluteDerivativeChanged, name, "maxAbsoluteDerivativeChanged");
        on(curve, &Curve::keyAboutToBeRemoved, name, "keyAboutToBeRemoved");
        on(curve, &Curve::keyAdded, name, "keyAdded");
        on(curve, &Curve::curveCleared, name, "curveCleared");
        on(curve, &Curve::greaterIndexChanged, name, "greaterIndexChanged");
    }

    void watch(ZT::EditableAnimationLayer& layer, const QString& name = "layer") {
        using Layer = ZT::EditableAnimationLayer;
        on(layer, &Layer::nameChanged, name, "nameChanged");
        on(layer, &Layer::curveChanged, name, "curveChanged");
        on(layer, &Layer::muteChanged, name, "muteChanged");
        on(layer, &Layer::greaterIndexChanged, name, "greaterIndexChanged");
    }

    void watch(ZT::EditableAnimation& animation, const QString& name = "animation") {
        using Animation = ZT::EditableAnimation;
        on(animation, &Animation::layersChanged, name, "layersChanged");
        on(animation, &Animation::greaterIndexChanged, name, "greaterIndexChanged");
    }

    void watch(ZT::AnimationMarkers& markers, const QString& name = "markers") {
        using Markers = ZT::AnimationMarkers;
        on(markers, &Markers::selectedIndexChanged, name, "selectedIndexChanged");
        on(markers, &Markers::startIndexChanged, name, "startIndexChanged");
        on(markers, &Markers::endIndexChanged, name, "endIndexChanged");
        on(markers, &Markers::rangeStartIndexChanged, name, "rangeStartIndexChanged");
        on(markers, &Markers::rangeEndIndexChanged, name, "rangeEndIndexChanged");
        on(markers, &Markers::rangeVisibilityChanged, name, "rangeVisibilityChanged");
    }

    /// What was recorded since the last call, in order.
    QString take() {
        const QString text = _entries.join(", ");
        _entries.clear();
        return text;
    }

    int count(const QString& entry) const { return static_cast<int>(_entries.count(entry)); }

private:
    template <class Sender, class... Arguments>
    void on(Sender& sender, void (Sender::*signal)(Arguments...), const QString& object,
            const char* signalName) {
        QObject::connect(&sender, signal, &_context,
                         [this, object, signalName](const Arguments&... arguments) {
                             QStringList texts;
                             (texts.append(show(arguments)), ...);
                             _entries.append(object + '.' + signalName + '(' + texts.join(", ") + ')');
                         });
    }

    QString show(ZT::EditableMotionCurveKey* key) const { return _keyNames.value(key, "unnamed"); }
    static QString show(bool value) { return value ? "true" : "false"; }
    static QString show(float value) { return QString::number(static_cast<double>(value)); }
    static QString show(unsigned int value) { return QString::number(value); }
    static QString show(const QString& value) { return '"' + value + '"'; }
    static QString show(const QPair<float, float>& value) {
        return show(value.first) + ' ' + show(value.second);
    }

    QMap<const ZT::EditableMotionCurveKey*, QString> _keyNames;
    QStringList _entries;
    QObject _context;
};
