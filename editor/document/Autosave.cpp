#include "document/Autosave.h"

#include "document/AnimationFile.h"
#include "document/Document.h"

#include <boost/property_tree/ptree.hpp>

#include <exception>
#include <utility>

namespace Editor {

Autosave::Autosave(Document& document)
    : _document(document) {
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, &Autosave::write);
    connect(&document.history(), &QUndoStack::indexChanged, this, &Autosave::_follow);
    connect(&document, &Document::pathChanged, this, &Autosave::_follow);
    connect(&document, &Document::spanChanged, this, &Autosave::_follow);
}

Autosave::~Autosave() = default;

// Any exception is the end of a timer's slot only: there is time to try again.
void Autosave::write() {
    _timer.stop();
    if (!_document.isModified()) {
        return;
    }
    try {
        _write();
        _hasFailed = false;
    } catch (const std::exception& error) {
        _waiting.start();
        _timer.start(longestDelay);
        if (!std::exchange(_hasFailed, true)) {
            Q_EMIT failed(QString::fromUtf8(error.what()));
        }
    }
}

void Autosave::_write() {
    const auto tree = _document.tree();
    if (_copy) {
        AnimationFile(_copy->path()).save(tree);
    } else {
        auto copy = CrashCopy::reserve(_document.path());
        AnimationFile(copy.path()).save(tree);
        _copy = std::move(copy);
    }
    _waiting.invalidate();
}

void Autosave::adopt(CrashCopy copy) {
    if (copy.holder() == CrashCopy::Holder::nobody) {
        discard();
        _copy = std::move(copy);
    }
}

void Autosave::discard() {
    _timer.stop();
    _waiting.invalidate();
    if (_copy) {
        _copy->remove();
        _copy.reset();
    }
}

void Autosave::setGestureActive(bool isActive) {
    _isGestureActive = isActive;
    if (isActive) {
        _timer.stop();
    } else if (_waiting.isValid()) {
        _start();
    }
}

void Autosave::_follow() {
    if (!_document.isModified()) {
        discard();
        return;
    }
    if (!_waiting.isValid()) {
        _waiting.start();
    }
    if (!_isGestureActive) {
        _start();
    }
}

void Autosave::_start() {
    const qint64 left = longestDelay - _waiting.elapsed();
    _timer.start(static_cast<int>(qBound(qint64{0}, left, qint64{delay})));
}

} // namespace Editor
