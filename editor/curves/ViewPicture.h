#pragma once

#include <QPixmap>

#include <functional>

class QPainter;
class QWidget;

namespace Editor {

/// What a view has painted, kept for as long as it holds, so that a line that moves above it or a rubber band
/// costs no more than the pixels that change.
class ViewPicture {
public:
    /// What is there is other than what was painted.
    void spoil() noexcept { _isSpoilt = true; }

    /// Paints the picture of all of @p view, with @p paint where there is none that holds for the view's size
    /// and the painter's device. Onto a device that keeps lines rather than pixels, always with @p paint.
    void paint(QPainter& painter, const QWidget& view, const std::function<void(QPainter&)>& paint);

private:
    QPixmap _pixmap;
    bool _isSpoilt = true;
};

} // namespace Editor
