#include "fuzz/support/AnyCommand.h"
#include "fuzz/support/DirectEdit.h"
#include "fuzz/support/EditState.h"
#include "fuzz/support/Law.h"
#include "model/EditableMotionCurveExceptions.h"

#include <QUndoStack>

#include <string>

namespace {

/// A history that the bytes walk. A strict story edits by whole drags and single commands only, so that
/// undoing everything must give back what was there; a wild one mixes in everything else that an editor may
/// do.
class Story {
public:
    explicit Story(Bytes& bytes)
        : _isWild(bytes.yesOrNo())
        , _scene(bytes) {
        if (_isWild) {
            _history.setUndoLimit(static_cast<int>(_scene.below(4)));
        }
        _scene.requireSound();
    }

    void tell() {
        const EditState before(_scene.animation());
        for (int step = 0; step < mostSteps && !_scene.isAtEnd(); ++step) {
            _isWild ? _goOnWildly() : _goOnStrictly();
            _scene.requireSound();
        }
        _walkTo(0);
        if (!_isWild) {
            const EditState after(_scene.animation());
            requireLaw(after == before, "undoing everything gives back what was there",
                       after.text() + "\ninstead of\n" + before.text() + _texts());
        }
        _walkTo(_history.count());
    }

private:
    static constexpr int mostSteps = 100;

    void _goOnStrictly() {
        switch (_scene.below(4)) {
        case 0:
            return _history.push(AnyCommand::single(_scene));
        case 1:
            return _dragToTheEnd();
        case 2:
            return _walkTo(_history.index() - 1);
        default:
            return _walkTo(static_cast<int>(_scene.below(static_cast<unsigned int>(_history.count()) + 1)));
        }
    }

    void _goOnWildly() {
        switch (_scene.below(8)) {
        case 0:
            return DirectEdit::gentle(_scene);
        case 1:
            return DirectEdit::destructive(_scene, _history);
        case 2:
            // A step that may merge with a drag of other keys.
            return _history.push(AnyCommand::Drag(_scene).step(_scene.yesOrNo()));
        case 3:
            return _history.clear();
        default:
            return _goOnStrictly();
        }
    }

    void _dragToTheEnd() {
        AnyCommand::Drag drag(_scene);
        const unsigned int steps = 1 + _scene.below(4);
        for (unsigned int step = 1; step <= steps; ++step) {
            _history.push(drag.step(step == steps));
            _scene.requireSound();
        }
    }

    void _walkTo(int target) {
        while (target >= 0 && _history.index() != target) {
            const bool isUndo = _history.index() > target;
            try {
                isUndo ? _history.undo() : _history.redo();
            } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
                requireLaw(_isWild, "commands find all frames as they left them");
                for (ZT::EditableMotionCurveKey* const key : failure.failedKeys) {
                    _scene.own(key);
                }
                return _history.clear();
            }
            _scene.requireSound();
        }
    }

    std::string _texts() const {
        std::string result = "\nby";
        for (int i = 0; i < _history.count(); ++i) {
            result += '\n' + _history.text(i).toStdString();
        }
        return result;
    }

    bool _isWild;
    EditScene _scene;
    QUndoStack _history; ///< dies before the scene
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    Story(bytes).tell();
    return 0;
}
