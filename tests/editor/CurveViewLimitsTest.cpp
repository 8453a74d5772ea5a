#include "CurveViewScene.h"

#include "curves/GridPainter.h"
#include "curves/HitTest.h"
#include "curves/PixelLines.h"
#include "curves/PlacedKey.h"
#include "curves/ReadableColour.h"

#include <cmath>
#include <limits>

using Scene = CurveViewScene;
using Type = Scene::Type;

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float largest = std::numeric_limits<float>::max();
constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();

/// Whether the picture shows the first layer's colour near a point.
bool isDrawnAt(Scene& scene, const QPoint& point) {
    const QColor colour =
        Editor::readableOn(scene.view->palette().color(QPalette::Base), scene.document.look(0).colour);
    const QImage image = scene.picture();
    for (int y = -2; y <= 2; ++y) {
        for (int x = -2; x <= 2; ++x) {
            const QColor drawn = image.pixelColor(point + QPoint(x, y));
            if (std::abs(drawn.red() - colour.red()) + std::abs(drawn.green() - colour.green()) +
                    std::abs(drawn.blue() - colour.blue()) <
                40) {
                return true;
            }
        }
    }
    return false;
}

/// All that a user can do at some points.
void playWith(Scene& scene) {
    const QRect plot = scene.view->rect();
    for (const QPoint& point : {plot.topLeft(), plot.center(), plot.bottomRight()}) {
        scene.turnWheel(point, 1200);
        scene.click(point);
        scene.dragBetween(point, point + QPoint(40, -30));
        scene.doubleClick(point);
        scene.turnWheel(point, -12000);
        scene.dragBetween(point, point - QPoint(40, -30), Qt::ShiftModifier);
        scene.document.selection().selectAll();
        scene.dragBetween(point, point - QPoint(10000, -10000));
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Tab}) {
            scene.type(key);
        }
        scene.view->fitSelection();
        QVERIFY(!scene.picture().isNull());
        scene.view->fitAll();
        QVERIFY(!scene.picture().isNull());
    }
    QVERIFY(std::isfinite(scene.frames->span()) && std::isfinite(scene.view->values().span()));
}

} // namespace

Q_DECLARE_METATYPE(CurveViewScene::Layers)

class CurveViewLimitsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingGoesWrongWithAnyAnimationInAnySize_data() {
        QTest::addColumn<Scene::Layers>("layers");
        QTest::addColumn<QSize>("size");
        const float nan = std::nanf("");
        const std::vector<std::pair<const char*, Scene::Layers>> animations{
            {"no layers", {}},
            {"no keys", {{}, {}}},
            {"one key", {{{0, 0.0F}}}},
            {"the first and the last frame",
             {{{0, 1.0F, Type::bezierAuto}, {lastFrame, 2.0F, Type::bezierAuto}}}},
            {"neighbours at the end",
             {{{lastFrame - 1, 1.0F}, {lastFrame, 2.0F, Type::bezier, {-1.0F, 9.0F}, {}}}}},
            {"largest values", {{{0, largest, Type::bezierAuto}, {10, -largest, Type::bezierAuto}}}},
            {"smallest values", {{{0, 1e-45F, Type::bezierAuto}, {10, -1e-45F, Type::bezierAuto}}}},
            {"largest handles",
             {{{0, 0.0F, Type::bezier, {-largest, largest}, {largest, -largest}},
               {10, 0.0F, Type::bezier, {-largest, largest}, {largest, -largest}}}}},
            {"handles that are no numbers",
             {{{0, 0.0F, Type::bezier, {nan, infinity}, {infinity, nan}},
               {10, 5.0F, Type::bezier, {-infinity, -infinity}, {nan, nan}}}}},
            {"values that are no numbers",
             {{{0, nan}, {5, infinity, Type::constant}, {10, -infinity, Type::bezierAuto}}}}};
        for (const auto& [name, layers] : animations) {
            for (const QSize size : {QSize(900, 500), QSize(40, 20), QSize(1, 1), QSize(0, 0)}) {
                QTest::addRow("%s, %d x %d", name, size.width(), size.height()) << layers << size;
            }
        }
    }
    void nothingGoesWrongWithAnyAnimationInAnySize() {
        QFETCH(Scene::Layers, layers);
        QFETCH(QSize, size);
        Scene scene(layers);
        scene.view->setMinimumSize(0, 0);
        scene.view->resize(size);
        scene.view->fitAll();
        playWith(scene);
        while (scene.document.history().canUndo()) {
            scene.document.history().undo();
        }
        QVERIFY(!scene.picture().isNull());
    }

    void aKeyWithoutFiniteValueIsNotHitAndItsNeighboursAreDrawnAsFarAsTheyAreFinite() {
        Scene scene(
            {{{0, 20.0F, Type::constant}, {40, std::nanf(""), Type::linear}, {60, 80.0F}, {100, 80.0F}}});
        QVERIFY(isDrawnAt(scene, scene.at(20, 20)));
        QVERIFY(!isDrawnAt(scene, scene.at(50, 80)));
        QVERIFY(isDrawnAt(scene, scene.at(80, 80)));
        scene.dragBetween(scene.at(-8, 115), scene.at(108, -15));
        QCOMPARE(scene.selected(), QString("a@0 a@100 a@60"));
    }

    void aSegmentThatLeavesTheViewFarAwayIsDrawnWhereItPasses() {
        Scene scene({{{0, 0.0F}, {100, 1e30F}}});
        scene.document.markers().setSelectedIndex(50); // Lines of markers are drawn over curves.
        scene.document.markers().setStartIndex(1);
        QVERIFY(isDrawnAt(scene, scene.at(0, 60)));
        QVERIFY(!isDrawnAt(scene, scene.at(20, 60)));
    }

    void beforeItsFirstAndBehindItsLastKeyACurveIsDrawnConstant() {
        Scene scene({{{30, 20.0F}, {70, 80.0F}}});
        QVERIFY(isDrawnAt(scene, scene.at(0, 20)));
        QVERIFY(isDrawnAt(scene, scene.at(100, 80)));
        scene.frames->show(40.0, 60.0); // No key is in view.
        QVERIFY(isDrawnAt(scene, scene.at(50, 50)));
        scene.frames->show(1000.0, 1100.0);
        QVERIFY(isDrawnAt(scene, scene.at(1050, 80)));
    }

    void keysThatShareAColumnAreDrawnFromTheLeastToTheGreatest() {
        // Some 25 keys share a column, and the few that stand out are at different places among those.
        std::vector<Scene::KeyAt> keys;
        const auto standsOut = [](unsigned int frame) { return frame >= 2000 && frame % 501 == 0; };
        for (unsigned int frame = 0; frame < 20000; ++frame) {
            keys.push_back({frame, standsOut(frame) ? 100.0F : 0.0F});
        }
        Scene scene({keys});
        scene.frames->show(0.0, 20000.0);
        for (unsigned int frame = 2000; frame < 20000; ++frame) {
            if (standsOut(frame)) {
                QVERIFY2(isDrawnAt(scene, scene.at(frame, 50)), qPrintable(QString::number(frame)));
            }
        }
        QVERIFY(!isDrawnAt(scene, scene.at(501 * 10, 110)));
        QVERIFY(!isDrawnAt(scene, scene.at(501 * 10 + 250, 50)));
    }

    void hiddenLayersAreNotDrawn() {
        Scene scene({{{0, 50.0F}, {100, 50.0F}}});
        QVERIFY(isDrawnAt(scene, scene.at(50, 50)));
        scene.setLook(0, false, false);
        QVERIFY(!isDrawnAt(scene, scene.at(50, 50)));
    }

    void theKeysAroundAPartAreThoseInItAndOneOnEachSide() {
        Scene scene({{{0, 0.0F}, {100, 0.0F}, {200, 0.0F}, {300, 0.0F}, {400, 0.0F}}});
        const auto framesOf = [&](double first, double last) {
            QStringList texts;
            for (const auto& placed : Editor::keysAround(scene.curve(0), first, last)) {
                texts.append(QString::number(placed.frame));
            }
            return texts.join(' ');
        };
        QCOMPARE(framesOf(150, 250), QString("100 200 300"));
        QCOMPARE(framesOf(103, 110), QString("100 200"));
        QCOMPARE(framesOf(95, 150), QString("0 100 200"));
        QCOMPARE(framesOf(130, 150), QString("100 200"));
        QCOMPARE(framesOf(100, 200), QString("100 200 300"));
        QCOMPARE(framesOf(-50, -10), QString("0"));
        QCOMPARE(framesOf(450, 1e300), QString("400"));
        QCOMPARE(framesOf(-1e300, 1e300), QString("0 100 200 300 400"));
    }

    void linesAreClippedWithoutChangingTheirDirection() {
        const QRectF bounds(0.0, 0.0, 100.0, 100.0);
        QPointF a(-1e60, -1e60);
        QPointF b(1e60, 1e60);
        QVERIFY(Editor::clipLine(a, b, bounds));
        QVERIFY(bounds.contains(a) && bounds.contains(b));
        a = {50.0, 20.0};
        b = {50.0, 1e70};
        QVERIFY(Editor::clipLine(a, b, bounds));
        QCOMPARE(a, QPointF(50.0, 20.0));
        QCOMPARE(b, QPointF(50.0, 100.0));
        a = {-10.0, 50.0};
        b = {50.0, 120.0};
        QVERIFY(Editor::clipLine(a, b, bounds));
        QVERIFY(std::abs(a.y() - (50.0 + 70.0 / 6.0)) < 1e-9 && a.x() == 0.0);
        a = {-10.0, 90.0};
        b = {10.0, 120.0};
        QVERIFY(!Editor::clipLine(a, b, bounds));
    }

    void labelsTellNeighbouringTicksApart_data() {
        QTest::addColumn<double>("number");
        QTest::addColumn<double>("step");
        for (const double number : {0.0, 1.0, -12.0, 1234.0, 1e6, 123456789.0, 1e20, -3e38}) {
            for (const double step : {1e-6, 1e-3, 0.05, 0.2, 1.0, 50.0, 1e6, 2e30}) {
                if (std::abs(number) / step < 1e10) {
                    QTest::addRow("%g by %g", number, step) << std::round(number / step) * step << step;
                }
            }
        }
    }
    void labelsTellNeighbouringTicksApart() {
        QFETCH(double, number);
        QFETCH(double, step);
        const QString label = Editor::GridPainter::label(number, step);
        const QString next = Editor::GridPainter::label(number + step, step);
        QVERIFY2(label != next, qPrintable(label));
        QVERIFY2(std::abs(label.toDouble() - number) <= 1e-6 * step + 1e-12 * std::abs(number),
                 qPrintable(label));
    }
};

QTEST_MAIN(CurveViewLimitsTest)
#include "CurveViewLimitsTest.moc"
