#pragma once

#include <QObject>

#include <memory>

class QAction;
class QMenu;
class QToolBar;

namespace Editor {

class FileSession;
class RecentFiles;

/// What a menu "File" holds.
class FileActions : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the actions.
    FileActions(FileSession& session, RecentFiles& recent, QObject* parent);
    ~FileActions() override;

    void addTo(QMenu& menu) const;
    void addTo(QToolBar& bar) const;

Q_SIGNALS:
    void exportAsked();
    void settingsAsked();
    void quitAsked();

private:
    void _listRecent();

    FileSession& _session;
    RecentFiles& _recent;
    std::unique_ptr<QMenu> _recentMenu;
    QAction* _new; ///< all actions are QObject children
    QAction* _open;
    QAction* _save;
    QAction* _saveAs;
    QAction* _export;
    QAction* _settings;
    QAction* _quit;
};

} // namespace Editor
