#include "timeline/CurveKeys.h"

#include "tests/editor/support/Scene.h"

#include <limits>

using Editor::firstKeyFrom;
using Editor::forEachKey;
using Editor::nextKeyFrame;
using Editor::previousKeyFrame;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

QString framesBetween(EditorScene::Curve& curve, unsigned int first, unsigned int last) {
    QStringList frames;
    forEachKey(curve, first, last, [&](unsigned int frame, EditorScene::Key* key) {
        frames.append(ZT::index(key) == frame ? QString::number(frame) : QString("not a key's frame"));
    });
    return frames.join(' ');
}

} // namespace

class CurveKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theKeysOfASparseCurveAreFound() {
        EditorScene::Scene scene;
        scene.add(0, {3, 1000, lastFrame});
        EditorScene::Curve& curve = scene.curve(0);
        QCOMPARE(framesBetween(curve, 0, lastFrame), QString("3 1000 %1").arg(lastFrame));
        QCOMPARE(framesBetween(curve, 3, 1000), QString("3 1000"));
        QCOMPARE(framesBetween(curve, 4, 999), QString());
        QCOMPARE(framesBetween(curve, 4, 1000), QString("1000"));
        QCOMPARE(framesBetween(curve, lastFrame, lastFrame), QString::number(lastFrame));
        QCOMPARE(framesBetween(curve, 1001, lastFrame - 1), QString());
    }

    void theKeysOfACurveThatIsEmptyOrASpanThatIsReversedAreNone() {
        EditorScene::Scene scene;
        QCOMPARE(framesBetween(scene.curve(0), 0, lastFrame), QString());
        scene.add(0, {0, 5});
        QCOMPARE(framesBetween(scene.curve(0), 1, 0), QString());
    }

    void anySpanOfADenseCurveWithGapsIsFound() {
        EditorScene::Scene scene;
        std::set<unsigned int> all;
        for (unsigned int frame = 100; frame < 400; ++frame) {
            if (frame % 7 != 0 && (frame < 200 || frame > 320)) {
                scene.add(0, {frame});
                all.insert(frame);
            }
        }
        EditorScene::Curve& curve = scene.curve(0);
        for (unsigned int first = 90; first < 410; ++first) {
            for (const unsigned int length : {0U, 1U, 6U, 20U, 60U, 400U}) {
                const auto expected = all.lower_bound(first);
                const bool isAny = expected != all.end() && *expected <= first + length;
                const auto found = firstKeyFrom(curve, first, first + length);
                QCOMPARE(found != curve.end(), isAny);
                if (isAny) {
                    QCOMPARE((*found).first, *expected);
                }
            }
        }
    }

    void theNextAndThePreviousKeyAreFound() {
        EditorScene::Scene scene;
        EditorScene::Curve& curve = scene.curve(0);
        QVERIFY(!nextKeyFrame(curve, 0) && !previousKeyFrame(curve, lastFrame));
        scene.add(0, {0, 10, 20, lastFrame});
        QCOMPARE(nextKeyFrame(curve, 0).value_or(1), 10U);
        QCOMPARE(nextKeyFrame(curve, 12).value_or(1), 20U);
        QCOMPARE(nextKeyFrame(curve, 20).value_or(1), lastFrame);
        QVERIFY(!nextKeyFrame(curve, lastFrame));
        QCOMPARE(previousKeyFrame(curve, lastFrame).value_or(1), 20U);
        QCOMPARE(previousKeyFrame(curve, 15).value_or(1), 10U);
        QCOMPARE(previousKeyFrame(curve, 10).value_or(1), 0U);
        QVERIFY(!previousKeyFrame(curve, 0));
    }
};

QTEST_GUILESS_MAIN(CurveKeysTest)
#include "CurveKeysTest.moc"
