#include "library/LibraryOperations.h"

#include "library/LibraryCurve.h"

#include <memory>

namespace Bench {

using VQ::Math::Interpolation::InterpolationType;
using ZT::TangentSide;

namespace {

Operation moving(const Setting& setting, LibraryCurve::FrameOf frameOf, std::size_t stride,
                 const std::function<double(unsigned int)>& targetOf) {
    const auto subject = std::make_shared<LibraryCurve>(setting, frameOf);
    const auto there = subject->targets(targetOf, 0.5, stride);
    const auto back = subject->positions(stride);
    return {[=] { subject->curve.moveKeys(there); }, [=] { subject->curve.moveKeys(back); }};
}

/// A state of "bezier" keys without flags, in the form that restoring takes.
struct SavedKeys {
    SavedKeys(const LibraryCurve& subject, const QPair<float, float>& left,
              const QPair<float, float>& right) {
        for (Key* const key : subject.keys) {
            types.insert(key, {TangentSide::right, InterpolationType::bezier});
            types.insert(key, {TangentSide::left, InterpolationType::bezier});
            leftOffsets.insert(key, left);
            rightOffsets.insert(key, right);
            flags.insert(key, false);
        }
    }
    void restore(Curve& curve) const { curve.restoreKeys(types, leftOffsets, rightOffsets, flags, flags); }

    QMultiMap<Key*, QPair<TangentSide, InterpolationType>> types;
    Curve::TangentPosMap leftOffsets;
    Curve::TangentPosMap rightOffsets;
    Curve::KeyStateMap flags;
};

std::shared_ptr<LibraryCurve> bezierCurve(const Setting& setting) {
    auto subject = std::make_shared<LibraryCurve>(setting);
    subject->curve.setTangentsType(subject->bothSides(), InterpolationType::bezier);
    return subject;
}

} // namespace

Operation LibraryCurveOperations::wrapping(const Setting& setting) const {
    const auto plain = std::make_shared<VQ::Animation::MotionCurve>(plainCurve(setting.n));
    return creating([=] { return std::make_unique<Curve>(*plain); });
}

Operation LibraryCurveOperations::building(const Setting& setting) const {
    std::vector<VQ::Math::Interpolation::Key> records;
    for (std::size_t i = 0; i < setting.n; ++i) {
        records.push_back(recordOf(i));
    }
    return creating([records = std::move(records)] {
        auto curve = std::make_unique<Curve>();
        for (std::size_t i = 0; i < records.size(); ++i) {
            curve->insert(gapFrame(i), new Key(records[i]));
        }
        return curve;
    });
}

Operation LibraryCurveOperations::movingByOneFrame(const Setting& setting) const {
    return moving(setting, gapFrame, 1, [](unsigned int frame) { return frame + 1.0; });
}

Operation LibraryCurveOperations::movingByAQuarterFrame(const Setting& setting) const {
    return moving(setting, gapFrame, 1, [](unsigned int frame) { return frame + 0.25; });
}

Operation LibraryCurveOperations::movingATenth(const Setting& setting) const {
    return moving(setting, gapFrame, 10, [](unsigned int frame) { return frame + 1.0; });
}

Operation LibraryCurveOperations::stretching(const Setting& setting) const {
    return moving(setting, denseFrame, 1, [](unsigned int frame) { return frame * 2.0; });
}

Operation LibraryCurveOperations::reorganizing(const Setting& setting) const {
    const auto subject = std::make_shared<LibraryCurve>(setting);
    const auto there = subject->frames(1);
    const auto back = subject->frames();
    return {[=] { subject->curve.reorganizeKeys(there); }, [=] { subject->curve.reorganizeKeys(back); }};
}

Operation LibraryCurveOperations::releasing(const Setting& setting) const {
    const auto subject = std::make_shared<LibraryCurve>(setting);
    const auto frames = subject->frames();
    return {[=] { subject->curve.releaseAndInsertKeys(frames, {}); },
            [=] { subject->curve.releaseAndInsertKeys({}, frames); }};
}

Operation LibraryCurveOperations::smoothing(const Setting& setting) const {
    const auto subject = std::make_shared<LibraryCurve>(setting);
    const auto keys = subject->keySet();
    return {[=] { subject->curve.setKeysSmooth(keys, true); },
            [=] { subject->curve.setKeysSmooth(keys, false); }};
}

Operation LibraryCurveOperations::changingTypes(const Setting& setting) const {
    const auto subject = std::make_shared<LibraryCurve>(setting);
    const auto sides = subject->bothSides();
    return {[=] { subject->curve.setTangentsType(sides, InterpolationType::bezier); },
            [=] { subject->curve.setTangentsType(sides, InterpolationType::bezierAuto); }};
}

Operation LibraryCurveOperations::movingTangents(const Setting& setting) const {
    const auto subject = bezierCurve(setting);
    const auto keys = subject->keySet();
    return {[=] {
                subject->curve.moveTangents(keys, TangentSide::right, {0.5F, 0.25F});
            },
            [=] {
                subject->curve.moveTangents(keys, TangentSide::right, {0.25F, 0.5F});
            }};
}

Operation LibraryCurveOperations::restoring(const Setting& setting) const {
    const auto subject = bezierCurve(setting);
    const SavedKeys one(*subject, {-0.5F, -0.25F}, {0.5F, 0.25F});
    const SavedKeys other(*subject, {-0.25F, -0.5F}, {0.25F, 0.5F});
    return {[=] { one.restore(subject->curve); }, [=] { other.restore(subject->curve); }};
}

Operation LibraryOneKeyOperations::settingTheValue(const Setting& setting) const {
    const auto subject = std::make_shared<LibraryCurve>(setting);
    return {[=] {
        for (std::size_t i = 0; i < oneKeyRepetitions; ++i) {
            subject->middleKey()->setValue(static_cast<float>(i % 2U));
        }
    }};
}

Operation LibraryOneKeyOperations::translating(const Setting& setting) const {
    const auto subject = std::make_shared<LibraryCurve>(setting);
    return {[=] {
        const unsigned int frame = ZT::index(subject->middleKey());
        for (unsigned int i = 0; i < oneKeyRepetitions; ++i) {
            subject->curve.translateKey(subject->middleKey(), frame + (i + 1U) % 2U);
        }
    }};
}

} // namespace Bench
