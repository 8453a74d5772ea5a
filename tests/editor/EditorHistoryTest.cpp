#include "document/History.h"

#include "window/HistoryPanel.h"

#include <QAction>
#include <QItemSelectionModel>
#include <QStringList>
#include <QtTest>

#include <memory>
#include <utility>

using Editor::History;

namespace {

class Entry : public QUndoCommand {
public:
    Entry(QStringList& log, const QString& name)
        : QUndoCommand(name)
        , _log(log) {}

    void undo() override { _log.append("undo " + text()); }
    void redo() override { _log.append("redo " + text()); }

private:
    QStringList& _log;
};

} // namespace

class EditorHistoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { _history.reset(); }

    void everyChangeIsSaidBeforeItIsDone();
    void itsActionsSayItToo();
    void aJumpInThePanelIsSaidBeforeItIsDone();
    void thePanelShowsWhereTheHistoryIs();
    void anEntryThatIsPushedWhenAChangeIsSaidComesBeforeIt();

private:
    QStringList _log;
    std::unique_ptr<History> _history; ///< "a" and "b", both done; says "before" to the log
};

void EditorHistoryTest::init() {
    _history = std::make_unique<History>();
    _history->push(new Entry(_log, "a"));
    _history->push(new Entry(_log, "b"));
    connect(_history.get(), &History::aboutToChange, this,
            [this] { _log.append(QString("before at %1").arg(_history->index())); });
    _log.clear();
}

void EditorHistoryTest::everyChangeIsSaidBeforeItIsDone() {
    _history->undo();
    _history->redo();
    _history->setIndex(0);
    _history->push(new Entry(_log, "c"));
    QCOMPARE(_log, (QStringList{"before at 2", "undo b", "before at 1", "redo b", "before at 2", "undo b",
                                "undo a", "before at 0", "redo c"}));
    _log.clear();
    _history->beginMacro("d");
    _history->endMacro();
    QVERIFY(!_history->isClean());
    connect(_history.get(), &QUndoStack::cleanChanged, this, [this] { _log.append("clean"); });
    _history->setClean();
    _history->clear();
    QCOMPARE(_log, (QStringList{"before at 1", "before at 2", "clean", "before at 2"}));
    QCOMPARE(_history->count(), 0);
}

void EditorHistoryTest::itsActionsSayItToo() {
    const std::unique_ptr<QAction> undo(_history->createUndoAction(nullptr));
    const std::unique_ptr<QAction> redo(_history->createRedoAction(nullptr));
    undo->trigger();
    redo->trigger();
    QCOMPARE(_log, (QStringList{"before at 2", "undo b", "before at 1", "redo b"}));
}

void EditorHistoryTest::aJumpInThePanelIsSaidBeforeItIsDone() {
    Editor::HistoryPanel panel(*_history);
    QTest::keyClick(&panel, Qt::Key_Home);
    QCOMPARE(_log, (QStringList{"before at 2", "undo b", "undo a"}));
    QCOMPARE(_history->index(), 0);
}

void EditorHistoryTest::thePanelShowsWhereTheHistoryIs() {
    Editor::HistoryPanel panel(*_history);
    QCOMPARE(panel.currentIndex().row(), 2);
    _history->undo();
    QCOMPARE(panel.currentIndex().row(), 1);
    QVERIFY(panel.selectionModel()->isSelected(panel.model()->index(1, 0)));
    _history->push(new Entry(_log, "c"));
    QCOMPARE(panel.currentIndex().row(), 2);
    _history->setClean();
    QCOMPARE(panel.currentIndex().row(), 2);
    _history->clear();
    QCOMPARE(panel.currentIndex().row(), 0);
}

void EditorHistoryTest::anEntryThatIsPushedWhenAChangeIsSaidComesBeforeIt() {
    bool isWaiting = true;
    connect(_history.get(), &History::aboutToChange, this, [&] {
        if (std::exchange(isWaiting, false)) {
            _history->push(new Entry(_log, "waiting"));
        }
    });
    _history->push(new Entry(_log, "c"));
    QCOMPARE(_history->text(2), QString("waiting"));
    QCOMPARE(_history->text(3), QString("c"));
}

QTEST_MAIN(EditorHistoryTest)
#include "EditorHistoryTest.moc"
