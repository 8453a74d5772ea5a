#pragma once

#include <QPixmap>

class QColor;
class QPainter;

namespace Editor {

/// The sign of a key, drawn once and copied to wherever a key stands: thousands of them are visible at a
/// time.
class KeyDiamond {
public:
    /// @p radius: half of its width in pixels. @p ratio: device pixels for each of those.
    KeyDiamond(int radius, const QColor& fill, const QColor& outline, double ratio);

    /// Around a point.
    void draw(QPainter& painter, int x, int y) const;

private:
    QPixmap _pixmap;
    int _reach;
};

} // namespace Editor
