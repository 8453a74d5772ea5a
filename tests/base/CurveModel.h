#pragma once

#include "AnyFloat.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <utility>

/// What a curve should hold, beside the curve, while random operations run on both.
namespace CurveModel {

using Records::Key;
using Records::MotionCurve;

using Model = std::map<unsigned int, Key*>;

// What a walk over the whole curve says must be what each lookup says.
inline bool agrees(const MotionCurve& curve, const Model& model) {
    MotionCurve& writable = const_cast<MotionCurve&>(curve);
    bool isRight = curve.size() == model.size() && curve.empty() == model.empty();
    auto expected = model.begin();
    for (auto position = curve.begin(); position != curve.end(); ++position, ++expected) {
        isRight = isRight && position->first == expected->first && position->second == expected->second;
        isRight = isRight && curve.find(position->first) == position;
        isRight = isRight && writable.find(position->first)->second == position->second;
    }
    return isRight;
}

inline bool atOrBeforeAgrees(const MotionCurve& curve, const Model& model, unsigned int frame) {
    const auto found = curve.findAtOrBefore(frame);
    const auto behind = model.upper_bound(frame);
    return behind == model.begin() ? found == curve.end()
                                   : found != curve.end() && found->first == std::prev(behind)->first;
}

inline Model modelOf(MotionCurve& curve) {
    Model model;
    for (const auto element : curve) {
        model.emplace(element.first, element.second);
    }
    return model;
}

inline void performAnyOperation(MotionCurve& curve, Model& model) {
    const unsigned int frame =
        *rc::gen::weightedOneOf<unsigned int>({{8, rc::gen::inRange(0U, 20U)},
                                               {1, Records::anyFrame()},
                                               {1, rc::gen::just(std::numeric_limits<unsigned int>::max())}});
    const auto found = curve.find(frame);
    switch (*rc::gen::inRange(0, 12)) {
    case 0: {
        const MotionCurve copy(curve);
        RC_ASSERT(Records::of(copy) == Records::of(curve));
        curve = copy;
        RC_ASSERT(Records::of(copy) == Records::of(curve));
        model = modelOf(curve);
        break;
    }
    case 1: {
        MotionCurve moved(std::move(curve));
        RC_ASSERT(agrees(moved, model) && agrees(curve, {}));
        curve = std::move(moved);
        break;
    }
    case 2: {
        MotionCurve other;
        other.insert(frame, new Key);
        const Model otherModel = modelOf(other);
        std::swap(curve, other);
        RC_ASSERT(agrees(other, model) && agrees(curve, otherModel));
        model = otherModel;
        break;
    }
    case 3: {
        if (*rc::gen::inRange(0, 4) == 0) {
            model.clear();
            curve.clear();
        }
        break;
    }
    case 4:
    case 5:
    case 6:
        if (found != curve.end()) {
            const auto behind = curve.erase(found);
            const auto expected = model.erase(model.find(frame));
            RC_ASSERT((behind == curve.end()) == (expected == model.end()));
            RC_ASSERT(behind == curve.end() || behind->first == expected->first);
        }
        break;
    default:
        if (found == curve.end()) {
            auto key = std::make_unique<Key>();
            const auto position = curve.insert(frame, key.get());
            RC_ASSERT(position == curve.find(frame));
            model.emplace(frame, key.release());
        }
    }
}

} // namespace CurveModel
