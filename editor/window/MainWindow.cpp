#include "window/MainWindow.h"

#include "curves/CurveView.h"
#include "layers/LayerPanel.h"
#include "timeline/TimelineView.h"
#include "window/AlignedCurves.h"
#include "window/Application.h"
#include "window/ContextMenuKey.h"
#include "window/EditActions.h"
#include "window/FileActions.h"
#include "window/FileDialogs.h"
#include "window/HistoryPanel.h"
#include "window/KeyActions.h"
#include "window/KeyPanel.h"
#include "window/PictureExport.h"
#include "window/PlaybackActions.h"
#include "window/RangeActions.h"
#include "window/Settings.h"
#include "window/SettingsDialog.h"
#include "window/StatusLine.h"
#include "window/ViewActions.h"
#include "window/Workspace.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>

#include <exception>

namespace Editor {

namespace {

constexpr const char* geometryName = "window/geometry";
constexpr const char* stateName = "window/state";

// The one local file that is dropped; empty where it is anything else.
QString fileIn(const QMimeData& data) {
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

} // namespace

MainWindow::MainWindow(Workspace& workspace, Settings& settings, FileDialogs& dialogs)
    : _workspace(workspace)
    , _settings(settings)
    , _dialogs(dialogs)
    , _recent(settings.store())
    , _session(workspace.document, dialogs, _recent)
    , _status(new StatusLine(workspace.document, this))
    , _curves(new CurveView(workspace.document, workspace.drag, *workspace.frames, this))
    , _timeline(new TimelineView(workspace.document, workspace.drag, *workspace.frames, this))
    , _layers(new LayerPanel(workspace.document, this))
    , _keyPanel(new KeyPanel(workspace, this))
    , _fileActions(new FileActions(_session, _recent, this))
    , _editActions(new EditActions(
          workspace, [this] { return _currentCurve(); }, this))
    , _keyActions(new KeyActions(
          workspace, [this] { return _currentCurve(); }, this))
    , _rangeActions(new RangeActions(workspace, this))
    , _viewActions(new ViewActions(workspace, *_curves, this))
    , _playbackActions(new PlaybackActions(workspace.playback, *_timeline, this)) {
    setAcceptDrops(true);
    setStatusBar(_status);
    setCentralWidget(_makeCentre());
    _addDocks();
    _fillMenus();
    _fillToolBar();
    _fillContextMenus(*centralWidget());
    new ContextMenuKey(*this); // The window owns it.
    _connectLayers();
    _connectStatus();
    connect(_fileActions, &FileActions::exportAsked, this, &MainWindow::_exportPicture);
    connect(_fileActions, &FileActions::settingsAsked, this, &MainWindow::_changeSettings);
    connect(_fileActions, &FileActions::quitAsked, this, &QWidget::close);
    connect(&_session, &FileSession::aboutToSettle, this, &MainWindow::_enterWhatIsTyped);
    connect(&_session, &FileSession::nameChanged, this, &MainWindow::_showTitle);
    connect(&workspace.drag, &Drag::activeChanged, &_session, &FileSession::setGestureActive);
    connect(&settings, &Settings::changed, this, &MainWindow::_applySettings);
    connect(&workspace.document, &Document::replaced, this, &MainWindow::_applyUndoLimit);
    _applySettings();
    _showTitle();
    _restorePlace();
    _curves->setFocus();
}

// The views die after this part of the window, and end a drag that is under way.
MainWindow::~MainWindow() {
    disconnect(&_workspace.drag, nullptr, this, nullptr);
}

void MainWindow::setCurrentLayer(int index) {
    if (_layers->currentLayer() != index) { // It would select this row alone.
        _layers->setCurrentLayer(index);
    }
    _curves->setCurrentLayer(index);
    _timeline->setCurrentLayer(index);
}

// Fields and cells take what is typed in them when they lose the focus.
void MainWindow::_enterWhatIsTyped() {
    const QPointer<QWidget> field = QApplication::focusWidget(); // In this window or in a dock that floats.
    if (field != nullptr && !field->isWindow()) {
        field->parentWidget()->setFocus();
        if (field != nullptr && field->isVisible()) { // The editor of a cell has gone.
            field->setFocus();
        }
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!_session.mayLeave()) {
        event->ignore();
        return;
    }
    _session.leave();
    _workspace.playback.stop();
    _settings.store().setValue(geometryName, saveGeometry());
    _settings.store().setValue(stateName, saveState());
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!fileIn(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    const QString path = fileIn(*event->mimeData());
    if (path.isEmpty()) {
        return;
    }
    event->acceptProposedAction();
    // Later, since who drags waits for the drop to end, and a question may come first.
    auto* const later = new QTimer(this);
    later->setSingleShot(true);
    connect(later, &QTimer::timeout, this, [this, path] { _session.open(path); });
    connect(later, &QTimer::timeout, later, &QObject::deleteLater);
    later->start();
}

QWidget* MainWindow::_makeCentre() {
    auto* const splitter = new QSplitter(Qt::Vertical, this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(new AlignedCurves(*_curves, *_timeline, splitter));
    splitter->addWidget(_timeline);
    splitter->setStretchFactor(0, 1);
    splitter->setSizes({400, 210});
    return splitter;
}

QDockWidget* MainWindow::_addDock(const char* name, const QString& title, QWidget* content,
                                  Qt::DockWidgetArea area) {
    auto* const dock = new QDockWidget(title, this);
    dock->setObjectName(QLatin1String(name)); // saveState() tells docks apart by it.
    dock->setWidget(content);
    addDockWidget(area, dock);
    _docks.append(dock);
    return dock;
}

void MainWindow::_addDocks() {
    auto* const history = new HistoryPanel(_workspace.document.history(), this);
    connect(history, &HistoryPanel::refused, _status, &StatusLine::showRefused);
    _addDock("layerDock", tr("Layers"), _layers, Qt::LeftDockWidgetArea);
    _addDock("keyDock", tr("Keys"), _keyPanel, Qt::RightDockWidgetArea);
    _addDock("historyDock", tr("History"), history, Qt::RightDockWidgetArea);
}

void MainWindow::_fillMenus() {
    _fileActions->addTo(*menuBar()->addMenu(tr("&File")));
    _editActions->addTo(*menuBar()->addMenu(tr("&Edit")));
    _keyActions->addTo(*menuBar()->addMenu(tr("&Key")));
    _rangeActions->addTo(*menuBar()->addMenu(tr("Ran&ge")));
    menuBar()->addMenu(tr("&Layer"))->addActions(_layers->actions());
    QMenu* const view = menuBar()->addMenu(tr("&View"));
    _viewActions->addTo(*view);
    view->addSeparator();
    for (const QDockWidget* const dock : _docks) {
        view->addAction(dock->toggleViewAction());
    }
    _playbackActions->addTo(*menuBar()->addMenu(tr("&Playback")));
}

void MainWindow::_fillToolBar() {
    QToolBar* const bar = addToolBar(tr("Tools"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setIconSize({18, 18});
    _fileActions->addTo(*bar);
    bar->addSeparator();
    _editActions->addTo(*bar);
    bar->addSeparator();
    _keyActions->addTo(*bar);
    bar->addSeparator();
    _playbackActions->addTo(*bar);
    bar->addSeparator();
    _viewActions->addTo(*bar);
}

void MainWindow::_fillContextMenus(QWidget& centre) {
    _editActions->listenIn(centre);
    _keyActions->listenIn(centre);
    _rangeActions->listenIn(centre);
    _viewActions->listenIn(centre);
    _playbackActions->listenIn(centre);
    for (QWidget* const view : {static_cast<QWidget*>(_curves), static_cast<QWidget*>(_timeline)}) {
        _playbackActions->playOnSpaceIn(*view);
        view->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(view, &QWidget::customContextMenuRequested, this, [this, view](const QPoint& point) {
            if (_curves->isGestureActive() || _timeline->isGestureActive()) {
                return; // It would take the release that ends the gesture.
            }
            QMenu menu;
            menu.addActions(_editActions->forKeys());
            menu.addSeparator();
            menu.addActions(_keyActions->forKeys());
            menu.addSeparator();
            menu.addActions(_rangeActions->forKeys());
            menu.addActions(_viewActions->forViews());
            menu.exec(view->mapToGlobal(point));
        });
    }
}

void MainWindow::_connectLayers() {
    connect(_layers, &LayerPanel::currentLayerChanged, this, &MainWindow::setCurrentLayer);
    connect(_curves, &CurveView::currentLayerPicked, this, &MainWindow::setCurrentLayer);
    connect(_timeline, &TimelineView::currentLayerChanged, this, &MainWindow::setCurrentLayer);
    connect(&_workspace.document, &Document::replaced, this,
            [this] { setCurrentLayer(_workspace.document.layerCount() > 0 ? 0 : -1); });
}

void MainWindow::_connectStatus() {
    connect(_curves, &CurveView::hovered, _status, &StatusLine::showHovered);
    connect(_timeline, &TimelineView::hovered, _status, &StatusLine::showHovered);
    connect(&_workspace.drag, &Drag::blocked, this, [this](const QString& why) {
        // A drag that ends blocked takes its reason along, which nobody could read where it lasted one key
        // press.
        if (why.isEmpty() && !_workspace.drag.isActive()) {
            _status->showRefused(_status->blockedText());
        }
        _status->showBlocked(why);
    });
    for (const ActionSet* const actions :
         {static_cast<ActionSet*>(_editActions), static_cast<ActionSet*>(_keyActions),
          static_cast<ActionSet*>(_rangeActions)}) {
        connect(actions, &ActionSet::noted, _status, &StatusLine::showRefused);
    }
    connect(_layers, &LayerPanel::refused, _status, &StatusLine::showRefused);
    connect(_keyPanel, &KeyPanel::refused, _status, &StatusLine::showRefused);
    connect(&_session, &FileSession::problem, _status, &StatusLine::showRefused);
    if (auto* const application = qobject_cast<Application*>(QCoreApplication::instance())) {
        connect(application, &Application::eventFailed, _status, &StatusLine::showRefused);
    }
}

void MainWindow::_restorePlace() {
    resize(MainWindow::sizeHint());
    restoreGeometry(_settings.store().value(geometryName).toByteArray());
    _hasPlace = restoreState(_settings.store().value(stateName).toByteArray());
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!_hasPlace) { // Docks can be resized only in a window that has its size.
        resizeDocks({_docks.at(0), _docks.at(1)}, {width() / 4, width() / 5}, Qt::Horizontal);
        _hasPlace = true;
    }
}

void MainWindow::_exportPicture() {
    const QFileInfo file(_session.suggestedPath());
    const QString path =
        _dialogs.askPicturePath(file.path() + '/' + file.completeBaseName() + QStringLiteral(".png"));
    if (path.isEmpty()) {
        return;
    }
    try {
        exportPicture(*_curves, path);
    } catch (const std::exception& error) {
        _dialogs.showProblem(tr("The picture could not be written."), QString::fromUtf8(error.what()));
    }
}

void MainWindow::_changeSettings() {
    SettingsDialog(_settings, _workspace.document.history().count() == 0, this).exec();
}

void MainWindow::_applySettings() {
    applyTheme(_settings.theme());
    _applyUndoLimit();
}

// The history takes a limit only while it is empty.
void MainWindow::_applyUndoLimit() {
    if (_workspace.document.history().count() == 0) {
        _workspace.document.history().setUndoLimit(_settings.undoLimit());
    }
}

void MainWindow::_showTitle() {
    setWindowTitle(tr("%1[*] - Curve Editor").arg(_session.name()));
    setWindowFilePath(_workspace.document.path());
    setWindowModified(_workspace.document.isModified());
}

ZT::EditableMotionCurve* MainWindow::_currentCurve() const {
    ZT::EditableAnimationLayer* const layer = _workspace.document.layer(_layers->currentLayer());
    return layer == nullptr ? nullptr : layer->getCurve();
}

} // namespace Editor
