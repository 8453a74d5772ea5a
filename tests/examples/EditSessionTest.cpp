#include "EditSession.h"

#include "AnimationState.h"
#include "document/AnimationFile.h"
#include "model/AnimationMarkers.h"

#include <QtTest>

#include <functional>
#include <memory>
#include <vector>

using VQ::Math::Interpolation::InterpolationType;
using Objects = AnimationState::Objects;

namespace {

const QString shippedFile = QString(EA_SOURCE_DIR) + "/examples/wave.xml";

std::unique_ptr<ZT::EditableAnimation> editable(const QList<unsigned int>& frames) {
    VQ::Animation::Animation plain;
    plain.push_back(new VQ::Animation::AnimationLayer);
    for (const unsigned int frame : frames) {
        plain.begin()->curve->insert(frame, new VQ::Math::Interpolation::Key);
    }
    return std::make_unique<ZT::EditableAnimation>(plain);
}

QStringList differencesOf(const ZT::EditableAnimation& animation, const AnimationState& expected) {
    return AnimationState(animation).comparedWith(expected, Objects::same).differences;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(ZT::EditableAnimation&)>)

class EditSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyEditIsOneEntryOfTheHistory();
    void everyDragIsTwentyStepsAndOneEntry();
    void eachStepAndEditReachesTheAnimation();
    void undoAndRedoLeadToTheSameStates_data();
    void undoAndRedoLeadToTheSameStates();
    void editsWithoutRoomAreLeftOutAndSayWhy();
    void aRangeWithoutKeysIsNotStretched();
    void anyOtherValueIsADifference_data();
    void anyOtherValueIsADifference();
    void anotherKeyObjectIsADifferenceOnlyWhereObjectsCount();
    void automaticHandlesMayDifferWithinTheirToleranceAlone();
};

void EditSessionTest::everyEditIsOneEntryOfTheHistory() {
    const auto animation = Editor::AnimationFile(shippedFile).load().animation;
    EditSession session(*animation);
    session.play();
    QStringList texts;
    for (const EditSession::Entry& entry : session.history()) {
        texts.append(entry.text);
    }
    QCOMPARE(texts.mid(0, 9),
             QStringList({"Add 2 curve keys", "Replace 1 curve keys by %2 other curve keys",
                          "Change interpolation type of a set of tangents to linear",
                          "Change keys interpolation type", "Change keys smoothness",
                          "Change key symmetrical status", "Move the tangent of one curve key",
                          "Move one key", "Remove 1 curve keys"}));
    // The range of frames 30 to 71 goes twelve frames right; its end is then pulled by twenty.
    QCOMPARE(texts.mid(9),
             QStringList({"Range command from (1; 1) to (30; 71)", "Move range from (30; 71) to (42; 83)",
                          "Stretch range from (42; 83) to (42; 103)"}));
    QCOMPARE(session.undoCount(), 12);
}

void EditSessionTest::everyDragIsTwentyStepsAndOneEntry() {
    const auto animation = Editor::AnimationFile(shippedFile).load().animation;
    EditSession session(*animation);
    session.play();
    std::vector<int> steps;
    for (const EditSession::Entry& entry : session.history()) {
        steps.push_back(entry.steps);
    }
    QCOMPARE(steps, std::vector<int>({1, 1, 1, 1, 1, 1, 20, 20, 1, 20, 20, 20}));
}

void EditSessionTest::eachStepAndEditReachesTheAnimation() {
    const auto animation = Editor::AnimationFile(shippedFile).load().animation;
    EditSession session(*animation);
    session.play();
    for (const EditSession::Entry& entry : session.history()) {
        const bool isRangeAlone = entry.text.startsWith("Range command");
        QCOMPARE(entry.keysTouched > 0, !isRangeAlone);
        QVERIFY2(isRangeAlone ? entry.signalsReceived == 0 : entry.signalsReceived > 0,
                 qPrintable(entry.text));
    }
    QCOMPARE(session.history()[6].signalsReceived, 20); // Each step of a handle's drag is one signal.
}

void EditSessionTest::undoAndRedoLeadToTheSameStates_data() {
    QTest::addColumn<QList<unsigned int>>("frames");
    QTest::newRow("one key at frame 0") << QList<unsigned int>{0};
    QTest::newRow("one key at frame 1000") << QList<unsigned int>{1000};
    QTest::newRow("two neighbours") << QList<unsigned int>{3, 4};
    QTest::newRow("three far apart") << QList<unsigned int>{0, 100, 10000};
    QTest::newRow("beyond exact single precision") << QList<unsigned int>{0, 20000000};
    QTest::newRow("the last frame that there is") << QList<unsigned int>{4294967295U};
    QTest::newRow("the last two frames") << QList<unsigned int>{4294967294U, 4294967295U};
    QTest::newRow("the first and the last frame") << QList<unsigned int>{0, 4294967295U};
}

void EditSessionTest::undoAndRedoLeadToTheSameStates() {
    QFETCH(QList<unsigned int>, frames);
    const auto animation = editable(frames);
    const AnimationState before(*animation);
    EditSession session(*animation);
    session.play();
    QVERIFY(session.undoCount() > 5);
    const AnimationState after(*animation);
    for (int round = 0; round < 3; ++round) {
        session.undoAll();
        QCOMPARE(differencesOf(*animation, before), QStringList());
        session.redoAll();
        QCOMPARE(differencesOf(*animation, after), QStringList());
    }
}

void EditSessionTest::editsWithoutRoomAreLeftOutAndSayWhy() {
    const auto animation = editable({4294967295U});
    EditSession session(*animation);
    session.play();
    QStringList leftOut;
    for (const EditSession::Entry& entry : session.history()) {
        if (entry.steps == 0) {
            leftOut.append(entry.text);
        }
    }
    QCOMPARE(leftOut,
             QStringList({"(left out: add keys, since no layer with keys has a free frame)",
                          "(left out: drag keys, since no layer with keys has a free frame)",
                          "(left out: remove keys, since it would take a layer's only key)",
                          "(left out: mark a range, since no layer has keys, or they stand too far out)",
                          "(left out: move the range, since no layer has keys, or they stand too far out)",
                          "(left out: stretch the range, since no layer has keys, or they stand too far "
                          "out)"}));
    QCOMPARE(session.history().size(), std::size_t{12});
    QCOMPARE(session.undoCount(), 6);
}

void EditSessionTest::aRangeWithoutKeysIsNotStretched() {
    const auto animation = editable({0, 10, 20, 30, 40});
    EditSession session(*animation);
    session.play();
    QCOMPARE(session.history().back().text,
             QString("(left out: stretch the range, since no key stands in it)"));
    const ZT::AnimationMarkers& markers = *animation->getMarkers();
    const ZT::EditableMotionCurve& curve = *(*animation)[0]->getCurve();
    for (unsigned int frame = markers.rangeStartIndex(); frame <= markers.rangeEndIndex(); ++frame) {
        QVERIFY(curve.isIndexAvailable(frame));
    }
}

void EditSessionTest::anyOtherValueIsADifference_data() {
    using Animation = ZT::EditableAnimation;
    using Change = std::function<void(Animation&)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("difference");
    const auto row = [](const char* name, const char* difference, const Change& change) {
        QTest::newRow(name) << change << QString(difference);
    };
    const auto key = [](Animation& animation) { return animation[0]->getCurve()->getKey(10); };
    row("value", "layer \"\", frame 10: the value is 1.40129846e-45 instead of 0",
        [key](Animation& animation) { key(animation)->setValue(1.4e-45F); });
    row("the sign of zero", "layer \"\", frame 10: the value is -0 instead of 0",
        [key](Animation& animation) {
            key(animation)->setValue(1.0F);
            key(animation)->setValue(-0.0F);
        });
    row("type", "layer \"\", frame 10: the left tangent is 1 instead of 2",
        [key](Animation& animation) { key(animation)->setLeftTangentType(InterpolationType::linear); });
    row("handle", "layer \"\", frame 10: the right tangent's handle is (1, 2) instead of (0, 0)",
        [key](Animation& animation) {
            key(animation)->setRightTangentOffset({1.0F, 2.0F});
        });
    row("frame", "layer \"\", frame 10: the frame is 11 instead of 10",
        [key](Animation& animation) { animation[0]->getCurve()->translateKey(key(animation), 11); });
    row("smooth", "layer \"\", frame 10: smooth is 1 instead of 0", [key](Animation& animation) {
        key(animation)->setSmooth(true);
        key(animation)->setLeftTangentOffset({-0.0F, -0.0F});
    });
    row("a key less", "layer \"\": 0 keys instead of 1",
        [](Animation& animation) { animation[0]->getCurve()->remove(10U); });
    row("name", "layer \"\": name, mute flag, time unit or limits differ",
        [](Animation& animation) { animation[0]->setActuatorName("a"); });
    row("mute", "layer \"\": name, mute flag, time unit or limits differ",
        [](Animation& animation) { animation[0]->setMute(true); });
    row("a layer more", "2 layers instead of 1",
        [](Animation& animation) { animation.push_back(new ZT::EditableAnimationLayer); });
    row("markers", "the markers stand at other frames",
        [](Animation& animation) { animation.getMarkers()->setRangeEndIndex(2); });
}

void EditSessionTest::anyOtherValueIsADifference() {
    QFETCH(std::function<void(ZT::EditableAnimation&)>, change);
    QFETCH(QString, difference);
    const auto animation = editable({10});
    ZT::EditableMotionCurveKey* const key = (*animation)[0]->getCurve()->getKey(10);
    key->setLeftTangentType(InterpolationType::bezier);
    key->setRightTangentType(InterpolationType::bezier);
    const AnimationState before(*animation);
    QCOMPARE(differencesOf(*animation, before), QStringList());
    change(*animation);
    const QStringList differences = differencesOf(*animation, before);
    QVERIFY2(differences.contains(difference), qPrintable(differences.join('\n')));
}

void EditSessionTest::anotherKeyObjectIsADifferenceOnlyWhereObjectsCount() {
    const auto one = editable({10});
    const auto other = editable({10});
    QCOMPARE(differencesOf(*one, AnimationState(*other)),
             QStringList("layer \"\", frame 10: the key is another object instead of the same one"));
    QCOMPARE(AnimationState(*one).comparedWith(AnimationState(*other), Objects::any).differences,
             QStringList());
}

void EditSessionTest::automaticHandlesMayDifferWithinTheirToleranceAlone() {
    // The middle key's handles rise with its neighbours. A neighbour that moves so little that the handles
    // stay, and then comes to its place by a detour, leaves them with other bits.
    const auto animation = editable({0, 10, 20});
    ZT::EditableMotionCurve& curve = *(*animation)[0]->getCurve();
    curve.getKey(10)->setValue(1.0F);
    curve.getKey(20)->setValue(2.0F);
    curve.updateBezierAutoTangents();
    const AnimationState before(*animation);
    const auto detour = [&](float value) {
        curve.getKey(20)->setValue(value);
        curve.updateBezierAutoTangents();
        curve.getKey(20)->setValue(2.0F);
    };
    detour(2.0005F);
    curve.updateBezierAutoTangents();
    const AnimationState::Comparison near = AnimationState(*animation).comparedWith(before, Objects::same);
    QCOMPARE(near.differences, QStringList());

    // Handles that were not recomputed lie further away than their formula allows.
    detour(3.0F);
    const AnimationState::Comparison far = AnimationState(*animation).comparedWith(before, Objects::same);
    QVERIFY(!far.differences.isEmpty());
    QVERIFY(far.differences.first().contains("handle"));
    curve.updateBezierAutoTangents();
    QCOMPARE(differencesOf(*animation, before), QStringList());
}

QTEST_GUILESS_MAIN(EditSessionTest)
#include "EditSessionTest.moc"
