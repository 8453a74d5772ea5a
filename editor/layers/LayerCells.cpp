#include "layers/LayerCells.h"

#include "document/Document.h"
#include "layers/LayerModel.h"
#include "model/AnimationMarkers.h"

#include <QColor>
#include <QLocale>

namespace Editor {

LayerCells::LayerCells(Document& document)
    : _document(document) {}

std::optional<LayerEdits::Flag> LayerCells::flagOf(int column) {
    switch (column) {
    case LayerModel::visibleColumn:
        return LayerEdits::Flag::visible;
    case LayerModel::muteColumn:
        return LayerEdits::Flag::mute;
    case LayerModel::lockedColumn:
        return LayerEdits::Flag::locked;
    default:
        return std::nullopt;
    }
}

QVariant LayerCells::data(int layer, int column, int role) const {
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return _displayed(layer, column);
    case Qt::CheckStateRole:
        return _checkState(layer, column);
    case Qt::DecorationRole:
        return column == LayerModel::colourColumn ? QVariant(_document.look(layer).colour) : QVariant();
    case Qt::TextAlignmentRole:
        return column == LayerModel::valueColumn ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case Qt::ToolTipRole:
        return _toolTip(layer, column);
    case Qt::AccessibleTextRole:
        return _accessibleText(layer, column);
    default:
        return {};
    }
}

QVariant LayerCells::_displayed(int layer, int column) const {
    if (column == LayerModel::nameColumn) {
        return _document.layer(layer)->getActuatorName();
    }
    if (column == LayerModel::valueColumn) {
        const float value = _document.layer(layer)->getCurve()->valueAt(_document.markers().selectedIndex());
        return QLocale().toString(double{value}, 'g', 6);
    }
    return {};
}

QVariant LayerCells::_checkState(int layer, int column) const {
    const auto flag = flagOf(column);
    if (!flag) {
        return {};
    }
    return LayerEdits(_document).isSet(layer, *flag) ? Qt::Checked : Qt::Unchecked;
}

QVariant LayerCells::_toolTip(int layer, int column) const {
    switch (column) {
    case LayerModel::visibleColumn:
        return tr("Show the layer's curve");
    case LayerModel::colourColumn:
        return tr("Colour of the layer's curve: double-click to change it");
    case LayerModel::nameColumn:
        return _document.layer(layer)->getActuatorName();
    case LayerModel::muteColumn:
        return tr("Mute: the actuator gets no values");
    case LayerModel::lockedColumn:
        return tr("Lock: the layer's keys cannot be edited");
    case LayerModel::valueColumn:
        return tr("Value at the current frame");
    default:
        return {};
    }
}

QVariant LayerCells::_accessibleText(int layer, int column) const {
    const LayerLook look = _document.look(layer);
    switch (column) {
    case LayerModel::visibleColumn:
        return look.isVisible ? tr("shown") : tr("hidden");
    case LayerModel::colourColumn:
        return tr("colour %1").arg(look.colour.name());
    case LayerModel::muteColumn:
        return _document.layer(layer)->isMute() ? tr("muted") : tr("not muted");
    case LayerModel::lockedColumn:
        return look.isLocked ? tr("locked") : tr("not locked");
    default:
        return _displayed(layer, column);
    }
}

// Narrow columns have icons, which show what they are; a heading would be wider than they are.
QVariant LayerCells::heading(int column, int role) {
    const bool isWide = column == LayerModel::nameColumn || column == LayerModel::valueColumn;
    if (role == Qt::DisplayRole && !isWide) {
        return QString();
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole) {
        return {};
    }
    switch (column) {
    case LayerModel::visibleColumn:
        return tr("Show");
    case LayerModel::colourColumn:
        return tr("Colour");
    case LayerModel::nameColumn:
        return tr("Layer");
    case LayerModel::muteColumn:
        return tr("Mute");
    case LayerModel::lockedColumn:
        return tr("Lock");
    case LayerModel::valueColumn:
        return tr("Value");
    default:
        return {};
    }
}

} // namespace Editor
