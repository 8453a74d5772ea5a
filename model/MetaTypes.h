#pragma once

namespace ZT {

/// Registers every type that a signal or slot of the model carries, under the names that the meta-objects
/// spell, so that signal spies, queued connections and calls by name know it.
bool registerMetaTypes() noexcept;

} // namespace ZT
