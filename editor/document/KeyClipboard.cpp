#include "document/KeyClipboard.h"

#include "base/animation/AnimationXml.h"
#include "base/animation/XmlText.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "document/Document.h"
#include "document/Frames.h"
#include "document/Macro.h"
#include "document/Translation.h"

#include <QHash>
#include <QMap>
#include <QMimeData>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace Editor {

using ZT::EditableAnimation;
using ZT::EditableAnimationLayer;
using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

namespace {

constexpr const char* ownType = "application/x-curve-editor-keys+xml";

[[noreturn]] void refuse(const QString& what) {
    throw std::runtime_error(what.toStdString());
}

// An actuator's name as text can hold it: its own but for what XML cannot hold.
QString nameOf(const EditableAnimationLayer& layer) {
    std::string name = layer.getActuatorName().toStdString();
    while (const auto fault = VQ::Animation::findXmlTextFault(name)) {
        name[fault->position] = '?'; // Each turn leaves one byte less that is at fault.
    }
    return QString::fromStdString(name);
}

// The layers of the keys, in an animation of their own.
std::unique_ptr<EditableAnimation> animationOf(const KeySelection::Keys& keys) {
    QMap<EditableMotionCurve*, KeySelection::Keys> byCurve;
    for (EditableMotionCurveKey* const key : keys) {
        if (key->getParentCurve() != nullptr && key->getParentCurve()->getParentLayer() != nullptr) {
            byCurve[key->getParentCurve()].insert(key);
        }
    }
    auto copy = std::make_unique<EditableAnimation>();
    if (byCurve.isEmpty()) {
        return copy;
    }
    EditableAnimation* const original = byCurve.firstKey()->getParentLayer()->getParentAnimation();
    if (original == nullptr) {
        return copy;
    }
    for (const EditableAnimationLayer* const layer : *original) { // In their order, which tells names apart.
        if (!byCurve.contains(layer->getCurve())) {
            continue;
        }
        VQ::Animation::AnimationLayer record;
        record.actuatorName = nameOf(*layer).toStdString();
        record.curve->setTimeUnit(layer->getCurve()->getTimeUnit());
        auto* const own = new EditableAnimationLayer(record);
        copy->push_back(own);
        for (const EditableMotionCurveKey* const key : std::as_const(byCurve[layer->getCurve()])) {
            own->getCurve()->insert(ZT::index(key), key->clone());
        }
    }
    return copy;
}

std::unique_ptr<EditableAnimation> animationIn(const QMimeData& data) {
    const QByteArray bytes = data.hasFormat(ownType) ? data.data(ownType) : data.text().toUtf8();
    std::istringstream stream(bytes.toStdString());
    const auto tree = VQ::Animation::readAnimationXml(stream);
    auto animation = std::make_unique<EditableAnimation>();
    if (!animation->deserialize(tree)) {
        throw std::runtime_error(EditableAnimation::problemIn(tree));
    }
    return animation;
}

} // namespace

KeyClipboard::KeyClipboard(Document& document)
    : _document(document) {}

bool KeyClipboard::canPaste(const QMimeData* data) {
    if (data == nullptr || data->hasFormat(ownType)) {
        return data != nullptr;
    }
    constexpr int beginning = 1000;
    const QString text = data->hasText() ? data->text().left(beginning) : QString();
    return text.contains("<animation");
}

std::unique_ptr<QMimeData> KeyClipboard::copy(const KeySelection::Keys& keys) {
    const auto animation = animationOf(keys);
    if (animation->empty()) {
        return nullptr;
    }
    std::ostringstream stream;
    VQ::Animation::writeAnimationXml(stream, animation->serialize());
    const QByteArray bytes = QByteArray::fromStdString(stream.str());
    auto data = std::make_unique<QMimeData>();
    data->setData(ownType, bytes);
    data->setText(QString::fromUtf8(bytes));
    return data;
}

KeyClipboard::Report KeyClipboard::paste(const QMimeData& data, unsigned int frame,
                                         EditableMotionCurve* fallback) {
    const auto animation = animationIn(data);
    unsigned int first = lastPossibleFrame;
    std::size_t keyCount = 0;
    std::vector<Placed> keys;
    QHash<QString, int> occurrences;
    QString problem;
    for (const EditableAnimationLayer* const layer : std::as_const(*animation)) {
        const QString name = layer->getActuatorName();
        EditableMotionCurve* target = _curveFor(name, occurrences[name]++, problem);
        if (target == nullptr && animation->size() == 1 && problem.isEmpty() &&
            _document.isEditable(fallback)) {
            target = fallback;
        }
        for (const auto& [at, key] : std::as_const(*layer->getCurve())) {
            ++keyCount;
            first = std::min(first, at);
            if (target != nullptr) {
                keys.push_back({target, at, key});
            }
        }
    }
    if (keyCount == 0) {
        refuse(tr("there are no keys to paste"));
    }
    if (keys.empty()) {
        refuse(!problem.isEmpty() ? problem : tr("no layer has the name of one that the keys come from"));
    }
    return {keyCount - keys.size(), _insert(keys, first, frame, tr("Paste keys"))};
}

KeyClipboard::Report KeyClipboard::duplicate(const KeySelection::Keys& keys) {
    std::vector<Placed> copies;
    unsigned int first = lastPossibleFrame;
    unsigned int last = 0;
    for (EditableMotionCurveKey* const key : keys) {
        if (_document.isEditable(key->getParentCurve())) {
            copies.push_back({key->getParentCurve(), ZT::index(key), key});
            first = std::min(first, copies.back().frame);
            last = std::max(last, copies.back().frame);
        }
    }
    if (copies.empty()) {
        return {};
    }
    if (last == lastPossibleFrame) {
        refuse(tr("there is no frame behind the last key"));
    }
    return {0, _insert(copies, first, last + 1U, tr("Duplicate keys"))};
}

// Null where it takes no keys. The problem is said where the layer is there.
EditableMotionCurve* KeyClipboard::_curveFor(const QString& name, int occurrence, QString& problem) const {
    for (int i = 0; i < _document.layerCount(); ++i) {
        EditableAnimationLayer* const layer = _document.layer(i);
        if (nameOf(*layer) == name && occurrence-- == 0) {
            if (_document.isEditable(layer->getCurve())) {
                return layer->getCurve();
            }
            problem = tr("the layer %1 is locked or hidden").arg(name);
        }
    }
    return nullptr;
}

std::size_t KeyClipboard::_insert(const std::vector<Placed>& keys, unsigned int from, unsigned int to,
                                  const QString& text) {
    const qint64 shift = qint64{to} - qint64{from};
    for (const Placed& each : keys) {
        if (qint64{each.frame} + shift > qint64{lastPossibleFrame}) {
            refuse(tr("keys would stand behind the last possible frame"));
        }
    }
    QMap<EditableMotionCurve*, EditableMotionCurve::KeysIndexMap> newcomers;
    KeySelection::Keys selected;
    std::size_t replaced = 0;
    for (const Placed& each : keys) {
        const auto frame = static_cast<unsigned int>(qint64{each.frame} + shift);
        EditableMotionCurveKey* const key = each.original->clone(); // The command owns it.
        newcomers[each.curve].insert(key, frame);
        selected.insert(key);
        replaced += each.curve->isIndexAvailable(frame) ? 0U : 1U;
    }
    auto command = std::make_unique<ZT::AnimCmd::AddCurveKeysCommand>(newcomers);
    command->setText(text);
    Macro::push(_document.history(), std::move(command));
    _document.selection().set(selected);
    return replaced;
}

} // namespace Editor
