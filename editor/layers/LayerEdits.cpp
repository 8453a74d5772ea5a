#include "layers/LayerEdits.h"

#include "document/Document.h"
#include "document/KeySelection.h"
#include "document/LayerCommands.h"
#include "document/Macro.h"

#include <QRegularExpression>

#include <memory>
#include <utility>

namespace Editor {

namespace {

// Clones have each bit of the keys and their flags; reading a tree would turn the handles of smooth keys
// anew.
std::unique_ptr<ZT::EditableAnimationLayer> copyOf(const ZT::EditableAnimationLayer& layer) {
    VQ::Animation::AnimationLayer record = layer.baseAnimationLayer();
    record.curve->clear();
    auto copy = std::make_unique<ZT::EditableAnimationLayer>(record);
    for (const auto& [frame, key] : *layer.getCurve()) {
        copy->getCurve()->insert(frame, key->clone());
    }
    return copy;
}

QString textOf(LayerEdits::Flag flag, bool isOn, int layers) {
    switch (flag) {
    case LayerEdits::Flag::visible:
        return isOn ? LayerEdits::tr("Show %n layer(s)", nullptr, layers)
                    : LayerEdits::tr("Hide %n layer(s)", nullptr, layers);
    case LayerEdits::Flag::mute:
        return isOn ? LayerEdits::tr("Mute %n layer(s)", nullptr, layers)
                    : LayerEdits::tr("Unmute %n layer(s)", nullptr, layers);
    case LayerEdits::Flag::locked:
        return isOn ? LayerEdits::tr("Lock %n layer(s)", nullptr, layers)
                    : LayerEdits::tr("Unlock %n layer(s)", nullptr, layers);
    }
    return {};
}

} // namespace

LayerEdits::LayerEdits(Document& document)
    : _document(document) {}

QString LayerEdits::uniqueName(const QString& name) const {
    if (_document.animation().getLayer(name) == nullptr) {
        return name;
    }
    static const QRegularExpression number(QStringLiteral(" \\d+$"));
    const QString stem = QString(name).remove(number);
    for (int i = 2;; ++i) {
        QString numbered = QStringLiteral("%1 %2").arg(stem, QString::number(i));
        if (_document.animation().getLayer(numbered) == nullptr) {
            return numbered;
        }
    }
}

// A curve's rate is that of the record it is made from.
int LayerEdits::add(int index) {
    VQ::Animation::AnimationLayer record;
    if (_document.layerCount() > 0) {
        record.curve->setTimeUnit(_document.layer(0)->getCurve()->getTimeUnit());
    }
    auto layer = std::make_unique<ZT::EditableAnimationLayer>(record);
    layer->setActuatorName(uniqueName(tr("Layer")));
    const LayerLook look{Document::colourAt(_document.layerCount())};
    Macro::push(_document.history(),
                std::make_unique<AddLayerCommand>(_document, index, std::move(layer), look, tr("Add layer")));
    return index;
}

int LayerEdits::duplicate(const std::vector<int>& layers) {
    if (layers.empty()) {
        return -1;
    }
    const auto count = static_cast<int>(layers.size());
    Macro macro(_document.history(),
                count == 1 ? tr("Duplicate layer") : tr("Duplicate %n layer(s)", nullptr, count));
    int copies = 0;
    for (const int original : layers) {
        const int source = original + copies;
        ++copies;
        auto copy = copyOf(*_document.layer(source));
        copy->setActuatorName(uniqueName(copy->getActuatorName()));
        LayerLook look = _document.look(source);
        look.colour = Document::colourAt(_document.layerCount());
        macro.add(std::make_unique<AddLayerCommand>(_document, source + 1, std::move(copy), look, QString()));
    }
    macro.commit();
    return layers.front() + 1;
}

void LayerEdits::remove(const std::vector<int>& layers) {
    if (layers.size() == 1) {
        Macro::push(_document.history(), std::make_unique<RemoveLayerCommand>(_document, layers.front()));
    } else if (!layers.empty()) {
        Macro macro(_document.history(), tr("Remove %n layer(s)", nullptr, static_cast<int>(layers.size())));
        for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer) {
            macro.add(std::make_unique<RemoveLayerCommand>(_document, *layer));
        }
        macro.commit();
    }
}

void LayerEdits::move(const std::vector<int>& layers, int index) {
    const bool isBlock =
        !layers.empty() && layers.back() - layers.front() + 1 == static_cast<int>(layers.size());
    if (layers.empty() || (isBlock && index >= layers.front() && index <= layers.back() + 1)) {
        return;
    }
    if (layers.size() == 1) {
        const int from = layers.front();
        Macro::push(_document.history(),
                    std::make_unique<MoveLayerCommand>(_document, from, from < index ? index - 1 : index));
        return;
    }
    Macro macro(_document.history(), tr("Move %n layer(s)", nullptr, static_cast<int>(layers.size())));
    // Those from above leave their places one by one, and the ones behind them move up.
    int above = 0;
    int below = 0;
    for (const int layer : layers) {
        const bool isAbove = layer < index;
        const int from = isAbove ? layer - above : layer;
        const int to = isAbove ? index - 1 : index + below;
        (isAbove ? above : below) += 1;
        if (from != to) {
            macro.add(std::make_unique<MoveLayerCommand>(_document, from, to));
        }
    }
    macro.commit();
}

bool LayerEdits::isSet(int layer, Flag flag) const {
    if (flag == Flag::mute) {
        return _document.layer(layer)->isMute();
    }
    const LayerLook look = _document.look(layer);
    return flag == Flag::visible ? look.isVisible : look.isLocked;
}

void LayerEdits::set(const std::vector<int>& layers, Flag flag, bool isOn) {
    std::vector<std::unique_ptr<QUndoCommand>> commands;
    for (const int layer : layers) {
        if (isSet(layer, flag) == isOn) {
            continue;
        }
        if (flag == Flag::mute) {
            commands.push_back(std::make_unique<MuteLayerCommand>(_document, layer, isOn));
        } else {
            LayerLook look = _document.look(layer);
            (flag == Flag::visible ? look.isVisible : look.isLocked) = isOn;
            commands.push_back(std::make_unique<ChangeLookCommand>(_document, layer, look));
        }
    }
    if (commands.empty()) {
        return;
    }
    const auto count = static_cast<int>(commands.size());
    Macro macro(_document.history(), count == 1 ? commands.front()->text() : textOf(flag, isOn, count));
    for (auto& command : commands) {
        macro.add(std::move(command));
    }
    macro.commit();
}

void LayerEdits::selectKeys(const std::vector<int>& layers) {
    KeySelection::Keys keys;
    for (const int layer : layers) {
        for (const auto& [frame, key] : *_document.layer(layer)->getCurve()) {
            keys.insert(key);
        }
    }
    _document.selection().set(keys);
}

} // namespace Editor
