#include "model/AnimationMarkers.h"

#include "model/EditableAnimation.h"

namespace ZT {

AnimationMarkers::AnimationMarkers(EditableAnimation* animation)
    : QObject(animation)
    , _animation(animation) {}

void AnimationMarkers::setSelectedIndex(unsigned int index) {
    if (_selectedIndex == index) {
        return;
    }
    _selectedIndex = index;
    Q_EMIT selectedIndexChanged(index);
}

void AnimationMarkers::setStartIndex(unsigned int index) {
    if (_startIndex == index) {
        return;
    }
    _startIndex = index;
    Q_EMIT startIndexChanged(index);
    if (_endIndex < _startIndex) {
        _endIndex = _startIndex;
        Q_EMIT endIndexChanged(_endIndex);
    }
}

void AnimationMarkers::setEndIndex(unsigned int index) {
    if (_endIndex == index) {
        return;
    }
    _endIndex = index;
    Q_EMIT endIndexChanged(index);
    if (_startIndex > _endIndex) {
        _startIndex = _endIndex;
        Q_EMIT startIndexChanged(_startIndex);
    }
}

void AnimationMarkers::setRangeStartIndex(unsigned int index) {
    if (_rangeStartIndex == index) {
        return;
    }
    _rangeStartIndex = index;
    Q_EMIT rangeStartIndexChanged(index);
    if (_rangeEndIndex < _rangeStartIndex) {
        _rangeEndIndex = _rangeStartIndex;
        Q_EMIT rangeEndIndexChanged(_rangeEndIndex);
    }
}

void AnimationMarkers::setRangeEndIndex(unsigned int index) {
    if (_rangeEndIndex == index) {
        return;
    }
    _rangeEndIndex = index;
    Q_EMIT rangeEndIndexChanged(index);
    if (_rangeStartIndex > _rangeEndIndex) {
        _rangeStartIndex = _rangeEndIndex;
        Q_EMIT rangeStartIndexChanged(_rangeStartIndex);
    }
}

void AnimationMarkers::setRangeVisible(bool visible) {
    if (_rangeVisible == visible) {
        return;
    }
    _rangeVisible = visible;
    Q_EMIT rangeVisibilityChanged(visible);
}

void AnimationMarkers::resetStartFrame() {
    if (_startIndex == 1) {
        return;
    }
    _startIndex = 1;
    Q_EMIT startIndexChanged(1);
}

void AnimationMarkers::resetEndFrame() {
    const unsigned int greatest = _animation != nullptr ? _animation->getGreaterIndex() : 0U;
    if (_endIndex == greatest) {
        return;
    }
    _endIndex = greatest;
    Q_EMIT endIndexChanged(greatest);
}

} // namespace ZT
