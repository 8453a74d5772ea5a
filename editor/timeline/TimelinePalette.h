#pragma once

#include <QColor>
#include <QPalette>

namespace Editor {

/// The colours of a timeline, made from those of a widget, so that light and dark ones read well.
struct TimelinePalette {
    explicit TimelinePalette(const QPalette& palette);

    QColor ground;
    QColor otherGround; ///< every second row
    QColor header;      ///< ruler and names
    QColor line;
    QColor text;
    QColor fadedText; ///< of what is locked, hidden or unimportant
    QColor outside;   ///< laid over frames that do not play
    QColor selection;
    QColor selectionText;
    QColor range; ///< laid over the range
    QColor currentFrame;
};

} // namespace Editor
