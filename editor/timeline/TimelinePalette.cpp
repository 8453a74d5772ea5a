#include "timeline/TimelinePalette.h"

#include "curves/ReadableColour.h"

namespace Editor {

namespace {

QColor translucent(QColor colour, float alpha) {
    colour.setAlphaF(alpha);
    return colour;
}

} // namespace

TimelinePalette::TimelinePalette(const QPalette& palette)
    : ground(palette.color(QPalette::Base))
    , otherGround(palette.color(QPalette::AlternateBase))
    , header(palette.color(QPalette::Window))
    , line(mixed(header, palette.color(QPalette::WindowText), 0.25))
    , text(palette.color(QPalette::WindowText))
    , fadedText(mixed(header, text, 0.6))
    , outside(translucent(text, 0.1F))
    , selection(palette.color(QPalette::Highlight))
    , selectionText(palette.color(QPalette::HighlightedText))
    , range(translucent(selection, 0.2F))
    , currentFrame(readableOn(ground, QColor(230, 70, 50))) {}

} // namespace Editor
