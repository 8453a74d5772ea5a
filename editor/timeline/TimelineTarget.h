#pragma once

#include "document/KeySelection.h"

#include <QCoreApplication>
#include <QPoint>
#include <QString>

namespace Editor {

class Document;
class TimelineLayout;

/// What lies under a point of the timeline.
class TimelineTarget {
    Q_DECLARE_TR_FUNCTIONS(Editor::TimelineTarget)

public:
    enum class Part {
        nothing,
        name,  ///< of a layer, or of the summary
        ruler, ///< beside the markers' handles
        startMarker,
        endMarker,
        lane, ///< of the range, beside it
        range,
        rangeStart,
        rangeEnd,
        summaryKey, ///< keys of the frame
        key,
        rows ///< of layers or the summary, where no key is that may be edited
    };

    TimelineTarget() = default;
    /// Keys that may not be edited are none.
    TimelineTarget(Document& document, const TimelineLayout& layout, const QPoint& point);

    Part part() const noexcept { return _part; }
    bool isKey() const noexcept { return _part == Part::key || _part == Part::summaryKey; }
    /// -1 for the summary and for what belongs to no layer.
    int layer() const noexcept { return _layer; }
    /// That of the key, or the one next to the point.
    unsigned int frame() const noexcept { return _frame; }

    /// The keys of all of those layers that may be edited, at the frame.
    KeySelection::Keys keys(Document& document) const;
    /// What a status bar says of it.
    QString description(Document& document) const;

private:
    Part _rangePart(const Document& document, const TimelineLayout& layout, int x) const;
    bool _findKey(ZT::EditableMotionCurve& curve, const TimelineLayout& layout, int x);
    bool _findSummaryKey(Document& document, const TimelineLayout& layout, int x);

    Part _part = Part::nothing;
    int _layer = -1;
    unsigned int _frame = 0;
};

} // namespace Editor
