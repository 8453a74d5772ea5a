#include "model/EditableAnimation.h"

#include "model/AnimationMarkers.h"

#include <algorithm>
#include <memory>

namespace ZT {

EditableAnimation::EditableAnimation(QObject* parent)
    : QObject(parent)
    , _markers(new AnimationMarkers(this)) {}

EditableAnimation::EditableAnimation(const VQ::Animation::Animation& animation, QObject* parent)
    : EditableAnimation(parent) {
    for (const VQ::Animation::AnimationLayer& layer : animation) {
        Animation::push_back(new EditableAnimationLayer(layer));
    }
    for (EditableAnimationLayer* const layer : *this) {
        _connectLayer(layer);
    }
}

EditableAnimation::~EditableAnimation() = default;

EditableAnimation::iterator EditableAnimation::begin() {
    return _toEditableIterator(Animation::begin());
}
EditableAnimation::iterator EditableAnimation::end() {
    return _toEditableIterator(Animation::end());
}
EditableAnimation::const_iterator EditableAnimation::begin() const {
    return _toEditableIterator(Animation::begin());
}
EditableAnimation::const_iterator EditableAnimation::end() const {
    return _toEditableIterator(Animation::end());
}

EditableAnimation::iterator
EditableAnimation::_toEditableIterator(VQ::Animation::Animation::iterator position) {
    return iterator(position, ToEditable());
}
EditableAnimation::const_iterator
EditableAnimation::_toEditableIterator(VQ::Animation::Animation::const_iterator position) const {
    return const_iterator(position, ToEditable());
}

EditableAnimationLayer* EditableAnimation::operator[](unsigned long i) {
    return i < size() ? *(begin() + static_cast<std::ptrdiff_t>(i)) : nullptr;
}
const EditableAnimationLayer* EditableAnimation::operator[](unsigned long i) const {
    return i < size() ? *(begin() + static_cast<std::ptrdiff_t>(i)) : nullptr;
}

EditableAnimationLayer* EditableAnimation::getLayer(const QString& name) {
    const auto position = _toEditableIterator(find(name.toStdString()));
    return position == end() ? nullptr : *position;
}

VQ::Animation::Animation EditableAnimation::baseAnimation() const {
    return *this;
}

unsigned int EditableAnimation::getGreaterIndex() const {
    unsigned int greatest = 0;
    for (const EditableAnimationLayer* const layer : *this) {
        greatest = std::max(greatest, layer->getCurve()->getGreaterIndex());
    }
    return greatest;
}

VQ::Animation::AnimationLayer* EditableAnimation::createLayer() const {
    auto layer = std::make_unique<EditableAnimationLayer>();
    _connectLayer(layer.get());
    return layer.release();
}

void EditableAnimation::push_back(EditableAnimationLayer* pLayer) {
    insert(end(), pLayer);
}

EditableAnimation::iterator EditableAnimation::insert(iterator pBefore, EditableAnimationLayer* pLayer) {
    std::unique_ptr<EditableAnimationLayer> owned(pLayer);
    if (pLayer != nullptr) {
        _adopt(pLayer);
    }
    return _toEditableIterator(Animation::insert(pBefore.base(), owned.release()));
}

EditableAnimation::iterator EditableAnimation::erase(iterator pPosition) {
    return _toEditableIterator(Animation::erase(pPosition.base()));
}

std::unique_ptr<EditableAnimationLayer> EditableAnimation::release(iterator position) {
    if (position == end()) {
        return nullptr;
    }
    VQ::Animation::AnimationLayer* const record = Animation::release(position.base()).release();
    std::unique_ptr<EditableAnimationLayer> layer(EditableAnimationLayer::_toEditable(*record));
    _disconnectLayer(layer.get());
    return layer;
}

void EditableAnimation::clear() {
    Animation::clear();
}

void EditableAnimation::_onGreaterCurveIndexChanged(unsigned int newGreater, unsigned int previousGreater) {
    if (_greaterIndex < newGreater) {
        _greaterIndex = newGreater;
        Q_EMIT greaterIndexChanged();
        return;
    }
    // A curve that did not hold the maximum cannot have lowered it.
    if (_greaterIndex == newGreater || _greaterIndex > previousGreater) {
        return;
    }
    const unsigned int greatest = getGreaterIndex();
    if (greatest != _greaterIndex) {
        _greaterIndex = greatest;
        Q_EMIT greaterIndexChanged();
    }
}

// A layer that this animation created is connected already; twice would count its signals twice.
void EditableAnimation::_adopt(EditableAnimationLayer* layer) const {
    if (layer->getParentAnimation() != this) {
        _connectLayer(layer);
    }
}

void EditableAnimation::_connectLayer(EditableAnimationLayer* layer) const {
    layer->_setParentAnimation(const_cast<EditableAnimation*>(this));
    connect(layer, SIGNAL(nameChanged(QString)), this, SIGNAL(layersChanged()));
    connect(layer, SIGNAL(curveChanged()), this, SIGNAL(layersChanged()));
    connect(layer, SIGNAL(greaterIndexChanged(uint, uint)), this,
            SLOT(_onGreaterCurveIndexChanged(uint, uint)));
}

void EditableAnimation::_disconnectLayer(EditableAnimationLayer* layer) const {
    layer->_setParentAnimation(nullptr);
    disconnect(layer, SIGNAL(nameChanged(QString)), this, SIGNAL(layersChanged()));
    disconnect(layer, SIGNAL(curveChanged()), this, SIGNAL(layersChanged()));
    disconnect(layer, SIGNAL(greaterIndexChanged(uint, uint)), this,
               SLOT(_onGreaterCurveIndexChanged(uint, uint)));
}

} // namespace ZT
