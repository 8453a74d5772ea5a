#pragma once

class QString;

namespace Editor {

/// Why @p name can be no layer's, as a sentence for people; empty where it can: a file must be able to hold
/// it.
QString problemInName(const QString& name);

} // namespace Editor
