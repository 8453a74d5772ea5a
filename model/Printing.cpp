#include "model/Printing.h"

#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurve.h"

#include <QDebugStateSaver>

#include <ostream>
#include <utility>

namespace ZT {

namespace {

std::string textOf(const EditableMotionCurveKey* key) {
    if (key == nullptr) {
        return "no key";
    }
    std::ostringstream text;
    if (key->getParentCurve() != nullptr) {
        text << "key at " << std::to_string(index(key));
    } else {
        text << "key in no curve";
    }
    text << ": " << key->baseMotionCurveKey() << (key->isSmooth() ? ", smooth" : "")
         << (key->isSymmetrical() ? ", symmetrical" : "");
    return text.str();
}

std::string textOf(const EditableMotionCurve* curve) {
    std::ostringstream text;
    if (curve == nullptr) {
        text << "no curve";
    } else {
        text << "curve of " << curve->baseMotionCurve();
    }
    return text.str();
}

std::string textOf(const EditableAnimationLayer* layer) {
    std::ostringstream text;
    if (layer == nullptr) {
        text << "no layer";
    } else {
        text << layer->baseAnimationLayer();
    }
    return text.str();
}

std::string textOf(const EditableAnimation* animation) {
    std::ostringstream text;
    if (animation == nullptr) {
        text << "no animation";
    } else {
        text << "animation of " << animation->baseAnimation();
    }
    return text.str();
}

std::string textOf(const AnimationMarkers* markers) {
    if (markers == nullptr) {
        return "no markers";
    }
    return "markers at " + std::to_string(markers->selectedIndex()) + ", playing " +
           std::to_string(markers->startIndex()) + " to " + std::to_string(markers->endIndex()) + ", range " +
           std::to_string(markers->rangeStartIndex()) + " to " + std::to_string(markers->rangeEndIndex()) +
           (markers->isRangeVisible() ? "" : " hidden");
}

QDebug show(QDebug debug, const std::string& text) {
    const QDebugStateSaver saver(debug);
    debug.noquote().nospace() << QString::fromStdString(text);
    return debug;
}

} // namespace

QDebug operator<<(QDebug debug, const EditableMotionCurveKey* key) {
    return show(std::move(debug), textOf(key));
}

QDebug operator<<(QDebug debug, const EditableMotionCurve* curve) {
    return show(std::move(debug), textOf(curve));
}

QDebug operator<<(QDebug debug, const EditableAnimationLayer* layer) {
    return show(std::move(debug), textOf(layer));
}

QDebug operator<<(QDebug debug, const EditableAnimation* animation) {
    return show(std::move(debug), textOf(animation));
}

QDebug operator<<(QDebug debug, const AnimationMarkers* markers) {
    return show(std::move(debug), textOf(markers));
}

void PrintTo(const EditableMotionCurveKey* key, std::ostream* stream) {
    *stream << textOf(key);
}

void PrintTo(const EditableMotionCurve* curve, std::ostream* stream) {
    *stream << textOf(curve);
}

void PrintTo(const EditableAnimationLayer* layer, std::ostream* stream) {
    *stream << textOf(layer);
}

} // namespace ZT
