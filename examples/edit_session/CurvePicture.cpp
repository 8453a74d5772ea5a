#include "CurvePicture.h"

#include "base/animation/CurveEvaluation.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

using VQ::Math::Interpolation::InterpolationType;

namespace {

constexpr int width = 1280;
constexpr int height = 720;
constexpr double left = 74.0;
constexpr double right = 28.0;
constexpr double top = 78.0;
constexpr double bottom = 48.0;
constexpr double gap = 10.0;   // between panels
constexpr double strip = 24.0; // a panel's own header
constexpr std::size_t mostPanels = 4;

const QColor background(0x13, 0x16, 0x1c);
const QColor panelColor(0x1b, 0x20, 0x29);
const QColor gridColor(0x2b, 0x32, 0x3e);
const QColor dimColor(0x6b, 0x76, 0x88);
const QColor labelColor(0x9a, 0xa5, 0xb5);
const QColor textColor(0xe8, 0xec, 0xf2);
const std::array<QColor, mostPanels> colors{QColor(0x5a, 0xc8, 0xfa), QColor(0xff, 0xb3, 0x47),
                                            QColor(0x8e, 0xe0, 0x7a), QColor(0xf2, 0x7f, 0xb2)};

QFont fontOf(double pixels, bool bold = false) {
    QFont font("DejaVu Sans");
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(static_cast<int>(pixels));
    font.setBold(bold);
    return font;
}

/// The smallest of 1, 2, 5, 10, 20 ... that is at least @p atLeast.
double niceStep(double atLeast) {
    const double power = std::pow(10.0, std::floor(std::log10(atLeast)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= atLeast * (1.0 - 1e-9)) {
            return factor * power;
        }
    }
    return 10.0 * power;
}

QString label(double number) {
    return QString::number(std::abs(number) < 1e-300 ? 0.0 : number, 'g', 6);
}

/// Marks at multiples of @p step; the number of steps is small by the choice of the step.
template <class Action>
void forEachMark(double from, double to, double step, Action action) {
    const double first = std::ceil(from / step - 1e-9);
    const auto steps = static_cast<int>(std::floor(to / step + 1e-9) - first);
    for (int mark = 0; mark <= steps; ++mark) {
        action((first + mark) * step);
    }
}

/// How many tangents are the user's own.
std::size_t handlesOf(const VQ::Animation::MotionCurve& curve) {
    std::size_t handles = 0;
    for (const auto element : curve) {
        handles += element.second->leftTangentType == InterpolationType::bezier ? 1U : 0U;
        handles += element.second->rightTangentType == InterpolationType::bezier ? 1U : 0U;
    }
    return handles;
}

} // namespace

CurvePicture::CurvePicture(const VQ::Animation::Animation& before, const VQ::Animation::Animation& after,
                           QString title)
    : _before(before)
    , _after(after)
    , _title(std::move(title)) {
    _frames.to = 1.0;
    for (const VQ::Animation::Animation* const animation : {&_before, &_after}) {
        for (const VQ::Animation::AnimationLayer& layer : *animation) {
            if (auto last = layer.curve->end(); !layer.curve->empty()) {
                _frames.to = std::max(_frames.to, static_cast<double>((--last)->first));
            }
        }
    }
}

QImage CurvePicture::draw() const {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(background);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const std::vector<Panel> panels = _choosePanels();
    _drawHeader(painter);
    for (const Panel& panel : panels) {
        _drawPanel(painter, panel);
    }
    _drawFrameAxis(painter, panels);
    return image;
}

// What is drawn.
// --------------------------------------------------------------------------------------------------

/// The layers that changed most, in the animation's order.
std::vector<CurvePicture::Panel> CurvePicture::_choosePanels() const {
    const auto layers = static_cast<std::ptrdiff_t>(std::min(_before.size(), _after.size()));
    std::vector<std::pair<double, std::ptrdiff_t>> changes;
    for (std::ptrdiff_t i = 0; i < layers; ++i) {
        changes.emplace_back(-_change(*_before.begin()[i].curve, *_after.begin()[i].curve), i);
    }
    std::sort(changes.begin(), changes.end());
    changes.resize(std::min(changes.size(), mostPanels));
    std::sort(changes.begin(), changes.end(),
              [](const auto& a, const auto& b) { return a.second < b.second; });

    std::vector<Panel> panels;
    const double share =
        (height - top - bottom + gap) / static_cast<double>(std::max<std::size_t>(changes.size(), 1));
    for (const auto& [change, i] : changes) {
        const double y = top + share * static_cast<double>(panels.size());
        const VQ::Animation::AnimationLayer& before = _before.begin()[i];
        const VQ::Animation::AnimationLayer& after = _after.begin()[i];
        panels.push_back({&before,
                          &after,
                          {left, y + strip, width - left - right, share - gap - strip},
                          _valuesOf(*before.curve, *after.curve),
                          colors[panels.size()]});
    }
    return panels;
}

/// The mean distance of the two curves, as a part of the values that they reach, and how many keys came and
/// went.
double CurvePicture::_change(const Curve& before, const Curve& after) const {
    constexpr int samples = 400;
    const double reach = _valuesOf(before, after).length();
    double sum = 0.0;
    for (int i = 0; i <= samples; ++i) {
        const double frame = _frames.length() * i / samples;
        const double distance = double{evaluate(after, frame)} - double{evaluate(before, frame)};
        sum += std::isfinite(distance) ? std::abs(distance) / reach : 0.0;
    }
    const auto apart = [](std::size_t a, std::size_t b) {
        return static_cast<double>(a > b ? a - b : b - a);
    };
    const auto keys = static_cast<double>(std::max(before.size(), std::size_t{1}));
    const double arrived = std::min(apart(after.size(), before.size()) / keys, 1.0);
    const double shaped = std::min(apart(handlesOf(after), handlesOf(before)) / (2.0 * keys), 1.0);
    return sum / samples + 0.3 * arrived + 0.5 * shaped;
}

/// All values that the curves and their handles reach, with a margin.
CurvePicture::Span CurvePicture::_valuesOf(const Curve& before, const Curve& after) const {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -lowest;
    const auto include = [&](double value) {
        if (std::isfinite(value)) {
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
    };
    for (const Curve* const curve : {&before, &after}) {
        for (const auto element : *curve) {
            const auto& key = *element.second;
            include(key.value);
            if (key.leftTangentType == InterpolationType::bezier) {
                include(double{key.value} + double{key.leftTangentOffset.y});
            }
            if (key.rightTangentType == InterpolationType::bezier) {
                include(double{key.value} + double{key.rightTangentOffset.y});
            }
        }
    }
    if (lowest > highest) {
        return {-1.0, 1.0}; // No key, or none with a value that could be drawn.
    }
    const double reach = highest - lowest;
    const double margin = reach > 0.0 ? 0.12 * reach : std::max(1.0, 0.5 * std::abs(highest));
    return {lowest - margin, highest + margin};
}

QPointF CurvePicture::_toPixels(const Panel& panel, double frame, double value) const {
    const QRectF& plot = panel.plot;
    return {plot.left() + (frame - _frames.from) / _frames.length() * plot.width(),
            plot.bottom() - (value - panel.values.from) / panel.values.length() * plot.height()};
}

// How it is drawn.
// ------------------------------------------------------------------------------------------------

void CurvePicture::_drawHeader(QPainter& painter) const {
    // The legend is laid out from the right; the title takes what is left.
    double x = width - right;
    painter.setFont(fontOf(14));
    const QFontMetricsF metrics(painter.font());
    const double y = 42.0;
    const auto entry = [&](const QString& text, double sample, const auto& drawSample) {
        x -= metrics.horizontalAdvance(text);
        painter.setPen(labelColor);
        painter.drawText(QPointF(x, y), text);
        x -= sample + 8.0;
        drawSample(QPointF(x, y - 5.0));
        x -= 26.0;
    };
    entry("handle", 26.0, [&](QPointF at) {
        painter.setPen(QPen(textColor, 1.2));
        painter.drawLine(at, at + QPointF(22.0, 0.0));
        painter.setBrush(background);
        painter.drawEllipse(at + QPointF(22.0, 0.0), 3.0, 3.0);
    });
    entry("key", 10.0, [&](QPointF at) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(textColor);
        painter.drawPolygon(QPolygonF({at + QPointF(5, -5), at + QPointF(10, 0), at + QPointF(5, 5), at}));
    });
    entry("after", 26.0, [&](QPointF at) {
        painter.setPen(QPen(textColor, 2.4));
        painter.drawLine(at, at + QPointF(26.0, 0.0));
    });
    entry("before", 26.0, [&](QPointF at) {
        painter.setPen(QPen(dimColor, 1.6));
        painter.drawLine(at, at + QPointF(26.0, 0.0));
    });
    painter.setFont(fontOf(22, true));
    painter.setPen(textColor);
    const QString title = QFontMetricsF(painter.font()).elidedText(_title, Qt::ElideMiddle, x - left);
    painter.drawText(QPointF(left, y), title);
}

void CurvePicture::_drawPanel(QPainter& painter, const Panel& panel) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(panelColor);
    painter.drawRoundedRect(panel.plot.adjusted(0.0, -strip, 0.0, 0.0), 6.0, 6.0);

    const QRectF header(panel.plot.left() + 12.0, panel.plot.top() - strip, panel.plot.width() - 24.0, strip);
    painter.setFont(fontOf(13));
    painter.setPen(labelColor);
    const QString counts =
        QString("%1 keys, before %2").arg(panel.after->curve->size()).arg(panel.before->curve->size());
    painter.drawText(header, Qt::AlignRight | Qt::AlignVCenter, counts);
    const double room = header.width() - QFontMetricsF(painter.font()).horizontalAdvance(counts) - 24.0;
    painter.setFont(fontOf(14, true));
    painter.setPen(panel.color);
    painter.drawText(
        header, Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetricsF(painter.font())
            .elidedText(QString::fromStdString(panel.after->actuatorName), Qt::ElideRight, room));

    _drawValueAxis(painter, panel);
    painter.save();
    painter.setClipRect(panel.plot.adjusted(-6.0, 0.0, 6.0, 0.0)); // Keys at the ends are drawn whole.
    _drawCurve(painter, panel, *panel.before->curve, QPen(dimColor, 1.6));
    _drawKeys(painter, panel, *panel.before->curve, dimColor);
    _drawCurve(painter, panel, *panel.after->curve, QPen(panel.color, 2.4));
    _drawHandles(painter, panel, *panel.after->curve);
    _drawKeys(painter, panel, *panel.after->curve, panel.color.lighter(135));
    painter.restore();
}

/// Frames under the lowest panel, grid lines through all of them.
void CurvePicture::_drawFrameAxis(QPainter& painter, const std::vector<Panel>& panels) const {
    if (panels.empty()) {
        painter.setFont(fontOf(18));
        painter.setPen(labelColor);
        painter.drawText(QRectF(0, 0, width, height), Qt::AlignCenter, "no layers");
        return;
    }
    painter.setFont(fontOf(13));
    const QFontMetricsF metrics(painter.font());
    const double room = metrics.horizontalAdvance(QString::number(_frames.to, 'f', 0)) + 36.0;
    const double step = std::max(1.0, niceStep(room / panels.back().plot.width() * _frames.length()));
    const double axis = panels.back().plot.bottom();
    forEachMark(_frames.from, _frames.to, step, [&](double frame) {
        const double x = _toPixels(panels.back(), frame, 0.0).x();
        const QString text = QString::number(frame, 'f', 0);
        painter.setPen(labelColor);
        painter.drawLine(QPointF(x, axis), QPointF(x, axis + 5.0));
        painter.drawText(QPointF(x - metrics.horizontalAdvance(text) / 2.0, axis + 8.0 + metrics.ascent()),
                         text);
    });
    painter.setPen(labelColor);
    painter.drawText(QPointF(left - metrics.horizontalAdvance("frame") - 14.0, axis + 8.0 + metrics.ascent()),
                     "frame");
}

void CurvePicture::_drawValueAxis(QPainter& painter, const Panel& panel) const {
    painter.setFont(fontOf(12));
    const QFontMetricsF metrics(painter.font());
    const double step = niceStep(20.0 / panel.plot.height() * panel.values.length());
    forEachMark(panel.values.from, panel.values.to, step, [&](double value) {
        const double y = _toPixels(panel, 0.0, value).y();
        painter.setPen(QPen(gridColor, 1.0));
        painter.drawLine(QPointF(panel.plot.left(), y), QPointF(panel.plot.right(), y));
        const QString text = label(value);
        painter.setPen(labelColor);
        painter.drawText(
            QPointF(left - 10.0 - metrics.horizontalAdvance(text), y + metrics.ascent() / 2.0 - 1.0), text);
    });
}

void CurvePicture::_drawCurve(QPainter& painter, const Panel& panel, const Curve& curve,
                              const QPen& pen) const {
    if (curve.empty()) {
        return;
    }
    // Two points for each pixel, and a new start behind values that cannot be drawn.
    const int points = 2 * static_cast<int>(panel.plot.width());
    QPainterPath path;
    bool isDrawing = false;
    for (int i = 0; i <= points; ++i) {
        const double frame = _frames.from + _frames.length() * i / points;
        const double value = evaluate(curve, frame);
        const QPointF point = _toPixels(panel, frame, value);
        if (!std::isfinite(value)) {
            isDrawing = false;
        } else if (std::exchange(isDrawing, true)) {
            path.lineTo(point);
        } else {
            path.moveTo(point);
        }
    }
    painter.setBrush(Qt::NoBrush);
    painter.strokePath(path, pen);
}

/// Keys that stand closer than their marks are drawn as dots or, closer still, not at all.
void CurvePicture::_drawKeys(QPainter& painter, const Panel& panel, const Curve& curve,
                             const QColor& color) const {
    const double spacing = panel.plot.width() / static_cast<double>(curve.size() + 1);
    if (spacing < 2.0) {
        return;
    }
    const double size = std::clamp(spacing / 2.0, 1.2, 5.0);
    painter.setPen(size > 3.0 ? QPen(panelColor, 1.0) : QPen(Qt::NoPen));
    painter.setBrush(color);
    for (const auto element : curve) {
        if (std::isfinite(element.second->value)) {
            const QPointF at = _toPixels(panel, element.first, element.second->value);
            painter.drawPolygon(QPolygonF({at + QPointF(0, -size), at + QPointF(size, 0),
                                           at + QPointF(0, size), at + QPointF(-size, 0)}));
        }
    }
}

void CurvePicture::_drawHandles(QPainter& painter, const Panel& panel, const Curve& curve) const {
    painter.setPen(QPen(textColor, 1.2));
    painter.setBrush(panelColor);
    for (const auto element : curve) {
        const auto& key = *element.second;
        const QPointF from = _toPixels(panel, element.first, key.value);
        const auto drawHandle = [&](InterpolationType type, const VQ::Math::Position2D& offset) {
            const QPointF to =
                _toPixels(panel, element.first + double{offset.x}, double{key.value} + double{offset.y});
            if (type == InterpolationType::bezier && std::isfinite(to.x()) && std::isfinite(to.y())) {
                painter.drawLine(from, to);
                painter.drawEllipse(to, 3.0, 3.0);
            }
        };
        drawHandle(key.leftTangentType, key.leftTangentOffset);
        drawHandle(key.rightTangentType, key.rightTangentOffset);
    }
}
