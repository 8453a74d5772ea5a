#include "fuzz/support/EditScene.h"

#include "fuzz/support/Law.h"
#include "model/AnimationMarkers.h"
#include "model/EditableAnimationLayer.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

using VQ::Math::Interpolation::InterpolationType;

namespace {

const std::array<float, 16> numbers{0.0F,
                                    1.0F,
                                    -1.0F,
                                    -0.0F,
                                    0.5F,
                                    -2.25F,
                                    10.0F,
                                    1e-40F,
                                    1e-20F,
                                    -1e20F,
                                    3e38F,
                                    -3e38F,
                                    std::numeric_limits<float>::infinity(),
                                    -std::numeric_limits<float>::infinity(),
                                    std::numeric_limits<float>::quiet_NaN(),
                                    1.0F / 3.0F};

const std::array<unsigned int, 8> farFrames{0,           100,         1U << 24U,   (1U << 24U) + 1,
                                            0x7fffffffU, 0x80000000U, 0xfffffffeU, 0xffffffffU};

constexpr unsigned int mostCurves = 3;
constexpr unsigned int mostKeys = 8;

} // namespace

EditScene::EditScene(Bytes& bytes)
    : _bytes(bytes)
    , _animation(std::make_unique<ZT::EditableAnimation>()) {
    const unsigned int curves = 1 + below(mostCurves);
    for (unsigned int i = 0; i < curves; ++i) {
        auto* const layer = new ZT::EditableAnimationLayer;
        _animation->push_back(layer);
        const unsigned int keys = below(mostKeys);
        for (unsigned int number = 0; number < keys; ++number) {
            const unsigned int frame = anyFrame();
            if (layer->getCurve()->isIndexAvailable(frame)) {
                layer->getCurve()->insert(frame, newKey());
            }
        }
        layer->getCurve()->updateBezierAutoTangents();
    }
    const unsigned int start = anyFrame();
    markers().setRangeEndIndex(std::max(start, anyFrame()));
    markers().setRangeStartIndex(start);
}

EditScene::~EditScene() {
    for (const QPointer<Key>& key : _released) {
        if (!key.isNull() && key->getParentCurve() == nullptr) {
            delete key.data();
        }
    }
    _animation.reset();
    requireLaw(std::all_of(_keys.begin(), _keys.end(), [](const auto& key) { return key.isNull(); }),
               "every key has an owner");
}

EditScene::Curve& EditScene::anyCurve() {
    return *(*_animation)[below(static_cast<unsigned int>(_animation->size()))]->getCurve();
}

EditScene::Key* EditScene::newKey() {
    VQ::Math::Interpolation::Key record;
    record.value = anyNumber();
    record.leftTangentType = anyType();
    record.leftTangentOffset = {anyNumber(), anyNumber()};
    record.rightTangentType = anyType();
    record.rightTangentOffset = {anyNumber(), anyNumber()};
    auto* const key = new Key(record);
    _keys.emplace_back(key);
    const unsigned int flags = below(8);
    key->setSmooth((flags & 1U) != 0);
    key->setSymmetrical((flags & 2U) != 0);
    if ((flags & 4U) != 0) { // A flag without effect.
        key->setTangentType(anySide(), anyType());
    }
    return key;
}

/// One byte chooses among eight keys, so that few bytes choose among many; all of them come with a null.
EditScene::Keys EditScene::someKeys() {
    Keys result;
    const std::uint8_t choice = _bytes.byte();
    if (choice == 0xff) {
        result.push_back(nullptr);
    }
    unsigned int number = 0;
    for (ZT::EditableAnimationLayer* const layer : *_animation) {
        for (const auto element : *layer->getCurve()) {
            if ((choice >> (number++ % 8U) & 1U) != 0) {
                result.push_back(element.second);
            }
        }
    }
    return result;
}

unsigned int EditScene::anyFrame() {
    const unsigned int choice = _bytes.byte();
    return choice < 248 ? choice % 31U : farFrames.at(choice - 248);
}

float EditScene::anyNumber() {
    return _bytes.oneOf(numbers);
}

InterpolationType EditScene::anyType() {
    return static_cast<InterpolationType>(below(4));
}

ZT::TangentSide EditScene::anySide() {
    return yesOrNo() ? ZT::TangentSide::right : ZT::TangentSide::left;
}

void EditScene::requireSound() const {
    unsigned int greatest = 0;
    for (ZT::EditableAnimationLayer* const layer : *_animation) {
        _requireSound(*layer->getCurve());
        greatest = std::max(greatest, layer->getCurve()->getGreaterIndex());
    }
    requireLaw(_animation->getGreaterIndex() == greatest, "the animation knows its greatest frame");
}

void EditScene::_requireSound(const Curve& curve) const {
    requireLaw(!curve._isInBatch(), "no batch is left open");
    std::size_t count = 0;
    unsigned int last = 0;
    const Key* previous = nullptr;
    for (const auto [frame, key] : curve) {
        requireLaw(count == 0 || last < frame, "frames ascend");
        requireLaw(std::as_const(*key).getParentCurve() == &curve, "a key knows its curve");
        requireLaw(ZT::index(key) == frame && curve.getIndexOf(key) == frame, "a key knows its frame");
        requireLaw(curve.getKey(frame) == key, "a frame knows its key");
        requireLaw(curve.getPreviousKey(key) == previous, "a key knows the one before");
        requireLaw(previous == nullptr || curve.getNextKey(previous) == key, "a key knows the one behind");
        previous = key;
        last = frame;
        ++count;
    }
    requireLaw(previous == nullptr || curve.getNextKey(previous) == nullptr, "nothing follows the last key");
    requireLaw(curve.size() == count, "a curve knows its size");
    requireLaw(curve.getGreaterIndex() == last, "a curve knows its greatest frame");
}
