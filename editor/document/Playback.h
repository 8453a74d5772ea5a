#pragma once

#include <QElapsedTimer>
#include <QMetaObject>
#include <QObject>
#include <QTimer>

namespace Editor {

class Document;

/// Plays the frames from the start to the end marker at the file's rate: the selected frame moves by the
/// clock, however long painting takes. A frame that somebody else selects meanwhile is where playing goes on
/// from. Another animation in the document stops it.
class Playback : public QObject {
    Q_OBJECT

public:
    /// The document outlives it.
    explicit Playback(Document& document);

    bool isPlaying() const { return _timer.isActive(); }
    bool isLooping() const noexcept { return _isLooping; }

    /// From the selected frame, or from the start where that is not between the markers or at the end. Does
    /// nothing while it plays.
    void play();
    /// The selected frame stays where it is.
    void stop();
    /// Whether the start follows upon the end, which is shown as long as each other frame, or playing stops
    /// there.
    void setLooping(bool isLooping) { _isLooping = isLooping; }

Q_SIGNALS:
    void playingChanged(bool isPlaying);

private:
    void _goOnFrom(unsigned int frame);
    void _tick();
    void _show(unsigned int frame);

    Document& _document;
    QTimer _timer;
    QElapsedTimer _clock;
    QMetaObject::Connection _selecting; ///< to the markers while it plays
    unsigned int _from = 0;             ///< where the clock was started
    bool _isShowing = false;            ///< the selected frame changes by the playback's doing
    bool _isLooping = true;
};

} // namespace Editor
