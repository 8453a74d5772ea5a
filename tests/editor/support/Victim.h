#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

/// A program that has unsaved work on a file, or on an animation without file for an empty path, of which a
/// copy is written. Its own data are those of the test.
class Victim {
public:
    /// Ends the test program where it cannot be started.
    explicit Victim(const QString& path) {
        _program.start(AUTOSAVE_VICTIM, {QCoreApplication::applicationName(), path});
        if (!_program.waitForReadyRead(60000) || _program.readAllStandardOutput() != "edited\n") {
            qFatal("no victim: %s", _program.readAllStandardError().constData());
        }
    }

    ~Victim() {
        if (_program.state() != QProcess::NotRunning) {
            kill();
        }
    }
    Victim(const Victim&) = delete;
    Victim& operator=(const Victim&) = delete;

    /// It cannot do anything about it, as in a crash.
    void kill() {
        _program.kill();
        if (!_program.waitForFinished() || _program.exitStatus() != QProcess::CrashExit) {
            qFatal("the victim lives");
        }
    }
    /// Its exit code, where its work was not wanted.
    int leaveOrderly() {
        _program.closeWriteChannel();
        return _program.waitForFinished() ? _program.exitCode() : -1;
    }

private:
    QProcess _program;
};
