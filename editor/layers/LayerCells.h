#pragma once

#include "layers/LayerEdits.h"

#include <QCoreApplication>
#include <QVariant>

#include <optional>

namespace Editor {

class Document;

/// What the cells of LayerModel and its headings show and say, for each role of Qt's. Keeps nothing: it reads
/// the document when it is asked.
class LayerCells {
    Q_DECLARE_TR_FUNCTIONS(Editor::LayerCells)

public:
    /// @p document must outlive the cells.
    explicit LayerCells(Document& document);

    /// Of a layer that there is, in a LayerModel::Column.
    QVariant data(int layer, int column, int role) const;
    static QVariant heading(int column, int role);
    /// What the check box of a LayerModel::Column shows; empty for a column without.
    static std::optional<LayerEdits::Flag> flagOf(int column);

private:
    QVariant _displayed(int layer, int column) const;
    QVariant _checkState(int layer, int column) const;
    QVariant _toolTip(int layer, int column) const;
    QVariant _accessibleText(int layer, int column) const;

    Document& _document;
};

} // namespace Editor
