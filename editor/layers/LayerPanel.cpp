#include "layers/LayerPanel.h"

#include "document/Attempt.h"
#include "document/Document.h"
#include "layers/LayerModel.h"
#include "layers/LayerTable.h"

#include <QAction>
#include <QColorDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Editor {

namespace {

/// A child of @p parent.
QSortFilterProxyModel* filteredByName(LayerModel* model, QObject* parent) {
    auto* const filtered = new QSortFilterProxyModel(parent);
    filtered->setSourceModel(model);
    filtered->setFilterKeyColumn(LayerModel::nameColumn);
    filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);
    return filtered;
}

} // namespace

LayerPanel::LayerPanel(Document& document, QWidget* parent)
    : QWidget(parent)
    , _document(document)
    , _model(new LayerModel(document, this))
    , _filtered(filteredByName(_model, this))
    , _filter(new QLineEdit(this))
    , _table(new LayerTable(*_filtered, this)) {
    _filter->setPlaceholderText(tr("Filter layers by name"));
    _filter->setAccessibleName(tr("Filter layers by name"));
    _filter->setClearButtonEnabled(true);
    connect(_filter, &QLineEdit::textChanged, _filtered, &QSortFilterProxyModel::setFilterFixedString);

    connect(_model, &LayerModel::refused, this, &LayerPanel::refused);
    connect(_table, &LayerTable::currentLayerChanged, this, &LayerPanel::currentLayerChanged);
    connect(_table, &LayerTable::selectedLayersChanged, this, &LayerPanel::_updateActions);
    connect(_table, &LayerTable::colourDoubleClicked, this, &LayerPanel::chooseColour);
    _makeActions();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(_filter);
    layout->addWidget(_table, 1);
    layout->addWidget(_makeButtons());
    _updateActions();
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
    const std::vector<int> layers = _table->selectedLayers();
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
    return _table->currentLayer();
}

void LayerPanel::setCurrentLayer(int index) {
    if (_table->isFilteredOut(index)) {
        _filter->clear();
    }
    _table->setCurrentLayer(index);
}

void LayerPanel::_selectLayers(int first, int count) {
    setCurrentLayer(first);
    _table->selectLayers(first, count);
}

void LayerPanel::addLayer() {
    const int current = currentLayer();
    _attempt([&] {
        setCurrentLayer(LayerEdits(_document).add(current < 0 ? _document.layerCount() : current + 1));
    });
}

void LayerPanel::duplicateLayer() {
    _attempt([&] { setCurrentLayer(LayerEdits(_document).duplicate(_table->selectedLayers())); });
}

void LayerPanel::removeLayer() {
    _attempt([&] { LayerEdits(_document).remove(_table->selectedLayers()); });
    if (currentLayer() >= 0) {
        _selectLayers(currentLayer(), 1); // The row that came up to the place is current, but not selected.
    }
}

void LayerPanel::moveLayersUp() {
    const std::vector<int> layers = _table->selectedLayers();
    if (!layers.empty()) {
        _moveLayers(layers, std::max(0, layers.front() - 1));
    }
}

void LayerPanel::moveLayersDown() {
    const std::vector<int> layers = _table->selectedLayers();
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
    _attempt([&] { LayerEdits(_document).selectKeys(_table->selectedLayers()); });
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

void LayerPanel::_updateActions() {
    const LayerEdits edits(_document);
    const std::vector<int> layers = _table->selectedLayers();
    for (QAction* const action : qAsConst(_selectionActions)) {
        action->setEnabled(!layers.empty());
    }
    for (const auto& [action, flag] : _toggles) {
        action->setChecked(!layers.empty() &&
                           std::all_of(layers.begin(), layers.end(), [&edits, flag = flag](int layer) {
                               return edits.isSet(layer, flag);
                           }));
    }
}

} // namespace Editor
