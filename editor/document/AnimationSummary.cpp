#include "document/AnimationSummary.h"

#include "document/Translation.h"
#include "model/EditableAnimation.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace Editor {

namespace {

QString span(unsigned int first, unsigned int last) {
    return tr("frames %1 to %2").arg(first).arg(last);
}

// Keys that no view can draw.
bool isFinite(const VQ::Math::Interpolation::Key& key) {
    return std::isfinite(key.value) && std::isfinite(key.leftTangentOffset.x) &&
           std::isfinite(key.leftTangentOffset.y) && std::isfinite(key.rightTangentOffset.x) &&
           std::isfinite(key.rightTangentOffset.y);
}

QString rateOf(const ZT::EditableAnimationLayer& layer) {
    const auto unit = layer.getCurve()->getTimeUnit().count();
    return unit.numerator() == 1 ? QString::number(unit.denominator())
                                 : QString("%1/%2").arg(unit.denominator()).arg(unit.numerator());
}

unsigned int firstFrame(const ZT::EditableMotionCurve& curve) {
    return (*curve.begin()).first;
}

} // namespace

AnimationSummary::AnimationSummary(const ZT::EditableAnimation& animation) {
    std::size_t keys = 0;
    unsigned int first = std::numeric_limits<unsigned int>::max();
    QStringList rates;
    QStringList names;
    for (const ZT::EditableAnimationLayer* const layer : animation) {
        const ZT::EditableMotionCurve& curve = *layer->getCurve();
        keys += curve.size();
        first = curve.empty() ? first : std::min(first, firstFrame(curve));
        rates.append(rateOf(*layer));
        names.append(layer->getActuatorName());
        _addLayer(*layer);
    }
    rates.removeDuplicates();
    QHash<QString, int> counts;
    for (const QString& name : names) {
        if (++counts[name] == 2) {
            _problems.append(tr("more than one layer is named \"%1\"").arg(name));
        }
    }
    if (rates.size() > 1) {
        _problems.append(tr("layers have different rates: %1").arg(rates.join(", ")));
    }
    if (animation.empty()) {
        _problems.append(tr("there is no layer"));
    }

    _facts.append(tr("%1 layers").arg(animation.size()));
    _facts.append(tr("%1 keys").arg(keys));
    if (keys > 0) {
        _facts.append(span(first, animation.getGreaterIndex()));
    }
    if (!rates.isEmpty()) {
        _facts.append(tr("%1 frames a second").arg(rates.join(", ")));
    }
}

void AnimationSummary::_addLayer(const ZT::EditableAnimationLayer& layer) {
    const ZT::EditableMotionCurve& curve = *layer.getCurve();
    const QString name = '"' + layer.getActuatorName() + '"';
    if (curve.empty()) {
        _layers.append(tr("layer %1: no keys").arg(name));
        _problems.append(tr("layer %1 has no keys").arg(name));
        return;
    }
    _layers.append(
        tr("layer %1: %2 keys, %3")
            .arg(name, QString::number(curve.size()), span(firstFrame(curve), curve.getGreaterIndex())));
    for (const auto& [frame, key] : curve) {
        if (!isFinite(key->baseMotionCurveKey())) {
            _problems.append(
                tr("layer %1: the key at frame %2 is not finite").arg(name, QString::number(frame)));
        }
    }
}

QString AnimationSummary::text() const {
    QStringList lines = _facts + _layers;
    for (const QString& problem : _problems) {
        lines.append(tr("problem: %1").arg(problem));
    }
    return lines.join('\n') + '\n';
}

} // namespace Editor
