#pragma once

#include "timeline/TimelineLayout.h"
#include "timeline/TimelinePalette.h"

#include <QPainter>

#include <cstddef>
#include <vector>

namespace Editor {

class Document;

/// Paints the rows of a timeline: the names, and for each visible layer and for all together the keys at
/// visible frames. Where several fall on one pixel one is drawn. Lives for one paint.
class TimelineRows {
public:
    TimelineRows(Document& document, const TimelineLayout& layout, const TimelinePalette& palette,
                 int currentLayer);

    void paintGrounds(QPainter& painter) const;
    void paintNamesAndKeys(QPainter& painter) const;

private:
    /// What of a pixel's keys is to be seen; the greatest counts.
    enum class Mark : unsigned char { none, notEditable, editable, selected };
    using Marks = std::vector<Mark>;

    void _markKeys(int layer, Marks& marks) const;
    void _drawMarks(QPainter& painter, const QRect& row, const Marks& marks, const QColor& colour) const;
    QColor _ground(int layer) const;
    TimelineLayout::Frames _framesWithKeys(const TimelineLayout::Frames& frames) const;
    std::vector<std::size_t> _placesOfKeys(int width) const;
    void _paintSummary(QPainter& painter) const;
    void _paintLayer(QPainter& painter, int layer, Marks& marks) const;

    Document& _document;
    const TimelineLayout& _layout;
    const TimelinePalette& _palette;
    int _currentLayer;
    int _reach; ///< of a diamond that is wholly or partly visible
};

} // namespace Editor
