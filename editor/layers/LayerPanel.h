#pragma once

#include "layers/LayerEdits.h"

#include <QWidget>

#include <functional>
#include <utility>
#include <vector>

class QLineEdit;
class QSortFilterProxyModel;

namespace Editor {

class LayerModel;
class LayerTable;

/// The list of layers: found by name, renamed, coloured, shown, muted and locked in place, dragged to another
/// place, added, duplicated and removed. What can be done to layers is in actions(), for a menu as well.
class LayerPanel : public QWidget {
    Q_OBJECT

public:
    /// @p document must outlive the panel.
    explicit LayerPanel(Document& document, QWidget* parent = nullptr);

    /// -1 where there is none.
    int currentLayer() const;

public Q_SLOTS:
    /// Selects the layer's row alone; a filter that hides it is emptied. -1, or a layer that there is not:
    /// none.
    void setCurrentLayer(int index);
    /// Behind the current layer, or behind the last one.
    void addLayer();
    /// The rest is done to the layers whose rows are selected.
    void duplicateLayer();
    void removeLayer();
    void moveLayersUp();
    void moveLayersDown();
    void selectKeys();
    /// Asks for the current layer's colour.
    void chooseColour();

Q_SIGNALS:
    /// Another layer is the current one, or it is at another place in the list.
    void currentLayerChanged(int index);
    /// An edit could not be done; @p why is for a status bar.
    void refused(const QString& why);

private:
    void _makeActions();
    QWidget* _makeButtons();
    QAction* _addAction(const QString& text, const QString& shortText, void (LayerPanel::*slot)());
    void _addToggle(const QString& text, const char* name, const QKeySequence& keys, LayerEdits::Flag flag);
    void _toggle(LayerEdits::Flag flag);
    void _attempt(const std::function<void()>& edit);
    void _selectLayers(int first, int count);
    void _moveLayers(const std::vector<int>& layers, int index);
    void _updateActions();

    Document& _document;
    LayerModel* _model;                ///< a child
    QSortFilterProxyModel* _filtered;  ///< a child
    QLineEdit* _filter;                ///< a child
    LayerTable* _table;                ///< a child
    QList<QAction*> _selectionActions; ///< of actions(), those that need a selected layer
    std::vector<std::pair<QAction*, LayerEdits::Flag>> _toggles; ///< of those, the ones with a check mark
};

} // namespace Editor
