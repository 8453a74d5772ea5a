#include "floor/FloorOperations.h"

#include "floor/FloorRecords.h"
#include "support/KeyListener.h"

#include <QSet>

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>

namespace Floor {

using Bench::Operation;
using Bench::Setting;

namespace {

using FrameOf = unsigned int (*)(std::size_t);

std::shared_ptr<FloorCurve> makeCurve(const Setting& setting, FrameOf frameOf = Bench::gapFrame) {
    const auto keys = Bench::allocateKeys(setting, [](std::size_t) { return new FloorKey(Record()); });
    auto curve = std::make_shared<FloorCurve>();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keys[i]->record = recordOf(i);
        curve->add(frameOf(i), keys[i]);
    }
    curve->updateHandles();
    return curve;
}

FloorCurve::Keys::iterator middleOf(FloorCurve& curve) {
    return std::next(curve.keys.begin(), static_cast<std::ptrdiff_t>(curve.keys.size() / 2));
}

// The keys as a set of them is walked.
std::vector<FloorKey*> setOrder(const FloorCurve& curve) {
    QSet<FloorKey*> set;
    for (const auto& [frame, key] : curve.keys) {
        set.insert(key);
    }
    return {set.cbegin(), set.cend()};
}

Operation moving(const Setting& setting, unsigned int by, std::size_t stride) {
    const auto curve = makeCurve(setting);
    return {[=] { curve->move(stride, 0.5F, by > 0, [=](unsigned int frame) { return frame + by; }); },
            [=] { curve->move(stride, -0.5F, false, [=](unsigned int frame) { return frame - by; }); }};
}

Operation dragOf(const std::shared_ptr<FloorCurve>& curve) {
    static constexpr auto steps = static_cast<unsigned int>(Bench::DragOperations::stepsOfADrag);
    const auto moveOn = [=] { curve->move(1, 0.05F, true, [](unsigned int frame) { return frame + 1U; }); };
    const auto countAndMoveBack = [=, step = 0U]() mutable {
        step = (step + 1U) % steps;
        if (step == 0U) {
            curve->move(1, -0.05F * static_cast<float>(steps), false,
                        [](unsigned int frame) { return frame - steps; });
        }
    };
    return {moveOn, countAndMoveBack};
}

} // namespace

Operation FloorCurveOperations::wrapping(const Setting& setting) const {
    const auto records = std::make_shared<FloorCurve::Records>(recordsOf(setting.n));
    return Bench::creating([=] { return std::make_unique<FloorCurve>(*records); });
}

Operation FloorCurveOperations::building(const Setting& setting) const {
    std::vector<Record> records;
    for (std::size_t i = 0; i < setting.n; ++i) {
        records.push_back(recordOf(i));
    }
    return Bench::creating([records = std::move(records)] {
        auto curve = std::make_unique<FloorCurve>();
        for (std::size_t i = 0; i < records.size(); ++i) {
            curve->add(Bench::gapFrame(i), new FloorKey(records[i]));
        }
        return curve;
    });
}

Operation FloorCurveOperations::movingByOneFrame(const Setting& setting) const {
    return moving(setting, 1, 1);
}

Operation FloorCurveOperations::movingByAQuarterFrame(const Setting& setting) const {
    return moving(setting, 0, 1);
}

Operation FloorCurveOperations::movingATenth(const Setting& setting) const {
    return moving(setting, 1, 10);
}

Operation FloorCurveOperations::stretching(const Setting& setting) const {
    const auto curve = makeCurve(setting, Bench::denseFrame);
    return {[=] { curve->move(1, 0.5F, true, [](unsigned int frame) { return 2 * frame; }); },
            [=] { curve->move(1, -0.5F, false, [](unsigned int frame) { return frame / 2; }); }};
}

Operation FloorCurveOperations::reorganizing(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    if (setting.layout == Bench::Layout::frameOrder) {
        return {[=] { curve->reorganize(1); }, [=] { curve->reorganize(-1U); }};
    }
    std::vector<FloorKey*> byAddress;
    for (const auto& [frame, key] : curve->keys) {
        byAddress.push_back(key);
    }
    std::sort(byAddress.begin(), byAddress.end(), std::less<>());
    const auto ranks = std::make_shared<std::vector<std::size_t>>();
    for (const auto& [frame, key] : curve->keys) {
        const auto place = std::lower_bound(byAddress.begin(), byAddress.end(), key, std::less<>());
        ranks->push_back(static_cast<std::size_t>(place - byAddress.begin()));
    }
    return {[=] { curve->reorganize(1, *ranks); }, [=] { curve->reorganize(-1U, *ranks); }};
}

Operation FloorCurveOperations::releasing(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    const auto outside = std::make_shared<FloorCurve::Frames>();
    outside->reserve(setting.n);
    if (setting.layout == Bench::Layout::frameOrder) {
        return {[=] { curve->releaseAll(*outside); }, [=] { curve->insertAll(*outside, true); }};
    }
    const auto order = std::make_shared<std::vector<FloorCurve::Keys::iterator>>();
    const auto findOrder = [=] {
        order->clear();
        for (auto position = curve->keys.begin(); position != curve->keys.end(); ++position) {
            order->push_back(position);
        }
        std::sort(order->begin(), order->end(),
                  [](auto a, auto b) { return std::less<>()(a->second, b->second); });
    };
    return {[=] { curve->releaseAll(*order, *outside); }, [=] { curve->insertAll(*outside, false); },
            findOrder};
}

Operation FloorCurveOperations::smoothing(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    const auto order = setOrder(*curve);
    return {[=] { curve->setSmooth(true, order); }, [=] { curve->setSmooth(false, order); }};
}

Operation FloorCurveOperations::changingTypes(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    return {[=] { curve->setTypes(Type::bezier); }, [=] { curve->setTypes(Type::bezierAuto); }};
}

Operation FloorCurveOperations::movingTangents(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    curve->setTypes(Type::bezier);
    const auto order = setOrder(*curve);
    return {[=] {
                curve->setRightHandles({0.5F, 0.25F}, order);
            },
            [=] {
                curve->setRightHandles({0.25F, 0.5F}, order);
            }};
}

Operation FloorCurveOperations::restoring(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    curve->setTypes(Type::bezier);
    const auto stateWith = [&](const Point& left, const Point& right) {
        const Record record{0.0F, Type::bezier, left, Type::bezier, right};
        return std::make_shared<std::vector<Record>>(setting.n, record);
    };
    const auto one = stateWith({-0.5F, -0.25F}, {0.5F, 0.25F});
    const auto other = stateWith({-0.25F, -0.5F}, {0.25F, 0.5F});
    return {[=] { curve->restore(*one); }, [=] { curve->restore(*other); }};
}

Operation FloorOneKeyOperations::settingTheValue(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    FloorKey* const key = middleOf(*curve)->second;
    const auto setValues = [=] {
        for (std::size_t i = 0; i < Bench::oneKeyRepetitions; ++i) {
            key->setValue(static_cast<float>(i % 2U));
        }
    };
    return {[curve, setValues] { setValues(); }};
}

Operation FloorOneKeyOperations::translating(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    const auto translate = [curve, position = middleOf(*curve)]() mutable {
        const unsigned int frame = position->first;
        for (unsigned int i = 0; i < Bench::oneKeyRepetitions; ++i) {
            curve->translate(position, frame + (i + 1U) % 2U);
        }
    };
    return {translate};
}

Operation FloorDragOperations::dragging(const Setting& setting) const {
    return dragOf(makeCurve(setting));
}

Operation FloorDragOperations::draggingHeardKeys(const Setting& setting) const {
    const auto curve = makeCurve(setting);
    const auto listener = std::make_shared<Bench::KeyListener>();
    for (const auto& [frame, key] : curve->keys) {
        listener->listenTo(key);
    }
    Operation operation = dragOf(curve);
    operation.before = [listener] {};
    return operation;
}

} // namespace Floor
