#include "window/FileActions.h"

#include "window/ActionMaker.h"
#include "window/FileSession.h"
#include "window/RecentFiles.h"

#include <QDir>
#include <QMenu>
#include <QToolBar>

namespace Editor {

FileActions::FileActions(FileSession& session, RecentFiles& recent, QObject* parent)
    : QObject(parent)
    , _session(session)
    , _recent(recent)
    , _recentMenu(std::make_unique<QMenu>(tr("Open &Recent")))
    , _new(dress(new QAction(tr("&New"), this), "new", QKeySequence::keyBindings(QKeySequence::New),
                 Glyph::newFile))
    , _open(dress(new QAction(tr("&Open..."), this), "open", QKeySequence::keyBindings(QKeySequence::Open),
                  Glyph::open))
    , _save(dress(new QAction(tr("&Save"), this), "save", QKeySequence::keyBindings(QKeySequence::Save),
                  Glyph::save))
    , _saveAs(dress(new QAction(tr("Save &As..."), this), "saveAs", {Qt::CTRL | Qt::SHIFT | Qt::Key_S}))
    , _export(dress(new QAction(tr("&Export Picture..."), this), "export", {Qt::CTRL | Qt::Key_E}))
    , _settings(dress(new QAction(tr("Se&ttings..."), this), "settings", {Qt::CTRL | Qt::Key_Comma}))
    , _quit(dress(new QAction(tr("&Quit"), this), "quit", {Qt::CTRL | Qt::Key_Q})) {
    _settings->setMenuRole(QAction::PreferencesRole);
    _quit->setMenuRole(QAction::QuitRole);
    connect(_new, &QAction::triggered, &session, &FileSession::newAnimation);
    connect(_open, &QAction::triggered, &session, &FileSession::openAsked);
    connect(_save, &QAction::triggered, &session, &FileSession::save);
    connect(_saveAs, &QAction::triggered, &session, &FileSession::saveAs);
    connect(_export, &QAction::triggered, this, &FileActions::exportAsked);
    connect(_settings, &QAction::triggered, this, &FileActions::settingsAsked);
    connect(_quit, &QAction::triggered, this, &FileActions::quitAsked);
    // Later, since a file opened from the menu changes the menu.
    connect(&recent, &RecentFiles::changed, this, &FileActions::_listRecent, Qt::QueuedConnection);
    _listRecent();
}

FileActions::~FileActions() = default;

void FileActions::addTo(QMenu& menu) const {
    menu.addActions({_new, _open});
    menu.addMenu(_recentMenu.get());
    menu.addSeparator();
    menu.addActions({_save, _saveAs, _export});
    menu.addSeparator();
    menu.addAction(_settings);
    menu.addSeparator();
    menu.addAction(_quit);
}

void FileActions::addTo(QToolBar& bar) const {
    bar.addActions({_new, _open, _save});
}

void FileActions::_listRecent() {
    _recentMenu->clear();
    int number = 0;
    for (const QString& path : _recent.paths()) {
        QString shown = QDir::toNativeSeparators(path);
        shown.replace('&', QStringLiteral("&&"));
        QAction* const action = _recentMenu->addAction(QStringLiteral("&%1 %2").arg(++number).arg(shown));
        connect(action, &QAction::triggered, this, [this, path] { _session.open(path); });
    }
    _recentMenu->setEnabled(number > 0);
}

} // namespace Editor
