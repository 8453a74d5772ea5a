#pragma once

#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurve.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <cstring>

/// The whole state of model objects as text, floats by their bits, so that two states are compared exactly
/// and a difference reads like a diff.
namespace Snapshot {

inline QString bits(float value) {
    std::uint32_t raw = 0;
    std::memcpy(&raw, &value, sizeof raw);
    return QString::number(static_cast<double>(value)) + '#' + QString::number(raw, 16);
}

inline QString of(const ZT::EditableMotionCurveKey& key) {
    const VQ::Math::Interpolation::Key record = key.baseMotionCurveKey();
    return QString("value %1 left %2 (%3, %4) right %5 (%6, %7)%8%9")
        .arg(bits(record.value))
        .arg(static_cast<int>(record.leftTangentType))
        .arg(bits(record.leftTangentOffset.x), bits(record.leftTangentOffset.y))
        .arg(static_cast<int>(record.rightTangentType))
        .arg(bits(record.rightTangentOffset.x), bits(record.rightTangentOffset.y))
        .arg(key.isSmooth() ? " smooth" : "", key.isSymmetrical() ? " symmetrical" : "");
}

/// Only the frames, ascending: "2 7 19".
inline QString frames(const ZT::EditableMotionCurve& curve) {
    QStringList texts;
    for (const auto element : curve) {
        texts.append(QString::number(element.first));
    }
    return texts.join(' ');
}

/// Identities of the key objects are part of the state: undo gives back the same keys, not equal ones.
inline QString of(const ZT::EditableMotionCurve& curve) {
    QStringList lines;
    for (const auto element : curve) {
        lines.append(QString("%1: %2 %3")
                         .arg(element.first)
                         .arg(reinterpret_cast<quintptr>(element.second), 0, 16)
                         .arg(of(*element.second)));
    }
    return lines.join('\n');
}

inline QString of(const ZT::AnimationMarkers& markers) {
    return QString("markers %1 [%2, %3] range [%4, %5] %6")
        .arg(markers.selectedIndex())
        .arg(markers.startIndex())
        .arg(markers.endIndex())
        .arg(markers.rangeStartIndex())
        .arg(markers.rangeEndIndex())
        .arg(markers.isRangeVisible());
}

inline QString of(const ZT::EditableAnimation& animation) {
    QStringList lines{of(*animation.getMarkers())};
    for (const ZT::EditableAnimationLayer* const layer : animation) {
        lines.append(layer->getActuatorName() + (layer->isMute() ? " mute" : ""));
        lines.append(of(*layer->getCurve()));
    }
    return lines.join('\n');
}

} // namespace Snapshot
