#pragma once

#include "model/FirstException.h"

namespace ZT::AnimCmd {

/// Calls @p action with each curve of a QMap and what the map holds for it. What one curve's slots throw
/// keeps no other curve from its turn; it is thrown at the end.
template <class ByCurve, class Action>
void forEachCurve(const ByCurve& byCurve, Action action) {
    FirstException thrown;
    for (auto entry = byCurve.cbegin(); entry != byCurve.cend(); ++entry) {
        thrown.guard([&] { action(*entry.key(), entry.value()); });
    }
    thrown.rethrow();
}

} // namespace ZT::AnimCmd
