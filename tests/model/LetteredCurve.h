#pragma once

#include "tests/base/Records.h"
#include "tests/support/SignalRecorder.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <vector>

/// A curve whose keys are named a, b, c, ... in ascending order of their addresses: the order in which bulk
/// operations take them. All signals are recorded.
class LetteredCurve {
public:
    /// Linear handles are never recomputed, so that signals are those of the edits alone.
    explicit LetteredCurve(const std::vector<unsigned int>& frames,
                           const VQ::Math::Interpolation::Key& prototype = linear()) {
        for (std::size_t i = 0; i < frames.size(); ++i) {
            keys.push_back(new ZT::EditableMotionCurveKey(prototype));
        }
        std::sort(keys.begin(), keys.end(), std::less<>());
        for (std::size_t i = 0; i < frames.size(); ++i) {
            curve.insert(frames[i], keys[i]);
            recorder.watch(*keys[i], QString(letter(i)));
        }
        recorder.watch(curve);
    }

    static ZT::EditableMotionCurveKey* newKey() { return new ZT::EditableMotionCurveKey(linear()); }

    /// "a@1 b@5": the keys in frame order.
    QString layout() const {
        QStringList parts;
        for (const auto element : curve) {
            const auto found = std::find(keys.begin(), keys.end(), element.second);
            parts.append(QString("%1@%2")
                             .arg(letter(static_cast<std::size_t>(found - keys.begin())))
                             .arg(element.first));
        }
        return parts.join(' ');
    }

    /// Whether a change of a key reaches keysChanged(): it does not while the batch depth is raised.
    bool isListening() {
        constexpr unsigned int farAway = 4000000000U;
        ZT::EditableMotionCurveKey* const probe = newKey();
        curve.insert(farAway, probe);
        int count = 0;
        const auto connection =
            QObject::connect(&curve, &ZT::EditableMotionCurve::keysChanged, [&count] { ++count; });
        probe->setValue(probe->getValue() + 1.0F);
        QObject::disconnect(connection);
        curve.remove(farAway);
        return count == 1;
    }

    ZT::EditableMotionCurveKey* operator[](std::size_t i) const { return keys[i]; }

    ZT::EditableMotionCurve curve;
    std::vector<ZT::EditableMotionCurveKey*> keys;
    SignalRecorder recorder;

private:
    static QChar letter(std::size_t i) { return QChar('a' + static_cast<int>(i)); }

    static VQ::Math::Interpolation::Key linear() {
        using Type = VQ::Math::Interpolation::InterpolationType;
        return Records::makeKey(0.0F, Type::linear, {}, Type::linear, {});
    }
};
