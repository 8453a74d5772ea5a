#include "layers/LayerPanel.h"

#include "document/Attempt.h"
#include "document/Document.h"
#include "layers/LayerModel.h"
#include "layers/ToggleDelegate.h"

#include <QAction>
#include <QColorDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStyle>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Editor {

LayerPanel::LayerPanel(Document& document, QWidget* parent)
    : QWidget(parent)
    , _document(document)
    , _model(new LayerModel(document, this))
    , _filtered(new QSortFilterProxyModel(this))
    , _filter(new QLineEdit(this))
    , _table(new QTableView(this)) {
    _filter->setPlaceholderText(tr("Filter layers by name"));
    _filter->setAccessibleName(tr("Filter layers by name"));
    _filter->setClearButtonEnabled(true);
    connect(_filter, &QLineEdit::textChanged, _filtered, &QSortFilterProxyModel::setFilterFixedString);

    connect(_model, &LayerModel::refused, this, &LayerPanel::refused);
    _filtered->setSourceModel(_model);
    _filtered->setFilterKeyColumn(LayerModel::nameColumn);
    _filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);

    _makeTable();
    _makeActions();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(_filter);
    layout->addWidget(_table, 1);
    layout->addWidget(_makeButtons());
    _updateActions();
}

void LayerPanel::_makeTable() {
    _table->setModel(_filtered);
    _table->setAccessibleName(tr("Layers"));
    _table->setSelectionBehavior(QAbstractItemView::SelectRows);
    _table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    _table->setTabKeyNavigation(false); // Tab leaves the table; arrow keys go through its cells.
    _table->setShowGrid(false);
    _table->setAlternatingRowColors(true);
    _table->setWordWrap(false);
    _table->setDragDropMode(QAbstractItemView::DragDrop); // The model takes nothing but its own rows.
    _table->setDefaultDropAction(Qt::MoveAction);
    _table->setDragDropOverwriteMode(false); // Otherwise a row that was dragged away would be emptied.
    _table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    _table->verticalHeader()->hide();
    _table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    _table->verticalHeader()->setDefaultSectionSize(_table->fontMetrics().height() + 8);

    using Icon = ToggleDelegate::Icon;
    _table->setItemDelegateForColumn(LayerModel::visibleColumn, new ToggleDelegate(Icon::eye, _table));
    _table->setItemDelegateForColumn(LayerModel::muteColumn, new ToggleDelegate(Icon::speaker, _table));
    _table->setItemDelegateForColumn(LayerModel::lockedColumn, new ToggleDelegate(Icon::padlock, _table));
    _sizeColumns();

    connect(_table, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.column() == LayerModel::colourColumn) {
            chooseColour();
        }
    });
    const QItemSelectionModel* const selection = _table->selectionModel();
    connect(selection, &QItemSelectionModel::currentRowChanged, this, &LayerPanel::_noteCurrent);
    connect(selection, &QItemSelectionModel::selectionChanged, this, &LayerPanel::_updateActions);
    connect(_filtered, &QAbstractItemModel::rowsInserted, this, &LayerPanel::_noteCurrent);
    connect(_filtered, &QAbstractItemModel::rowsRemoved, this, &LayerPanel::_noteCurrent);
    connect(_filtered, &QAbstractItemModel::rowsMoved, this, &LayerPanel::_noteCurrent);
    connect(_filtered, &QAbstractItemModel::layoutChanged, this, &LayerPanel::_noteCurrent);
    connect(_filtered, &QAbstractItemModel::modelReset, this, [this] {
        _noteCurrent();
        _updateActions();
    });
}

void LayerPanel::_sizeColumns() {
    const QFontMetrics font = _table->fontMetrics();
    const int iconWidth = font.height() + 10;
    const int valueWidth = font.horizontalAdvance(QStringLiteral("-0.123456")) + 12;
    const int nameWidth = 10 * font.averageCharWidth();
    QHeaderView* const header = _table->horizontalHeader();
    header->setHighlightSections(false);
    header->setMinimumSectionSize(iconWidth);
    header->setDefaultSectionSize(iconWidth);
    header->setSectionResizeMode(QHeaderView::Fixed);
    header->resizeSection(LayerModel::valueColumn, valueWidth);
    header->setSectionResizeMode(LayerModel::nameColumn, QHeaderView::Stretch);
    _table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _table->setMinimumWidth((LayerModel::columns - 2) * iconWidth + valueWidth + nameWidth +
                            style()->pixelMetric(QStyle::PM_ScrollBarExtent));
}

void LayerPanel::_makeActions() {
    _addAction(tr("Add layer"), tr("Add"), &LayerPanel::addLayer);
    _selectionActions << _addAction(tr("Duplicate layer"), tr("Duplicate"), &LayerPanel::duplicateLayer)
                      << _addAction(tr("Remove layer"), tr("Remove"), &LayerPanel::removeLayer)
                      << _addAction(tr("Move layer up"), QString(), &LayerPanel::moveLayersUp)
                      << _addAction(tr("Move layer down"), QString(), &LayerPanel::moveLayersDown)
                      << _addAction(tr("Select keys"), QString(), &LayerPanel::selectKeys)
                      << _addAction(tr("Change colour..."), QString(), &LayerPanel::chooseColour);
    actions().at(3)->setShortcut(Qt::ALT | Qt::Key_Up);
    actions().at(4)->setShortcut(Qt::ALT | Qt::Key_Down);
    for (QAction* const action : actions()) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    }
    _addToggle(tr("Show curve"), "showLayer", Qt::CTRL | Qt::SHIFT | Qt::Key_H, LayerEdits::Flag::visible);
    _addToggle(tr("Mute"), "muteLayer", Qt::CTRL | Qt::SHIFT | Qt::Key_M, LayerEdits::Flag::mute);
    _addToggle(tr("Lock"), "lockLayer", Qt::CTRL | Qt::SHIFT | Qt::Key_L, LayerEdits::Flag::locked);
    // A click turns the mark, whatever it does to the layers.
    connect(_model, &QAbstractItemModel::dataChanged, this, &LayerPanel::_updateActions);
    _table->setContextMenuPolicy(Qt::ActionsContextMenu);
    _table->addActions(actions());
}

QAction* LayerPanel::_addAction(const QString& text, const QString& shortText, void (LayerPanel::*slot)()) {
    auto* const action = new QAction(text, this);
    action->setIconText(shortText.isEmpty() ? text : shortText);
    connect(action, &QAction::triggered, this, slot);
    addAction(action);
    return action;
}

void LayerPanel::_addToggle(const QString& text, const char* name, const QKeySequence& keys,
                            LayerEdits::Flag flag) {
    auto* const action = new QAction(text, this);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(keys);
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, [this, flag] {
        _attempt([this, flag] { _toggle(flag); });
        _updateActions();
    });
    addAction(action);
    _selectionActions << action;
    _toggles.emplace_back(action, flag);
}

// Where the layers differ, the first time all become so.
void LayerPanel::_toggle(LayerEdits::Flag flag) {
    LayerEdits edits(_document);
    const std::vector<int> layers = _selectedLayers();
    const bool isAll =
        std::all_of(layers.begin(), layers.end(), [&](int layer) { return edits.isSet(layer, flag); });
    edits.set(layers, flag, !isAll);
}

void LayerPanel::_attempt(const std::function<void()>& edit) {
    if (const QString why = attempt(edit); !why.isEmpty()) {
        Q_EMIT refused(tr("Not done: %1.").arg(why));
    }
}

QWidget* LayerPanel::_makeButtons() {
    auto* const buttons = new QWidget(this);
    auto* const layout = new QHBoxLayout(buttons);
    layout->setContentsMargins({});
    for (QAction* const action : actions().mid(0, 3)) {
        auto* const button = new QToolButton(buttons);
        button->setDefaultAction(action);
        button->setAccessibleName(action->text());
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        layout->addWidget(button);
    }
    return buttons;
}

int LayerPanel::currentLayer() const {
    return _filtered->mapToSource(_table->currentIndex()).row();
}

void LayerPanel::setCurrentLayer(int index) {
    if (index == currentLayer()) {
        return;
    }
    const QModelIndex source = _model->index(index, LayerModel::nameColumn);
    if (source.isValid() && !_filtered->mapFromSource(source).isValid()) {
        _filter->clear();
    }
    const QModelIndex shown = _filtered->mapFromSource(source);
    _table->setCurrentIndex(shown);
    if (!shown.isValid()) {
        _table->clearSelection();
    }
}

std::vector<int> LayerPanel::_selectedLayers() const {
    std::vector<int> layers;
    for (const QModelIndex& index : _table->selectionModel()->selectedRows()) {
        layers.push_back(_filtered->mapToSource(index).row());
    }
    std::sort(layers.begin(), layers.end());
    return layers;
}

void LayerPanel::_selectLayers(int first, int count) {
    setCurrentLayer(first);
    QItemSelection rows;
    for (int layer = first; layer < first + count; ++layer) {
        const QModelIndex index = _filtered->mapFromSource(_model->index(layer, 0));
        rows.select(index, index);
    }
    _table->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void LayerPanel::addLayer() {
    const int current = currentLayer();
    _attempt([&] {
        setCurrentLayer(LayerEdits(_document).add(current < 0 ? _document.layerCount() : current + 1));
    });
}

void LayerPanel::duplicateLayer() {
    _attempt([&] { setCurrentLayer(LayerEdits(_document).duplicate(_selectedLayers())); });
}

void LayerPanel::removeLayer() {
    _attempt([&] { LayerEdits(_document).remove(_selectedLayers()); });
    if (currentLayer() >= 0) {
        _selectLayers(currentLayer(), 1); // The row that came up to the place is current, but not selected.
    }
}

void LayerPanel::moveLayersUp() {
    const std::vector<int> layers = _selectedLayers();
    if (!layers.empty()) {
        _moveLayers(layers, std::max(0, layers.front() - 1));
    }
}

void LayerPanel::moveLayersDown() {
    const std::vector<int> layers = _selectedLayers();
    if (!layers.empty()) {
        _moveLayers(layers, std::min(_document.layerCount(), layers.back() + 2));
    }
}

void LayerPanel::_moveLayers(const std::vector<int>& layers, int index) {
    _attempt([&] {
        LayerEdits(_document).move(layers, index);
        const auto before =
            std::count_if(layers.begin(), layers.end(), [index](int layer) { return layer < index; });
        _selectLayers(index - static_cast<int>(before), static_cast<int>(layers.size()));
    });
}

void LayerPanel::selectKeys() {
    _attempt([&] { LayerEdits(_document).selectKeys(_selectedLayers()); });
}

void LayerPanel::chooseColour() {
    const int layer = currentLayer();
    if (layer < 0) {
        return;
    }
    const QColor colour =
        QColorDialog::getColor(_document.look(layer).colour, this, tr("Colour of the layer"));
    // The list may be another one when the dialog closes.
    if (colour.isValid() && layer == currentLayer()) {
        _model->setData(_model->index(layer, LayerModel::colourColumn), colour);
    }
}

void LayerPanel::_noteCurrent() {
    const int current = currentLayer();
    if (current != _announced) {
        _announced = current;
        Q_EMIT currentLayerChanged(current);
    }
}

void LayerPanel::_updateActions() {
    const bool isAnySelected = _table->selectionModel()->hasSelection();
    for (QAction* const action : qAsConst(_selectionActions)) {
        action->setEnabled(isAnySelected);
    }
    const LayerEdits edits(_document);
    const std::vector<int> layers = _selectedLayers();
    for (const auto& [action, flag] : _toggles) {
        action->setChecked(!layers.empty() &&
                           std::all_of(layers.begin(), layers.end(), [&edits, flag = flag](int layer) {
                               return edits.isSet(layer, flag);
                           }));
    }
}

} // namespace Editor
