#include "WindowScene.h"
#include "curves/CurveView.h"
#include "layers/LayerModel.h"
#include "layers/LayerPanel.h"
#include "model/AnimationMarkers.h"
#include "tests/editor/support/DocumentState.h"
#include "timeline/TimelineView.h"

#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTableView>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <tuple>

using Editor::LayerModel;

namespace {

constexpr unsigned int usualSeed = 20250607;
constexpr int gestureCount = 1000;

using Type = VQ::Math::Interpolation::InterpolationType;

Editor::AnimationData threeLayers() {
    VQ::Animation::Animation plain;
    for (const char* const name : {"arm", "leg", "head"}) {
        auto* const layer = new VQ::Animation::AnimationLayer; // The animation owns it.
        layer->actuatorName = name;
        const std::array<Type, 4> types{Type::bezier, Type::linear, Type::bezierAuto, Type::constant};
        for (unsigned int i = 0; i < 8; ++i) {
            const Type left = types.at(i % 4U);
            const Type right = types.at((i / 2U) % 4U);
            const float value = static_cast<float>(i * i % 7U) - 3.0F;
            layer->curve->insert(4U + 9U * i, new VQ::Math::Interpolation::Key{
                                                  value, left, {-3.0F, -0.5F}, right, {2.0F, 1.0F}});
        }
        plain.push_back(layer);
    }
    Editor::AnimationData data;
    data.animation = std::make_unique<ZT::EditableAnimation>(plain);
    data.markers = Editor::MarkerFrames{1, 1, 80, 20, 40, true};
    return data;
}

/// Somebody who does anything at all with the mouse and the keyboard.
class Monkey {
public:
    explicit Monkey(unsigned int seed)
        : _random(seed) {
        _scene.document().replace(threeLayers(), QString());
        _scene.window.resize(1000, 640);
        (void)QTest::qWaitForWindowActive(&_scene.window);
        _scene.window.setCurrentLayer(0);
    }

    void doAnything() {
        switch (_below(10)) {
        case 0:
        case 1:
        case 2:
            return _useCurves();
        case 3:
        case 4:
            return _useTimeline();
        case 5:
            return _useLayers();
        case 6:
            return _oneIn(3) ? _undoOrRedo() : _useCurves();
        default:
            return _typeCommand();
        }
    }

    /// All that the history keeps: everything but where the current frame and the markers stand.
    DocumentState state() {
        ZT::AnimationMarkers& markers = _document().markers();
        const auto [current, start, end] =
            std::make_tuple(markers.selectedIndex(), markers.startIndex(), markers.endIndex());
        const auto setAll = [&markers](unsigned int newCurrent, unsigned int newStart, unsigned int newEnd) {
            markers.setStartIndex(newStart);
            markers.setEndIndex(newEnd);
            markers.setSelectedIndex(newCurrent);
        };
        setAll(0, 0, 0);
        DocumentState state(_document());
        setAll(current, start, end);
        return state;
    }

    QUndoStack& history() { return _scene.history(); }
    bool isDragging() const { return _scene.workspace.drag.isActive(); }

private:
    Editor::Document& _document() { return _scene.document(); }
    int _below(int number) { return static_cast<int>(_random() % static_cast<unsigned int>(number)); }
    bool _oneIn(int number) { return _below(number) == 0; }
    template <class Value>
    Value _anyOf(std::initializer_list<Value> values) {
        return values.begin()[_below(static_cast<int>(values.size()))];
    }
    QPoint _anyIn(const QRect& rect) {
        return rect.isEmpty() ? rect.topLeft()
                              : rect.topLeft() + QPoint(_below(rect.width()), _below(rect.height()));
    }
    Qt::KeyboardModifiers _anyModifiers() {
        return _anyOf<Qt::KeyboardModifiers>(
            {Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier});
    }

    static void _move(QWidget& widget, const QPoint& point, Qt::MouseButtons buttons,
                      Qt::KeyboardModifiers modifiers) {
        QMouseEvent event(QEvent::MouseMove, point, widget.mapToGlobal(point), Qt::NoButton, buttons,
                          modifiers);
        QApplication::sendEvent(&widget, &event);
    }

    /// From press to release, or to Escape, or with something typed in between.
    void _drag(QWidget& widget, const QPoint& from, const QPoint& to) {
        const Qt::KeyboardModifiers modifiers = _anyModifiers();
        const auto button = _oneIn(12) ? Qt::MiddleButton : Qt::LeftButton;
        QTest::mousePress(&widget, button, modifiers, from);
        const int steps = 1 + _below(4);
        for (int i = 1; i <= steps; ++i) {
            _move(widget, from + (to - from) * i / steps, button, modifiers);
        }
        if (_oneIn(5)) {
            QTest::keyClick(_focused(), Qt::Key_Escape);
        } else if (_oneIn(8)) {
            _typeCommand();
        } else if (_oneIn(12)) {
            _undoOrRedo();
        }
        if (_oneIn(10)) {
            QCoreApplication::processEvents();
        }
        QTest::mouseRelease(&widget, button, modifiers, to);
    }

    QWidget* _focused() {
        return QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : &_scene.window;
    }

    void _turnWheel(QWidget& widget, const QPoint& point) {
        const QPoint angle = _oneIn(4) ? QPoint(_anyOf({-120, 120}), 0) : QPoint(0, _anyOf({-120, 120}));
        QWheelEvent event(point, widget.mapToGlobal(point), QPoint(), angle, Qt::NoButton, _anyModifiers(),
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&widget, &event);
    }

    /// Where a key or the end of one of its handles is; anywhere where there are none.
    QPoint _pointInCurves() {
        const Editor::CurvePlacement placement = _scene.window.curves().placement();
        std::vector<QPoint> points;
        for (ZT::EditableAnimationLayer* const layer : _document().animation()) {
            for (const auto& [frame, key] : *layer->getCurve()) {
                const auto handle =
                    key->getTangentOffset(_oneIn(2) ? ZT::TangentSide::left : ZT::TangentSide::right);
                const bool isHandle = _oneIn(3);
                const double x = frame + (isHandle ? double{handle.first} : 0.0);
                const double y = double{key->getValue()} + (isHandle ? double{handle.second} : 0.0);
                const QPointF point = placement.toPoint(x, y);
                if (QRectF(placement.plot()).contains(point)) {
                    points.push_back(point.toPoint());
                }
            }
        }
        return points.empty() || _oneIn(4)
                   ? _anyIn(_scene.window.curves().rect())
                   : points[static_cast<std::size_t>(_below(static_cast<int>(points.size())))];
    }

    void _useCurves() {
        Editor::CurveView& curves = _scene.window.curves();
        curves.setFocus();
        const QPoint point = _pointInCurves();
        switch (_below(6)) {
        case 0:
            return QTest::mouseClick(&curves, Qt::LeftButton, _anyModifiers(), point);
        case 1:
            QTest::mouseClick(&curves, Qt::LeftButton, {}, point);
            QTest::mouseDClick(&curves, Qt::LeftButton, {}, point);
            return QTest::mouseRelease(&curves, Qt::LeftButton, {}, point);
        case 2:
            return _oneIn(3)
                       ? _turnWheel(curves, point)
                       : QTest::keyClick(&curves,
                                         _anyOf({Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down,
                                                 Qt::Key_Tab, Qt::Key_Escape}),
                                         _anyOf<Qt::KeyboardModifiers>({Qt::NoModifier, Qt::ShiftModifier}));
        default:
            return _drag(curves, point, point + QPoint(_below(300) - 150, _below(200) - 100));
        }
    }

    void _useTimeline() {
        Editor::TimelineView& timeline = _scene.window.timeline();
        QWidget& viewport = *timeline.viewport();
        timeline.setFocus();
        const Editor::TimelineLayout parts = timeline.parts();
        const ZT::AnimationMarkers& markers = _document().markers();
        QPoint point = _anyIn(viewport.rect());
        switch (_below(5)) {
        case 0: // The ends of the range, and what is between.
            point = {parts.x(_anyOf({markers.rangeStartIndex(), markers.rangeEndIndex(),
                                     (markers.rangeStartIndex() + markers.rangeEndIndex()) / 2U})) +
                         _anyOf({-2, 0, 2}),
                     parts.lane().center().y()};
            break;
        case 1:
            point = _anyIn(parts.lane());
            break;
        case 2: // Keys.
            point = {parts.x(4 + 9 * _below(8)),
                     _oneIn(3) ? parts.summary().center().y() : parts.row(_below(3)).center().y()};
            break;
        default:
            break;
        }
        if (_oneIn(4)) {
            QTest::keyClick(&timeline,
                            _anyOf({Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Return}),
                            _anyOf<Qt::KeyboardModifiers>({Qt::NoModifier, Qt::ShiftModifier}));
        } else if (_oneIn(5)) {
            QTest::mouseClick(&viewport, Qt::LeftButton, _anyModifiers(), point);
        } else {
            _drag(viewport, point, point + QPoint(_below(300) - 150, _below(60) - 30));
        }
    }

    void _useLayers() {
        auto& table = *_scene.window.layers().findChild<QTableView*>();
        table.setFocus();
        const QModelIndex cell =
            table.model()->index(_below(std::max(1, table.model()->rowCount())), _below(LayerModel::columns));
        table.scrollTo(cell);
        QTest::mouseClick(table.viewport(), Qt::LeftButton, _anyModifiers(), table.visualRect(cell).center());
        switch (_below(8)) {
        case 0:
            return _oneIn(3) ? _trigger("Add layer") : _trigger("Remove layer");
        case 1: // Few enough for a short time.
            return _document().layerCount() < 5 ? _trigger("Duplicate layer") : _trigger("Remove layer");
        case 2:
            return QTest::keyClick(&table, _anyOf({Qt::Key_Up, Qt::Key_Down}), Qt::AltModifier);
        case 3:
            return _rename(table, cell.row());
        case 4:
            return _trigger("Select keys");
        case 5:
            return QTest::keyClick(&table, _anyOf({Qt::Key_H, Qt::Key_M, Qt::Key_L}),
                                   Qt::ControlModifier | Qt::ShiftModifier);
        default:
            return QTest::keyClick(&table, _anyOf({Qt::Key_Space, Qt::Key_Left, Qt::Key_Right}));
        }
    }

    void _trigger(const char* text) {
        for (QAction* const action : _scene.window.layers().actions()) {
            if (action->text() == text) {
                action->trigger();
            }
        }
    }

    void _rename(QTableView& table, int row) {
        table.setCurrentIndex(table.model()->index(row, LayerModel::nameColumn));
        QTest::keyClick(&table, Qt::Key_F2);
        if (auto* const editor = table.findChild<QLineEdit*>()) {
            editor->setText(_oneIn(4) ? QString("x\x02") : QString("name %1").arg(_below(20)));
            QTest::keyClick(editor, _oneIn(4) ? Qt::Key_Escape : Qt::Key_Return);
            QCoreApplication::processEvents(); // The delegate commits in the next turn.
        }
    }

    void _undoOrRedo() {
        for (int times = _below(4); times > 0; --times) {
            QTest::keyClick(_focused(), Qt::Key_Z,
                            _oneIn(2) ? Qt::ControlModifier : Qt::ControlModifier | Qt::ShiftModifier);
        }
    }

    /// A command of the views by its keys.
    void _typeCommand() {
        struct Command {
            Qt::Key key;
            Qt::KeyboardModifiers modifiers;
            bool isGrowing = false;
        };
        const Qt::KeyboardModifiers control = Qt::ControlModifier;
        const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
        const Command command = _anyOf<Command>({{Qt::Key_1, {}},           {Qt::Key_2, {}},
                                                 {Qt::Key_3, {}},           {Qt::Key_4, {}},
                                                 {Qt::Key_S, {}},           {Qt::Key_Y, {}},
                                                 {Qt::Key_K, {}},           {Qt::Key_Delete, {}},
                                                 {Qt::Key_B, {}},           {Qt::Key_E, {}},
                                                 {Qt::Key_R, {}},           {Qt::Key_M, {}},
                                                 {Qt::Key_B, shift},        {Qt::Key_E, shift},
                                                 {Qt::Key_I, {}},           {Qt::Key_O, {}},
                                                 {Qt::Key_Home, {}},        {Qt::Key_End, {}},
                                                 {Qt::Key_Left, control},   {Qt::Key_Right, control},
                                                 {Qt::Key_A, {}},           {Qt::Key_A, control},
                                                 {Qt::Key_I, control},      {Qt::Key_C, control},
                                                 {Qt::Key_X, control},      {Qt::Key_V, control, true},
                                                 {Qt::Key_D, control, true}});
        const bool isTooMuch = command.isGrowing && _document().selection().keys().size() > 12;
        if (!isDragging()) {
            (_oneIn(2) ? static_cast<QWidget&>(_scene.window.curves()) : _scene.window.timeline()).setFocus();
        }
        if (!isTooMuch) {
            QTest::keyClick(_focused(), command.key, command.modifiers);
        }
    }

    std::mt19937 _random;
    WindowScene _scene;
};

} // namespace

class RandomGesturesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void undoGoesBackToTheStartAndRedoToTheEnd() {
        bool isGiven = false;
        const unsigned int given = qEnvironmentVariable("CURVE_EDITOR_SEED").toUInt(&isGiven);
        const unsigned int seed = isGiven ? given : usualSeed;
        qInfo("seed %u", seed);
        Monkey monkey(seed);
        std::map<int, DocumentState> states{{0, monkey.state()}};
        for (int i = 0; i < gestureCount; ++i) {
            monkey.doAnything();
            QVERIFY2(!monkey.isDragging(), qPrintable(QString("after gesture %1").arg(i)));
            if (i % 10 == 0) {
                QCoreApplication::processEvents();
            }
            states.erase(states.lower_bound(std::max(1, monkey.history().index())),
                         states.end()); // Done anew.
            states.emplace(monkey.history().index(), monkey.state());
        }
        const DocumentState end = monkey.state();
        qInfo("%d entries", monkey.history().count());
        QVERIFY(monkey.history().count() > gestureCount / 20);
        const int last = monkey.history().index();
        while (monkey.history().canUndo()) {
            monkey.history().undo();
            const int index = monkey.history().index();
            if (const auto state = states.find(index);
                state != states.end()) { // Not in the midst of a gesture.
                const QString difference = monkey.state().differenceFrom(state->second);
                QVERIFY2(difference.isEmpty(), qPrintable(QString("undone \"%1\" to %2: %3")
                                                              .arg(monkey.history().redoText(),
                                                                   QString::number(index), difference)));
            }
        }
        while (monkey.history().index() < last) {
            monkey.history().redo();
        }
        QCOMPARE(monkey.state().differenceFrom(end), QString());
    }
};

QTEST_MAIN(RandomGesturesTest)
#include "RandomGesturesTest.moc"
