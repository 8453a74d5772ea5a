#include "document/DragEntry.h"

#include <QStringList>
#include <QUndoStack>
#include <QtTest>

#include <memory>

using Editor::DragEntry;

namespace {

/// Writes down what is done with it; merges with its own kind.
class Step : public QUndoCommand {
public:
    Step(QStringList& log, const QString& name, bool isOpen = true)
        : QUndoCommand(name)
        , _log(log)
        , _isOpen(isOpen) {}

    void undo() override { _log.append("undo " + text()); }
    void redo() override { _log.append("redo " + text()); }
    bool mergeWith(const QUndoCommand* other) override {
        setText(text() + '+' + other->text());
        return _isOpen;
    }

private:
    QStringList& _log;
    bool _isOpen;
};

} // namespace

class DragEntryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        _log.clear();
        _stack = std::make_unique<QUndoStack>();
    }

    void stepsOfOneDragMerge();
    void stepsOfAnotherDragDoNot();
    void aStepThatTheCommandRefusesIsAnEntryOfItsOwn();
    void aCancelledEntryUndoesItselfAndIsGone();
    void restartingUndoesAllAndDoesAnother();

private:
    DragEntry* push(const QString& name, int drag, bool isOpen = true) {
        auto* const entry = new DragEntry(std::make_unique<Step>(_log, name, isOpen), drag);
        _stack->push(entry);
        return entry;
    }

    QStringList _log;
    std::unique_ptr<QUndoStack> _stack;
};

void DragEntryTest::stepsOfOneDragMerge() {
    push("a", 1);
    push("b", 1);
    QCOMPARE(_stack->count(), 1);
    QCOMPARE(_stack->undoText(), QString("a+b"));
    _stack->undo();
    _stack->redo();
    QCOMPARE(_log, (QStringList{"redo a", "redo b", "undo a+b", "redo a+b"}));
}

void DragEntryTest::stepsOfAnotherDragDoNot() {
    push("a", 1);
    push("b", 2);
    QCOMPARE(_stack->count(), 2);
    QCOMPARE(_stack->text(0), QString("a"));
}

void DragEntryTest::aStepThatTheCommandRefusesIsAnEntryOfItsOwn() {
    push("a", 1, false);
    push("b", 1);
    QCOMPARE(_stack->count(), 2);
}

void DragEntryTest::aCancelledEntryUndoesItselfAndIsGone() {
    push("a", 1);
    push("b", 2)->cancel();
    _stack->undo();
    QCOMPARE(_stack->count(), 1);
    QVERIFY(!_stack->canRedo());
    QCOMPARE(_log, (QStringList{"redo a", "redo b", "undo b"}));
}

void DragEntryTest::restartingUndoesAllAndDoesAnother() {
    DragEntry* const entry = push("a", 1);
    push("b", 1);
    entry->restart([this] { return std::make_unique<Step>(_log, "c"); });
    QCOMPARE(_log, (QStringList{"redo a", "redo b", "undo a+b", "redo c"}));
    QCOMPARE(_stack->undoText(), QString("c"));
    QCOMPARE(entry->command().text(), QString("c"));
}

QTEST_GUILESS_MAIN(DragEntryTest)
#include "DragEntryTest.moc"
