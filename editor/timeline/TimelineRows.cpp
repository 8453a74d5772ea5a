#include "timeline/TimelineRows.h"

#include "curves/ReadableColour.h"
#include "document/Document.h"
#include "document/KeySelection.h"
#include "document/Translation.h"
#include "timeline/CurveKeys.h"
#include "timeline/ElidedText.h"
#include "timeline/KeyDiamond.h"

#include <algorithm>
#include <limits>

namespace Editor {

TimelineRows::TimelineRows(Document& document, const TimelineLayout& layout, const TimelinePalette& palette,
                           int currentLayer)
    : _document(document)
    , _layout(layout)
    , _palette(palette)
    , _currentLayer(currentLayer)
    , _reach(layout.keyRadius() + 2) {}

void TimelineRows::paintGrounds(QPainter& painter) const {
    painter.fillRect(_layout.summary() | _layout.nameBeside(_layout.summary()), _palette.header);
    painter.fillRect(_layout.rows(), _palette.ground);
    painter.fillRect(_layout.nameBeside(_layout.rows()), _palette.header);
    painter.save();
    painter.setClipRect(_layout.rows());
    for (int layer = _layout.firstLayer(); layer <= _layout.lastLayer(); ++layer) {
        painter.fillRect(_layout.row(layer), _ground(layer));
    }
    painter.restore();
}

void TimelineRows::paintNamesAndKeys(QPainter& painter) const {
    _paintSummary(painter);
    painter.save();
    painter.setClipRect(_layout.rows() | _layout.nameBeside(_layout.rows()));
    Marks marks;
    for (int layer = _layout.firstLayer(); layer <= _layout.lastLayer(); ++layer) {
        _paintLayer(painter, layer, marks);
    }
    painter.restore();
}

QColor TimelineRows::_ground(int layer) const {
    const QColor ground = layer % 2 == 0 ? _palette.ground : _palette.otherGround;
    return layer == _currentLayer ? mixed(ground, _palette.selection, 0.15) : ground;
}

// A pixel's place in the marks is its distance from the column of names, plus the reach.
void TimelineRows::_markKeys(int layer, Marks& marks) const {
    ZT::EditableMotionCurve* const curve = _document.layer(layer)->getCurve();
    if (curve == nullptr) {
        return;
    }
    const LayerLook look = _document.look(layer);
    const Mark usual = look.isVisible && !look.isLocked ? Mark::editable : Mark::notEditable;
    const KeySelection& selection = _document.selection();
    const bool mayBeSelected = !selection.isEmpty();
    const int origin = _layout.columnWidth() - _reach;
    const auto frames = _layout.framesBetween(origin, origin + static_cast<int>(marks.size()) - 1);
    forEachKey(*curve, frames.first, frames.last, [&](unsigned int frame, ZT::EditableMotionCurveKey* key) {
        const int place = std::clamp(_layout.x(frame) - origin, 0, static_cast<int>(marks.size()) - 1);
        Mark& mark = marks[static_cast<std::size_t>(place)];
        if (mark != Mark::selected) {
            mark = mayBeSelected && selection.contains(key) ? Mark::selected : std::max(mark, usual);
        }
    });
}

void TimelineRows::_drawMarks(QPainter& painter, const QRect& row, const Marks& marks,
                              const QColor& colour) const {
    const double ratio = painter.device()->devicePixelRatioF();
    const int radius = _layout.keyRadius();
    const QColor outline = mixed(colour, _palette.text, 0.5);
    const KeyDiamond faded(radius, _palette.ground, _palette.fadedText, ratio);
    const KeyDiamond usual(radius, colour, outline, ratio);
    const KeyDiamond chosen(radius + 1, _palette.selection, _palette.text, ratio);
    const int origin = row.x() - _reach;
    const auto draw = [&](Mark wanted, const KeyDiamond& diamond) {
        for (auto mark = std::find(marks.begin(), marks.end(), wanted); mark != marks.end();
             mark = std::find(mark + 1, marks.end(), wanted)) {
            diamond.draw(painter, origin + static_cast<int>(mark - marks.begin()), row.center().y());
        }
    };
    painter.save();
    painter.setClipRect(row, Qt::IntersectClip);
    draw(Mark::notEditable, faded);
    draw(Mark::editable, usual);
    draw(Mark::selected, chosen); // On top of all others.
    painter.restore();
}

// Those of @p frames from the first to the last key of all layers.
TimelineLayout::Frames TimelineRows::_framesWithKeys(const TimelineLayout::Frames& frames) const {
    TimelineLayout::Frames with{std::numeric_limits<unsigned int>::max(), 0};
    for (ZT::EditableAnimationLayer* const layer : _document.animation()) {
        if (ZT::EditableMotionCurve& curve = *layer->getCurve(); !curve.empty()) {
            with.first = std::min(with.first, curve.begin()->first);
            with.last = std::max(with.last, curve.getGreaterIndex());
        }
    }
    return {std::max(frames.first, with.first), std::min(frames.last, with.last)};
}

// Where in marks of the width keys can be.
std::vector<std::size_t> TimelineRows::_placesOfKeys(int width) const {
    const int origin = _layout.columnWidth() - _reach;
    const auto frames = _framesWithKeys(_layout.framesBetween(origin, origin + width - 1));
    std::vector<std::size_t> places;
    if (frames.first > frames.last) {
        return places;
    }
    const unsigned int span = frames.last - frames.first;
    // No more than there are pixels.
    const unsigned int steps = std::min(span, static_cast<unsigned int>(width));
    for (unsigned int step = 0; step <= steps; ++step) {
        const double frame = frames.first + (steps == 0 ? 0.0 : static_cast<double>(span) * step / steps);
        places.push_back(static_cast<std::size_t>(std::clamp(_layout.x(frame) - origin, 0, width - 1)));
    }
    return places;
}

// Where all layers have their keys at the same frames, the first ones show all that there is to be seen.
void TimelineRows::_paintSummary(QPainter& painter) const {
    const QRect row = _layout.summary();
    const int width = row.width() + 2 * _reach;
    Marks marks(static_cast<std::size_t>(width), Mark::none);
    const std::vector<std::size_t> places = _placesOfKeys(width);
    const Mark most = _document.selection().isEmpty() ? Mark::editable : Mark::selected;
    const auto isFull = [&] {
        return std::all_of(places.begin(), places.end(),
                           [&](std::size_t place) { return marks[place] == most; });
    };
    for (int layer = 0; layer < _document.layerCount() && !isFull(); ++layer) {
        _markKeys(layer, marks);
    }
    _drawMarks(painter, row, marks, _palette.fadedText);
    drawElided(painter, _layout.nameBeside(row), tr("All layers"), _palette.text);
    painter.fillRect(QRect(0, row.bottom(), row.right() + 1, 1), _palette.line);
}

void TimelineRows::_paintLayer(QPainter& painter, int layer, Marks& marks) const {
    const QRect row = _layout.row(layer);
    const LayerLook look = _document.look(layer);
    const int width = row.width() + 2 * _reach;
    marks.assign(static_cast<std::size_t>(width), Mark::none);
    _markKeys(layer, marks);
    _drawMarks(painter, row, marks, readableOn(_ground(layer), look.colour));

    const QRect cell = _layout.nameBeside(row);
    const bool isCurrent = layer == _currentLayer;
    const QColor ground = isCurrent ? _palette.selection : _palette.header;
    painter.fillRect(cell, ground);
    const int side = cell.height() / 2;
    painter.fillRect(QRect(4, cell.center().y() - side / 2, 4, side + 1), readableOn(ground, look.colour));
    const bool isEditable = look.isVisible && !look.isLocked;
    const QColor text = isEditable ? _palette.text : _palette.fadedText;
    drawElided(painter, cell, _document.layer(layer)->getActuatorName(),
               isCurrent ? _palette.selectionText : text);
}

} // namespace Editor
