#include "model/AnimationMarkers.h"

#include "model/EditableAnimation.h"
#include "model/FirstException.h"

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
    FirstException thrown;
    thrown.guard([&] { Q_EMIT startIndexChanged(index); });
    if (_endIndex < _startIndex) {
        _endIndex = _startIndex;
        thrown.guard([&] { Q_EMIT endIndexChanged(_endIndex); });
    }
    thrown.rethrow();
}

void AnimationMarkers::setEndIndex(unsigned int index) {
    if (_endIndex == index) {
        return;
    }
    _endIndex = index;
    FirstException thrown;
    thrown.guard([&] { Q_EMIT endIndexChanged(index); });
    if (_startIndex > _endIndex) {
        _startIndex = _endIndex;
        thrown.guard([&] { Q_EMIT startIndexChanged(_startIndex); });
    }
    thrown.rethrow();
}

void AnimationMarkers::setRangeStartIndex(unsigned int index) {
    if (_rangeStartIndex == index) {
        return;
    }
    _rangeStartIndex = index;
    FirstException thrown;
    thrown.guard([&] { Q_EMIT rangeStartIndexChanged(index); });
    if (_rangeEndIndex < _rangeStartIndex) {
        _rangeEndIndex = _rangeStartIndex;
        thrown.guard([&] { Q_EMIT rangeEndIndexChanged(_rangeEndIndex); });
    }
    thrown.rethrow();
}

void AnimationMarkers::setRangeEndIndex(unsigned int index) {
    if (_rangeEndIndex == index) {
        return;
    }
    _rangeEndIndex = index;
    FirstException thrown;
    thrown.guard([&] { Q_EMIT rangeEndIndexChanged(index); });
    if (_rangeStartIndex > _rangeEndIndex) {
        _rangeStartIndex = _rangeEndIndex;
        thrown.guard([&] { Q_EMIT rangeStartIndexChanged(_rangeStartIndex); });
    }
    thrown.rethrow();
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
