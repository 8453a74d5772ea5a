#pragma once

#include <QObject>

class QAction;
class QMenu;
class QToolBar;
class QWidget;

namespace Editor {

class Playback;
class TimelineView;

/// Playing and going to frames: what a menu "Playback" holds.
class PlaybackActions : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the actions' use.
    PlaybackActions(Playback& playback, TimelineView& timeline, QObject* parent);

    void addTo(QMenu& menu) const;
    void addTo(QToolBar& bar) const;
    /// Lets the keys that are no command elsewhere work in @p view and the widgets in it.
    void listenIn(QWidget& view) const;
    /// Space plays and stops where @p view itself has the focus.
    void playOnSpaceIn(QWidget& view) const;

private:
    void _showPlaying(bool isPlaying);

    QAction* _play; ///< all are QObject children
    QAction* _loop;
    QAction* _toStart;
    QAction* _toPreviousKey;
    QAction* _toNextKey;
    QAction* _toEnd;
};

} // namespace Editor
