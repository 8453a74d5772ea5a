#pragma once

#include <QStatusBar>
#include <QTimer>

class QLabel;

namespace Editor {

class Document;

/// The window's lowest line: what blocks a drag or was refused, else what is under the pointer; and the
/// current frame.
class StatusLine : public QStatusBar {
    Q_OBJECT

public:
    static constexpr int reading = 8000; ///< milliseconds that a refusal stays

    explicit StatusLine(Document& document, QWidget* parent = nullptr);

    /// What the line says now.
    QString text() const;
    /// Why the drag under way does not go on; empty where it does.
    QString blockedText() const { return _blocked; }
    /// The current frame and its time.
    QString positionText() const;

public Q_SLOTS:
    /// Until the next one; empty for nothing.
    void showHovered(const QString& text);
    /// Until it is empty: why a drag does not go on.
    void showBlocked(const QString& why);
    /// For a while, or until a drag is blocked: why something was not done.
    void showRefused(const QString& why);

private:
    void _observeMarkers();
    void _showPosition();
    void _update();

    Document& _document;
    QLabel* _message; ///< QObject children
    QLabel* _position;
    QTimer _timer; ///< runs while a refusal is shown
    QString _hovered;
    QString _blocked;
    QString _refused;
};

} // namespace Editor
