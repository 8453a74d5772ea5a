#pragma once

#include "document/KeySelection.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <memory>
#include <vector>

class QMimeData;

namespace ZT {
class EditableAnimation;
}

namespace Editor {

class Document;

/// Keys on their way through the clipboard: their records and flags with their layers' names and their
/// frames, as the library's own XML. What other programs put there is looked at with the same care as a file.
class KeyClipboard {
public:
    explicit KeyClipboard(Document& document);

    /// Whether the data may hold keys, as far as a short look tells: under the editor's own type, or as text.
    static bool canPaste(const QMimeData* data);

    /// The keys under the editor's own type and as text. Null where there are no keys.
    static std::unique_ptr<QMimeData> copy(const KeySelection::Keys& keys);

    /// What the user has to know of keys that came in.
    struct Report {
        std::size_t leftOut = 0;  ///< whose layers are missing, locked or hidden
        std::size_t replaced = 0; ///< that stood where others have come to stand
    };

    /// Puts the keys in so that the first of them stands at @p frame, each on the editable layer of its
    /// layer's name (of several layers of one name the first on the first, the second on the second), or,
    /// where all come from one layer that is not there, on @p fallback, which may be null. Keys that stand at
    /// their frames are replaced. Selects what came in. One entry of the history.
    ///
    /// Throws std::runtime_error, saying why, when the data is damaged, keys would stand behind the last
    /// possible frame, or no layer takes a key; nothing has changed then.
    Report paste(const QMimeData& data, unsigned int frame, ZT::EditableMotionCurve* fallback);

    /// The same with the keys themselves, on their own layers, right behind the last of them. Leaves the
    /// clipboard alone and does nothing without keys. None is left out. Throws std::runtime_error when they
    /// would stand behind the last possible frame; nothing has changed then.
    Report duplicate(const KeySelection::Keys& keys);

private:
    /// A key to be and the place for it.
    struct Placed {
        ZT::EditableMotionCurve* curve;
        unsigned int frame;
        const ZT::EditableMotionCurveKey* original; ///< to be copied
    };

    ZT::EditableMotionCurve* _curveFor(const QString& name, int occurrence, QString& problem) const;
    /// Moves all by the same number of frames so that @p from comes to @p to. Returns how many were replaced.
    std::size_t _insert(const std::vector<Placed>& keys, unsigned int from, unsigned int to,
                        const QString& text);

    Document& _document;
};

} // namespace Editor
