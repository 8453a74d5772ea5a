#pragma once

#include "curves/ViewAxis.h"
#include "document/Drag.h"
#include "model/AnimationMarkers.h"
#include "tests/editor/support/Scene.h"
#include "timeline/TimelineView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QWheelEvent>

/// A timeline of 900 x 260 pixels that shows the frames -10 to 110 of a scene, and a hand on its mouse. The
/// layer "arm" has keys at 0, 10, 20 and 30, "leg" at 10 and 40, "head" at 10 and 60.
class TimelineScene : public EditorScene::Scene {
public:
    explicit TimelineScene(const QStringList& names = {"arm", "leg", "head"})
        : Scene(names)
        , axis(Editor::ViewAxis::forFrames(&_owner))
        , view(document, drag, *axis) {
        if (document.layerCount() == 3) {
            add(0, {0, 10, 20, 30});
            add(1, {10, 40});
            add(2, {10, 60});
        }
        markers().setEndIndex(100);
        view.resize(900, 260);
        view.show();
        axis->show(-10.0, 110.0);
        QObject::connect(&drag, &Editor::Drag::blocked, &_owner,
                         [this](const QString& why) { blocked.append(why); });
        QObject::connect(&view, &Editor::TimelineView::hovered, &_owner,
                         [this](const QString& text) { hovered = text; });
    }

    QPoint inRow(int layer, double frame) const { return _at(view.parts().row(layer), frame); }
    QPoint onSummary(double frame) const { return _at(view.parts().summary(), frame); }
    QPoint inLane(double frame) const { return _at(view.parts().lane(), frame); }
    QPoint inRuler(double frame) const { return {view.parts().x(frame), view.parts().ruler().top() + 2}; }
    QPoint onName(int layer) const { return view.parts().nameBeside(view.parts().row(layer)).center(); }
    QPoint onStart() const { return view.parts().startHandle(document.markers().startIndex()).center(); }
    QPoint onEnd() const { return view.parts().endHandle(document.markers().endIndex()).center(); }
    /// Where the ends of the range are grabbed.
    QPoint onRangeStart() const { return inLane(document.markers().rangeStartIndex()) - QPoint(2, 0); }
    QPoint onRangeEnd() const { return inLane(document.markers().rangeEndIndex()) + QPoint(2, 0); }
    /// As many pixels as frames take.
    QPoint wide(double byFrames) const { return {view.parts().x(byFrames) - view.parts().x(0.0), 0}; }

    void press(const QPoint& point, Qt::KeyboardModifiers modifiers = {},
               Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(view.viewport(), button, modifiers, point);
    }
    void moveTo(const QPoint& point, Qt::MouseButtons buttons = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseMove, point, view.viewport()->mapToGlobal(point), Qt::NoButton,
                          buttons, {});
        QApplication::sendEvent(view.viewport(), &event);
    }
    void release(const QPoint& point, Qt::KeyboardModifiers modifiers = {},
                 Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(view.viewport(), button, modifiers, point);
    }
    void click(const QPoint& point, Qt::KeyboardModifiers modifiers = {}) {
        press(point, modifiers);
        release(point, modifiers);
    }
    /// The second of two quick presses.
    void pressAgain(const QPoint& point, Qt::KeyboardModifiers modifiers = {}) {
        QMouseEvent event(QEvent::MouseButtonDblClick, point, view.viewport()->mapToGlobal(point),
                          Qt::LeftButton, Qt::LeftButton, modifiers);
        QApplication::sendEvent(view.viewport(), &event);
    }
    /// Presses and moves in several steps.
    void pull(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = {},
              Qt::MouseButton button = Qt::LeftButton) {
        constexpr int steps = 5;
        press(from, modifiers, button);
        for (int i = 1; i <= steps; ++i) {
            moveTo(from + (to - from) * i / steps, button);
        }
    }
    void dragBetween(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = {},
                     Qt::MouseButton button = Qt::LeftButton) {
        pull(from, to, modifiers, button);
        release(to, modifiers, button);
    }
    void turnWheel(const QPoint& point, const QPoint& angle, Qt::KeyboardModifiers modifiers = {}) {
        QWheelEvent event(point, view.viewport()->mapToGlobal(point), QPoint(), angle, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }
    void type(Qt::Key which, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&view, which, modifiers);
    }

    /// The selected keys, sorted: "arm@10 leg@40".
    QString selected() {
        QStringList texts;
        for (const EditorScene::Key* const each : document.selection().keys()) {
            texts.append(QString("%1@%2")
                             .arg(each->getParentCurve()->getParentLayer()->getActuatorName())
                             .arg(ZT::index(each)));
        }
        texts.sort();
        return texts.join(' ');
    }
    void select(int layer, std::initializer_list<unsigned int> atFrames) {
        EditorScene::Keys keys;
        for (const unsigned int frame : atFrames) {
            keys.insert(key(layer, frame));
        }
        document.selection().add(keys);
    }
    unsigned int currentFrame() { return markers().selectedIndex(); }

    Editor::Drag drag{document};

private:
    QPoint _at(const QRect& part, double frame) const { return {view.parts().x(frame), part.center().y()}; }

    QObject _owner;

public:
    Editor::ViewAxis* axis;
    Editor::TimelineView view;
    QStringList blocked; ///< what the drag said
    QString hovered;     ///< what the view said last
};
