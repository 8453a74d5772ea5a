#include "window/StatusLine.h"

#include "document/Document.h"
#include "model/AnimationMarkers.h"

#include <QLabel>
#include <QLocale>

namespace Editor {

StatusLine::StatusLine(Document& document, QWidget* parent)
    : QStatusBar(parent)
    , _document(document)
    , _message(new QLabel(this))
    , _position(new QLabel(this)) {
    // Long texts are cut off rather than making the window wider.
    _message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    _message->setTextFormat(Qt::PlainText);
    _message->setObjectName(QStringLiteral("statusMessage"));
    _position->setObjectName(QStringLiteral("statusPosition"));
    addWidget(_message, 1);
    addPermanentWidget(_position);
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, [this] { showRefused({}); });
    connect(&document, &Document::replaced, this, &StatusLine::_observeMarkers);
    _observeMarkers();
}

QString StatusLine::text() const {
    return _message->text();
}

QString StatusLine::positionText() const {
    return _position->text();
}

void StatusLine::showHovered(const QString& text) {
    _hovered = text;
    _update();
}

void StatusLine::showBlocked(const QString& why) {
    _blocked = why;
    if (!why.isEmpty()) {
        _refused.clear();
    }
    _update();
}

void StatusLine::showRefused(const QString& why) {
    _refused = why;
    if (why.isEmpty()) {
        _timer.stop();
    } else {
        _timer.start(reading);
    }
    _update();
}

void StatusLine::_observeMarkers() {
    connect(&_document.markers(), &ZT::AnimationMarkers::selectedIndexChanged, this,
            &StatusLine::_showPosition);
    _showPosition();
}

void StatusLine::_showPosition() {
    const unsigned int frame = _document.markers().selectedIndex();
    const QString seconds = QLocale().toString(frame / _document.framesPerSecond(), 'f', 2);
    _position->setText(tr("Frame %1, %2 s").arg(frame).arg(seconds));
}

void StatusLine::_update() {
    _message->setText(!_blocked.isEmpty() ? _blocked : !_refused.isEmpty() ? _refused : _hovered);
}

} // namespace Editor
