#pragma once

#include <QIcon>

namespace Editor {

/// What the icons of actions show.
enum class Glyph {
    newFile,
    open,
    save,
    undo,
    redo,
    cut,
    copy,
    paste,
    remove,
    insertKey,
    constant,
    linear,
    bezier,
    bezierAuto,
    smooth,
    symmetrical,
    toStart,
    toPreviousKey,
    play,
    stop,
    toNextKey,
    toEnd,
    loop,
    fitAll,
    fitSelection,
};

/// A drawing, sharp at every size, in the text colour that the application's palette has when it is painted.
QIcon iconOf(Glyph glyph);
/// The same above a dash: something is so in part.
QIcon mixedIconOf(Glyph glyph);

} // namespace Editor
