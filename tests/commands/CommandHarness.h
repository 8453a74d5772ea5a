#pragma once

#include "commands/MergeableCommand.h"
#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurve.h"
#include "tests/base/Records.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTest>
#include <QTranslator>
#include <QUndoStack>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

/// What the tests of all commands share: an animation with a recorded history, and the walk through do, undo,
/// redo and undo that every command must stand.
namespace Harness {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Keys = std::vector<Key*>;
using KeysIndexMap = Curve::KeysIndexMap;
using Record = VQ::Math::Interpolation::Key;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;
using Snapshot::frames;
using VQ::Math::Position2D;

/// Linear by default: no handle of it is recomputed, which keeps recorded signals short.
inline Record record(Type left = Type::linear, Type right = Type::linear, Position2D leftHandle = {},
                     Position2D rightHandle = {}) {
    return Records::makeKey(0.0F, left, leftHandle, right, rightHandle);
}

inline Record bezier(Position2D leftHandle, Position2D rightHandle) {
    return record(Type::bezier, Type::bezier, leftHandle, rightHandle);
}

/// Curves of one animation, their markers, a history, and all signals of curves, keys and markers. Curves and
/// keys are named in the order of their addresses, which is the order in which commands visit them.
class Scene {
public:
    explicit Scene(int curveCount = 1)
        : animation(std::make_unique<ZT::EditableAnimation>())
        , stack(std::make_unique<QUndoStack>()) {
        for (int i = 0; i < curveCount; ++i) {
            auto* const layer = new ZT::EditableAnimationLayer;
            animation->push_back(layer);
            curves.push_back(layer->getCurve());
        }
        std::sort(curves.begin(), curves.end(), std::less<>());
        for (std::size_t i = 0; i < curves.size(); ++i) {
            recorder.watch(*curves[i], "curve" + QString::number(i));
        }
        recorder.watch(markers());
    }

    ZT::AnimationMarkers& markers() const { return *animation->getMarkers(); }
    Curve& curve(std::size_t i = 0) const { return *curves[i]; }
    QString state() const { return Snapshot::of(*animation); }

    /// New keys in no curve, named by the next letters in the order of their addresses.
    Keys makeKeys(std::size_t count, const Record& prototype = record()) {
        Keys keys;
        for (std::size_t i = 0; i < count; ++i) {
            keys.push_back(new Key(prototype));
        }
        std::sort(keys.begin(), keys.end(), std::less<>());
        for (Key* const key : keys) {
            recorder.watch(*key, QString(QChar(_nextName++)));
        }
        return keys;
    }
    Key* makeKey(const Record& prototype = record()) { return makeKeys(1, prototype).front(); }

    /// New keys of a curve at the given frames.
    Keys add(std::initializer_list<unsigned int> frames, std::size_t curveIndex = 0,
             const Record& prototype = record()) {
        const Keys keys = makeKeys(frames.size(), prototype);
        auto key = keys.begin();
        for (const unsigned int frame : frames) {
            curve(curveIndex).insert(frame, *key++);
        }
        curve(curveIndex).updateBezierAutoTangents();
        recorder.take();
        return keys;
    }
    Key* addKey(unsigned int frame, const Record& prototype = record(), std::size_t curveIndex = 0) {
        return add({frame}, curveIndex, prototype).front();
    }

    void setRange(unsigned int start, unsigned int end) {
        markers().setRangeEndIndex(end);
        markers().setRangeStartIndex(start);
        recorder.take();
    }
    QString range() const {
        return QString("%1-%2").arg(markers().rangeStartIndex()).arg(markers().rangeEndIndex());
    }

    SignalRecorder recorder;
    std::unique_ptr<ZT::EditableAnimation> animation;
    std::vector<Curve*> curves;
    std::unique_ptr<QUndoStack> stack; ///< destroyed before the animation

private:
    char _nextName = 'a';
};

/// Frames of the keys in the given order; "-" for a key in no curve.
inline QString framesOf(const Keys& keys) {
    QStringList texts;
    for (const Key* const key : keys) {
        texts.append(key->getParentCurve() == nullptr ? QString("-") : QString::number(ZT::index(key)));
    }
    return texts.join(' ');
}

inline KeysIndexMap whereTheyStand(const Keys& keys) {
    KeysIndexMap result;
    for (Key* const key : keys) {
        result.insert(key, ZT::index(key));
    }
    return result;
}

inline std::vector<QPointer<Key>> watch(const Keys& keys) {
    return {keys.begin(), keys.end()};
}
inline int alive(const std::vector<QPointer<Key>>& keys) {
    return static_cast<int>(
        std::count_if(keys.begin(), keys.end(), [](const auto& key) { return !key.isNull(); }));
}

/// The whole state. Automatic handles are recomputed only where they are further than a tolerance from their
/// formula, so two right ones may differ by twice as much; everything else is compared bit for bit.
class State {
public:
    explicit State(const ZT::EditableAnimation& animation)
        : _rest(Snapshot::of(*animation.getMarkers())) {
        for (const ZT::EditableAnimationLayer* const layer : animation) {
            _rest += "\ncurve";
            for (const auto element : std::as_const(*layer->getCurve())) {
                _rest += QString("\n%1: ").arg(element.first);
                add(*element.second);
            }
        }
    }

    /// Takes in a key that is part of the state although it is in no curve.
    void add(const Key& key) {
        Record rest = key.baseMotionCurveKey();
        const auto setAside = [this](Type type, Position2D& handle) {
            std::vector<Position2D>& handles = type == Type::bezierAuto ? _automatic : _fixed;
            handles.push_back(std::exchange(handle, Position2D()));
        };
        setAside(rest.leftTangentType, rest.leftTangentOffset);
        setAside(rest.rightTangentType, rest.rightTangentOffset);
        _rest += QString::number(reinterpret_cast<quintptr>(&key), 16) + ' ' + Snapshot::of(Key(rest)) +
                 (key.isSmooth() ? " smooth" : "") + (key.isSymmetrical() ? " symmetrical" : "");
    }

    bool operator==(const State& other) const {
        return _rest == other._rest && show(_fixed) == show(other._fixed) &&
               areNear(_automatic, other._automatic);
    }

    /// Equal but for handles that were automatic before they became fixed.
    bool resembles(const State& other) const {
        return _rest == other._rest && areNear(_fixed, other._fixed) && areNear(_automatic, other._automatic);
    }

    /// Equal but for the handles of tangents that are not automatic.
    bool agreesWithoutFixedHandles(const State& other) const {
        return _rest == other._rest && areNear(_automatic, other._automatic);
    }

    QString automaticHandles() const { return show(_automatic); }
    QString text() const {
        return _rest + "\nhandles" + show(_fixed) + "\nautomatic handles" + show(_automatic);
    }

private:
    static QString show(const std::vector<Position2D>& handles) {
        QString result;
        for (const Position2D& handle : handles) {
            result += QString(" (%1, %2)").arg(Snapshot::bits(handle.x), Snapshot::bits(handle.y));
        }
        return result;
    }
    static bool areNear(const std::vector<Position2D>& some, const std::vector<Position2D>& others) {
        return std::equal(some.begin(), some.end(), others.begin(), others.end(),
                          [](const Position2D& a, const Position2D& b) {
                              return show({a}) == show({b}) || a.isNear(b, 2 * 0.0001F);
                          });
    }

    QString _rest;
    std::vector<Position2D> _fixed;
    std::vector<Position2D> _automatic;
};

struct Walk {
    QString redoSignals;
    QString undoSignals;
};

/// Pushes the command and goes do, undo, redo, undo. Each undo must give back the whole state from before,
/// each redo the whole state that the first one made. Ends undone.
inline Walk walk(Scene& scene, QUndoCommand* command) {
    Walk signalsSeen;
    const auto now = [&] { return State(*scene.animation); };
    const auto check = [&](bool holds, const State& expected, const char* moment) {
        QVERIFY2(holds,
                 qPrintable(QString("%1\n%2\ninstead of\n%3").arg(moment, now().text(), expected.text())));
    };
    const State before = now();
    scene.recorder.take();
    scene.stack->push(command);
    signalsSeen.redoSignals = scene.recorder.take();
    const State after = now();
    scene.stack->undo();
    signalsSeen.undoSignals = scene.recorder.take();
    check(now() == before, before, "first undo");
    // A redo starts from the automatic handles that it finds, which may make other handles of them.
    const bool sameStart = now().automaticHandles() == before.automaticHandles();
    scene.stack->redo();
    check(sameStart ? now() == after : now().resembles(after), after, "redo");
    scene.stack->undo();
    check(now() == before, before, "second undo");
    scene.recorder.take();
    return signalsSeen;
}

/// Shows texts as translated and remembers what was asked for: "context: source".
class RecordingTranslator : public QTranslator {
public:
    RecordingTranslator() { QCoreApplication::installTranslator(this); }
    ~RecordingTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char* disambiguation,
                      int n) const override {
        asked.append(QString("%1: %2%3%4")
                         .arg(context, source, disambiguation != nullptr ? " disambiguated" : "",
                              n != -1 ? " counted" : ""));
        return QString("translated ") + source;
    }

    mutable QStringList asked;
};

} // namespace Harness
