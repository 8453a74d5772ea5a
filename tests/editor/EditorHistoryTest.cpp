#include "document/History.h"

#include "document/Macro.h"
#include "window/HistoryPanel.h"

#include <QItemSelectionModel>
#include <QStringList>
#include <QtTest>

#include <memory>
#include <stdexcept>
#include <utility>

using Editor::History;

namespace {

class Entry : public QUndoCommand {
public:
    Entry(QStringList& log, const QString& name)
        : QUndoCommand(name)
        , _log(log) {}

    void undo() override { _do("undo "); }
    void redo() override { _do("redo "); }

    bool isThrowing = false; ///< with its name

private:
    void _do(const QString& what) {
        _log.append(what + text());
        if (isThrowing) {
            throw std::runtime_error(text().toStdString());
        }
    }

    QStringList& _log;
};

template <class Action>
QString whatIsThrown(Action action) {
    try {
        action();
        return {};
    } catch (const std::runtime_error& error) {
        return QString::fromUtf8(error.what());
    }
}

} // namespace

class EditorHistoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { _history.reset(); }

    void everyChangeIsSaidBeforeItIsDone();
    void aJumpInThePanelIsSaidBeforeItIsDone();
    void thePanelShowsWhereTheHistoryIs();
    void anEntryThatIsPushedWhenAChangeIsSaidComesBeforeIt();
    void aCommandThatThrowsWhenItIsPushedIsUndoneAndLeavesWhatCanBeRedone();
    void anUndoThatThrowsIsDone();
    void aRedoThatThrowsIsDone();
    void aJumpGoesOnBehindEntriesThatThrow();
    void anEntryGoesOnBehindACommandThatThrows();

private:
    Entry* _push(const QString& name) {
        auto* const entry = new Entry(_log, name);
        _history->push(entry);
        return entry;
    }

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
    QVERIFY(!_history->isClean());
    connect(_history.get(), &QUndoStack::cleanChanged, this, [this] { _log.append("clean"); });
    _history->setClean();
    _history->clear();
    QCOMPARE(_log, (QStringList{"before at 1", "clean", "before at 1"}));
    QCOMPARE(_history->count(), 0);
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

void EditorHistoryTest::aCommandThatThrowsWhenItIsPushedIsUndoneAndLeavesWhatCanBeRedone() {
    _history->undo();
    _log.clear();
    auto* const entry = new Entry(_log, "c");
    entry->isThrowing = true;
    QCOMPARE(whatIsThrown([&] { _history->push(entry); }), QString("c"));
    QCOMPARE(_log, (QStringList{"before at 1", "redo c", "undo c"}));
    QCOMPARE(_history->count(), 2);
    QCOMPARE(_history->index(), 1);
    QCOMPARE(_history->redoText(), QString("b"));
}

void EditorHistoryTest::anUndoThatThrowsIsDone() {
    Entry* const c = _push("c");
    c->isThrowing = true;
    QCOMPARE(whatIsThrown([&] { _history->undo(); }), QString("c"));
    QCOMPARE(_history->index(), 2);
    _log.clear();
    _history->undo();
    QCOMPARE(_log, (QStringList{"before at 2", "undo b"}));
}

void EditorHistoryTest::aRedoThatThrowsIsDone() {
    Entry* const c = _push("c");
    _push("d");
    _history->setIndex(2);
    c->isThrowing = true;
    QCOMPARE(whatIsThrown([&] { _history->redo(); }), QString("c"));
    QCOMPARE(_history->index(), 3);
    _log.clear();
    _history->redo();
    QCOMPARE(_log, (QStringList{"before at 3", "redo d"}));
    c->isThrowing = false;
    QCOMPARE(whatIsThrown([&] { _history->setIndex(0); }), QString());
    QCOMPARE(whatIsThrown([&] { _history->setIndex(4); }), QString()); // What was thrown is forgotten.
}

void EditorHistoryTest::aJumpGoesOnBehindEntriesThatThrow() {
    Entry* const c = _push("c");
    Entry* const d = _push("d");
    _push("e");
    c->isThrowing = true;
    d->isThrowing = true;
    _log.clear();
    QCOMPARE(whatIsThrown([&] { _history->setIndex(1); }), QString("d")); // It is undone first.
    QCOMPARE(_log, (QStringList{"before at 5", "undo e", "undo d", "undo c", "undo b"}));
    QCOMPARE(_history->index(), 1);
    _log.clear();
    QCOMPARE(whatIsThrown([&] { _history->setIndex(5); }), QString("c"));
    QCOMPARE(_log, (QStringList{"before at 1", "redo b", "redo c", "redo d", "redo e"}));
    QCOMPARE(_history->index(), 5);
}

void EditorHistoryTest::anEntryGoesOnBehindACommandThatThrows() {
    auto* const c = new Entry(_log, "c");
    Editor::Macro macro(*_history, "both");
    macro.add(std::unique_ptr<QUndoCommand>(c));
    macro.add(std::make_unique<Entry>(_log, "d"));
    macro.commit();
    c->isThrowing = true;
    _log.clear();
    QCOMPARE(whatIsThrown([&] { _history->undo(); }), QString("c"));
    QCOMPARE(whatIsThrown([&] { _history->redo(); }), QString("c"));
    QCOMPARE(_log, (QStringList{"before at 3", "undo d", "undo c", "before at 2", "redo c", "redo d"}));
}

QTEST_MAIN(EditorHistoryTest)
#include "EditorHistoryTest.moc"
