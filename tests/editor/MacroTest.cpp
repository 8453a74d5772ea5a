#include "document/Macro.h"

#include "document/History.h"

#include <QtTest>

#include <stdexcept>

using Editor::Macro;

namespace {

/// Writes down what is done to it; "!" in its name fails when it is done.
class Noted : public QUndoCommand {
public:
    Noted(QStringList& log, const QString& name)
        : QUndoCommand(name)
        , _log(log) {}
    ~Noted() override { _log.append('~' + text()); }

    void undo() override {
        _log.append('-' + text());
        _failIfToldTo();
    }
    void redo() override {
        _log.append('+' + text());
        _failIfToldTo();
    }

private:
    void _failIfToldTo() const {
        if (text().contains('!')) {
            throw std::runtime_error("told to");
        }
    }

    QStringList& _log;
};

std::unique_ptr<QUndoCommand> noted(QStringList& log, const QString& name) {
    return std::make_unique<Noted>(log, name);
}

} // namespace

class MacroTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // A drag under way becomes an entry then, which lies below this one.
    void theHistoryIsToldBeforeTheFirstCommandIsDone() {
        QStringList log;
        Editor::History history;
        connect(&history, &Editor::History::aboutToChange, [&] { log.append("told"); });
        Macro macro(history, "both");
        macro.add(noted(log, "a"));
        macro.commit();
        QCOMPARE(log.mid(0, 2), (QStringList{"told", "+a"}));
    }

    void eachCommandIsDoneOnceAndAllAreOneEntry() {
        QStringList log;
        Editor::History history;
        {
            Macro macro(history, "both");
            macro.add(noted(log, "a"));
            macro.add(noted(log, "b"));
            QCOMPARE(log, (QStringList{"+a", "+b"}));
            QCOMPARE(history.count(), 0);
            macro.commit();
        }
        QCOMPARE(history.count(), 1);
        QCOMPARE(history.undoText(), QString("both"));
        QCOMPARE(log.size(), 2);
        history.undo();
        history.redo();
        QCOMPARE(log, (QStringList{"+a", "+b", "-b", "-a", "+a", "+b"}));
    }

    void aMacroThatIsNotCommittedIsUndoneAndKeepsWhatCanBeRedone() {
        QStringList log;
        Editor::History history;
        history.push(new QUndoCommand("old"));
        history.undo();
        {
            Macro macro(history, "both");
            macro.add(noted(log, "a"));
            macro.add(noted(log, "b"));
        }
        QCOMPARE(log.mid(0, 4), (QStringList{"+a", "+b", "-b", "-a"}));
        QCOMPARE(history.redoText(), QString("old"));
    }

    void aCommandThatFailsIsTakenBackWithThoseBeforeIt() {
        QStringList log;
        Editor::History history;
        try {
            Macro macro(history, "both");
            macro.add(noted(log, "a"));
            macro.add(noted(log, "b!"));
            QFAIL("the exception must pass");
        } catch (const std::runtime_error& error) {
            QCOMPARE(error.what(), "told to");
        }
        QCOMPARE(log, (QStringList{"+a", "+b!", "-b!", "~b!", "-a", "~a"}));
        QCOMPARE(history.count(), 0);
    }

    void withoutCommandsThereIsNoEntry() {
        Editor::History history;
        Macro macro(history, "nothing");
        macro.commit();
        QCOMPARE(history.count(), 0);
    }

    void oneCommandGivesTheEntryItsText() {
        QStringList log;
        Editor::History history;
        Macro::push(history, noted(log, "a"));
        QCOMPARE(history.undoText(), QString("a"));
        QCOMPARE(log, QStringList{"+a"});
        history.clear();
        QCOMPARE(log, (QStringList{"+a", "~a"}));
    }
};

QTEST_GUILESS_MAIN(MacroTest)
#include "MacroTest.moc"
