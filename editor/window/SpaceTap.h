#pragma once

#include <QObject>

class QWidget;

namespace Editor {

/// Tells a tap on Space from Space being held while the mouse does something, which a shortcut cannot.
class SpaceTap : public QObject {
    Q_OBJECT

public:
    /// Watches @p watched, which owns it.
    explicit SpaceTap(QWidget& watched);

    bool eventFilter(QObject* object, QEvent* event) override;

Q_SIGNALS:
    /// Space was pressed and released, and nothing else in between.
    void tapped();

private:
    bool _isTap = false;
};

} // namespace Editor
