#include "curves/CurveView.h"
#include "document/AnimationData.h"
#include "document/AnimationFile.h"
#include "support/Measurement.h"
#include "window/MainWindow.h"
#include "window/Settings.h"
#include "window/WidgetFileDialogs.h"
#include "window/Workspace.h"

#include <QApplication>
#include <QFileInfo>
#include <QMouseEvent>
#include <QSettings>
#include <QTemporaryDir>

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

QString capturePath() {
    return QStringLiteral(EA_SHARED_DATA "/walk.bvh");
}

/// The whole editor, as it is used but for a display.
class Session {
public:
    Session()
        : _store(_directory.filePath("settings.ini"), QSettings::IniFormat)
        , _settings(_store)
        , _window(_workspace, _settings, _dialogs) {
        _window.resize(1600, 900);
        _window.show();
        QApplication::processEvents();
    }

    /// From the file to the finished paint.
    void open() {
        _workspace.document.replace(Editor::AnimationFile(capturePath()).load(), QString());
        QApplication::processEvents();
    }

    /// Selects all keys and presses the mouse on one of them.
    void press() {
        _workspace.document.selection().selectAll();
        ZT::EditableMotionCurveKey* const key = (*_workspace.document.layer(0)->getCurve()->begin()).second;
        _pressed = view().placement().toPoint(ZT::index(key), double{key->getValue()});
        _send(QEvent::MouseButtonPress, _pressed);
        if (!_workspace.drag.isActive()) {
            _send(QEvent::MouseMove, _pressed + QPointF(0.0, 8.0)); // The view waits until it is no click.
        }
        if (!_workspace.drag.isActive()) {
            throw std::logic_error("no key lies under the pointer");
        }
        QApplication::processEvents();
    }

    /// One mouse move, to the finished paint: above and below where the mouse was pressed in turn, at another
    /// distance each time.
    void move() {
        ++_moves;
        _send(QEvent::MouseMove,
              _pressed + QPointF(0.0, (_moves % 2 == 0 ? 1.0 : -1.0) * (10 + _moves % 40)));
        QApplication::processEvents();
    }

    Editor::CurveView& view() { return _window.curves(); }

private:
    void _send(QEvent::Type type, const QPointF& point) {
        QMouseEvent event(type, point, view().mapToGlobal(point.toPoint()), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(&view(), &event);
    }

    QTemporaryDir _directory;
    QSettings _store;
    Editor::Settings _settings;
    Editor::WidgetFileDialogs _dialogs;
    Editor::Workspace _workspace;
    Editor::MainWindow _window;
    QPointF _pressed;
    int _moves = 0;
};

Bench::Operation opening() {
    const auto session = std::make_shared<Session>();
    return {[=] { session->open(); }};
}

Bench::Operation dragging() {
    const auto session = std::make_shared<Session>();
    session->open();
    session->press();
    return {[=] { session->move(); }};
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (!QFileInfo::exists(capturePath())) {
        std::cerr << "SKIPPED: no file " << capturePath().toStdString() << '\n';
        return 0;
    }
    constexpr std::size_t keys = 50304;
    const std::string size = "96 layers/" + std::to_string(keys);
    Bench::addRow("walk.bvh, editor opens it", size, keys, opening);
    Bench::addRow("walk.bvh, editor drags all", size, keys, dragging);
    return Bench::runRows(argc, argv);
}
