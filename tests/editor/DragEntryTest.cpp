#include "document/DragEntry.h"

#include <QStringList>
#include <QUndoStack>
#include <QtTest>

#include <memory>

using Editor::DragEntry;

namespace {

/// Logs what it is asked to do. An open one takes the name of each later one into its text.
class Step : public QUndoCommand {
public:
    Step(QStringList& log, const QString& name, bool isOpen = true)
        : QUndoCommand(name)
        , _log(log)
        , _isOpen(isOpen) {}

    void undo() override { _log.append("undo " + text()); }
    void redo() override { _log.append("redo " + text()); }
    bool mergeWith(const QUndoCommand* other) override {
        if (_isOpen) {
            setText(text() + '+' + other->text());
        }
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
    void init() { _log.clear(); }

    void stepsAreDoneAsTheyCome();
    void stepsMergeIntoOneCommand();
    void aStepThatTheCommandRefusesFollowsIt();
    void enteringTheHistoryDoesNothing();
    void theHistoryNeverMergesTwoEntries();

private:
    std::unique_ptr<DragEntry> entry(const QStringList& names, bool isOpen = true) {
        auto made = std::make_unique<DragEntry>();
        for (const QString& name : names) {
            made->add(std::make_unique<Step>(_log, name, isOpen));
        }
        return made;
    }

    QStringList _log;
};

void DragEntryTest::stepsAreDoneAsTheyCome() {
    entry({"a", "b"});
    QCOMPARE(_log, (QStringList{"redo a", "redo b"}));
}

void DragEntryTest::stepsMergeIntoOneCommand() {
    const auto made = entry({"a", "b", "c"});
    QCOMPARE(made->text(), QString("a+b+c"));
    QCOMPARE(made->lastCommand().text(), QString("a+b+c"));
    _log.clear();
    made->undo();
    made->redo();
    QCOMPARE(_log, (QStringList{"undo a+b+c", "redo a+b+c"}));
}

void DragEntryTest::aStepThatTheCommandRefusesFollowsIt() {
    const auto made = entry({"a", "b"}, false);
    QCOMPARE(made->text(), QString("b"));
    QCOMPARE(made->lastCommand().text(), QString("b"));
    _log.clear();
    made->undo();
    made->redo();
    QCOMPARE(_log, (QStringList{"undo b", "undo a", "redo a", "redo b"}));
}

void DragEntryTest::enteringTheHistoryDoesNothing() {
    QUndoStack stack;
    auto made = entry({"a", "b"});
    _log.clear();
    stack.push(made.release());
    QCOMPARE(stack.undoText(), QString("a+b"));
    QCOMPARE(_log, QStringList());
    stack.undo();
    stack.redo();
    stack.undo();
    QCOMPARE(_log, (QStringList{"undo a+b", "redo a+b", "undo a+b"}));
}

void DragEntryTest::theHistoryNeverMergesTwoEntries() {
    QUndoStack stack;
    stack.push(entry({"a"}).release());
    stack.push(entry({"b"}).release());
    QCOMPARE(stack.count(), 2);
    QCOMPARE(stack.text(0), QString("a"));
}

QTEST_GUILESS_MAIN(DragEntryTest)
#include "DragEntryTest.moc"
