#pragma once

#include "document/KeyEdits.h"

#include <QObject>
#include <QTimer>

namespace Editor {

class Document;

/// What the selected keys have in common, for actions and fields that show it. Looked up once for each turn
/// of the event loop in which anything changed, however many changes there were; where thousands of keys
/// change all the time, as in a drag, so seldom that looking takes a small part of the time.
class SelectionState : public QObject {
    Q_OBJECT

public:
    explicit SelectionState(Document& document);

    /// As of the last changed().
    const KeyEdits::Common& common() const noexcept { return _common; }
    /// How many keys are selected, and on how many layers.
    int keyCount() const noexcept { return _keyCount; }
    int layerCount() const noexcept { return _layerCount; }
    /// Of the selected keys; 0 where there are none.
    unsigned int firstFrame() const noexcept { return _firstFrame; }
    unsigned int lastFrame() const noexcept { return _lastFrame; }

public Q_SLOTS:
    /// Looks at once and emits changed().
    void update();

Q_SIGNALS:
    /// The keys, or what they hold, may be other ones.
    void changed();

private:
    void _updateNext();
    void _updateSoon();

    Document& _document;
    QTimer _timer;
    KeyEdits::Common _common;
    int _keyCount = 0;
    int _layerCount = 0;
    unsigned int _firstFrame = 0;
    unsigned int _lastFrame = 0;
};

} // namespace Editor
