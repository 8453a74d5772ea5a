#pragma once

#include <QCoreApplication>
#include <QString>

#include <vector>

namespace Editor {

class Document;

/// The edits of the list of layers, each one entry of the history. What would change nothing leaves none.
class LayerEdits {
    Q_DECLARE_TR_FUNCTIONS(Editor::LayerEdits)

public:
    /// What a layer is or is not.
    enum class Flag { visible, mute, locked };

    explicit LayerEdits(Document& document);

    /// Puts an empty layer, at the rate of the first one, in front of @p index. Returns where it is.
    int add(int index);
    /// Puts a copy of each of @p layers, which ascend, behind it: keys with their flags, and the look.
    /// Returns where the first copy is; -1 without layers.
    int duplicate(const std::vector<int>& layers);
    void remove(const std::vector<int>& layers);
    /// Moves @p layers, which ascend, in front of the one that is at @p index now.
    void move(const std::vector<int>& layers, int index);
    bool isSet(int layer, Flag flag) const;
    /// Shows or hides, silences or lets be heard, locks or unlocks @p layers.
    void set(const std::vector<int>& layers, Flag flag, bool isOn);
    /// Selects the keys of those of @p layers that may be edited; no entry of the history.
    void selectKeys(const std::vector<int>& layers);

    /// @p name, or, where a layer is called so, the same with the first free number behind it.
    QString uniqueName(const QString& name) const;

private:
    Document& _document;
};

} // namespace Editor
