#include "CurveViewScene.h"
#include "TimelineScene.h"
#include "WindowScene.h"
#include "document/DragKind.h"

#include <QBuffer>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSvgGenerator>

#include <functional>

using Editor::dragKeys;
using EditorScene::Keys;

namespace {

/// Counts what a widget is asked to paint.
class Paints : public QObject {
public:
    explicit Paints(QWidget& widget)
        : _widget(widget) {
        QApplication::processEvents(); // What is still due.
        widget.installEventFilter(this);
    }

    int count = 0;
    QRegion region;

    /// Where the widget looks other than @p before.
    QRegion differencesFrom(const QImage& before) {
        const QImage after = _widget.grab().toImage();
        QRegion differences;
        for (int y = 0; y < after.height(); ++y) {
            for (int x = 0; x < after.width(); ++x) {
                if (after.pixel(x, y) != before.pixel(x, y)) {
                    differences |= QRect(x, y, 1, 1);
                }
            }
        }
        return differences;
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++count;
            region |= static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }

private:
    QWidget& _widget;
};

int areaOf(const QRegion& region) {
    int area = 0;
    for (const QRect& part : region) {
        area += part.width() * part.height();
    }
    return area;
}

} // namespace

class RepaintTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aStepOfManyKeysPaintsEachViewOnce();
    void manyChangesPaintEachViewOnce();
    void aMoveToTheSamePlacePaintsNothing();
    void theCurrentFrameOfTheCurvesPaintsItsLinesOnly();
    void theCurrentFrameOfTheTimelinePaintsItsLinesAndTheRulerOnly();
    void curvesThatLivedThroughChangesLookLikeNewOnes();
    void aTimelineThatLivedThroughChangesLooksLikeANewOne();
    void aDrawingKeepsItsLines();
};

void RepaintTest::aStepOfManyKeysPaintsEachViewOnce() {
    WindowScene scene;
    for (int layer = 0; layer < 2; ++layer) {
        for (unsigned int frame = 100; frame < 1100; ++frame) {
            scene.document().layer(layer)->getCurve()->insert(frame, new ZT::EditableMotionCurveKey);
        }
    }
    scene.document().selection().selectAll();
    Editor::Drag& drag = scene.workspace.drag;
    drag.begin(dragKeys(scene.document().selection().keys()));
    Paints curves(scene.window.curves());
    Paints timeline(*scene.window.timeline().viewport());
    for (int step = 1; step <= 3; ++step) {
        drag.moveTo(QPointF(step, 0.5 * step));
        QApplication::processEvents();
        QCOMPARE(curves.count, step);
        QCOMPARE(timeline.count, step);
    }
}

void RepaintTest::manyChangesPaintEachViewOnce() {
    WindowScene scene;
    Paints curves(scene.window.curves());
    Paints timeline(*scene.window.timeline().viewport());
    for (unsigned int i = 1; i <= 20; ++i) {
        TwoLayers::key(scene.document(), 0, 10)->setValue(static_cast<float>(i));
        scene.document().markers().setSelectedIndex(i);
        TwoLayers::select(scene.document(), i % 2 == 0 ? 10 : 20);
        scene.document().setLook(0, {QColor::fromHsv(static_cast<int>(i), 200, 200)});
        scene.workspace.frames->show(-1.0 * i, 100.0);
    }
    QApplication::processEvents();
    QCOMPARE(curves.count, 1);
    QCOMPARE(timeline.count, 1);
}

void RepaintTest::aMoveToTheSamePlacePaintsNothing() {
    TimelineScene scene;
    scene.press(scene.inRow(0, 20));
    scene.moveTo(scene.inRow(0, 24));
    Paints paints(*scene.view.viewport());
    scene.moveTo(scene.inRow(0, 24.3));
    QApplication::processEvents();
    QCOMPARE(paints.count, 0);
    scene.moveTo(scene.inRow(0, 25));
    QApplication::processEvents();
    QCOMPARE(paints.count, 1);
}

void RepaintTest::theCurrentFrameOfTheCurvesPaintsItsLinesOnly() {
    CurveViewScene scene({{{0, 0}, {50, 100}, {100, 0}}});
    scene.document.markers().setSelectedIndex(20);
    Paints paints(*scene.view);
    for (const unsigned int frame : {21U, 70U, 5000U, 0U}) { // One of them out of sight.
        const QImage before = scene.view->grab().toImage();
        paints.region = QRegion();
        scene.document.markers().setSelectedIndex(frame);
        QApplication::processEvents();
        const QRegion painted = paints.region;
        const QRegion differences = paints.differencesFrom(before);
        QVERIFY(!differences.isEmpty());
        QVERIFY(differences.subtracted(painted).isEmpty());
        QVERIFY(areaOf(painted) < 900 * 500 / 10);
    }
}

void RepaintTest::theCurrentFrameOfTheTimelinePaintsItsLinesAndTheRulerOnly() {
    TimelineScene scene;
    scene.markers().setSelectedIndex(20);
    Paints paints(*scene.view.viewport());
    for (const unsigned int frame : {21U, 70U, 5000U, 0U}) {
        const QImage before = scene.view.viewport()->grab().toImage();
        paints.region = QRegion();
        scene.markers().setSelectedIndex(frame);
        QApplication::processEvents();
        const QRegion painted = paints.region;
        const QRegion differences = paints.differencesFrom(before);
        QVERIFY(!differences.isEmpty());
        QVERIFY(differences.subtracted(painted).isEmpty());
        const QRect ruler = scene.view.parts().ruler();
        QVERIFY(areaOf(painted.subtracted(ruler)) < 900 * 260 / 10);
    }
}

void RepaintTest::curvesThatLivedThroughChangesLookLikeNewOnes() {
    CurveViewScene scene({{{0, 0}, {50, 100}, {100, 0}}, {{0, 50}, {90, 20}}});
    QPalette dark = scene.view->palette();
    dark.setColor(QPalette::Base, Qt::black);
    QFont large = scene.view->font();
    large.setPointSize(large.pointSize() + 6);
    ZT::AnimationMarkers& markers = scene.document.markers();
    const std::vector<std::function<void()>> changes{
        [&] { scene.key(0, 50)->setValue(60.0F); },
        [&] { scene.document.selection().set({scene.key(1, 90)}); },
        [&] { scene.setLook(0, true, true); },
        [&] { scene.setLook(0, false, false); },
        [&] { markers.setEndIndex(77); },
        [&] { markers.setSelectedIndex(33); },
        [&] { markers.setRangeVisible(true); },
        [&] { markers.setRangeEndIndex(60); },
        [&] { markers.setRangeStartIndex(20); },
        [&] { scene.view->setCurrentLayer(1); },
        [&] { scene.frames->show(-20.0, 90.0); },
        [&] { scene.view->values().show(-30.0, 90.0); },
        [&] { scene.view->setPalette(dark); },
        [&] { scene.view->setFont(large); },
        [&] { scene.view->resize(600, 400); },
        [&] { scene.load({{{10, 5}, {20, 80}}}); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const QImage before = scene.view->grab().toImage();
        changes[i]();
        const QImage after = scene.view->grab().toImage();
        QVERIFY2(after != before, qPrintable(QString("change %1 is not seen").arg(i)));
        QObject owner;
        Editor::ViewAxis* const frames = Editor::ViewAxis::forFrames(&owner);
        Editor::CurveView fresh(scene.document, scene.drag, *frames);
        fresh.setPalette(scene.view->palette());
        fresh.setFont(scene.view->font());
        fresh.resize(scene.view->size());
        fresh.setCurrentLayer(scene.view->currentLayer());
        frames->show(scene.frames->first(), scene.frames->last());
        fresh.values().show(scene.view->values().first(), scene.view->values().last());
        QCOMPARE(fresh.grab().toImage(), after);
    }
}

void RepaintTest::aTimelineThatLivedThroughChangesLooksLikeANewOne() {
    TimelineScene scene;
    scene.view.setFocusPolicy(Qt::NoFocus);
    scene.view.clearFocus();
    QPalette dark = scene.view.palette();
    dark.setColor(QPalette::Base, Qt::black);
    QFont large = scene.view.font();
    large.setPointSize(large.pointSize() + 6);
    const std::vector<std::function<void()>> changes{
        [&] {
            scene.curve(0).moveKeys({{scene.key(0, 30), QPointF(35, 1)}});
        },
        [&] { scene.select(1, {40}); },
        [&] { scene.lock(2); },
        [&] { scene.markers().setEndIndex(77); },
        [&] { scene.markers().setSelectedIndex(33); },
        [&] { scene.setRange(5, 25); },
        [&] { scene.view.setCurrentLayer(1); },
        [&] { scene.axis->show(-20.0, 90.0); },
        [&] { scene.view.setPalette(dark); },
        [&] { scene.view.setFont(large); },
        [&] { scene.view.resize(600, 150); },
        [&] { scene.view.verticalScrollBar()->setValue(scene.view.verticalScrollBar()->maximum()); },
        [&] { scene.document.replace(EditorScene::animationOf({"other"}), QString()); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const QImage before = scene.view.viewport()->grab().toImage();
        changes[i]();
        const QImage after = scene.view.viewport()->grab().toImage();
        QVERIFY2(after != before, qPrintable(QString("change %1 is not seen").arg(i)));
        Editor::TimelineView fresh(scene.document, scene.drag, *scene.axis);
        fresh.setPalette(scene.view.palette());
        fresh.setFont(scene.view.font());
        fresh.resize(scene.view.size());
        fresh.setFocusPolicy(Qt::NoFocus);
        fresh.setAttribute(Qt::WA_DontShowOnScreen);
        fresh.show(); // It finds its size.
        fresh.setCurrentLayer(scene.view.currentLayer());
        fresh.verticalScrollBar()->setValue(scene.view.verticalScrollBar()->value());
        QVERIFY2(fresh.viewport()->grab().toImage() == after,
                 qPrintable(QString("change %1 is not painted").arg(i)));
    }
}

void RepaintTest::aDrawingKeepsItsLines() {
    CurveViewScene scene({{{0, 0}, {50, 100}, {100, 0}}});
    scene.view->grab();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(scene.view->size());
    QPainter painter(&generator);
    scene.view->render(&painter);
    painter.end();
    QVERIFY(buffer.data().contains("<polyline"));
    QVERIFY(!buffer.data().contains("<image"));
}

QTEST_MAIN(RepaintTest)
#include "RepaintTest.moc"
