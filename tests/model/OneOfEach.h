#pragma once

#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurve.h"

#include <QMap>
#include <QString>

#include <memory>

/// One object of each class, each in its parent.
struct OneOfEach {
    OneOfEach() {
        animation->push_back(layer);
        curve->insert(3, key);
    }

    QObject& object(const QString& name) const {
        const QMap<QString, QObject*> objects{
            {"key", key}, {"curve", curve}, {"layer", layer}, {"animation", animation}, {"markers", markers}};
        return *objects.value(name);
    }

    std::unique_ptr<ZT::EditableAnimation> owner = std::make_unique<ZT::EditableAnimation>();
    ZT::EditableAnimation* animation = owner.get();
    ZT::AnimationMarkers* markers = animation->getMarkers();
    ZT::EditableAnimationLayer* layer = new ZT::EditableAnimationLayer;
    ZT::EditableMotionCurve* curve = layer->getCurve();
    ZT::EditableMotionCurveKey* key = new ZT::EditableMotionCurveKey;
};
