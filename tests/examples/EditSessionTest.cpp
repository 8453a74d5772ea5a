#include "EditSession.h"

#include "AnimationFile.h"
#include "AnimationState.h"
#include "model/AnimationMarkers.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>
#include <vector>

using VQ::Math::Interpolation::InterpolationType;
using Objects = AnimationState::Objects;

namespace {

const QString shippedFile = QString(EA_SOURCE_DIR) + "/examples/wave.xml";

struct Result {
    int exitCode = -1;
    QString output;
    QString errors;
};

Result runProgram(const QStringList& arguments, const QProcessEnvironment& environment) {
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(EDIT_SESSION_PROGRAM, arguments);
    if (!program.waitForFinished(280000) || program.exitStatus() != QProcess::NormalExit) {
        return {-1, program.readAllStandardOutput(), program.errorString()};
    }
    return {program.exitCode(), program.readAllStandardOutput(), program.readAllStandardError()};
}

Result runProgram(const QStringList& arguments) {
    // Qt's "offscreen" platform never frees its screen, which a leak checker would report as ours.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "minimal");
    return runProgram(arguments, environment);
}

/// An animation of one layer with "bezier auto" keys of value 1 at the given frames.
QByteArray animationWithKeys(const QList<unsigned int>& frames) {
    QByteArray text = R"(<animation><layer name="only"><curve timeUnit="1/25" minimum="-inf" maximum="inf")"
                      R"( maximumDerivative="inf">)";
    for (const unsigned int frame : frames) {
        text += R"(<key value="1" frame=")" + QByteArray::number(frame) +
                R"("><left type="bezier auto" dx="0" dy="0"/>)"
                R"(<right type="bezier auto" dx="0" dy="0"/></key>)";
    }
    return text + "</curve></layer></animation>";
}

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
    void theProgramPlaysItsSessionOn_data();
    void theProgramPlaysItsSessionOn();
    void theProgramSavesAndDraws();
    void theProgramRefusesWhatItCannotRead_data();
    void theProgramRefusesWhatItCannotRead();
    void theProgramFailsWhereItCannotWrite_data();
    void theProgramFailsWhereItCannotWrite();
    void theProgramNeedsNoDisplay();
};

void EditSessionTest::everyEditIsOneEntryOfTheHistory() {
    const auto animation = AnimationFile(shippedFile).load();
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
    const auto animation = AnimationFile(shippedFile).load();
    EditSession session(*animation);
    session.play();
    std::vector<int> steps;
    for (const EditSession::Entry& entry : session.history()) {
        steps.push_back(entry.steps);
    }
    QCOMPARE(steps, std::vector<int>({1, 1, 1, 1, 1, 1, 20, 20, 1, 20, 20, 20}));
}

void EditSessionTest::eachStepAndEditReachesTheAnimation() {
    const auto animation = AnimationFile(shippedFile).load();
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

void EditSessionTest::theProgramPlaysItsSessionOn_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("entries");
    QTest::newRow("the shipped file") << QString() << QByteArray() << 12;
    QTest::newRow("a walk") << QString(EA_SHARED_DATA "/walk.bvh") << QByteArray() << 12;
    QTest::newRow("a dance") << QString(EA_SHARED_DATA "/dance.bvh") << QByteArray() << 12;
    QTest::newRow("a single key") << QString("one.xml") << animationWithKeys({7}) << 12;
    QTest::newRow("a single key at the last frame")
        << QString("end.xml") << animationWithKeys({4294967295U}) << 6;
    QTest::newRow("no key") << QString("none.xml") << animationWithKeys({}) << 0;
    QTest::newRow("no layer") << QString("empty.xml") << QByteArray("<animation/>") << 0;
}

void EditSessionTest::theProgramPlaysItsSessionOn() {
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QFETCH(int, entries);
    const QTemporaryDir directory;
    if (!content.isEmpty()) {
        path = directory.filePath(path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64{content.size()});
    } else if (!path.isEmpty() && !QFile::exists(path)) {
        QSKIP(qPrintable(path + " is missing"));
    }
    const Result result = runProgram(path.isEmpty() ? QStringList() : QStringList(path));
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors.right(4000)));
    QVERIFY2(result.output.contains(QString("\n%1 entries\n").arg(entries)), qPrintable(result.output));
    QCOMPARE(result.output.count("(left out: "), 12 - entries);
    for (const char* const check :
         {"all undone, the same keys as opened: equal", "the file read anew: equal",
          "all redone, the same keys as edited: equal", "saved and read back: equal"}) {
        QVERIFY2(result.output.contains(check), check);
    }
}

void EditSessionTest::theProgramSavesAndDraws() {
    const QTemporaryDir directory;
    const QString saved = directory.filePath("saved.xml");
    const QString picture = directory.filePath("picture.png");
    const Result result = runProgram({shippedFile, "--save", saved, "--picture", picture});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors.right(4000)));

    // The session made by hand ends in the same animation.
    const auto animation = AnimationFile(shippedFile).load();
    EditSession session(*animation);
    session.play();
    const auto reloaded = AnimationFile(saved).load();
    const AnimationState expected = AnimationState(*animation).asReadBack();
    QCOMPARE(AnimationState(*reloaded).comparedWith(expected, Objects::any).differences, QStringList());

    const QImage image(picture);
    QCOMPARE(image.size(), QSize(1280, 720));
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            colors.insert(image.pixel(x, y));
        }
    }
    // One colour for the curves of each panel.
    for (const QRgb color : {0xff5ac8fa, 0xffffb347, 0xff8ee07a, 0xfff27fb2}) {
        QVERIFY2(colors.contains(color), qPrintable(QString::number(color, 16)));
    }
}

void EditSessionTest::theProgramRefusesWhatItCannotRead_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");
    QTest::newRow("a damaged capture") << "a.bvh" << QByteArray("HIERARCHY\nROOT\n{\n")
                                       << "line 3: \"{\" stands where a joint's name should stand";
    QTest::newRow("a damaged animation")
        << "a.xml" << animationWithKeys({5}).replace("frame=\"5\"", "") << "attribute \"frame\" is missing";
    QTest::newRow("no XML") << "a.xml" << QByteArray("HIERARCHY") << "a.xml: ";
    QTest::newRow("another kind of file")
        << "a.txt" << QByteArray("text") << "neither an animation (.xml) nor a motion capture (.bvh)";
}

void EditSessionTest::theProgramRefusesWhatItCannotRead() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, problem);
    const QTemporaryDir directory;
    QFile file(directory.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64{content.size()});
    file.close();
    const Result result = runProgram({file.fileName()});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errors.contains("edit_session: " + file.fileName() + ": "), qPrintable(result.errors));
    QVERIFY2(result.errors.contains(problem), qPrintable(result.errors));
}

void EditSessionTest::theProgramFailsWhereItCannotWrite_data() {
    QTest::addColumn<QString>("option");
    QTest::newRow("--save") << "--save";
    QTest::newRow("--picture") << "--picture";
}

void EditSessionTest::theProgramFailsWhereItCannotWrite() {
    QFETCH(QString, option);
    const QTemporaryDir directory;
    const QString path = directory.filePath(option == "--save" ? "missing/out.xml" : "missing/out.png");
    const Result result = runProgram({option, path});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errors.contains("edit_session: " + path + ": "), qPrintable(result.errors));
}

void EditSessionTest::theProgramNeedsNoDisplay() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        environment.remove(variable);
    }
    const Result result = runProgram({"--version"}, environment);
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.startsWith("edit_session "));
}

QTEST_GUILESS_MAIN(EditSessionTest)
#include "EditSessionTest.moc"
