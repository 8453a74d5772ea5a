#pragma once

#include <QString>
#include <QStringList>

namespace ZT {
class EditableAnimation;
class EditableAnimationLayer;
} // namespace ZT

namespace Editor {

/// What an animation holds and what is doubtful about it, in words: for a look at a file without a window.
class AnimationSummary {
public:
    /// Reads the animation once and keeps nothing of it. O(keys).
    explicit AnimationSummary(const ZT::EditableAnimation& animation);

    /// Numbers of layers and keys, the frames from first to last key, the rates; then each layer; then the
    /// problems. Lines, each with its end.
    QString text() const;

    /// Empty layers, doubled actuator names, layers of different rates, keys whose value or handle is not
    /// finite: one line without end for each. Empty where nothing is doubtful.
    const QStringList& problems() const noexcept { return _problems; }

private:
    void _addLayer(const ZT::EditableAnimationLayer& layer);

    QStringList _facts;
    QStringList _layers;
    QStringList _problems;
};

} // namespace Editor
