#include "document/LayerCommands.h"

#include "document/Translation.h"

#include <utility>

namespace Editor {

namespace {

QString textOf(const LayerLook& before, const LayerLook& after) {
    if (before.isVisible != after.isVisible) {
        return after.isVisible ? tr("Show layer") : tr("Hide layer");
    }
    if (before.isLocked != after.isLocked) {
        return after.isLocked ? tr("Lock layer") : tr("Unlock layer");
    }
    return tr("Change colour of layer");
}

} // namespace

LayerCommand::LayerCommand(Document& ofDocument, const QString& text)
    : QUndoCommand(text)
    , document(ofDocument) {}

AddLayerCommand::AddLayerCommand(Document& ofDocument, int index,
                                 std::unique_ptr<ZT::EditableAnimationLayer> layer, LayerLook look,
                                 const QString& text)
    : LayerCommand(ofDocument, text)
    , _index(index)
    , _layer(std::move(layer))
    , _look(std::move(look)) {}

void AddLayerCommand::undo() {
    if (_layer == nullptr) {
        document.takeLayer(_index, _layer, _look);
    }
}

void AddLayerCommand::redo() {
    if (_layer != nullptr) {
        document.insertLayer(_index, std::move(_layer), _look);
    }
}

RemoveLayerCommand::RemoveLayerCommand(Document& ofDocument, int index)
    : LayerCommand(ofDocument, tr("Remove layer %1").arg(ofDocument.layer(index)->getActuatorName()))
    , _index(index) {}

void RemoveLayerCommand::undo() {
    if (_layer != nullptr) {
        document.insertLayer(_index, std::move(_layer), _look);
    }
}

void RemoveLayerCommand::redo() {
    if (_layer == nullptr) {
        document.takeLayer(_index, _layer, _look);
    }
}

MoveLayerCommand::MoveLayerCommand(Document& ofDocument, int from, int to)
    : LayerCommand(ofDocument, tr("Move layer %1").arg(ofDocument.layer(from)->getActuatorName()))
    , _from(from)
    , _to(to) {}

void MoveLayerCommand::undo() {
    if (std::exchange(_isDone, false)) {
        document.moveLayer(_to, _from);
    }
}

void MoveLayerCommand::redo() {
    if (!std::exchange(_isDone, true)) {
        document.moveLayer(_from, _to);
    }
}

RenameLayerCommand::RenameLayerCommand(Document& ofDocument, int index, const QString& name)
    : LayerCommand(ofDocument, tr("Rename layer to %1").arg(name))
    , _index(index)
    , _old(ofDocument.layer(index)->getActuatorName())
    , _new(name) {}

void RenameLayerCommand::undo() {
    document.layer(_index)->setActuatorName(_old);
}

void RenameLayerCommand::redo() {
    document.layer(_index)->setActuatorName(_new);
}

MuteLayerCommand::MuteLayerCommand(Document& ofDocument, int index, bool mute)
    : LayerCommand(ofDocument, mute ? tr("Mute layer") : tr("Unmute layer"))
    , _index(index)
    , _old(ofDocument.layer(index)->isMute())
    , _new(mute) {}

void MuteLayerCommand::undo() {
    document.layer(_index)->setMute(_old);
}

void MuteLayerCommand::redo() {
    document.layer(_index)->setMute(_new);
}

ChangeLookCommand::ChangeLookCommand(Document& ofDocument, int index, const LayerLook& look)
    : LayerCommand(ofDocument, textOf(ofDocument.look(index), look))
    , _index(index)
    , _old(ofDocument.look(index))
    , _new(look) {}

void ChangeLookCommand::undo() {
    document.setLook(_index, _old);
}

void ChangeLookCommand::redo() {
    document.setLook(_index, _new);
}

} // namespace Editor
