#pragma once

#include "window/FileSession.h"
#include "window/RecentFiles.h"

#include <QMainWindow>

class QDockWidget;
class QMenu;

namespace ZT {
class EditableMotionCurve;
}

namespace Editor {

class CurveView;
class EditActions;
class FileActions;
class FileDialogs;
class KeyActions;
class KeyPanel;
class LayerPanel;
class PlaybackActions;
class RangeActions;
class Settings;
class StatusLine;
class TimelineView;
class ViewActions;
struct Workspace;

/// The editor's window: layers on the left, curves over the timeline in the middle, numbers and history on
/// the right. Every command is one action, which menus, tool bar and context menus share.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// All must outlive the window.
    MainWindow(Workspace& workspace, Settings& settings, FileDialogs& dialogs);
    ~MainWindow() override;

    FileSession& session() noexcept { return _session; }
    CurveView& curves() noexcept { return *_curves; }
    TimelineView& timeline() noexcept { return *_timeline; }
    LayerPanel& layers() noexcept { return *_layers; }
    StatusLine& status() noexcept { return *_status; }

    QSize sizeHint() const override { return {1280, 720}; }

public Q_SLOTS:
    /// The layer that is shown in front, takes new keys and is the one of the panel; -1 for none.
    void setCurrentLayer(int index);

protected:
    /// Gives the docks their first widths.
    void showEvent(QShowEvent* event) override;
    /// Asks about unsaved work.
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// Opens the file.
    void dropEvent(QDropEvent* event) override;

private:
    QWidget* _makeCentre();
    QDockWidget* _addDock(const char* name, const QString& title, QWidget* content, Qt::DockWidgetArea area);
    void _addDocks();
    void _fillMenus();
    void _fillToolBar();
    void _fillContextMenus(QWidget& centre);
    void _connectLayers();
    void _connectStatus();
    void _restorePlace();
    void _exportPicture();
    void _enterWhatIsTyped();
    void _changeSettings();
    void _applySettings();
    void _applyUndoLimit();
    void _showTitle();
    ZT::EditableMotionCurve* _currentCurve() const;

    Workspace& _workspace;
    Settings& _settings;
    FileDialogs& _dialogs;
    RecentFiles _recent;
    FileSession _session;
    StatusLine* _status; ///< all below are QObject children
    CurveView* _curves;
    TimelineView* _timeline;
    LayerPanel* _layers;
    KeyPanel* _keyPanel;
    FileActions* _fileActions;
    EditActions* _editActions;
    KeyActions* _keyActions;
    RangeActions* _rangeActions;
    ViewActions* _viewActions;
    PlaybackActions* _playbackActions;
    QList<QDockWidget*> _docks;
    bool _hasPlace = false; ///< the docks have the widths of the user, or their first ones
};

} // namespace Editor
