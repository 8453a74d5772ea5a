#pragma once

#include <QColor>

namespace Editor {

/// How much lighter the lighter of two colours is, from 1 (the same) to 21 (black and white), as WCAG 2
/// defines it.
double contrastOf(const QColor& a, const QColor& b);

/// @p colour, made as much lighter or darker as lines need to be seen on @p ground.
QColor readableOn(const QColor& ground, const QColor& colour);

/// A colour between two: @p a where @p part is 0, @p b where it is 1.
QColor mixed(const QColor& a, const QColor& b, double part);

} // namespace Editor
