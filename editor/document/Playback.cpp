#include "document/Playback.h"

#include "document/Document.h"
#include "model/AnimationMarkers.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>

namespace Editor {

namespace {

// Twice for each frame, so that none is shown much too late; neither so often that nothing else is done nor
// so seldom that the end is missed for long.
int intervalAt(double framesPerSecond) {
    return static_cast<int>(std::clamp(500.0 / framesPerSecond, 5.0, 100.0));
}

quint64 framesIn(qint64 nanoseconds, double framesPerSecond) {
    constexpr double most = 9007199254740992.0; // 2^53
    return static_cast<quint64>(
        std::min(std::floor(static_cast<double>(nanoseconds) * 1e-9 * framesPerSecond), most));
}

} // namespace

Playback::Playback(Document& document)
    : _document(document) {
    _timer.setTimerType(Qt::PreciseTimer);
    connect(&_timer, &QTimer::timeout, this, &Playback::_tick);
    connect(&document, &Document::replaced, this, &Playback::stop);
}

void Playback::play() {
    if (isPlaying()) {
        return;
    }
    ZT::AnimationMarkers& markers = _document.markers();
    const unsigned int selected = markers.selectedIndex();
    if (selected < markers.startIndex() || selected >= markers.endIndex()) {
        _show(markers.startIndex());
    }
    _selecting =
        connect(&markers, &ZT::AnimationMarkers::selectedIndexChanged, this, [this](unsigned int frame) {
            if (!_isShowing) {
                _goOnFrom(frame);
            }
        });
    _goOnFrom(markers.selectedIndex());
    _timer.start(intervalAt(_document.framesPerSecond()));
    Q_EMIT playingChanged(true);
}

void Playback::stop() {
    if (isPlaying()) {
        _timer.stop();
        disconnect(_selecting);
        Q_EMIT playingChanged(false);
    }
}

void Playback::_goOnFrom(unsigned int frame) {
    _from = frame;
    _clock.start();
}

void Playback::_tick() {
    const quint64 start = _document.markers().startIndex();
    const quint64 end = std::max<quint64>(_document.markers().endIndex(), start);
    quint64 frame = _from + framesIn(_clock.nsecsElapsed(), _document.framesPerSecond());
    const bool isPast = _isLooping ? frame > end : frame >= end;
    if (isPast) {
        frame = _isLooping ? start + (frame - start) % (end - start + 1) : end;
    }
    _show(static_cast<unsigned int>(frame));
    if (isPast && !_isLooping) {
        stop();
    }
}

void Playback::_show(unsigned int frame) {
    const QScopedValueRollback<bool> showing(_isShowing, true);
    _document.markers().setSelectedIndex(frame);
}

} // namespace Editor
