#include "tests/faults/FaultScene.h"

#include "tests/support/Snapshot.h"

#include <QStringList>

#include <algorithm>
#include <functional>

using VQ::Math::Interpolation::InterpolationType;

FaultScene::FaultScene()
    : _animation(std::make_unique<ZT::EditableAnimation>()) {
    _received.reserve(keyCount); // Receiving must not fail.
    for (std::size_t i = 0; i < keyCount; ++i) {
        _keys.push_back(new Key);
    }
    // Containers of keys are walked in the order of addresses: it is the same in each scene.
    std::sort(_keys.begin(), _keys.end(), std::less<>());
    for (std::size_t i = 0; i < keyCount; ++i) {
        const auto type = i % 2 == 0 ? InterpolationType::bezierAuto : InterpolationType::bezier;
        _keys[i]->setValue(static_cast<float>((i * 7) % 5));
        _keys[i]->setLeftTangentType(type);
        _keys[i]->setRightTangentType(type);
        _watched.emplace_back(_keys[i]);
    }
    for (std::size_t curve = 0; curve < 2; ++curve) {
        _animation->push_back(new ZT::EditableAnimationLayer);
        _curves.push_back((*_animation)[curve]->getCurve());
        for (std::size_t i = 0; i < keysOfACurve; ++i) {
            _curves.back()->insert(2 + 2 * static_cast<unsigned int>(i), _keys[curve * keysOfACurve + i]);
        }
        _curves.back()->updateBezierAutoTangents();
    }
}

FaultScene::~FaultScene() {
    command.reset();
    _animation.reset();
    for (const auto& key : _watched) {
        delete key.data();
    }
}

FaultScene::Curve::KeysSet FaultScene::standing() const {
    return {_keys.begin(), _keys.begin() + static_cast<std::ptrdiff_t>(firstOutside)};
}

bool FaultScene::_isHeld(const Key* key) const {
    return std::any_of(_curves.begin(), _curves.end(),
                       [&](const Curve* curve) { return curve->_holds(key); });
}

QString FaultScene::state() const {
    QStringList lines{Snapshot::of(markers())};
    for (const Curve* const curve : _curves) {
        for (const auto [frame, key] : *curve) {
            const auto number = std::find(_keys.begin(), _keys.end(), key) - _keys.begin();
            lines.append(QString("%1: key %2 %3").arg(frame).arg(number).arg(Snapshot::of(*key)));
        }
        lines.append("--");
    }
    return lines.join('\n');
}

int FaultScene::deaths() const {
    return static_cast<int>(std::count(_watched.begin(), _watched.begin() + keyCount, nullptr));
}

QString FaultScene::_faultIn(const Curve& curve) const {
    const Key* previous = nullptr;
    unsigned int last = 0;
    for (const auto [frame, key] : curve) {
        if (previous != nullptr && frame <= last) {
            return QString("frame %1 behind %2").arg(frame).arg(last);
        }
        if (key->getParentCurve() != &curve || ZT::index(key) != frame || curve.getIndexOf(key) != frame ||
            curve.getKey(frame) != key) {
            return QString("the key at %1 does not know where it is").arg(frame);
        }
        if (curve.getPreviousKey(key) != previous ||
            (previous != nullptr && curve.getNextKey(previous) != key)) {
            return QString("the key at %1 does not know its neighbour").arg(frame);
        }
        previous = key;
        last = frame;
    }
    if (curve.getGreaterIndex() != last) {
        return QString("%1 for the greatest frame %2").arg(curve.getGreaterIndex()).arg(last);
    }
    return curve._isInBatch() ? "a batch is open" : "";
}

QString FaultScene::fault() const {
    for (Curve* const curve : _curves) {
        if (const QString fault = _faultIn(*curve); !fault.isEmpty()) {
            return fault;
        }
    }
    for (std::size_t i = 0; i < firstOutside; ++i) {
        Key* const key = _watched[i];
        const bool isReceived = std::find(_received.begin(), _received.end(), key) != _received.end();
        if (command == nullptr && key != nullptr && !_isHeld(key) && !isReceived) {
            return QString("key %1 is owned by nobody").arg(i);
        }
    }
    for (std::size_t i = 0; i < keyCount; ++i) {
        Key* const key = _watched[i];
        if (key != nullptr && key->getParentCurve() != nullptr && !_isHeld(key)) {
            return QString("key %1 names a curve that does not hold it").arg(i);
        }
        if (key != nullptr && std::all_of(_curves.begin(), _curves.end(),
                                          [&](const Curve* curve) { return curve->_holds(key); })) {
            return QString("key %1 is held twice").arg(i);
        }
    }
    return {};
}
