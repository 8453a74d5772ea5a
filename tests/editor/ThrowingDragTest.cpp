#include "document/AtOnce.h"
#include "document/RangeDrags.h"
#include "model/AnimationMarkers.h"
#include "tests/editor/support/Gesture.h"

#include <functional>
#include <memory>
#include <stdexcept>

using namespace EditorScene;
using Editor::DragKind;
using ZT::AnimCmd::StretchSide;

namespace {

/// While it lives, whatever a step of any drag changes throws.
class Thrower : public QObject {
public:
    explicit Thrower(Scene& scene) {
        const auto fail = [] { throw std::runtime_error("no room"); };
        for (const ZT::EditableAnimationLayer* const layer : scene.document.animation()) {
            connect(layer->getCurve(), &Curve::keysChanged, this, fail);
            for (const auto& [frame, key] : *layer->getCurve()) {
                connect(key, &Key::indexChanged, this, fail);
                connect(key, &Key::tangentsChanged, this, fail);
            }
        }
        connect(&scene.markers(), &ZT::AnimationMarkers::rangeStartIndexChanged, this, fail);
        connect(&scene.markers(), &ZT::AnimationMarkers::rangeEndIndexChanged, this, fail);
    }
};

using MakeKind = std::function<std::unique_ptr<DragKind>(Scene&)>;

} // namespace

Q_DECLARE_METATYPE(MakeKind)

class ThrowingDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        _scene = std::make_unique<Scene>();
        _keys.clear();
        for (const unsigned int frame : {10U, 12U, 14U}) {
            _keys.insert(_scene->add(0, frame, bezier(1, {-1, 0}, {1, 0})));
        }
        _scene->add(1, {9, 12, 13, 15, 18});
        _scene->setRange(9, 15);
        _scene->document.selection().set(_keys);
        _gesture = std::make_unique<Gesture>(*_scene);
    }
    void cleanup() {
        _gesture.reset();
        _scene.reset();
    }

    void aFirstStepThatThrowsIsTakenBack_data() { _addKinds(); }
    void aFirstStepThatThrowsIsTakenBack();
    void aLaterStepThatThrowsIsTakenBack_data() { _addKinds(); }
    void aLaterStepThatThrowsIsTakenBack();
    void aStepThatThrowsLeavesNothingToFinish_data() { _addKinds(); }
    void aStepThatThrowsLeavesNothingToFinish();
    void cancellingEndsTheDragAlthoughSlotsThrow_data() { _addKinds(); }
    void cancellingEndsTheDragAlthoughSlotsThrow();
    void finishingEndsTheDragAlthoughSlotsThrow();
    void aBlockThatThrowsIsABlock();
    void aDragWhoseBeginningThrowsIsNone();
    void aDragAtOnceEndsAlthoughSlotsThrow();
    void aDragThatGoesAwayThrowsNothing();

private:
    static void _addKinds();
    QString _moveWhileSlotsThrow(const QPointF& distance) {
        const Thrower thrower(*_scene);
        return problemOf([&] { _gesture->drag.moveTo(distance); });
    }

    std::unique_ptr<Scene> _scene;
    std::unique_ptr<Gesture> _gesture;
    Keys _keys;
};

void ThrowingDragTest::_addKinds() {
    QTest::addColumn<MakeKind>("make");
    QTest::newRow("keys") << MakeKind(
        [](Scene& scene) { return Editor::dragKeys(scene.document.selection().keys()); });
    QTest::newRow("handles") << MakeKind([](Scene& scene) {
        const Keys keys = scene.document.selection().keys();
        return Editor::dragHandles(keys, **keys.begin(), Side::right);
    });
    QTest::newRow("range") << MakeKind([](Scene& scene) { return Editor::dragRange(scene.document); });
    QTest::newRow("start of the range")
        << MakeKind([](Scene& scene) { return Editor::dragRangeEnd(scene.document, StretchSide::start); });
    QTest::newRow("end of the range")
        << MakeKind([](Scene& scene) { return Editor::dragRangeEnd(scene.document, StretchSide::end); });
    QTest::newRow("new range") << MakeKind(
        [](Scene& scene) { return Editor::dragNewRange(scene.document, 3); });
}

void ThrowingDragTest::aFirstStepThatThrowsIsTakenBack() {
    QFETCH(MakeKind, make);
    const DocumentState before = _scene->state();
    _gesture->drag.begin(make(*_scene));
    QCOMPARE(_moveWhileSlotsThrow({-2, 1}), QString("no room"));
    QCOMPARE(_scene->changesSince(before), QString());
    QCOMPARE(_scene->document.selection().keys(), _keys);
    QVERIFY(!_scene->document.isModified());
    QVERIFY(_gesture->drag.isActive());
}

void ThrowingDragTest::aLaterStepThatThrowsIsTakenBack() {
    QFETCH(MakeKind, make);
    checkEdit(*_scene, [&] {
        _gesture->drag.begin(make(*_scene));
        _gesture->drag.moveTo({-1, 2});
        const DocumentState good = _scene->state();
        QCOMPARE(_moveWhileSlotsThrow({-3, 1}), QString("no room"));
        QCOMPARE(_scene->changesSince(good), QString());
        QVERIFY(_scene->document.isModified());
        _gesture->drag.finish();
        QCOMPARE(_scene->changesSince(good), QString());
    });
}

void ThrowingDragTest::aStepThatThrowsLeavesNothingToFinish() {
    QFETCH(MakeKind, make);
    checkNothingHappens(*_scene, [&] {
        _gesture->drag.begin(make(*_scene));
        QCOMPARE(_moveWhileSlotsThrow({-2, 1}), QString("no room"));
        _gesture->drag.finish();
        _gesture->drag.begin(make(*_scene));
        _gesture->drag.moveTo({-1, 2});
        QCOMPARE(_moveWhileSlotsThrow({-2, 1}), QString("no room"));
        _gesture->drag.cancel();
    });
}

void ThrowingDragTest::cancellingEndsTheDragAlthoughSlotsThrow() {
    QFETCH(MakeKind, make);
    checkNothingHappens(*_scene, [&] {
        _gesture->drag.begin(make(*_scene));
        _gesture->drag.moveTo({-1, 2});
        const Thrower thrower(*_scene);
        QCOMPARE(problemOf([&] { _gesture->drag.cancel(); }), QString("no room"));
        QVERIFY(!_gesture->drag.isActive());
        QVERIFY(!_scene->document.isModified());
        QCOMPARE(_gesture->active, (QList<bool>{true, false}));
    });
}

void ThrowingDragTest::finishingEndsTheDragAlthoughSlotsThrow() {
    _scene->add(0, 30);
    checkEdit(*_scene, [&] {
        _gesture->drag.begin(Editor::dragKeys(_keys));
        _gesture->drag.moveTo({1, 0});
        _gesture->drag.moveTo({16, 0}); // Blocked.
        QObject thrower;
        const auto fail = [] { throw std::runtime_error("no room"); };
        QObject::connect(&_gesture->drag, &Editor::Drag::blocked, &thrower, fail);
        QObject::connect(&_gesture->drag, &Editor::Drag::activeChanged, &thrower, fail);
        QObject::connect(&_scene->history(), &QUndoStack::indexChanged, &thrower, fail);
        QCOMPARE(problemOf([&] { _gesture->drag.finish(); }), QString("no room"));
        QVERIFY(!_gesture->drag.isActive());
        QCOMPARE(_gesture->active, (QList<bool>{true, false}));
    });
    QCOMPARE(_scene->frames(), QString("11 13 15 30"));
    _scene->history().undo();
    QVERIFY(!_scene->document.isModified()); // No drag is under way.
}

void ThrowingDragTest::aBlockThatThrowsIsABlock() {
    _scene->add(0, 30);
    checkNothingHappens(*_scene, [&] {
        _gesture->drag.begin(Editor::dragKeys(_keys));
        QObject thrower;
        QObject::connect(&_gesture->drag, &Editor::Drag::blocked, &thrower,
                         [] { throw std::runtime_error("no room"); });
        QCOMPARE(problemOf([&] { _gesture->drag.moveTo({16, 0}); }), QString("no room"));
        QCOMPARE(_scene->frames(), QString("10 12 14 30"));
        QObject::disconnect(&_gesture->drag, &Editor::Drag::blocked, &thrower, nullptr);
        _gesture->drag.finish();
    });
}

void ThrowingDragTest::aDragWhoseBeginningThrowsIsNone() {
    QObject thrower;
    QObject::connect(&_gesture->drag, &Editor::Drag::activeChanged, &thrower, [](bool isActive) {
        if (isActive) {
            throw std::runtime_error("no room");
        }
    });
    QCOMPARE(problemOf([&] { _gesture->drag.begin(Editor::dragKeys(_keys)); }), QString("no room"));
    QVERIFY(!_gesture->drag.isActive());
    QCOMPARE(_gesture->active, (QList<bool>{true, false}));
}

void ThrowingDragTest::aDragAtOnceEndsAlthoughSlotsThrow() {
    checkNothingHappens(*_scene, [&] {
        const Thrower thrower(*_scene);
        QCOMPARE(problemOf([&] {
                     dragAtOnce(_gesture->drag, Editor::dragKeys(_keys), {1, 0});
                 }),
                 QString("no room"));
    });
    QVERIFY(!_gesture->drag.isActive());
}

void ThrowingDragTest::aDragThatGoesAwayThrowsNothing() {
    checkEdit(*_scene, [&] {
        _gesture->drag.begin(Editor::dragKeys(_keys));
        _gesture->drag.moveTo({5, 0});
        QObject thrower;
        QObject::connect(&_scene->history(), &QUndoStack::indexChanged, &thrower,
                         [] { throw std::runtime_error("no room"); });
        _gesture.reset();
    });
}

QTEST_GUILESS_MAIN(ThrowingDragTest)
#include "ThrowingDragTest.moc"
