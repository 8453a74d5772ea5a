#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>

namespace ZT {
class EditableMotionCurve;
class EditableMotionCurveKey;
} // namespace ZT

namespace Editor {

class Document;

/// The selected keys, of any layers. A key that leaves its curve, is deleted, or whose layer is locked,
/// hidden or taken away is selected no more.
class KeySelection : public QObject {
    Q_OBJECT

public:
    using Keys = QSet<ZT::EditableMotionCurveKey*>;

    explicit KeySelection(Document& document);

    const Keys& keys() const noexcept { return _keys; }
    bool isEmpty() const { return _keys.isEmpty(); }
    bool contains(ZT::EditableMotionCurveKey* key) const { return _keys.contains(key); }

    /// Those of @p keys that may be edited. Emits changed() if the selection is another one.
    void set(Keys keys);
    void add(const Keys& keys);
    void toggle(const Keys& keys);
    void clear() { set({}); }
    /// All keys that may be edited.
    void selectAll();
    /// All of those but the ones that are selected.
    void invert();

    /// Forgets the keys that may no longer be edited.
    void prune();
    /// Hears of keys that leave the curve.
    void observe(ZT::EditableMotionCurve* curve) const;
    /// Forgets all at once, also where keys are dead already.
    void forget();

Q_SIGNALS:
    /// Other keys are selected. For keys that have left their curves, once in the next turn of the event
    /// loop.
    void changed();

private:
    void _remove(ZT::EditableMotionCurveKey* key);
    Keys _allKeys() const;

    Document& _document;
    Keys _keys;
    QTimer _later; ///< tells of keys that have left
};

} // namespace Editor
