// Uses the plain records: a curve is built and evaluated, without Qt.
#include "base/animation/Animation.h"
#include "base/animation/AnimationXml.h"
#include "base/animation/CurveEvaluation.h"

#include <sstream>

int main() {
    auto* const layer = new VQ::Animation::AnimationLayer; // the animation below owns it
    layer->actuatorName = "elbow";
    for (const unsigned int frame : {0U, 10U}) {
        auto* const key = new VQ::Math::Interpolation::Key;
        key->value = static_cast<float>(frame);
        layer->curve->insert(frame, key);
    }
    VQ::Animation::Animation animation;
    animation.push_back(layer);
    std::ostringstream file;
    VQ::Animation::writeAnimationXml(file, animation.serialize());
    const bool isWritten = file.str().find("elbow") != std::string::npos;
    return isWritten && VQ::Animation::evaluate(*layer->curve, 10.0) == 10.0 ? 0 : 1;
}
