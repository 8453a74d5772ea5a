#pragma once

namespace ZT::AnimCmd {

/// How far a mergeable command's drag has come: what every mergeWith() keeps in the same way.
class MergeState {
public:
    /// @p finalCommand: whether the step ends its drag.
    explicit MergeState(bool finalCommand) noexcept
        : _finalCommand(finalCommand) {}

    /// A command that refused a merge is final, until it accepts another one.
    bool isFinal() const noexcept { return !_lastMergeAccepted || _finalCommand; }

    /// Starts an attempt, which counts as refused until accept(). Returns whether the drag is still open.
    bool beginMerge() noexcept {
        _lastMergeAccepted = false;
        return !_finalCommand;
    }

    /// The attempt succeeded: the drag is open or ended as @p absorbed was built or merged.
    void accept(const MergeState& absorbed) noexcept {
        _finalCommand = absorbed._finalCommand;
        _lastMergeAccepted = true;
    }

private:
    bool _lastMergeAccepted = true;
    bool _finalCommand;
};

} // namespace ZT::AnimCmd
