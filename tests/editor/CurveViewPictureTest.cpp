#include "CurveViewScene.h"

#include "base/animation/CurveEvaluation.h"
#include "curves/CurvePainter.h"
#include "curves/GridPainter.h"
#include "curves/PixelLines.h"
#include "curves/ReadableColour.h"
#include "document/AnimationFile.h"

#include <QFileInfo>
#include <QPainter>
#include <QRandomGenerator>

#include <cmath>

using Scene = CurveViewScene;
using Type = Scene::Type;

namespace {

QPalette paletteOf(bool isDark) {
    QPalette palette;
    const QColor text = isDark ? QColor(225, 228, 232) : QColor(20, 22, 26);
    palette.setColor(QPalette::Window, isDark ? QColor(45, 48, 53) : QColor(239, 240, 241));
    palette.setColor(QPalette::Base, isDark ? QColor(30, 32, 36) : QColor(255, 255, 255));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Highlight, QColor(50, 130, 220));
    return palette;
}

std::vector<Scene::KeyAt> randomKeys(QRandomGenerator& random) {
    const auto between = [&random](double least, double greatest) {
        return static_cast<float>(least + random.generateDouble() * (greatest - least));
    };
    std::vector<Scene::KeyAt> keys;
    for (unsigned int frame = 0; frame <= 100; frame += 5 + random.bounded(20U)) {
        keys.push_back({frame,
                        between(0.0, 100.0),
                        static_cast<Type>(random.bounded(4)),
                        {between(-12.0, -1.0), between(-30.0, 30.0)},
                        {between(1.0, 12.0), between(-30.0, 30.0)}});
    }
    return keys;
}

} // namespace

class CurveViewPictureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLineRunsWhereTheCurveIsEvaluated_data() {
        QTest::addColumn<quint32>("seed");
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("last");
        for (quint32 seed = 1; seed <= 25; ++seed) {
            QTest::addRow("curve %u", seed) << seed << -10.0 << 110.0;
            QTest::addRow("curve %u, a part of it", seed) << seed << 31.5 << 47.25;
            QTest::addRow("curve %u, small", seed) << seed << -500.0 << 700.0;
        }
    }
    void theLineRunsWhereTheCurveIsEvaluated() {
        QFETCH(quint32, seed);
        QFETCH(double, first);
        QFETCH(double, last);
        QRandomGenerator random(seed);
        Scene scene({randomKeys(random)});
        scene.frames->show(first, last);
        const Editor::CurvePlacement placement(*scene.frames, scene.view->values(), QRect(0, 0, 900, 500));
        QImage image(900, 500, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setPen(Qt::black);
        Editor::CurvePainter(painter, placement).paint(Editor::keysAround(scene.curve(0), first, last));
        painter.end();

        const QRgb black = QColor(Qt::black).rgb();
        const auto isDrawnNear = [&](const QPointF& point) {
            const QPoint centre(static_cast<int>(std::floor(point.x())),
                                static_cast<int>(std::floor(point.y())));
            for (int y = -1; y <= 1; ++y) {
                for (int x = -1; x <= 1; ++x) {
                    const QPoint pixel = centre + QPoint(x, y);
                    if (image.valid(pixel) && image.pixel(pixel) == black) {
                        return true;
                    }
                }
            }
            return false;
        };
        // The curve is drawn ...
        std::vector<QPointF> points;
        for (double x = 0.0; x < 900.0; x += 0.125) {
            points.emplace_back(x, placement.toY(double{scene.curve(0).valueAt(placement.toFrame(x))}));
            if (points.back().y() > 2.0 && points.back().y() < 498.0) {
                QVERIFY2(isDrawnNear(points.back()),
                         qPrintable(QString("column %1, row %2").arg(x).arg(points.back().y())));
            }
        }
        // ... and nothing else is.
        for (int x = 0; x < 900; ++x) {
            for (int y = 0; y < 500; ++y) {
                if (image.pixel(x, y) != black) {
                    continue;
                }
                bool isNear = false;
                const auto begin = static_cast<std::size_t>(std::max(0, (x - 2) * 8));
                const auto end = std::min(points.size() - 1, static_cast<std::size_t>((x + 3) * 8));
                for (std::size_t i = begin; i < end && !isNear; ++i) {
                    isNear =
                        Editor::distanceToLine(QPointF(x + 0.5, y + 0.5), points[i], points[i + 1]) < 1.8;
                }
                QVERIFY2(isNear, qPrintable(QString("%1, %2").arg(x).arg(y)));
            }
        }
    }

    void everyLayersColourCanBeSeenOnLightAndOnDark() {
        for (const bool isDark : {false, true}) {
            const QColor base = paletteOf(isDark).color(QPalette::Base);
            for (int i = 0; i < 96; ++i) {
                const QColor colour = Editor::readableOn(base, Editor::Document::colourAt(i));
                QVERIFY2(Editor::contrastOf(base, colour) >= 3.0, qPrintable(colour.name()));
            }
            for (const QColor& colour :
                 {QColor(Qt::black), QColor(Qt::white), QColor(Qt::yellow), QColor(Qt::blue)}) {
                QVERIFY(Editor::contrastOf(base, Editor::readableOn(base, colour)) >= 3.0);
            }
        }
    }

    void coloursThatCanBeSeenStayWhatTheyAre() {
        const QColor colour(0, 90, 160);
        QCOMPARE(Editor::readableOn(Qt::white, colour), colour);
    }

    void whatIsSelectedLooksOtherwise() {
        Scene scene({{{0, 10.0F, Type::bezier, {}, {10.0F, 30.0F}}, {50, 60.0F}}});
        const QImage before = scene.picture();
        scene.document.selection().set({scene.key(0, 0)});
        const QImage selected = scene.picture();
        QVERIFY(selected != before);
        const QPoint handle = scene.at(10, 40);
        QVERIFY(selected.copy(QRect(handle - QPoint(4, 4), QSize(9, 9))) !=
                before.copy(QRect(handle - QPoint(4, 4), QSize(9, 9))));
        scene.document.selection().clear();
        QCOMPARE(scene.picture(), before);
    }

    void markersAndRangeAreShown() {
        Scene scene({{{0, 10.0F}, {50, 60.0F}}});
        ZT::AnimationMarkers& markers = scene.document.markers();
        const auto column = [&](const QImage& image, double frame) {
            const int x = scene.at(frame, 0).x();
            return image.copy(x - 3, 0, 7, image.height());
        };
        QImage before = scene.picture();
        markers.setSelectedIndex(80);
        QVERIFY(column(scene.picture(), 80) != column(before, 80));
        markers.setEndIndex(90);
        QVERIFY(column(scene.picture(), 90) != column(before, 90));
        markers.setStartIndex(20);
        QVERIFY(column(scene.picture(), 20) != column(before, 20));
        before = scene.picture();
        markers.setRangeEndIndex(70);
        markers.setRangeStartIndex(60);
        QCOMPARE(scene.picture(), before);
        markers.setRangeVisible(true);
        QVERIFY(column(scene.picture(), 65) != column(before, 65));
    }

    /// Pictures to look at, in the folder of this program.
    void realAnimationsAreDrawn_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isDark");
        for (const bool isDark : {false, true}) {
            const char* const theme = isDark ? "dark" : "light";
            QTest::addRow("wave-%s", theme) << QString(EA_SOURCE_DIR "/examples/wave.xml") << isDark;
            QTest::addRow("walk-%s", theme) << QString(EA_SHARED_DATA "/walk.bvh") << isDark;
        }
    }
    void realAnimationsAreDrawn() {
        QFETCH(QString, path);
        QFETCH(bool, isDark);
        if (!QFileInfo::exists(path)) {
            QSKIP("The file is not there.");
        }
        Scene scene({});
        scene.document.replace(Editor::AnimationFile(path).load(), path);
        scene.view->setPalette(paletteOf(isDark));
        scene.view->resize(1600, 900);
        ZT::AnimationMarkers& markers = scene.document.markers();
        const unsigned int last = scene.document.animation().getGreaterIndex();
        markers.setStartIndex(last / 10);
        markers.setEndIndex(last - last / 10);
        markers.setSelectedIndex(last / 2);
        markers.setRangeEndIndex(last / 2 + last / 4);
        markers.setRangeStartIndex(last / 2 + last / 8);
        markers.setRangeVisible(true);
        scene.view->setCurrentLayer(1);
        Editor::KeySelection::Keys some;
        for (const auto& [frame, key] : scene.curve(1)) {
            if (frame > last / 4 && frame < last / 2) {
                some.insert(key);
            }
        }
        scene.document.selection().set(some);
        scene.view->fitAll();

        const QImage image = scene.picture();
        QVERIFY(image.save(QString("%1/curve-view-%2.png")
                               .arg(QCoreApplication::applicationDirPath(), QTest::currentDataTag())));
        const QColor base = scene.view->palette().color(QPalette::Base);
        const QColor colour = Editor::readableOn(base, scene.document.look(1).colour);
        int drawn = 0;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                drawn += image.pixel(x, y) == colour.rgb() ? 1 : 0;
            }
        }
        QVERIFY2(drawn > 1000, qPrintable(QString::number(drawn)));
    }
};

QTEST_MAIN(CurveViewPictureTest)
#include "CurveViewPictureTest.moc"
