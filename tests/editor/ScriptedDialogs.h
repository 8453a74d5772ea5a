#pragma once

#include "window/FileDialogs.h"

#include <QStringList>

/// Answers what a test says, and notes what was asked.
class ScriptedDialogs : public Editor::FileDialogs {
public:
    QString openPath;
    QString savePath;
    QString picturePath;
    Unsaved unsaved = Unsaved::cancel;
    Recovery recovery = Recovery::later;
    QList<LeftBehind> leftBehind; ///< what was asked about
    QStringList asked;            ///< "open", "save near/file.xml", "picture", "unsaved name", "recover name"
    QStringList problems;

    QString askOpenPath(const QString& /*near*/) override {
        asked.append("open");
        return openPath;
    }
    QString askSavePath(const QString& suggestion) override {
        asked.append("save " + suggestion.section('/', -1));
        return savePath;
    }
    QString askPicturePath(const QString& suggestion) override {
        asked.append("picture " + suggestion.section('/', -1));
        return picturePath;
    }
    Unsaved askUnsaved(const QString& name) override {
        asked.append("unsaved " + name);
        return unsaved;
    }
    Recovery askRecovery(const LeftBehind& work) override {
        asked.append("recover " + work.name);
        leftBehind.append(work);
        return recovery;
    }
    void showProblem(const QString& title, const QString& reason) override {
        problems.append(title + '\n' + reason);
    }
};
