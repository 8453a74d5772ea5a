#pragma once

#include "commands/MoveCurveKeysCommand.h"
#include "model/EditableAnimation.h"
#include "support/Measurement.h"

#include <memory>

namespace Bench {

inline std::size_t keysIn(const VQ::Animation::Animation& animation) {
    std::size_t count = 0;
    for (const VQ::Animation::AnimationLayer& layer : animation) {
        count += layer.curve->size();
    }
    return count;
}

/// There: a plain animation is wrapped. Back: it is destroyed.
inline Operation wrapping(const VQ::Animation::Animation& plain) {
    return creating([=] { return std::make_unique<ZT::EditableAnimation>(plain); });
}

/// There: all keys are moved by a frame, in one command. Back: undo.
inline Operation draggingAll(const VQ::Animation::Animation& plain) {
    const auto animation = std::make_shared<ZT::EditableAnimation>(plain);
    ZT::EditableMotionCurve::KeyPosMap targets;
    for (ZT::EditableAnimationLayer* const layer : *animation) {
        for (const auto element : *layer->getCurve()) {
            targets.insert(element.second, {element.first + 1.0, element.second->getValue() + 0.5});
        }
    }
    const auto command = std::make_shared<std::unique_ptr<QUndoCommand>>();
    return {[=] {
                *command = std::make_unique<ZT::AnimCmd::MoveCurveKeysCommand>(targets, true);
                (*command)->redo();
            },
            [=] { (*command)->undo(); }, [animation, command] { command->reset(); }};
}

} // namespace Bench
