#include "document/AnimationSummary.h"

#include "document/AnimationFile.h"
#include "tests/editor/support/Scene.h"

#include <QFile>

#include <limits>

using namespace EditorScene;
using Editor::AnimationSummary;

class AnimationSummaryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anAnimationIsSummedUp();
    void nothingIsSummedUpToo();
    void emptyLayersAreAProblem();
    void doubledNamesAreAProblemOnce();
    void differentRatesAreAProblem();
    void keysThatAreNotFiniteAreAProblem();
    void namesWithPlaceholdersAreNamesOnly();
    void aMotionCaptureHasNoProblems();
};

void AnimationSummaryTest::anAnimationIsSummedUp() {
    Scene scene({"arm", "leg"});
    scene.add(0, {3, 9});
    scene.add(1, {120});
    const AnimationSummary summary(scene.document.animation());
    QCOMPARE(summary.text(), QString("2 layers\n3 keys\nframes 3 to 120\n25 frames a second\n"
                                     "layer \"arm\": 2 keys, frames 3 to 9\n"
                                     "layer \"leg\": 1 keys, frames 120 to 120\n"));
    QVERIFY(summary.problems().isEmpty());
}

void AnimationSummaryTest::nothingIsSummedUpToo() {
    const AnimationSummary summary{ZT::EditableAnimation()};
    QCOMPARE(summary.text(), QString("0 layers\n0 keys\nproblem: there is no layer\n"));
}

void AnimationSummaryTest::emptyLayersAreAProblem() {
    Scene scene({"arm", "leg"});
    scene.add(0, {3});
    const AnimationSummary summary(scene.document.animation());
    QCOMPARE(summary.problems(), QStringList("layer \"leg\" has no keys"));
    QVERIFY(summary.text().contains("layer \"leg\": no keys\n"));
    QVERIFY(summary.text().endsWith("problem: layer \"leg\" has no keys\n"));
}

void AnimationSummaryTest::doubledNamesAreAProblemOnce() {
    Scene scene({"arm", "leg", "arm", "arm"});
    for (const int layer : {0, 1, 2, 3}) {
        scene.add(layer, {1});
    }
    QCOMPARE(AnimationSummary(scene.document.animation()).problems(),
             QStringList("more than one layer is named \"arm\""));
}

void AnimationSummaryTest::differentRatesAreAProblem() {
    VQ::Animation::Animation plain;
    for (const auto& unit : {boost::rational<int>(1, 30), boost::rational<int>(1001, 30000)}) {
        auto* const layer = new VQ::Animation::AnimationLayer;
        layer->actuatorName = std::to_string(plain.size());
        layer->curve->setTimeUnit(VQ::Animation::RationalSeconds(unit));
        layer->curve->insert(0, new Record);
        plain.push_back(layer);
    }
    const AnimationSummary summary{ZT::EditableAnimation(plain)};
    QCOMPARE(summary.problems(), QStringList("layers have different rates: 30, 30000/1001"));
    QVERIFY(summary.text().contains("30, 30000/1001 frames a second\n"));
}

void AnimationSummaryTest::keysThatAreNotFiniteAreAProblem() {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    Scene scene({"arm"});
    scene.add(0, 1, record(nan));
    scene.add(0, 2, record(-infinity));
    scene.add(0, 3, bezier(0, {-1, nan}, {1, 1}));
    scene.add(0, 4, bezier(0, {-1, 0}, {infinity, 1}));
    scene.add(0, 5, record(std::numeric_limits<float>::max()));
    QStringList expected;
    for (const int frame : {1, 2, 3, 4}) {
        expected.append(QString("layer \"arm\": the key at frame %1 is not finite").arg(frame));
    }
    QCOMPARE(AnimationSummary(scene.document.animation()).problems(), expected);
}

void AnimationSummaryTest::namesWithPlaceholdersAreNamesOnly() {
    Scene scene({"%1 %2 %3"});
    scene.add(0, 7, record(std::numeric_limits<float>::infinity()));
    const QString text = AnimationSummary(scene.document.animation()).text();
    QVERIFY(text.contains("layer \"%1 %2 %3\": 1 keys, frames 7 to 7\n"));
    QVERIFY(text.contains("layer \"%1 %2 %3\": the key at frame 7 is not finite\n"));
}

void AnimationSummaryTest::aMotionCaptureHasNoProblems() {
    const QString path = QString(EA_SHARED_DATA) + "/walk.bvh";
    if (!QFile::exists(path)) {
        QSKIP("the shared data are not here");
    }
    const auto data = Editor::AnimationFile(path).load();
    const AnimationSummary summary(*data.animation);
    QVERIFY(summary.text().startsWith("96 layers\n50304 keys\n"));
    QVERIFY(summary.problems().isEmpty());
}

QTEST_GUILESS_MAIN(AnimationSummaryTest)
#include "AnimationSummaryTest.moc"
