#pragma once

#include "tests/faults/FaultScene.h"

#include <QMetaType>

#include <exception>
#include <functional>
#include <vector>

/// What an operation leaves when a slot threw.
enum class Law {
    carriedThrough, ///< what it leaves when no slot throws
    takenBack,      ///< what was there before
    eitherWay,      ///< one of the two
    curveByCurve    ///< one of the two for each curve
};

/// An edit or a command, made ready in a fresh scene and then done.
struct FaultOperation {
    const char* name;
    Law law;
    std::function<void(FaultScene&)> prepare;
    std::function<void(FaultScene&)> run;
    std::function<QUndoCommand*(FaultScene&)> build = {}; ///< of a command
    /// Ends with an exception of its own, which takes the place of a slot's.
    bool handsOverByException = false;

    /// How many keys it destroys when nothing disturbs it.
    int deaths() const {
        FaultScene scene;
        prepare(scene);
        try {
            run(scene);
        } catch (const std::exception&) { // The operation's own.
        }
        return scene.deaths();
    }
};

/// Single and bulk edits of a curve and its keys.
std::vector<FaultOperation> faultyEdits();
/// Each command's first redo, undo, and redo after that.
std::vector<FaultOperation> faultyCommands();

Q_DECLARE_METATYPE(FaultOperation)
