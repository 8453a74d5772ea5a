#include "TimelineScene.h"

#include "document/AnimationFile.h"
#include "document/KeyEdits.h"
#include "layers/LayerEdits.h"
#include "layers/LayerPanel.h"
#include "window/Theme.h"

#include <QFileInfo>
#include <QScrollBar>
#include <QSplitter>

#include <functional>
#include <limits>

namespace {

constexpr const char* walk = EA_SHARED_DATA "/walk.bvh";

class PaintCounter : public QObject {
public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int paints = 0;
};

QColor colourAt(TimelineScene& scene, const QPoint& point) {
    return scene.view.viewport()->grab().toImage().pixelColor(point);
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(TimelineScene&)>)

/// What a timeline looks like; what it does is tested beside.
class TimelineViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPanEndsWithItsAnimation() {
        TimelineScene scene;
        scene.press(scene.inRow(0, 50), {}, Qt::MiddleButton);
        scene.document.replace(EditorScene::animationOf({"other"}), QString());
        QVERIFY(!scene.view.isGestureActive());
    }

    void escapeGivesThePlaceOfTheViewBackAndKeepsTheSelection() {
        TimelineScene scene;
        scene.click(scene.inRow(0, 20));
        const double first = scene.axis->first();
        scene.view.resize(900, 90);
        const int row = scene.view.verticalScrollBar()->value();
        scene.press({400, 80}, {}, Qt::MiddleButton);
        scene.moveTo({500, 60}, Qt::MiddleButton);
        QVERIFY(scene.axis->first() != first);
        QVERIFY(scene.view.verticalScrollBar()->value() != row);
        QTest::keyClick(&scene.view, Qt::Key_Escape);
        QCOMPARE(scene.axis->first(), first);
        QCOMPARE(scene.view.verticalScrollBar()->value(), row);
        QVERIFY(!scene.view.isGestureActive());
        QVERIFY(!scene.document.selection().isEmpty());
    }

    void selectedKeysAreFilledWithTheHighlightColour() {
        TimelineScene scene;
        const QPoint point = scene.inRow(0, 20);
        const QColor highlight = scene.view.palette().color(QPalette::Highlight);
        const QColor ground = colourAt(scene, scene.inRow(0, 25));
        QVERIFY(colourAt(scene, point) != highlight && colourAt(scene, point) != ground);
        scene.select(0, {20});
        QCOMPARE(colourAt(scene, point), highlight);
        QCOMPARE(colourAt(scene, scene.onSummary(20)), highlight);
        QVERIFY(colourAt(scene, scene.onSummary(30)) != highlight);
    }

    void aSelectedKeyIsSeenAmongOthersOnItsPixel() {
        TimelineScene scene;
        scene.add(0, {50020, 50021, 50022, 50023});
        scene.axis->show(0.0, 1e5);
        scene.select(0, {50021});
        QCOMPARE(colourAt(scene, scene.inRow(0, 50022)), scene.view.palette().color(QPalette::Highlight));
    }

    void theSummaryShowsTheSelectedKeysOfAnyLayer() {
        TimelineScene scene;
        scene.axis->show(10.0, 10.5); // Frame 10 alone, where each layer has a key.
        const QColor highlight = scene.view.palette().color(QPalette::Highlight);
        const QColor usual = colourAt(scene, scene.onSummary(10));
        QVERIFY(usual != highlight && usual != colourAt(scene, scene.onSummary(10.3)));
        for (const int layer : {2, 1, 0}) {
            scene.document.selection().set({scene.key(layer, 10)});
            QCOMPARE(colourAt(scene, scene.onSummary(10)), highlight);
        }
        for (const int layer : {0, 1}) { // Keys that may not be edited are covered by any that may.
            scene.document.selection().clear();
            scene.lock(layer);
            QCOMPARE(colourAt(scene, scene.onSummary(10)), usual);
        }
        scene.lock(2);
        QVERIFY(colourAt(scene, scene.onSummary(10)) != usual);
    }

    void keysOfLockedLayersAreHollow() {
        TimelineScene scene;
        scene.lock(0);
        QCOMPARE(colourAt(scene, scene.inRow(0, 20)), scene.view.palette().color(QPalette::Base));
    }

    void eachChangeIsPainted_data() {
        using Change = std::function<void(TimelineScene&)>;
        QTest::addColumn<Change>("change");
        const auto row = [](const char* name, const Change& change) { QTest::newRow(name) << change; };
        row("a key's frame", [](auto& scene) { scene.curve(0).translateKey(scene.key(0, 20), 25); });
        row("a key more", [](auto& scene) { Editor::KeyEdits(scene.document).insert(scene.curve(2), 90); });
        row("a name", [](auto& scene) { scene.document.layer(0)->setActuatorName("hand"); });
        row("a look", [](auto& scene) { scene.lock(1); });
        row("a layer less", [](auto& scene) { Editor::LayerEdits(scene.document).remove({1}); });
        row("the order", [](auto& scene) { scene.document.moveLayer(0, 2); });
        row("the selection", [](auto& scene) { scene.select(0, {10}); });
        row("the current layer", [](auto& scene) { scene.view.setCurrentLayer(1); });
        row("the current frame", [](auto& scene) { scene.markers().setSelectedIndex(44); });
        row("the start", [](auto& scene) { scene.markers().setStartIndex(44); });
        row("the end", [](auto& scene) { scene.markers().setEndIndex(44); });
        row("the range", [](auto& scene) { scene.setRange(40, 50); });
        row("the frames", [](auto& scene) { scene.axis->pan(10.0); });
        row("the palette",
            [](auto& scene) { scene.view.setPalette(Editor::paletteOf(Editor::Theme::dark)); });
    }
    void eachChangeIsPainted() {
        QFETCH(std::function<void(TimelineScene&)>, change);
        TimelineScene scene;
        QVERIFY(QTest::qWaitForWindowExposed(&scene.view));
        QCoreApplication::processEvents();
        PaintCounter counter;
        const QImage before = scene.view.grab().toImage();
        scene.view.viewport()->installEventFilter(&counter);
        change(scene);
        QCOMPARE(counter.paints, 0);
        QTRY_COMPARE(counter.paints, 1); // Once, however many signals there were.
        QVERIFY(scene.view.grab().toImage() != before);
    }

    void anAnimationWithoutLayersIsPaintedAndAnswersTheMouse() {
        TimelineScene scene(QStringList{});
        scene.view.grab();
        EditorScene::checkNothingHappens(scene, [&scene] {
            scene.dragBetween(scene.inRow(0, 10), scene.inRow(3, 60));
            scene.dragBetween(scene.onSummary(10), scene.onSummary(60));
            scene.click(scene.onName(0));
            for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Return, Qt::Key_Escape}) {
                scene.type(key);
            }
            scene.type(Qt::Key_Right, Qt::ControlModifier);
            scene.type(Qt::Key_Left, Qt::ControlModifier);
        });
    }

    void anySizeAndAnySpanCanBePainted_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("last");
        constexpr double lastFrame = std::numeric_limits<unsigned int>::max();
        QTest::newRow("no size") << QSize(0, 0) << 0.0 << 100.0;
        QTest::newRow("no height") << QSize(500, 1) << 0.0 << 100.0;
        QTest::newRow("no width") << QSize(1, 500) << 0.0 << 100.0;
        QTest::newRow("a few frames") << QSize(900, 300) << 8.0 << 12.0;
        QTest::newRow("all frames") << QSize(900, 300) << 0.0 << lastFrame;
        QTest::newRow("the last frames") << QSize(900, 300) << lastFrame - 5.0 << lastFrame;
        QTest::newRow("before all frames") << QSize(900, 300) << -1e9 << -1e8;
    }
    void anySizeAndAnySpanCanBePainted() {
        QFETCH(QSize, size);
        QFETCH(double, first);
        QFETCH(double, last);
        TimelineScene scene;
        scene.add(0, {std::numeric_limits<unsigned int>::max()});
        scene.setRange(0, std::numeric_limits<unsigned int>::max());
        scene.markers().setEndIndex(std::numeric_limits<unsigned int>::max());
        scene.view.setMinimumSize(0, 0);
        scene.view.resize(size);
        scene.axis->show(first, last);
        scene.select(0, {10});
        QImage image(900, 500, QImage::Format_RGB32);
        scene.view.render(&image);
        for (const QPoint& point : {QPoint(0, 0), QPoint(200, 60), QPoint(899, 299)}) {
            scene.moveTo(point, Qt::NoButton);
        }
        scene.type(Qt::Key_Plus);
        scene.type(Qt::Key_Minus);
        QCOMPARE(scene.history().count(), 0);
    }

    void tickLabelsDoNotOverlap() {
        TimelineScene scene;
        for (const double span : {4.0, 120.0, 5000.0, 4e9}) {
            scene.axis->show(0.0, span);
            const auto parts = scene.view.parts();
            const int label = scene.view.fontMetrics().horizontalAdvance(QString::number(span, 'f', 0));
            QVERIFY(parts.x(parts.tickStep(2 * label)) - parts.x(0.0) >= label);
        }
    }

    void namesAreElided() {
        TimelineScene scene({QString(300, 'm'), "b"});
        scene.view.grab();
        scene.moveTo(scene.onName(0), Qt::NoButton);
        QCOMPARE(scene.hovered, QString(300, 'm')); // The whole name is told.
    }

    /// For people to look at: what is written into the folder where the tests run.
    void picturesAreTaken_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("isDark");
        const QString wave = QStringLiteral(EA_SOURCE_DIR "/examples/wave.xml");
        QTest::newRow("wave-light") << wave << false;
        QTest::newRow("wave-dark") << wave << true;
        QTest::newRow("walk-light") << QString(walk) << false;
        QTest::newRow("walk-dark") << QString(walk) << true;
    }
    void picturesAreTaken() {
        QFETCH(QString, file);
        QFETCH(bool, isDark);
        if (!QFileInfo::exists(file)) {
            QSKIP("the file is not there");
        }
        QSplitter window; // Outlives its children, which it does not own.
        TimelineScene scene(QStringList{});
        scene.document.replace(Editor::AnimationFile(file).load(), QString());
        Editor::applyTheme(isDark ? Editor::Theme::dark : Editor::Theme::light);
        const unsigned int last = scene.document.animation().getGreaterIndex();
        scene.axis->show(-0.03 * last, 1.03 * last);
        scene.markers().setSelectedIndex(last / 3);
        scene.markers().setEndIndex(last - last / 10);
        scene.setRange(last / 2, last / 2 + last / 5);
        Editor::LayerPanel panel(scene.document);
        panel.setCurrentLayer(1);
        scene.view.setCurrentLayer(1);
        scene.lock(2);
        window.addWidget(&panel);
        window.addWidget(&scene.view);
        window.setSizes({300, 980});
        window.resize(1280, 420);
        window.show();
        scene.dragBetween(scene.inRow(0, last * 0.4), scene.inRow(1, last * 0.8));
        scene.view.setFocus();
        QCoreApplication::processEvents();
        const QPixmap picture = window.grab();
        QVERIFY(picture.save(QString("timeline-%1.png").arg(QTest::currentDataTag())));
        const QPoint ground = scene.view.viewport()->rect().bottomRight() - QPoint(10, 5);
        const QColor colour = picture.toImage().pixelColor(scene.view.viewport()->mapTo(&window, ground));
        QCOMPARE(colour.lightness() < 128, isDark);
    }
};

QTEST_MAIN(TimelineViewTest)
#include "TimelineViewTest.moc"
