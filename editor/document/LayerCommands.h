#pragma once

#include "document/Document.h"
#include "document/LayerLook.h"

#include <QString>
#include <QUndoCommand>

#include <memory>

namespace Editor {

/// What the commands of layers share. A layer that is not in the animation belongs to the command that took
/// it out or brings it in: it and its keys stay alive as long as the history has an entry that may refer to
/// them.
///
/// Slots that throw do not keep the list from changing. Whoever catches that may undo or redo: what is done
/// is not done twice, and what is not done is not undone.
class LayerCommand : public QUndoCommand {
protected:
    LayerCommand(Document& document, const QString& text);

    Document& document;
};

/// Puts a layer into the list.
class AddLayerCommand : public LayerCommand {
public:
    AddLayerCommand(Document& document, int index, std::unique_ptr<ZT::EditableAnimationLayer> layer,
                    LayerLook look, const QString& text);

    void undo() override;
    void redo() override;

private:
    int _index;
    std::unique_ptr<ZT::EditableAnimationLayer> _layer; ///< null while the animation holds it
    LayerLook _look;
};

/// Takes a layer out of the list.
class RemoveLayerCommand : public LayerCommand {
public:
    RemoveLayerCommand(Document& document, int index);

    void undo() override;
    void redo() override;

private:
    int _index;
    std::unique_ptr<ZT::EditableAnimationLayer> _layer; ///< null while the animation holds it
    LayerLook _look;
};

/// Moves a layer to the place @p to in the list without it.
class MoveLayerCommand : public LayerCommand {
public:
    MoveLayerCommand(Document& document, int from, int to);

    void undo() override;
    void redo() override;

private:
    int _from;
    int _to;
    bool _isDone = false;
};

/// Gives a layer another name.
class RenameLayerCommand : public LayerCommand {
public:
    RenameLayerCommand(Document& document, int index, const QString& name);

    void undo() override;
    void redo() override;

private:
    int _index;
    QString _old;
    QString _new;
};

/// Silences a layer or lets it be heard.
class MuteLayerCommand : public LayerCommand {
public:
    MuteLayerCommand(Document& document, int index, bool mute);

    void undo() override;
    void redo() override;

private:
    int _index;
    bool _old;
    bool _new;
};

/// Gives a layer another colour, shows or hides, locks or unlocks it.
class ChangeLookCommand : public LayerCommand {
public:
    ChangeLookCommand(Document& document, int index, const LayerLook& look);

    void undo() override;
    void redo() override;

private:
    int _index;
    LayerLook _old;
    LayerLook _new;
};

} // namespace Editor
