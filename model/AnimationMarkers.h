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
///
/// A slot may read and set everything at every signal, but not destroy the markers. What it throws reaches
/// the caller of the setter, when the value is stored.
class ZT_MODEL_EXPORT AnimationMarkers : public QObject {
    Q_OBJECT

public:
    /// All frames 1, the range hidden. @p animation becomes the QObject parent and owns the markers.
    explicit AnimationMarkers(ZT::EditableAnimation* animation);

    /// The owner, as the constructor was given it.
    ZT::EditableAnimation* animation() const noexcept { return _animation; }
    /// Any frame, also outside both pairs.
    unsigned int selectedIndex() const noexcept { return _selectedIndex; }
    /// The first and the last frame that play. Only a reset may leave the start behind the end.
    ///@{
    unsigned int startIndex() const noexcept { return _startIndex; }
    unsigned int endIndex() const noexcept { return _endIndex; }
    ///@}
    /// The first and the last frame of the user range, whether it is shown or not; the start is never behind
    /// the end once a setter is done.
    ///@{
    unsigned int rangeStartIndex() const noexcept { return _rangeStartIndex; }
    unsigned int rangeEndIndex() const noexcept { return _rangeEndIndex; }
    ///@}
    /// Whether views show the user range. Nothing else depends on it.
    bool isRangeVisible() const noexcept { return _rangeVisible; }

Q_SIGNALS:
    /// setSelectedIndex() has stored another frame.
    void selectedIndexChanged(unsigned int index);
    /// One end of a pair is at another frame. An end that follows is stored after the first signal of the
    /// two: at that one the start may be behind the end.
    ///@{
    void startIndexChanged(unsigned int index);
    void endIndexChanged(unsigned int index);
    void rangeStartIndexChanged(unsigned int index);
    void rangeEndIndexChanged(unsigned int index);
    ///@}
    /// The user range was shown or hidden; its frames are the same.
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
    /// Shows or hides the user range, whose frames stay. Emits rangeVisibilityChanged().
    void setRangeVisible(bool visible);
    /// Start becomes 1. The end stays.
    void resetStartFrame();
    /// End becomes the animation's greatest frame as it is, 0 without keys. Deliberate: the start stays, even
    /// past the end; see resettingTheEndLeavesTheStartWhereItIs().
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
