#include "window/PlaybackActions.h"

#include "document/Playback.h"
#include "timeline/TimelineView.h"
#include "window/ActionMaker.h"
#include "window/SpaceTap.h"

#include <QMenu>
#include <QToolBar>

namespace Editor {

PlaybackActions::PlaybackActions(Playback& playback, TimelineView& timeline, QObject* parent)
    : QObject(parent)
    , _play(dress(new QAction(this), "play"))
    , _loop(dress(new QAction(tr("&Loop"), this), "loop", {Qt::Key_L}, Glyph::loop))
    , _toStart(dress(new QAction(tr("Go to &Start"), this), "goToStart", {Qt::Key_Home}, Glyph::toStart))
    , _toPreviousKey(dress(new QAction(tr("Go to P&revious Key"), this), "goToPreviousKey",
                           {Qt::CTRL | Qt::Key_Left}, Glyph::toPreviousKey))
    , _toNextKey(dress(new QAction(tr("Go to &Next Key"), this), "goToNextKey", {Qt::CTRL | Qt::Key_Right},
                       Glyph::toNextKey))
    , _toEnd(dress(new QAction(tr("Go to &End"), this), "goToEnd", {Qt::Key_End}, Glyph::toEnd)) {
    for (QAction* const action : {_loop, _toStart, _toPreviousKey, _toNextKey, _toEnd}) {
        limitKeysToItsWidgets(action);
    }
    _loop->setCheckable(true);
    _loop->setChecked(playback.isLooping());
    connect(_play, &QAction::triggered, &playback, [&playback] {
        if (playback.isPlaying()) {
            playback.stop();
        } else {
            playback.play();
        }
    });
    connect(_loop, &QAction::toggled, &playback, &Playback::setLooping);
    connect(_toStart, &QAction::triggered, &timeline, &TimelineView::goToStart);
    connect(_toPreviousKey, &QAction::triggered, &timeline, &TimelineView::goToPreviousKey);
    connect(_toNextKey, &QAction::triggered, &timeline, &TimelineView::goToNextKey);
    connect(_toEnd, &QAction::triggered, &timeline, &TimelineView::goToEnd);
    connect(&playback, &Playback::playingChanged, this, &PlaybackActions::_showPlaying);
    _showPlaying(playback.isPlaying());
}

void PlaybackActions::addTo(QMenu& menu) const {
    menu.addActions({_play, _loop});
    menu.addSeparator();
    menu.addActions({_toStart, _toPreviousKey, _toNextKey, _toEnd});
}

void PlaybackActions::addTo(QToolBar& bar) const {
    bar.addActions({_toStart, _toPreviousKey, _play, _toNextKey, _toEnd, _loop});
}

void PlaybackActions::listenIn(QWidget& view) const {
    view.addActions({_loop, _toStart, _toPreviousKey, _toNextKey, _toEnd});
}

void PlaybackActions::playOnSpaceIn(QWidget& view) const {
    auto* const tap = new SpaceTap(view);
    connect(tap, &SpaceTap::tapped, _play, &QAction::trigger);
}

void PlaybackActions::_showPlaying(bool isPlaying) {
    // The menu shows what stands behind the tab as the keys; see SpaceTap.
    _play->setText(isPlaying ? tr("&Stop\tSpace") : tr("&Play\tSpace"));
    _play->setToolTip(isPlaying ? tr("Stop (Space)") : tr("Play (Space)"));
    _play->setIcon(iconOf(isPlaying ? Glyph::stop : Glyph::play));
}

} // namespace Editor
