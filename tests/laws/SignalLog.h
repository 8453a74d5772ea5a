#pragma once

#include "base/math/FloatBits.h"
#include "model/EditableMotionCurve.h"

#include <QObject>

#include <map>
#include <string>
#include <vector>

/// The signals of a curve and of keys as one sequence of texts, floats by their bits.
class SignalLog {
public:
    using Curve = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;

    /// Gives a key the name that it has in the curve's signals.
    void setName(const Key* key, const std::string& name) { _names[key] = name; }

    void listenTo(Key& key, const std::string& name) {
        _on(key, &Key::valueChanged, [this, name](float value) {
            entries.push_back(name + ".valueChanged " + std::to_string(VQ::Math::floatBits(value)));
        });
        _on(key, &Key::tangentsChanged, [this, name] { entries.push_back(name + ".tangentsChanged"); });
        _on(key, &Key::smoothChanged, [this, name](bool smooth) {
            entries.push_back(name + ".smoothChanged" + (smooth ? " true" : " false"));
        });
        _on(key, &Key::symmetricalChanged, [this, name](bool symmetrical) {
            entries.push_back(name + ".symmetricalChanged" + (symmetrical ? " true" : " false"));
        });
        _on(key, &Key::indexChanged, [this, name](unsigned int frame) {
            entries.push_back(name + ".indexChanged " + std::to_string(frame));
        });
    }

    void listenTo(Curve& curve) {
        _on(curve, &Curve::keysChanged, [this] { entries.emplace_back("keysChanged"); });
        _on(curve, &Curve::timeUnitChanged, [this] { entries.emplace_back("timeUnitChanged"); });
        _on(curve, &Curve::valueLimitsChanged, [this] { entries.emplace_back("valueLimitsChanged"); });
        _on(curve, &Curve::maxAbsoluteDerivativeChanged,
            [this] { entries.emplace_back("maxAbsoluteDerivativeChanged"); });
        _on(curve, &Curve::keyAboutToBeRemoved,
            [this](Key* key) { entries.push_back("keyAboutToBeRemoved " + _names[key]); });
        _on(curve, &Curve::keyAdded, [this](Key* key) { entries.push_back("keyAdded " + _names[key]); });
        _on(curve, &Curve::curveCleared, [this] { entries.emplace_back("curveCleared"); });
        _on(curve, &Curve::greaterIndexChanged,
            [this](unsigned int newGreater, unsigned int previousGreater) {
                entries.push_back("greaterIndexChanged " + std::to_string(newGreater) + ' ' +
                                  std::to_string(previousGreater));
            });
    }

    std::vector<std::string> entries;

private:
    template <class Sender, class Signal, class Slot>
    void _on(Sender& sender, Signal signal, Slot slot) {
        QObject::connect(&sender, signal, &_context, slot);
    }

    std::map<const Key*, std::string> _names;
    QObject _context;
};
