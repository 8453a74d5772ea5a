#include "document/Document.h"

#include "document/AnimationData.h"
#include "document/EditorAttributes.h"
#include "document/KeySelection.h"
#include "model/AnimationMarkers.h"
#include "model/FirstException.h"

#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <array>
#include <utility>

namespace Editor {

namespace {

constexpr double usualFramesPerSecond = 25.0;

void setMarkers(ZT::AnimationMarkers& markers, const MarkerFrames& frames) {
    markers.setStartIndex(frames.start);
    markers.setEndIndex(frames.end);
    markers.setSelectedIndex(frames.selected);
    markers.setRangeStartIndex(frames.rangeStart);
    markers.setRangeEndIndex(frames.rangeEnd);
    markers.setRangeVisible(frames.isRangeVisible);
}

MarkerFrames framesOf(const ZT::AnimationMarkers& markers) {
    return {markers.selectedIndex(),   markers.startIndex(),    markers.endIndex(),
            markers.rangeStartIndex(), markers.rangeEndIndex(), markers.isRangeVisible()};
}

/// From the first key, at frame 1 at the latest, to the last one; where there is not that much, what a first
/// gesture needs.
MarkerFrames spanOf(const ZT::EditableAnimation& animation) {
    constexpr unsigned int lastOfNewOnes = 100;
    unsigned int first = 1;
    for (const ZT::EditableAnimationLayer* const layer : animation) {
        const ZT::EditableMotionCurve& curve = *layer->getCurve();
        first = curve.empty() ? first : std::min(first, curve.begin()->first);
    }
    const unsigned int last = animation.getGreaterIndex();
    return {first, first, last > first ? last : lastOfNewOnes};
}

/// To the place @p to in the list without it.
template <class Iterator>
void moveElement(Iterator list, int from, int to) {
    if (from < to) {
        std::rotate(list + from, list + from + 1, list + to + 1);
    } else {
        std::rotate(list + to, list + from, list + from + 1);
    }
}

} // namespace

Document::Document(QObject* parent)
    : QObject(parent)
    , _animation(std::make_unique<ZT::EditableAnimation>())
    , _selection(std::make_unique<KeySelection>(*this)) {
    connect(&_history, &QUndoStack::cleanChanged, this, &Document::pathChanged);
    setMarkers(markers(), spanOf(*_animation));
    _observe();
    _keepSpan();
}

Document::~Document() {
    disconnect(&_history, nullptr, this, nullptr);
    _history.clear();
}

// All that may run short of memory comes first: the old animation stays where it does.
void Document::replace(AnimationData data, const QString& path) {
    std::vector<LayerLook> looks;
    for (std::size_t i = 0; i < data.animation->size(); ++i) {
        const bool isKnown = i < data.looks.size() && data.looks[i];
        looks.push_back(isKnown ? *data.looks[i] : LayerLook{colourAt(static_cast<int>(i))});
    }
    setMarkers(*data.animation->getMarkers(), data.markers.value_or(spanOf(*data.animation)));
    _history.clear(); // First: a drag under way looks at the selection when it is finished.
    _selection->forget();
    _animation = std::move(data.animation);
    _looks = std::move(looks);
    _observe();
    _path = path;
    _isUnsaved = false;
    _keepSpan();
    Q_EMIT replaced();
    Q_EMIT changed();
    Q_EMIT pathChanged();
}

boost::property_tree::ptree Document::tree() const {
    auto tree = _animation->serialize();
    writeEditorAttributes(tree, _looks, framesOf(markers()));
    return tree;
}

void Document::setSaved(const QString& path) {
    _path = path;
    _isUnsaved = false;
    _keepSpan();
    _history.setClean();
    Q_EMIT pathChanged();
}

void Document::setUnsaved() {
    if (!std::exchange(_isUnsaved, true)) {
        Q_EMIT pathChanged();
    }
}

Document::Span Document::_span() const {
    return {markers().startIndex(), markers().endIndex()};
}

void Document::_keepSpan() {
    _savedSpan = _span();
    _isSpanMoved = false;
}

void Document::_compareSpan() {
    const bool isMoved = _span() != _savedSpan;
    if (std::exchange(_isSpanMoved, isMoved) != isMoved) {
        Q_EMIT pathChanged();
    }
    Q_EMIT spanChanged();
}

void Document::setDragged(bool isDragged) {
    const bool wasModified = isModified();
    _isDragged = isDragged;
    if (isModified() != wasModified) {
        Q_EMIT pathChanged();
    }
}

ZT::EditableAnimationLayer* Document::layer(int index) const {
    return index < 0 ? nullptr : (*_animation)[static_cast<unsigned long>(index)];
}

int Document::indexOf(const ZT::EditableAnimationLayer* layer) const {
    for (int i = 0; i < layerCount(); ++i) {
        if (this->layer(i) == layer) {
            return i;
        }
    }
    return -1;
}

// Steps of the golden angle keep neighbours apart, and three lightnesses those whom hue alone does not
// separate.
QColor Document::colourAt(int index) {
    constexpr int goldenAngle = 137;
    constexpr std::array<int, 3> lightnesses{105, 150, 190};
    return QColor::fromHsl((200 + index * goldenAngle) % 360, 165,
                           lightnesses[static_cast<std::size_t>(index % 3)]);
}

bool Document::isEditable(const ZT::EditableMotionCurve* curve) const {
    const int index = curve == nullptr ? -1 : indexOf(curve->getParentLayer());
    return index >= 0 && look(index).isVisible && !look(index).isLocked;
}

double Document::framesPerSecond() const {
    if (_animation->empty()) {
        return usualFramesPerSecond;
    }
    const auto unit = layer(0)->getCurve()->getTimeUnit().count();
    return static_cast<double>(unit.denominator()) / static_cast<double>(unit.numerator());
}

// Both lists grow before anything is changed or said. That of the animation keeps the room of a layer that
// has been in it.
void Document::_makeRoom() {
    _looks.reserve(_looks.size() + 1);
    _animation->push_back(new ZT::EditableAnimationLayer);
    _animation->release(_animation->end() - 1);
}

void Document::insertLayer(int index, std::unique_ptr<ZT::EditableAnimationLayer>&& layer,
                           const LayerLook& look) {
    _makeRoom();
    ZT::FirstException thrown;
    thrown.guard([&] { Q_EMIT layerAboutToBeInserted(index); });
    _animation->insert(_animation->begin() + index, layer.release());
    _looks.insert(_looks.begin() + index, look);
    thrown.guard([&] { _observe(); });
    thrown.guard([&] { Q_EMIT layerInserted(index); });
    thrown.guard([&] { Q_EMIT changed(); });
    thrown.rethrow();
}

void Document::takeLayer(int index, std::unique_ptr<ZT::EditableAnimationLayer>& layer, LayerLook& look) {
    ZT::FirstException thrown;
    thrown.guard([&] { Q_EMIT layerAboutToBeRemoved(index); });
    layer = _animation->release(_animation->begin() + index);
    look = this->look(index);
    _looks.erase(_looks.begin() + index);
    thrown.guard([&] { _selection->prune(); });
    thrown.guard([&] { Q_EMIT layerRemoved(index); });
    thrown.guard([&] { Q_EMIT changed(); });
    thrown.rethrow();
}

void Document::moveLayer(int from, int to) {
    if (from == to) {
        return;
    }
    ZT::FirstException thrown;
    thrown.guard([&] { Q_EMIT layerAboutToBeMoved(from, to); });
    moveElement(_animation->begin().base().base(), from, to); // Pointers, which nobody has to own meanwhile.
    moveElement(_looks.begin(), from, to);
    thrown.guard([&] { Q_EMIT layerMoved(from, to); });
    thrown.guard([&] { Q_EMIT changed(); });
    thrown.rethrow();
}

void Document::setLook(int index, const LayerLook& look) {
    LayerLook& own = _looks.at(static_cast<std::size_t>(index));
    if (own != look) {
        own = look;
        ZT::FirstException thrown;
        thrown.guard([&] { _selection->prune(); });
        thrown.guard([&] { Q_EMIT lookChanged(index); });
        thrown.guard([&] { Q_EMIT changed(); });
        thrown.rethrow();
    }
}

void Document::_observe() {
    ZT::EditableAnimation* const animation = _animation.get();
    connect(animation, &ZT::EditableAnimation::layersChanged, this, &Document::changed, Qt::UniqueConnection);
    connect(&markers(), &ZT::AnimationMarkers::startIndexChanged, this, &Document::_compareSpan,
            Qt::UniqueConnection);
    connect(&markers(), &ZT::AnimationMarkers::endIndexChanged, this, &Document::_compareSpan,
            Qt::UniqueConnection);
    for (ZT::EditableAnimationLayer* const layer : *animation) {
        connect(layer, &ZT::EditableAnimationLayer::muteChanged, this, &Document::changed,
                Qt::UniqueConnection);
        _selection->observe(layer->getCurve());
    }
}

} // namespace Editor
