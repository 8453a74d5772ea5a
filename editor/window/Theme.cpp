#include "window/Theme.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>

namespace Editor {

namespace {

struct Colours {
    QColor window;
    QColor button;
    QColor base;
    QColor alternateBase;
    QColor text;
    QColor disabledText;
    QColor highlight;
    QColor link;
};

Colours coloursOf(Theme theme) {
    if (theme == Theme::dark) {
        return {{0x2b, 0x2d, 0x31}, {0x3b, 0x3e, 0x44}, {0x1d, 0x1f, 0x23}, {0x25, 0x27, 0x2b},
                {0xe8, 0xea, 0xed}, {0x86, 0x8b, 0x94}, {0x2f, 0x6f, 0xbd}, {0x7d, 0xb7, 0xff}};
    }
    return {{0xf1, 0xf2, 0xf4}, {0xf7, 0xf8, 0xf9}, {0xff, 0xff, 0xff}, {0xf5, 0xf6, 0xf8},
            {0x1b, 0x1d, 0x21}, {0x80, 0x85, 0x8d}, {0x2f, 0x6f, 0xbd}, {0x0b, 0x57, 0xb0}};
}

// What the application had before the first theme; empty where the first theme is the system's.
struct SystemLook {
    QString style = QApplication::style()->objectName();
};

} // namespace

QPalette paletteOf(Theme theme) {
    const Colours colours = coloursOf(theme);
    QPalette palette(colours.button, colours.window); // Bevels' shades follow from these two.
    palette.setColor(QPalette::Base, colours.base);
    palette.setColor(QPalette::AlternateBase, colours.alternateBase);
    palette.setColor(QPalette::ToolTipBase, colours.base);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, colours.text);
        palette.setColor(QPalette::Disabled, role, colours.disabledText);
    }
    palette.setColor(QPalette::PlaceholderText, colours.disabledText);
    palette.setColor(QPalette::Highlight, colours.highlight);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.disabledText);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, colours.link);
    palette.setColor(QPalette::LinkVisited, colours.link);
    return palette;
}

void applyTheme(Theme theme) {
    static const SystemLook system;
    QApplication::setStyle(
        QStyleFactory::create(theme == Theme::system ? system.style : QStringLiteral("Fusion")));
    QApplication::setPalette(theme == Theme::system ? QApplication::style()->standardPalette()
                                                    : paletteOf(theme));
}

} // namespace Editor
