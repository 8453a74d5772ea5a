#include "WindowScene.h"
#include "curves/CurveView.h"
#include "document/AnimationFile.h"
#include "document/DragKind.h"
#include "layers/LayerPanel.h"
#include "timeline/TimelineView.h"
#include "window/StatusLine.h"

#include <QApplication>
#include <QDropEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QStandardPaths>
#include <QSvgRenderer>
#include <QUndoView>

#include <boost/property_tree/ptree.hpp>

using TwoLayers::key;
using Unsaved = ScriptedDialogs::Unsaved;

namespace {

QString saveFile(WindowScene& scene, const QString& name) {
    const QString path = scene.directory.filePath(name);
    Editor::AnimationFile(path).save(scene.document().tree());
    return path;
}

bool dropOn(QWidget& window, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&window, &enter);
    if (!enter.isAccepted()) {
        return false;
    }
    QDropEvent drop(QPointF(10.0, 10.0), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    return true;
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void theTitleNamesTheFileAndMarksUnsavedWork();
    void aDroppedFileIsOpened();
    void otherThingsAreNotTakenFromADrag();
    void closingAsksAboutUnsavedWork();
    void closedWithoutSavingItLeavesNoCopy();
    void noCopyIsWrittenDuringADrag();
    void theWindowComesBackWhereItWas();
    void allViewsShowTheSameCurrentLayer();
    void severalLayersStaySelectedInThePanel();
    void framesAreAtTheSamePlaceInCurvesAndTimeline_data();
    void framesAreAtTheSamePlaceInCurvesAndTimeline();
    void spacePlaysAndStops();
    void spaceHeldForTheMouseDoesNotPlay();
    void theStatusLineSaysFrameAndTime();
    void theStatusLineSaysWhatIsUnderThePointer();
    void theReasonOfABlockedDragIsSaid();
    void theHistoryPanelGoesBackAndForth();
    void theViewIsExportedAsAPicture();
    void theViewIsExportedAsLines();
    void aPictureThatCannotBeWrittenIsSaid_data();
    void aPictureThatCannotBeWrittenIsSaid();
    void theUndoLimitCountsFromAnEmptyHistoryOn();
    void recentFilesAreOpenedFromTheMenu();
    void theWindowFitsASmallScreen();
};

void MainWindowTest::theTitleNamesTheFileAndMarksUnsavedWork() {
    WindowScene scene;
    QVERIFY(scene.window.windowTitle().startsWith("Untitled[*]"));
    QVERIFY(!scene.window.isWindowModified());
    scene.window.session().open(saveFile(scene, "arm.xml"));
    QVERIFY2(scene.window.windowTitle().startsWith("arm.xml[*]"), qPrintable(scene.window.windowTitle()));
    TwoLayers::select(scene.document(), 10);
    scene.action("delete").trigger();
    QVERIFY(scene.window.isWindowModified());
    scene.action("undo").trigger();
    QVERIFY(!scene.window.isWindowModified());
    scene.action("redo").trigger();
    scene.action("save").trigger();
    QVERIFY(!scene.window.isWindowModified());
}

void MainWindowTest::aDroppedFileIsOpened() {
    WindowScene scene;
    const QString path = saveFile(scene, "arm.xml");
    QVERIFY(dropOn(scene.window, {QUrl::fromLocalFile(path)}));
    QTRY_COMPARE(scene.document().path(), path);
}

void MainWindowTest::otherThingsAreNotTakenFromADrag() {
    WindowScene scene;
    QVERIFY(!dropOn(scene.window, {}));
    QVERIFY(!dropOn(scene.window, {QUrl("https://example.org/a.xml")}));
    QVERIFY(!dropOn(scene.window, {QUrl::fromLocalFile("/a.xml"), QUrl::fromLocalFile("/b.xml")}));
}

void MainWindowTest::closingAsksAboutUnsavedWork() {
    WindowScene scene;
    TwoLayers::select(scene.document(), 10);
    scene.action("delete").trigger();
    QVERIFY(!scene.window.close());
    QVERIFY(scene.window.isVisible());
    QCOMPARE(scene.dialogs.asked, QStringList{"unsaved Untitled"});
    scene.dialogs.unsaved = Unsaved::save;
    scene.dialogs.savePath = scene.directory.filePath("kept.xml");
    scene.action("quit").trigger();
    QVERIFY(!scene.window.isVisible());
    QVERIFY(QFile::exists(scene.dialogs.savePath));
}

void MainWindowTest::closedWithoutSavingItLeavesNoCopy() {
    WindowScene scene;
    const QString path = saveFile(scene, "arm.xml");
    scene.window.session().open(path);
    TwoLayers::select(scene.document(), 10);
    scene.action("delete").trigger();
    QTRY_VERIFY(QFile::exists(Editor::CrashCopy::pathOf(path)));
    scene.dialogs.unsaved = Unsaved::discard;
    QVERIFY(scene.window.close());
    QVERIFY(!QFile::exists(Editor::CrashCopy::pathOf(path)));
}

void MainWindowTest::noCopyIsWrittenDuringADrag() {
    WindowScene scene;
    const QString path = saveFile(scene, "arm.xml");
    scene.window.session().open(path);
    TwoLayers::select(scene.document(), 10);
    scene.workspace.drag.begin(Editor::dragKeys(scene.document().selection().keys()));
    scene.workspace.drag.moveTo({1.0, 0.0});
    QTest::qWait(2 * Editor::Autosave::delay);
    QVERIFY(!QFile::exists(Editor::CrashCopy::pathOf(path)));
    scene.workspace.drag.finish();
    QTRY_VERIFY(QFile::exists(Editor::CrashCopy::pathOf(path)));
}

void MainWindowTest::theWindowComesBackWhereItWas() {
    WindowScene scene;
    scene.window.resize(1171, 653);
    auto& dock = scene.part<QWidget>("historyDock");
    dock.hide();
    QVERIFY(scene.window.close());
    Editor::MainWindow again(scene.workspace, scene.settings, scene.dialogs);
    again.show();
    QCOMPARE(again.size(), QSize(1171, 653));
    QVERIFY(!again.findChild<QWidget*>("historyDock")->isVisible());
    QVERIFY(again.findChild<QWidget*>("keyDock")->isVisible());
}

void MainWindowTest::allViewsShowTheSameCurrentLayer() {
    WindowScene scene;
    const auto current = [&] {
        return QList<int>{scene.window.layers().currentLayer(), scene.window.curves().currentLayer(),
                          scene.window.timeline().currentLayer()};
    };
    QCOMPARE(current(), (QList<int>{0, 0, 0}));
    scene.window.layers().setCurrentLayer(1);
    QCOMPARE(current(), (QList<int>{1, 1, 1}));
    scene.window.timeline().setCurrentLayer(0);
    QCOMPARE(current(), (QList<int>{0, 0, 0}));
    // The upper one of two keys is b's.
    const QPointF at = scene.window.curves().placement().toPoint(10.0, 3.0);
    QTest::mouseClick(&scene.window.curves(), Qt::LeftButton, Qt::NoModifier, at.toPoint());
    QVERIFY(scene.document().selection().contains(key(scene.document(), 1, 10)));
    QCOMPARE(current(), (QList<int>{1, 1, 1}));
    scene.document().replace(TwoLayers::data(), QString());
    QCOMPARE(current(), (QList<int>{0, 0, 0}));
    scene.document().replace({std::make_unique<ZT::EditableAnimation>(), {}, {}}, QString());
    QCOMPARE(current(), (QList<int>{-1, -1, -1}));
}

void MainWindowTest::severalLayersStaySelectedInThePanel() {
    WindowScene scene;
    auto* const table = scene.window.layers().findChild<QAbstractItemView*>();
    QVERIFY(table != nullptr);
    table->setFocus();
    table->selectAll();
    QCOMPARE(table->selectionModel()->selectedRows().size(), 2);
    QTest::keyClick(table, Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(table, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(table->selectionModel()->selectedRows().size(), 2);
    QCOMPARE(scene.window.curves().currentLayer(), 1);
}

void MainWindowTest::framesAreAtTheSamePlaceInCurvesAndTimeline_data() {
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("layers");
    QTest::newRow("without scroll bar") << QSize(1400, 900) << 2;
    QTest::newRow("with scroll bar") << QSize(1400, 900) << 60;
    QTest::newRow("small") << QSize(1280, 720) << 2;
}

void MainWindowTest::framesAreAtTheSamePlaceInCurvesAndTimeline() {
    QFETCH(QSize, size);
    QFETCH(int, layers);
    WindowScene scene;
    scene.window.resize(size);
    while (scene.document().layerCount() < layers) {
        scene.document().insertLayer(0, std::make_unique<ZT::EditableAnimationLayer>(), {});
    }
    QTest::qWait(1);
    const Editor::CurveView& curves = scene.window.curves();
    const Editor::TimelineView& timeline = scene.window.timeline();
    scene.workspace.frames->show(0.0, 100.0);
    for (const double frame : {0.0, 37.0, 100.0}) {
        const int above = curves.mapTo(&scene.window, QPoint(qRound(curves.placement().toX(frame)), 0)).x();
        const int below = timeline.viewport()->mapTo(&scene.window, QPoint(timeline.parts().x(frame), 0)).x();
        QVERIFY2(std::abs(above - below) <= 1,
                 qPrintable(QString("%1: %2, %3").arg(frame).arg(above).arg(below)));
    }
}

void MainWindowTest::spacePlaysAndStops() {
    WindowScene scene;
    for (QWidget* const view :
         {static_cast<QWidget*>(&scene.window.curves()), static_cast<QWidget*>(&scene.window.timeline())}) {
        QTest::keyClick(view, Qt::Key_Space);
        QVERIFY(scene.workspace.playback.isPlaying());
        QVERIFY(scene.action("play").text().contains("Stop"));
        QTest::keyClick(view, Qt::Key_Space);
        QVERIFY(!scene.workspace.playback.isPlaying());
        QVERIFY(scene.action("play").text().contains("Play"));
    }
    QVERIFY(scene.action("loop").isChecked());
    scene.action("loop").trigger();
    QVERIFY(!scene.workspace.playback.isLooping());
}

void MainWindowTest::spaceHeldForTheMouseDoesNotPlay() {
    WindowScene scene;
    Editor::CurveView& view = scene.window.curves();
    QTest::keyPress(&view, Qt::Key_Space);
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, {200, 100});
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, {220, 100});
    QTest::keyRelease(&view, Qt::Key_Space);
    QVERIFY(!scene.workspace.playback.isPlaying());
}

void MainWindowTest::theStatusLineSaysFrameAndTime() {
    WindowScene scene;
    const double rate = scene.document().framesPerSecond();
    scene.document().markers().setSelectedIndex(50);
    QCOMPARE(scene.window.status().positionText(), QString("Frame 50, %1 s").arg(50 / rate, 0, 'f', 2));
    scene.document().replace(TwoLayers::data(), QString());
    QCOMPARE(scene.window.status().positionText(), QString("Frame 0, 0.00 s"));
    scene.document().markers().setSelectedIndex(2);
    QVERIFY(scene.window.status().positionText().startsWith("Frame 2,"));
}

void MainWindowTest::theStatusLineSaysWhatIsUnderThePointer() {
    WindowScene scene;
    Editor::CurveView& view = scene.window.curves();
    QTest::mouseMove(&view, view.placement().toPoint(10.0, 5.0).toPoint());
    QTRY_VERIFY2(scene.window.status().text().startsWith("a: "), qPrintable(scene.window.status().text()));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&view, &leave);
    QCOMPARE(scene.window.status().text(), QString());
}

void MainWindowTest::theReasonOfABlockedDragIsSaid() {
    WindowScene scene;
    Editor::Drag& drag = scene.workspace.drag;
    TwoLayers::select(scene.document(), 10);
    drag.begin(Editor::dragKeys(scene.document().selection().keys()));
    drag.moveTo({10.0, 0.0});
    QVERIFY2(scene.window.status().text().startsWith("Frame 20 of "),
             qPrintable(scene.window.status().text()));
    drag.moveTo({5.0, 0.0});
    QCOMPARE(scene.window.status().text(), QString());
    drag.cancel();
    // The arrow key's drag is over at once.
    scene.document().selection().set({key(scene.document(), 0, 10)});
    scene.workspace.edits.insert(*scene.document().layer(0)->getCurve(), 11);
    scene.document().selection().set({key(scene.document(), 0, 10)});
    QTest::keyClick(&scene.window.curves(), Qt::Key_Right);
    QCOMPARE(scene.window.status().text(), QString("Frame 11 of a is taken by a key that is not dragged."));
    QVERIFY(!drag.isActive());
}

void MainWindowTest::theHistoryPanelGoesBackAndForth() {
    WindowScene scene;
    const QString before = scene.state();
    TwoLayers::select(scene.document(), 20);
    scene.action("typeConstant").trigger();
    scene.action("delete").trigger();
    const QString after = scene.state();
    auto* const panel = scene.window.findChild<QUndoView*>();
    QVERIFY(panel != nullptr);
    QCOMPARE(panel->model()->rowCount(), 3);
    panel->setFocus();
    QTest::keyClick(panel, Qt::Key_Home);
    QCOMPARE(scene.state(), before);
    QTest::keyClick(panel, Qt::Key_End);
    QCOMPARE(scene.state(), after);
}

void MainWindowTest::theViewIsExportedAsAPicture() {
    WindowScene scene;
    scene.dialogs.picturePath = scene.directory.filePath("curves.png");
    scene.action("export").trigger();
    QCOMPARE(scene.dialogs.asked, QStringList{"picture Untitled.png"});
    QCOMPARE(scene.dialogs.problems, QStringList());
    QCOMPARE(QImage(scene.dialogs.picturePath), scene.window.curves().grab().toImage().convertToFormat(
                                                    QImage(scene.dialogs.picturePath).format()));
}

void MainWindowTest::theViewIsExportedAsLines() {
    WindowScene scene;
    scene.dialogs.picturePath = scene.directory.filePath("curves.svg");
    scene.action("export").trigger();
    QCOMPARE(scene.dialogs.problems, QStringList());
    QFile file(scene.dialogs.picturePath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray svg = file.readAll();
    QVERIFY(svg.count("<path") + svg.count("<polyline") > 10);
    QVERIFY(svg.contains("<text"));
    QVERIFY(!svg.contains("<image"));
    const QByteArray colour = scene.document().look(0).colour.name().toLatin1();
    QVERIFY2(svg.contains(colour), colour.constData());
    QSvgRenderer renderer(svg);
    QVERIFY(renderer.isValid());
    QCOMPARE(renderer.viewBox().size(), scene.window.curves().size());
}

void MainWindowTest::aPictureThatCannotBeWrittenIsSaid_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("no folder") << "missing/curves.png";
    QTest::newRow("no such format") << "curves.gif";
}

void MainWindowTest::aPictureThatCannotBeWrittenIsSaid() {
    QFETCH(QString, name);
    WindowScene scene;
    scene.dialogs.picturePath = scene.directory.filePath(name);
    scene.action("export").trigger();
    QCOMPARE(scene.dialogs.problems.size(), 1);
    QVERIFY(scene.dialogs.problems.first().contains(name));
    QVERIFY(!QFile::exists(scene.dialogs.picturePath));
}

void MainWindowTest::theUndoLimitCountsFromAnEmptyHistoryOn() {
    WindowScene scene;
    TwoLayers::select(scene.document(), 10);
    scene.action("typeConstant").trigger();
    scene.settings.setUndoLimit(2);
    QCOMPARE(scene.history().undoLimit(), 0);
    scene.document().replace(TwoLayers::data(), QString());
    QCOMPARE(scene.history().undoLimit(), 2);
    TwoLayers::select(scene.document(), 10);
    for (const char* const name : {"typeConstant", "typeLinear", "typeBezier"}) {
        scene.action(name).trigger();
    }
    QCOMPARE(scene.history().count(), 2);
}

void MainWindowTest::recentFilesAreOpenedFromTheMenu() {
    WindowScene scene;
    QMenu* const file = scene.window.menuBar()->actions().first()->menu();
    const QList<QAction*> entries = file->actions();
    const auto recent = std::find_if(entries.begin(), entries.end(),
                                     [](const auto* each) { return each->menu() != nullptr; });
    QVERIFY(recent != entries.end());
    const QMenu& menu = *(*recent)->menu();
    QVERIFY(!menu.isEnabled());
    const QString path = saveFile(scene, "a&b.xml");
    scene.window.session().open(path);
    scene.window.session().newAnimation();
    QTRY_COMPARE(menu.actions().size(), 1);
    QVERIFY(menu.isEnabled());
    menu.actions().first()->trigger();
    QCOMPARE(scene.document().path(), path);
}

void MainWindowTest::theWindowFitsASmallScreen() {
    WindowScene scene;
    const QSize least = scene.window.minimumSizeHint();
    QVERIFY2(least.width() <= 1280 && least.height() <= 690,
             qPrintable(QString("%1 x %2").arg(least.width()).arg(least.height())));
}

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
