#include "window/SelectionState.h"

#include "document/Document.h"
#include "document/KeySelection.h"

#include <QSet>

#include <algorithm>
#include <limits>

namespace Editor {

SelectionState::SelectionState(Document& document)
    : _document(document) {
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, &SelectionState::update);
    connect(&document, &Document::changed, this, &SelectionState::_updateSoon);
    connect(&document.selection(), &KeySelection::changed, this, &SelectionState::_updateNext);
}

void SelectionState::update() {
    _timer.stop();
    const KeySelection::Keys& keys = _document.selection().keys();
    _common = KeyEdits::commonOf(keys);
    _keyCount = static_cast<int>(keys.size());
    _firstFrame = keys.isEmpty() ? 0 : std::numeric_limits<unsigned int>::max();
    _lastFrame = 0;
    QSet<const ZT::EditableMotionCurve*> curves;
    for (const ZT::EditableMotionCurveKey* const key : keys) {
        const unsigned int frame = ZT::index(key);
        _firstFrame = std::min(_firstFrame, frame);
        _lastFrame = std::max(_lastFrame, frame);
        curves.insert(key->getParentCurve());
    }
    _layerCount = static_cast<int>(curves.size());
    Q_EMIT changed();
}

void SelectionState::_updateNext() {
    _timer.start(0);
}

// The same keys as before: what is shown of them may wait. A look takes up to a microsecond for each.
void SelectionState::_updateSoon() {
    constexpr int keysInAMillisecond = 100;
    if (!_timer.isActive()) {
        _timer.start(static_cast<int>(_document.selection().keys().size()) / keysInAMillisecond);
    }
}

} // namespace Editor
