#include "layers/LayerTable.h"

#include "layers/LayerModel.h"
#include "layers/ToggleDelegate.h"

#include <QHeaderView>
#include <QItemSelection>
#include <QSortFilterProxyModel>
#include <QStyle>

#include <algorithm>

namespace Editor {

LayerTable::LayerTable(QSortFilterProxyModel& layers, QWidget* parent)
    : QTableView(parent)
    , _layers(layers) {
    setModel(&layers);
    setAccessibleName(tr("Layers"));
    _setBehaviour();
    _setDelegates();
    _sizeColumns();
    _observe();
}

void LayerTable::_setBehaviour() {
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    setTabKeyNavigation(false); // Tab leaves the table; arrow keys go through its cells.
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setDragDropMode(QAbstractItemView::DragDrop); // The model takes nothing but its own rows.
    setDefaultDropAction(Qt::MoveAction);
    setDragDropOverwriteMode(false); // Otherwise a row that was dragged away would be emptied.
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void LayerTable::_setDelegates() {
    using Icon = ToggleDelegate::Icon;
    setItemDelegateForColumn(LayerModel::visibleColumn, new ToggleDelegate(Icon::eye, this));
    setItemDelegateForColumn(LayerModel::muteColumn, new ToggleDelegate(Icon::speaker, this));
    setItemDelegateForColumn(LayerModel::lockedColumn, new ToggleDelegate(Icon::padlock, this));
}

void LayerTable::_sizeColumns() {
    const QFontMetrics font = fontMetrics();
    const int iconWidth = font.height() + 10;
    const int valueWidth = font.horizontalAdvance(QStringLiteral("-0.123456")) + 12;
    const int nameWidth = 10 * font.averageCharWidth();
    QHeaderView* const header = horizontalHeader();
    header->setHighlightSections(false);
    header->setMinimumSectionSize(iconWidth);
    header->setDefaultSectionSize(iconWidth);
    header->setSectionResizeMode(QHeaderView::Fixed);
    header->resizeSection(LayerModel::valueColumn, valueWidth);
    header->setSectionResizeMode(LayerModel::nameColumn, QHeaderView::Stretch);
    setMinimumWidth((LayerModel::columns - 2) * iconWidth + valueWidth + nameWidth +
                    style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(font.height() + 8);
}

void LayerTable::_observe() {
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.column() == LayerModel::colourColumn) {
            Q_EMIT colourDoubleClicked();
        }
    });
    const QItemSelectionModel* const selection = selectionModel();
    connect(selection, &QItemSelectionModel::currentRowChanged, this, &LayerTable::_noteCurrent);
    connect(selection, &QItemSelectionModel::selectionChanged, this, &LayerTable::selectedLayersChanged);
    connect(&_layers, &QAbstractItemModel::rowsInserted, this, &LayerTable::_noteCurrent);
    connect(&_layers, &QAbstractItemModel::rowsRemoved, this, &LayerTable::_noteCurrent);
    connect(&_layers, &QAbstractItemModel::rowsMoved, this, &LayerTable::_noteCurrent);
    connect(&_layers, &QAbstractItemModel::layoutChanged, this, &LayerTable::_noteCurrent);
    connect(&_layers, &QAbstractItemModel::modelReset, this, [this] {
        _noteCurrent();
        Q_EMIT selectedLayersChanged(); // The selection model says nothing of it.
    });
}

QModelIndex LayerTable::_rowOf(int layer) const {
    return _layers.mapFromSource(_layers.sourceModel()->index(layer, LayerModel::nameColumn));
}

int LayerTable::currentLayer() const {
    return _layers.mapToSource(currentIndex()).row();
}

void LayerTable::setCurrentLayer(int layer) {
    if (layer == currentLayer()) {
        return;
    }
    const QModelIndex row = _rowOf(layer);
    setCurrentIndex(row);
    if (!row.isValid()) {
        clearSelection();
    }
}

bool LayerTable::isFilteredOut(int layer) const {
    return _layers.sourceModel()->hasIndex(layer, LayerModel::nameColumn) && !_rowOf(layer).isValid();
}

std::vector<int> LayerTable::selectedLayers() const {
    std::vector<int> layers;
    for (const QModelIndex& row : selectionModel()->selectedRows()) {
        layers.push_back(_layers.mapToSource(row).row());
    }
    std::sort(layers.begin(), layers.end());
    return layers;
}

void LayerTable::selectLayers(int first, int count) {
    QItemSelection rows;
    for (int layer = first; layer < first + count; ++layer) {
        const QModelIndex row = _rowOf(layer);
        rows.select(row, row);
    }
    selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void LayerTable::_noteCurrent() {
    const int current = currentLayer();
    if (current != _announced) {
        _announced = current;
        Q_EMIT currentLayerChanged(current);
    }
}

} // namespace Editor
