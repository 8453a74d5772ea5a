#include "support/CurveRows.h"

namespace Bench {

namespace {

constexpr std::size_t largest = 1000000;

enum class Layouts { frameOrder, both };

struct CurveRow {
    const char* name;
    Operation (CurveOperations::*make)(const Setting&) const;
    Timed timed = Timed::there;
    Layouts layouts = Layouts::frameOrder;
    bool isTheLargestMeasured = false;
};

using C = CurveOperations;

constexpr CurveRow curveRows[] = {
    {"wrapping", &C::wrapping},
    {"building by insert", &C::building, Timed::there, Layouts::frameOrder, true},
    {"destroying", &C::wrapping, Timed::back},
    {"moveKeys +1", &C::movingByOneFrame, Timed::there, Layouts::both, true},
    {"moveKeys +0.25", &C::movingByAQuarterFrame},
    {"moveKeys -1", &C::movingByOneFrame, Timed::back},
    {"moveKeys scattered tenth", &C::movingATenth},
    {"moveKeys stretch x2", &C::stretching},
    {"moveKeys stretch /2", &C::stretching, Timed::back},
    {"reorganizeKeys +1", &C::reorganizing, Timed::there, Layouts::both},
    {"releaseAndInsertKeys out", &C::releasing, Timed::there, Layouts::both},
    {"releaseAndInsertKeys in", &C::releasing, Timed::back, Layouts::both},
    {"setKeysSmooth on", &C::smoothing},
    {"setKeysSmooth off", &C::smoothing, Timed::back},
    {"setTangentsType bezier", &C::changingTypes},
    {"setTangentsType bezier auto", &C::changingTypes, Timed::back},
    {"moveTangents", &C::movingTangents},
    {"restoreKeys", &C::restoring},
};

template <class Add>
void forEachSetting(Layouts layouts, bool isTheLargestMeasured, Add add) {
    for (const Layout layout : {Layout::frameOrder, Layout::randomAddresses}) {
        if (layout == Layout::randomAddresses && layouts != Layouts::both) {
            continue;
        }
        for (const std::size_t n : {std::size_t{1000}, std::size_t{10000}, std::size_t{100000}, largest}) {
            if (n < largest || (isTheLargestMeasured && layout == Layout::frameOrder)) {
                add(Setting{layout, n});
            }
        }
    }
}

} // namespace

void addCurveRows(const CurveOperations& operations) {
    for (const CurveRow& row : curveRows) {
        forEachSetting(row.layouts, row.isTheLargestMeasured, [&](const Setting& setting) {
            const std::size_t keys = row.make == &C::movingATenth ? setting.n / 10 : setting.n;
            addRow(
                row.name, setting.text(), keys,
                [&operations, make = row.make, setting] { return (operations.*make)(setting); }, row.timed);
        });
    }
}

void addOneKeyRow(const std::string& name, const std::function<Operation(const Setting&)>& make) {
    for (const std::size_t n :
         {std::size_t{100}, std::size_t{1000}, std::size_t{10000}, std::size_t{100000}}) {
        const Setting setting{Layout::frameOrder, n};
        addRow("one key, " + name, setting.text(), oneKeyRepetitions, [=] { return make(setting); });
    }
}

void addOneKeyRows(const OneKeyOperations& operations) {
    addOneKeyRow("setValue", [&](const Setting& setting) { return operations.settingTheValue(setting); });
    addOneKeyRow("translateKey", [&](const Setting& setting) { return operations.translating(setting); });
}

void addDragRows(const DragOperations& operations) {
    forEachSetting(Layouts::both, true, [&](const Setting& setting) {
        // A whole drag of so many keys would take too long.
        const std::size_t steps = setting.n == largest ? 2 : DragOperations::stepsOfADrag;
        addRow(
            "drag step", setting.text(), setting.n,
            [&operations, setting] { return operations.dragging(setting); }, Timed::there, steps);
    });
    forEachSetting(Layouts::frameOrder, false, [&](const Setting& setting) {
        addRow(
            "drag step, keys heard", setting.text(), setting.n,
            [&operations, setting] { return operations.draggingHeardKeys(setting); }, Timed::there,
            DragOperations::stepsOfADrag);
    });
}

} // namespace Bench
