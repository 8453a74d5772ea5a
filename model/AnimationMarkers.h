#pragma once

#include "model/Export.h"

#include <QObject>

namespace ZT {

class EditableAnimation;

/// The frame markers that an editor shows over one animation: the selected frame, the span that plays and a
/// user range. Frames are counted from 1 here.
///
/// Each setter does nothing when the value is the stored one; otherwise it stores, then emits. Setting one
/// end of a pair past the other takes the other end along, whose signal comes second. The resets do not.
class ZT_MODEL_EXPORT AnimationMarkers : public QObject {
    Q_OBJECT

public:
    /// All frames 1, the range hidden. @p animation becomes the QObject parent and owns the markers.
    explicit AnimationMarkers(ZT::EditableAnimation* animation);

    ZT::EditableAnimation* animation() const noexcept { return _animation; }
    unsigned int selectedIndex() const noexcept { return _selectedIndex; }
    unsigned int startIndex() const noexcept { return _startIndex; }
    unsigned int endIndex() const noexcept { return _endIndex; }
    unsigned int rangeStartIndex() const noexcept { return _rangeStartIndex; }
    unsigned int rangeEndIndex() const noexcept { return _rangeEndIndex; }
    bool isRangeVisible() const noexcept { return _rangeVisible; }

Q_SIGNALS:
    void selectedIndexChanged(unsigned int index);
    void startIndexChanged(unsigned int index);
    void endIndexChanged(unsigned int index);
    void rangeStartIndexChanged(unsigned int index);
    void rangeEndIndexChanged(unsigned int index);
    void rangeVisibilityChanged(bool visible);

public Q_SLOTS:
    /// Not clamped.
    void setSelectedIndex(unsigned int index);
    /// Emits startIndexChanged(), then endIndexChanged() if the end had to follow.
    void setStartIndex(unsigned int index);
    /// Emits endIndexChanged(), then startIndexChanged() if the start had to follow.
    void setEndIndex(unsigned int index);
    /// Emits rangeStartIndexChanged(), then rangeEndIndexChanged() if the end had to follow.
    void setRangeStartIndex(unsigned int index);
    /// Emits rangeEndIndexChanged(), then rangeStartIndexChanged() if the start had to follow.
    void setRangeEndIndex(unsigned int index);
    void setRangeVisible(bool visible);
    /// Start becomes 1. The end stays.
    void resetStartFrame();
    /// End becomes the animation's greatest frame. Deliberate: the start stays, even past the end; see
    /// resettingTheEndLeavesTheStartWhereItIs().
    void resetEndFrame();

private:
    ZT::EditableAnimation* _animation;
    quint32 _selectedIndex = 1;
    quint32 _startIndex = 1;
    quint32 _endIndex = 1;
    quint32 _rangeStartIndex = 1;
    quint32 _rangeEndIndex = 1;
    bool _rangeVisible = false;
};

} // namespace ZT
