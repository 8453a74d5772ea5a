#pragma once

#include <QTableView>

#include <vector>

class QSortFilterProxyModel;

namespace Editor {

/// The rows of a LayerModel that a filter lets through, and which of them are selected: layers are meant and
/// said by their places in the document, whatever rows they have.
class LayerTable : public QTableView {
    Q_OBJECT

public:
    /// @p layers is over a LayerModel and must outlive the table.
    LayerTable(QSortFilterProxyModel& layers, QWidget* parent);

    /// -1 where there is none.
    int currentLayer() const;
    /// Selects the layer's row alone, unless it is the current one. -1, or a layer without a row: none.
    void setCurrentLayer(int layer);
    /// Whether there is such a layer, but no row for it.
    bool isFilteredOut(int layer) const;

    /// In ascending order.
    std::vector<int> selectedLayers() const;
    /// Selects @p count rows from @p first on, and no other.
    void selectLayers(int first, int count);

Q_SIGNALS:
    /// Another layer is the current one, or it is at another place in the document.
    void currentLayerChanged(int layer);
    /// Other rows are selected.
    void selectedLayersChanged();
    /// A colour is to be chosen for the current layer.
    void colourDoubleClicked();

private:
    void _setBehaviour();
    void _setDelegates();
    void _sizeColumns();
    void _observe();
    void _noteCurrent();
    QModelIndex _rowOf(int layer) const;

    QSortFilterProxyModel& _layers;
    int _announced = -1; ///< the current layer as last announced
};

} // namespace Editor
