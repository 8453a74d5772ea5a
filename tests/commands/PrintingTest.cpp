#include "commands/Printing.h"

#include "base/animation/Animation.h"
#include "commands/ChangeKeyParamCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/Printing.h"

#include <QtTest>

#include <gtest/gtest-printers.h>

#include <limits>
#include <memory>
#include <sstream>

namespace {

using Key = ZT::EditableMotionCurveKey;
using Record = VQ::Math::Interpolation::Key;
using Type = VQ::Math::Interpolation::InterpolationType;

template <class Object>
QString debugged(const Object& object) {
    QString text;
    QDebug(&text) << object;
    return text.trimmed();
}

template <class Object>
QString printed(const Object& object) {
    std::ostringstream stream;
    stream << object;
    return QString::fromStdString(stream.str());
}

template <class Object>
QString asGoogleTestShows(const Object& object) {
    return QString::fromStdString(testing::PrintToString(object));
}

template <class Object>
QString asQtTestShows(const Object& object) {
    using QTest::toString; // As QCOMPARE looks for it.
    const std::unique_ptr<char[]> text(toString(object));
    return QString::fromUtf8(text.get());
}

Record record() {
    Record record;
    record.value = 0.1F;
    record.leftTangentType = Type::bezier;
    record.leftTangentOffset = {-3, -0.25F};
    record.rightTangentType = Type::constant;
    return record;
}

std::unique_ptr<ZT::EditableAnimation> animation() {
    VQ::Animation::Animation plain;
    for (const char* const name : {"elbow", "wrist"}) {
        auto* const layer = new VQ::Animation::AnimationLayer; // the animation owns it
        layer->actuatorName = name;
        layer->mute = plain.empty();
        for (unsigned int frame = 0; frame < 3; ++frame) {
            layer->curve->insert(frame * 5, new Record(record()));
        }
        plain.push_back(layer);
    }
    return std::make_unique<ZT::EditableAnimation>(plain);
}

} // namespace

class PrintingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRecordIsOneLineInEveryPrinter() {
        const QString line = "0.1, left bezier (-3, -0.25), right constant (0, 0)";
        QCOMPARE(printed(record()), line);
        QCOMPARE(asGoogleTestShows(record()), line);
        QCOMPARE(asQtTestShows(record()), line);
    }

    void pointsTypesAndSidesAreWords() {
        QCOMPARE(asQtTestShows(VQ::Math::Position2D(1, 2)), QString("(1, 2)"));
        QCOMPARE(asQtTestShows(Type::bezierAuto), QString("bezier auto"));
        QCOMPARE(printed(Type::linear), QString("linear"));
        QCOMPARE(printed(static_cast<Type>(7)), QString("type 7"));
        QCOMPARE(asQtTestShows(ZT::TangentSide::left), QString("left"));
        QCOMPARE(printed(ZT::TangentSide::right), QString("right"));
        QCOMPARE(printed(static_cast<ZT::TangentSide>(-1)), QString("side -1"));
    }

    void numbersAreShortWhateverTheStreamIsSetUpFor() {
        std::ostringstream stream;
        stream.precision(2);
        stream.width(20);
        stream.fill('*');
        stream << std::hex << std::showpos;
        stream.width(0);
        stream << VQ::Math::Position2D(0.1234F, std::numeric_limits<float>::infinity());
        QCOMPARE(QString::fromStdString(stream.str()), QString("(0.1234, inf)"));
    }

    void aKeyTellsItsFrameAndItsFlags() {
        const auto live = animation();
        Key* const key = (*live->begin())->getCurve()->getKey(5);
        key->setSymmetrical(true);
        QVERIFY(debugged(key).startsWith("key at 5: 0.1, left bezier ("));
        QVERIFY(debugged(key).endsWith("), symmetrical"));
        key->setSmooth(true);
        QVERIFY(debugged(key).endsWith(", smooth, symmetrical"));
        QCOMPARE(asGoogleTestShows(key), debugged(key));
        const Key loose{record()};
        QCOMPARE(debugged(&loose),
                 QString("key in no curve: 0.1, left bezier (-3, -0.25), right constant (0, 0)"));
        QCOMPARE(debugged(static_cast<Key*>(nullptr)), QString("no key"));
    }

    void curvesLayersAndAnimationsAreOneLine() {
        const auto live = animation();
        const ZT::EditableAnimationLayer* const layer = *live->begin();
        const ZT::EditableMotionCurve* const curve = layer->getCurve();
        QCOMPARE(debugged(curve), QString("curve of 3 keys at 0 5 10"));
        QCOMPARE(asGoogleTestShows(curve), debugged(curve));
        QCOMPARE(debugged(layer), QString("layer \"elbow\", muted, 3 keys at 0 5 10"));
        QCOMPARE(asGoogleTestShows(layer), debugged(layer));
        QCOMPARE(debugged(live.get()), QString("animation of 2 layers: elbow wrist"));
        QCOMPARE(debugged(static_cast<ZT::EditableMotionCurve*>(nullptr)), QString("no curve"));
        QCOMPARE(debugged(static_cast<ZT::EditableAnimationLayer*>(nullptr)), QString("no layer"));
        QCOMPARE(debugged(static_cast<ZT::EditableAnimation*>(nullptr)), QString("no animation"));
    }

    void aLongCurveShowsItsFirstFrames() {
        VQ::Animation::MotionCurve curve;
        QCOMPARE(printed(curve), QString("0 keys"));
        for (unsigned int frame = 1; frame <= 9; ++frame) {
            curve.insert(frame, new Record);
            if (frame == 1) {
                QCOMPARE(printed(curve), QString("1 key at 1"));
            }
        }
        QCOMPARE(printed(curve), QString("9 keys at 1 2 3 4 5 6 7 8 ..."));
        VQ::Animation::AnimationLayer layer;
        layer.curve.reset();
        QCOMPARE(printed(layer), QString("layer \"\", no curve"));
    }

    void markersAreOneLine() {
        const auto live = animation();
        ZT::AnimationMarkers* const markers = live->getMarkers();
        markers->setSelectedIndex(7);
        markers->setEndIndex(25);
        markers->setRangeStartIndex(3);
        markers->setRangeEndIndex(9);
        QCOMPARE(debugged(markers), QString("markers at 7, playing 1 to 25, range 3 to 9 hidden"));
        markers->setRangeVisible(true);
        QCOMPARE(debugged(markers), QString("markers at 7, playing 1 to 25, range 3 to 9"));
        QCOMPARE(debugged(static_cast<ZT::AnimationMarkers*>(nullptr)), QString("no markers"));
    }

    void aCommandTellsWhetherItsDragIsOver() {
        using namespace ZT::AnimCmd;
        const auto live = animation();
        Key* const key = (*live->begin())->getCurve()->getKey(5);
        const MoveCurveKeysCommand step({{key, QPointF(6, 1)}}, false);
        const MoveCurveKeysCommand last({{key, QPointF(6, 1)}}, true);
        const ChangeSmoothnessCommand smooth(key, true);
        QCOMPARE(debugged(&step), QString("command \"Move one key\", open"));
        QCOMPARE(debugged(&last), QString("command \"Move one key\", final"));
        QCOMPARE(debugged(&smooth), "command \"" + smooth.text() + '"');
        QCOMPARE(printed(step), debugged(&step));
        QCOMPARE(debugged(static_cast<MoveCurveKeysCommand*>(nullptr)), QString("no command"));
        const QUndoCommand* const fromStack = &step; // As QUndoStack::command() gives it.
        QCOMPARE(debugged(fromStack), QString("command \"Move one key\", open"));
        QCOMPARE(asGoogleTestShows(fromStack), debugged(fromStack));
        QCOMPARE(asGoogleTestShows(const_cast<QUndoCommand*>(fromStack)), debugged(fromStack));
        QCOMPARE(printed(*fromStack), debugged(fromStack));
    }

    void whatFollowsInALogIsSpacedAsBefore() {
        QString text;
        QDebug(&text) << static_cast<Key*>(nullptr) << 1 << 2;
        QCOMPARE(text.trimmed(), QString("no key 1 2"));
    }
};

QTEST_GUILESS_MAIN(PrintingTest)
#include "PrintingTest.moc"
