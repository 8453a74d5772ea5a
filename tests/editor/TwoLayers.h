#pragma once

#include "document/AnimationData.h"
#include "document/Document.h"
#include "document/KeySelection.h"

#include <memory>

/// An animation of layers "a" and "b", the same keys on both, of all types of tangents at frame 10.
namespace TwoLayers {

using Type = VQ::Math::Interpolation::InterpolationType;

inline Editor::AnimationData data() {
    VQ::Animation::Animation plain;
    for (const char* const name : {"a", "b"}) {
        const bool isFirst = name[0] == 'a';
        auto* const layer = new VQ::Animation::AnimationLayer; // The animation owns it.
        layer->actuatorName = name;
        const auto insert = [&](unsigned int frame, float value, Type left, Type right) {
            layer->curve->insert(
                frame, new VQ::Math::Interpolation::Key{value, left, {-2.0F, -1.0F}, right, {2.0F, 0.5F}});
        };
        insert(0, 1.0F, Type::linear, Type::linear);
        insert(10, isFirst ? 5.0F : 3.0F, isFirst ? Type::constant : Type::linear,
               isFirst ? Type::bezier : Type::bezierAuto);
        insert(20, 2.0F, Type::bezier, Type::bezier);
        insert(40, -4.0F, Type::bezier, Type::bezier);
        plain.push_back(layer);
    }
    Editor::AnimationData data;
    data.animation = std::make_unique<ZT::EditableAnimation>(plain);
    return data;
}

inline ZT::EditableMotionCurveKey* key(const Editor::Document& document, int layer, unsigned int frame) {
    return document.layer(layer)->getCurve()->getKey(frame);
}

/// Selects the keys of both layers at @p frame.
inline void select(Editor::Document& document, unsigned int frame) {
    document.selection().set({key(document, 0, frame), key(document, 1, frame)});
}

} // namespace TwoLayers
