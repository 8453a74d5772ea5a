#include "document/HistoryEntry.h"

#include <QStringList>
#include <QUndoStack>
#include <QtTest>

#include <memory>
#include <stdexcept>

using Editor::HistoryEntry;

namespace {

/// Logs what it is asked to do. An open one takes the name of each later one into its text.
class Step : public QUndoCommand {
public:
    Step(QStringList& log, const QString& name, bool isOpen = true)
        : QUndoCommand(name)
        , _log(log)
        , _isOpen(isOpen) {}

    void undo() override {
        _log.append("undo " + text());
        _throwIfToldTo();
    }
    void redo() override {
        _log.append("redo " + text());
        _throwIfToldTo();
    }
    bool mergeWith(const QUndoCommand* other) override {
        if (_isOpen) {
            setText(text() + '+' + other->text());
        }
        return _isOpen;
    }

private:
    void _throwIfToldTo() const {
        if (text().contains('!')) {
            throw std::runtime_error(text().toStdString());
        }
    }

    QStringList& _log;
    bool _isOpen;
};

} // namespace

class HistoryEntryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { _log.clear(); }

    void stepsAreDoneAsTheyCome();
    void stepsMergeIntoOneCommand();
    void aStepThatTheCommandRefusesFollowsIt();
    void enteringTheHistoryDoesNothing();
    void theHistoryNeverMergesTwoEntries();
    void aStepThatThrowsIsUndoneAndNoPartOfTheEntry();
    void theLastStepIsDroppedAlone();
    void whatIsThrownIsKeptUntilTheNextTime();

private:
    std::unique_ptr<HistoryEntry> entry(const QStringList& names, bool isOpen = true) {
        auto made = std::make_unique<HistoryEntry>("entry");
        for (const QString& name : names) {
            made->add(std::make_unique<Step>(_log, name, isOpen));
            made->mergeLast();
        }
        return made;
    }

    QStringList _log;
};

void HistoryEntryTest::stepsAreDoneAsTheyCome() {
    entry({"a", "b"});
    QCOMPARE(_log, (QStringList{"redo a", "redo b"}));
}

void HistoryEntryTest::stepsMergeIntoOneCommand() {
    const auto made = entry({"a", "b", "c"});
    QCOMPARE(made->lastCommand().text(), QString("a+b+c"));
    _log.clear();
    made->undo();
    made->redo();
    QCOMPARE(_log, (QStringList{"undo a+b+c", "redo a+b+c"}));
}

void HistoryEntryTest::aStepThatTheCommandRefusesFollowsIt() {
    const auto made = entry({"a", "b"}, false);
    QCOMPARE(made->lastCommand().text(), QString("b"));
    _log.clear();
    made->undo();
    made->redo();
    QCOMPARE(_log, (QStringList{"undo b", "undo a", "redo a", "redo b"}));
}

void HistoryEntryTest::enteringTheHistoryDoesNothing() {
    QUndoStack stack;
    auto made = entry({"a", "b"});
    _log.clear();
    stack.push(made.release());
    QCOMPARE(stack.undoText(), QString("entry"));
    QCOMPARE(_log, QStringList());
    stack.undo();
    stack.redo();
    stack.undo();
    QCOMPARE(_log, (QStringList{"undo a+b", "redo a+b", "undo a+b"}));
}

void HistoryEntryTest::theHistoryNeverMergesTwoEntries() {
    QUndoStack stack;
    stack.push(entry({"a"}).release());
    stack.push(entry({"b"}).release());
    QCOMPARE(stack.count(), 2);
}

void HistoryEntryTest::aStepThatThrowsIsUndoneAndNoPartOfTheEntry() {
    const auto made = entry({"a"});
    _log.clear();
    QVERIFY_EXCEPTION_THROWN(made->add(std::make_unique<Step>(_log, "b!")), std::runtime_error);
    QCOMPARE(made->lastCommand().text(), QString("a"));
    made->undo();
    QCOMPARE(_log, (QStringList{"redo b!", "undo b!", "undo a"}));
    HistoryEntry empty("empty");
    QVERIFY_EXCEPTION_THROWN(empty.add(std::make_unique<Step>(_log, "a!")), std::runtime_error);
    QVERIFY(empty.isEmpty());
}

void HistoryEntryTest::theLastStepIsDroppedAlone() {
    const auto made = entry({"a", "b"}, false);
    _log.clear();
    made->dropLast();
    QCOMPARE(_log, (QStringList{"undo b"}));
    QCOMPARE(made->lastCommand().text(), QString("a"));
}

void HistoryEntryTest::whatIsThrownIsKeptUntilTheNextTime() {
    auto step = std::make_unique<Step>(_log, "a", false);
    Step* const a = step.get();
    HistoryEntry made("entry");
    made.add(std::move(step));
    made.add(std::make_unique<Step>(_log, "b", false));
    a->setText("a!");
    _log.clear();
    made.undo();
    QVERIFY_EXCEPTION_THROWN(made.thrown().rethrow(), std::runtime_error);
    made.redo();
    QVERIFY_EXCEPTION_THROWN(made.thrown().rethrow(), std::runtime_error);
    QCOMPARE(_log, (QStringList{"undo b", "undo a!", "redo a!", "redo b"}));
    a->setText("a");
    made.undo();
    QVERIFY(!made.thrown());
}

QTEST_GUILESS_MAIN(HistoryEntryTest)
#include "HistoryEntryTest.moc"
