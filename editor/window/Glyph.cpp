#include "window/Glyph.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace Editor {

namespace {

/// Paths of SVG in a square of 16 units.
struct Drawing {
    const char* lines;
    const char* areas;
};

Drawing drawingOf(Glyph glyph) {
    switch (glyph) {
    case Glyph::newFile:
        return {"M3.5 1.5h6l3 3v10h-9z M9.5 1.5v3h3", ""};
    case Glyph::open:
        return {"M1.5 13.5v-11h5l1.5 2h6.5v9z", ""};
    case Glyph::save:
        return {"M2 2h9.5l2.5 2.5v9.5h-12z M5 2v4h5.5v-4 M4.5 14v-5h7v5", ""};
    case Glyph::undo:
        return {"M6 2.5L2.5 6L6 9.5 M2.5 6h7.5a3.8 3.8 0 0 1 0 7.6h-4", ""};
    case Glyph::redo:
        return {"M10 2.5L13.5 6L10 9.5 M13.5 6h-7.5a3.8 3.8 0 0 0 0 7.6h4", ""};
    case Glyph::cut:
        return {"M4.5 1.5l5.5 9 M11.5 1.5l-5.5 9 M6.5 12.3a2 2 0 1 1 -4 0a2 2 0 1 1 4 0z "
                "M13.5 12.3a2 2 0 1 1 -4 0a2 2 0 1 1 4 0z",
                ""};
    case Glyph::copy:
        return {"M1.5 1.5h8v9h-8z M6.5 10.5v4h8v-9h-5", ""};
    case Glyph::paste:
        return {"M5.5 3h-3v11.5h11v-11.5h-3 M5.5 1.5h5v3h-5z", ""};
    case Glyph::remove:
        return {"M2 4h12 M3.5 4l1 10.5h7l1-10.5 M6 4v-2.5h4v2.5 M6.7 7v4.5 M9.3 7v4.5", ""};
    case Glyph::insertKey:
        return {"M12.5 1v6 M9.5 4h6", "M6 5l5 5l-5 5l-5-5z"};
    case Glyph::constant:
        return {"M1 12.5h7.5v-9h6.5", ""};
    case Glyph::linear:
        return {"M1.5 13L14.5 3", ""};
    case Glyph::bezier:
        return {"M1.5 13C9 13 7 3 14.5 3 M1.5 13h6 M14.5 3h-6", "M7 12h2v2h-2z M7 2h2v2h-2z"};
    case Glyph::bezierAuto:
        return {"M1 13.5C4 13.5 5 4 8 4S12 13.5 15 13.5", ""};
    case Glyph::smooth:
        return {"M2.5 11L13.5 5", "M8 5.2l2.8 2.8l-2.8 2.8l-2.8-2.8z M1 10.5h2v2h-2z M13 3.5h2v2h-2z"};
    case Glyph::symmetrical:
        return {"M2 8h12 M8 1.5v2.5 M8 12v2.5",
                "M8 5.2l2.8 2.8l-2.8 2.8l-2.8-2.8z M1 7h2v2h-2z M13 7h2v2h-2z"};
    case Glyph::toStart:
        return {"M3 2.5v11", "M13.5 2.5l-8 5.5l8 5.5z"};
    case Glyph::toPreviousKey:
        return {"M5.5 3.5l-4 4.5l4 4.5", "M11 4.5l3.5 3.5l-3.5 3.5l-3.5-3.5z"};
    case Glyph::play:
        return {"", "M4 2l10 6l-10 6z"};
    case Glyph::stop:
        return {"", "M3 3h10v10h-10z"};
    case Glyph::toNextKey:
        return {"M10.5 3.5l4 4.5l-4 4.5", "M5 4.5l3.5 3.5l-3.5 3.5l-3.5-3.5z"};
    case Glyph::toEnd:
        return {"M13 2.5v11", "M2.5 2.5l8 5.5l-8 5.5z"};
    case Glyph::loop:
        return {"M2.5 8v-2a2 2 0 0 1 2-2h8.5 M10.5 1.5l2.5 2.5l-2.5 2.5 "
                "M13.5 8v2a2 2 0 0 1-2 2h-8.5 M5.5 14.5l-2.5-2.5l2.5-2.5",
                ""};
    case Glyph::fitAll:
        return {
            "M1.5 5v-3.5h3.5 M11 1.5h3.5v3.5 M14.5 11v3.5h-3.5 M5 14.5h-3.5v-3.5 M4 10.5C7 10.5 8 5.5 12 5.5",
            ""};
    case Glyph::fitSelection:
        return {"M1.5 5v-3.5h3.5 M11 1.5h3.5v3.5 M14.5 11v3.5h-3.5 M5 14.5h-3.5v-3.5",
                "M8 4.5l3.5 3.5l-3.5 3.5l-3.5-3.5z"};
    }
    return {"", ""};
}

class GlyphEngine : public QIconEngine {
public:
    GlyphEngine(Glyph glyph, bool isMixed)
        : _glyph(glyph)
        , _isMixed(isMixed) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const Drawing drawing = drawingOf(_glyph);
        const QString svg =
            QStringLiteral(
                "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 16 16\">"
                "<g stroke=\"%1\" stroke-width=\"1.3\" stroke-linejoin=\"round\" stroke-linecap=\"round\">"
                "<g transform=\"%4\"><path fill=\"none\" d=\"%2\"/>"
                "<path fill=\"%1\" stroke=\"none\" d=\"%3\"/></g><path d=\"%5\"/></g></svg>")
                .arg(_colour(mode).name(), QLatin1String(drawing.lines), QLatin1String(drawing.areas),
                     QLatin1String(_isMixed ? "matrix(.75 0 0 .75 2 0)" : "matrix(1 0 0 1 0 0)"),
                     QLatin1String(_isMixed ? "M2 14h12 M2 15h12" : ""));
        QSvgRenderer(svg.toUtf8()).render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new GlyphEngine(_glyph, _isMixed); }

private:
    static QColor _colour(QIcon::Mode mode) {
        const QPalette palette = QApplication::palette();
        switch (mode) {
        case QIcon::Disabled:
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        case QIcon::Selected:
            return palette.color(QPalette::HighlightedText);
        case QIcon::Normal:
        case QIcon::Active:
            break;
        }
        return palette.color(QPalette::ButtonText);
    }

    Glyph _glyph;
    bool _isMixed;
};

} // namespace

QIcon iconOf(Glyph glyph) {
    return QIcon(new GlyphEngine(glyph, false)); // The icon owns it.
}

QIcon mixedIconOf(Glyph glyph) {
    return QIcon(new GlyphEngine(glyph, true));
}

} // namespace Editor
