#pragma once

#include <QObject>
#include <QString>

class QKeyEvent;

namespace Editor {

class Document;
class Drag;
class FrameNavigator;
class TimelineView;

/// What keys do in a timeline: they move the current frame or the selected keys, visit keys and layers,
/// select and zoom.
class TimelineKeyboard : public QObject {
    Q_OBJECT

public:
    /// @p view owns this object; the others outlive it.
    TimelineKeyboard(Document& document, Drag& drag, FrameNavigator& navigator, TimelineView& view);

    /// Returns false where the key means nothing here.
    bool press(const QKeyEvent& event);

Q_SIGNALS:
    /// The selected keys were asked to move; @p why they did not is empty where they did.
    void nudged(const QString& why);

private:
    void _step(double frames);
    void _nudge(double frames);
    void _stepLayer(int layers);
    void _selectAtCurrentFrame(bool isToggling);

    Document& _document;
    Drag& _drag;
    FrameNavigator& _navigator;
    TimelineView& _view;
};

} // namespace Editor
