#pragma once

#include <QWidget>

namespace Editor {

class CurveView;
class TimelineView;

/// Holds the curves so that each frame is at the same place in them as in the timeline below, whose column of
/// names is wider than the curves' ruler.
class AlignedCurves : public QWidget {
    Q_OBJECT

public:
    /// Takes @p curves as its child. @p timeline must be as wide as this widget.
    AlignedCurves(CurveView& curves, TimelineView& timeline, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    bool eventFilter(QObject* object, QEvent* event) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QMargins _margins() const;
    void _align();

    CurveView& _curves;
    TimelineView& _timeline;
};

} // namespace Editor
