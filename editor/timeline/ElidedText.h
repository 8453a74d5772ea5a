#pragma once

#include <QPainter>

namespace Editor {

/// Draws one line of text in a cell of a timeline, with an ellipsis where it does not fit.
inline void drawElided(QPainter& painter, const QRect& cell, const QString& text, const QColor& colour) {
    const QRect inner = cell.adjusted(12, 0, -4, 0);
    painter.setPen(colour);
    painter.drawText(inner, Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, inner.width()));
}

} // namespace Editor
