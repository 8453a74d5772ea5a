#pragma once

#include "base/math/FloatBits.h"
#include "model/EditableMotionCurve.h"

#include <QObject>

#include <map>
#include <string>
#include <utility>

/// A view of one curve: what it knows it has from one first look and from signals. When a signal names a key,
/// or is one of a key, it reads that key, then and there; the curve it never walks again.
class CurveMirror {
public:
    using Curve = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;

    explicit CurveMirror(Curve& curve)
        : _curve(curve)
        , _greatest(curve.getGreaterIndex()) {
        for (const auto element : curve) {
            _take(*element.second);
        }
        _on(curve, &Curve::keyAdded, [this](Key* key) { _take(*key); });
        _on(curve, &Curve::keyAboutToBeRemoved, [this](Key* key) { _drop(key); });
        _on(curve, &Curve::curveCleared, [this] { _seen.clear(); });
        _on(curve, &Curve::greaterIndexChanged, [this](unsigned int newGreater) { _greatest = newGreater; });
        _on(curve, &Curve::keysChanged, [this] {
            ++_timesChanged;
            if (!_isInSingleEdit && _problem.empty()) {
                _problem = difference();
            }
        });
    }
    CurveMirror(const CurveMirror&) = delete;
    CurveMirror& operator=(const CurveMirror&) = delete;

    /// A single edit's keysChanged() comes by the key's own signal, of which the curve, connected earlier,
    /// hears before the mirror. The mirror then agrees when the edit has ended.
    void setInSingleEdit(bool isInSingleEdit) { _isInSingleEdit = isInSingleEdit; }

    /// What went wrong at some keysChanged(); empty as long as nothing did.
    const std::string& problem() const { return _problem; }

    /// The frame of the last key, from what was announced.
    unsigned int greatest() const { return _greatest; }
    int timesChanged() const { return _timesChanged; }

    /// How the mirror and the curve disagree; empty if they do not.
    std::string difference() const {
        std::size_t count = 0;
        for (const auto element : std::as_const(_curve)) {
            ++count;
            const auto seen = _seen.find(element.second);
            if (seen == _seen.end()) {
                return "nobody spoke of the key at frame " + std::to_string(element.first);
            }
            const std::string now = _text(Seen(element.first, *element.second));
            if (const std::string mirrored = _text(seen->second); mirrored != now) {
                return "the mirror shows " + mirrored + "instead of " + now;
            }
        }
        return count == _seen.size() ? std::string() : "the mirror shows keys that left";
    }

private:
    struct Seen {
        Seen(unsigned int pFrame, const Key& key)
            : frame(pFrame)
            , record(key.baseMotionCurveKey())
            , smooth(key.isSmooth())
            , symmetrical(key.isSymmetrical()) {}

        unsigned int frame;
        VQ::Math::Interpolation::Key record;
        bool smooth;
        bool symmetrical;
    };

    static std::string _text(const Seen& seen) {
        const auto bits = [](float number) { return std::to_string(VQ::Math::floatBits(number)) + ' '; };
        const VQ::Math::Interpolation::Key& record = seen.record;
        return std::to_string(seen.frame) + ": " + bits(record.value) +
               std::to_string(static_cast<int>(record.leftTangentType)) + ' ' +
               bits(record.leftTangentOffset.x) + bits(record.leftTangentOffset.y) +
               std::to_string(static_cast<int>(record.rightTangentType)) + ' ' +
               bits(record.rightTangentOffset.x) + bits(record.rightTangentOffset.y) +
               (seen.smooth ? "smooth " : "") + (seen.symmetrical ? "symmetrical " : "");
    }

    template <class Sender, class Signal, class Slot>
    void _on(Sender& sender, Signal signal, Slot slot) {
        QObject::connect(&sender, signal, &_context, slot);
    }

    void _take(Key& key) {
        const auto position = _seen.insert_or_assign(&key, Seen(ZT::index(&key), key)).first;
        Seen& seen = position->second; // Stays where it is until the key is dropped.
        _on(key, &Key::valueChanged, [&seen](float value) { seen.record.value = value; });
        _on(key, &Key::indexChanged, [&seen](unsigned int frame) { seen.frame = frame; });
        _on(key, &Key::tangentsChanged, [&seen, &key] { _readTangents(seen, key); });
        _on(key, &Key::smoothChanged, [&seen, &key](bool smooth) {
            seen.smooth = smooth;
            _readTangents(seen, key);
        });
        _on(key, &Key::symmetricalChanged, [&seen, &key](bool symmetrical) {
            seen.symmetrical = symmetrical;
            _readTangents(seen, key);
        });
    }

    static void _readTangents(Seen& seen, const Key& key) {
        const float value = seen.record.value;
        seen.record = key.baseMotionCurveKey();
        seen.record.value = value;
    }

    void _drop(Key* key) {
        QObject::disconnect(key, nullptr, &_context, nullptr);
        _seen.erase(key);
    }

    Curve& _curve;
    std::map<const Key*, Seen> _seen;
    unsigned int _greatest;
    int _timesChanged = 0;
    bool _isInSingleEdit = false;
    std::string _problem;
    QObject _context;
};
