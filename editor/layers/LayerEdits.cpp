#include "layers/LayerEdits.h"

#include "document/Document.h"
#include "document/KeySelection.h"
#include "document/LayerCommands.h"

#include <QRegularExpression>

#include <memory>
#include <utility>

namespace Editor {

namespace {

// The commands pushed while it lives are one entry.
class [[nodiscard]] Macro {
public:
    Macro(History& history, const QString& text)
        : _history(history) {
        _history.beginMacro(text);
    }
    Macro(const Macro&) = delete;
    Macro& operator=(const Macro&) = delete;
    ~Macro() { _history.endMacro(); }

private:
    History& _history;
};

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
    _document.history().push(new AddLayerCommand(_document, index, std::move(layer),
                                                 LayerLook{Document::colourAt(_document.layerCount())},
                                                 tr("Add layer")));
    return index;
}

int LayerEdits::duplicate(const std::vector<int>& layers) {
    if (layers.empty()) {
        return -1;
    }
    const Macro macro(_document.history(), tr("Duplicate layer"));
    int copies = 0;
    for (const int original : layers) {
        const int source = original + copies;
        ++copies;
        auto copy = copyOf(*_document.layer(source));
        copy->setActuatorName(uniqueName(copy->getActuatorName()));
        LayerLook look = _document.look(source);
        look.colour = Document::colourAt(_document.layerCount());
        _document.history().push(
            new AddLayerCommand(_document, source + 1, std::move(copy), look, tr("Duplicate layer")));
    }
    return layers.front() + 1;
}

void LayerEdits::remove(const std::vector<int>& layers) {
    if (layers.size() == 1) {
        _document.history().push(new RemoveLayerCommand(_document, layers.front()));
    } else if (!layers.empty()) {
        const Macro macro(_document.history(),
                          tr("Remove %n layer(s)", nullptr, static_cast<int>(layers.size())));
        for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer) {
            _document.history().push(new RemoveLayerCommand(_document, *layer));
        }
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
        _document.history().push(new MoveLayerCommand(_document, from, from < index ? index - 1 : index));
        return;
    }
    const Macro macro(_document.history(), tr("Move %n layer(s)", nullptr, static_cast<int>(layers.size())));
    // Those from above leave their places one by one, and the ones behind them move up.
    int above = 0;
    int below = 0;
    for (const int layer : layers) {
        const bool isAbove = layer < index;
        const int from = isAbove ? layer - above : layer;
        const int to = isAbove ? index - 1 : index + below;
        (isAbove ? above : below) += 1;
        if (from != to) {
            _document.history().push(new MoveLayerCommand(_document, from, to));
        }
    }
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
