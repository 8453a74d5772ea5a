#pragma once

#include "document/Document.h"
#include "model/AnimationMarkers.h"
#include "tests/support/Snapshot.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

/// All that an edit may change in a document: layers, looks, keys and markers, floats by their bits, layers
/// and keys by their identity. Automatic handles alone may differ, by twice the tolerance within which the
/// library leaves them as they are.
class DocumentState {
public:
    explicit DocumentState(Editor::Document& document) {
        _lines.append(Snapshot::of(document.markers()));
        for (int i = 0; i < document.layerCount(); ++i) {
            const ZT::EditableAnimationLayer& layer = *document.layer(i);
            const Editor::LayerLook look = document.look(i);
            _lines.append(QString("layer %1 \"%2\"%3 %4%5%6")
                              .arg(reinterpret_cast<quintptr>(&layer), 0, 16)
                              .arg(layer.getActuatorName(), layer.isMute() ? " mute" : "",
                                   look.colour.name(QColor::HexArgb), look.isVisible ? "" : " hidden",
                                   look.isLocked ? " locked" : ""));
            for (const auto& [frame, key] : std::as_const(*layer.getCurve())) {
                _addKey(frame, *key);
            }
        }
    }

    /// The first difference; empty where there is none.
    QString differenceFrom(const DocumentState& other) const {
        for (int i = 0; i < std::min(_lines.size(), other._lines.size()); ++i) {
            if (_lines[i] != other._lines[i]) {
                return _lines[i] + "\ninstead of\n" + other._lines[i];
            }
        }
        if (_lines.size() != other._lines.size()) {
            return QString("%1 lines instead of %2").arg(_lines.size()).arg(other._lines.size());
        }
        const auto areNear = [](const Handle& a, const Handle& b) {
            constexpr float tolerance = 2 * 0.0001F;
            return show(a) == show(b) || a.isNear(b, tolerance);
        };
        const bool isSame = std::equal(_automatic.begin(), _automatic.end(), other._automatic.begin(),
                                       other._automatic.end(), areNear);
        return isSame ? QString() : QString("automatic handles differ");
    }

private:
    using Handle = VQ::Math::Position2D;

    static QString show(const Handle& handle) {
        return Snapshot::bits(handle.x) + ' ' + Snapshot::bits(handle.y);
    }

    void _addKey(unsigned int frame, const ZT::EditableMotionCurveKey& key) {
        VQ::Math::Interpolation::Key rest = key.baseMotionCurveKey();
        if (rest.leftTangentType == VQ::Math::Interpolation::InterpolationType::bezierAuto) {
            _automatic.push_back(std::exchange(rest.leftTangentOffset, Handle()));
        }
        if (rest.rightTangentType == VQ::Math::Interpolation::InterpolationType::bezierAuto) {
            _automatic.push_back(std::exchange(rest.rightTangentOffset, Handle()));
        }
        _lines.append(QString("%1: %2 ").arg(frame).arg(reinterpret_cast<quintptr>(&key), 0, 16) +
                      Snapshot::of(ZT::EditableMotionCurveKey(rest)) + (key.isSmooth() ? " smooth" : "") +
                      (key.isSymmetrical() ? " symmetrical" : ""));
    }

    QStringList _lines;
    std::vector<Handle> _automatic;
};
