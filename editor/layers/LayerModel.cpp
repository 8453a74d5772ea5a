#include "layers/LayerModel.h"

#include "document/Attempt.h"
#include "document/Document.h"
#include "document/LayerCommands.h"
#include "document/LayerName.h"
#include "document/Macro.h"
#include "layers/LayerCells.h"
#include "layers/LayerEdits.h"
#include "model/AnimationMarkers.h"

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>
#include <QUuid>

#include <algorithm>
#include <memory>
#include <utility>

namespace Editor {

namespace {

QString rowsType() {
    return QStringLiteral("application/x-curve-editor-layer-rows");
}

} // namespace

LayerModel::LayerModel(Document& document, QObject* parent)
    : QAbstractTableModel(parent)
    , _document(document)
    , _identity(QUuid::createUuid().toRfc4122()) {
    _timer.setSingleShot(true);
    _timer.setInterval(0);
    connect(&_timer, &QTimer::timeout, this, &LayerModel::_announceAll);
    connect(&document, &Document::changed, this, &LayerModel::_announceSoon);
    connect(&document, &Document::replaced, this, &LayerModel::_reset);
    connect(&document, &Document::lookChanged, this, &LayerModel::_announceRow);
    connect(&document, &Document::layerAboutToBeInserted, this, [this](int index) {
        beginInsertRows({}, index, index);
        _isChanging = true;
    });
    connect(&document, &Document::layerInserted, this, [this] { _end([this] { endInsertRows(); }); });
    connect(&document, &Document::layerAboutToBeRemoved, this, [this](int index) {
        beginRemoveRows({}, index, index);
        _isChanging = true;
    });
    connect(&document, &Document::layerRemoved, this, [this] { _end([this] { endRemoveRows(); }); });
    connect(&document, &Document::layerAboutToBeMoved, this, [this](int from, int to) {
        // Qt counts the moved row in its old place, too.
        _isChanging = beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    });
    connect(&document, &Document::layerMoved, this, [this] { _end([this] { endMoveRows(); }); });
    _observe();
}

template <class Action>
void LayerModel::_end(Action action) {
    if (std::exchange(_isChanging, false)) {
        action();
    } else {
        beginResetModel();
        endResetModel();
    }
}

void LayerModel::_observe() {
    connect(&_document.markers(), &ZT::AnimationMarkers::selectedIndexChanged, this,
            &LayerModel::_announceSoon);
}

void LayerModel::_announceSoon() {
    if (!_timer.isActive()) {
        _timer.start();
    }
}

void LayerModel::_reset() {
    beginResetModel();
    endResetModel();
    _observe();
}

void LayerModel::_announceRow(int layer) {
    Q_EMIT dataChanged(index(layer, 0), index(layer, columns - 1));
}

void LayerModel::_announceAll() {
    if (rowCount() > 0) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
    }
}

int LayerModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : _document.layerCount();
}

int LayerModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant LayerModel::data(const QModelIndex& index, int role) const {
    const bool isThere =
        checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid);
    return isThere ? LayerCells(_document).data(index.row(), index.column(), role) : QVariant();
}

QVariant LayerModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return role == Qt::DisplayRole ? QVariant(QString())
                                       : QVariant(); // Without a text Qt writes numbers.
    }
    return LayerCells::heading(section, role);
}

Qt::ItemFlags LayerModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) {
        return Qt::ItemIsDropEnabled; // Between the rows, never onto one.
    }
    Qt::ItemFlags flags =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    flags.setFlag(Qt::ItemIsEditable, index.column() == nameColumn);
    flags.setFlag(Qt::ItemIsUserCheckable, LayerCells::flagOf(index.column()).has_value());
    return flags;
}

bool LayerModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return false;
    }
    const int layer = index.row();
    bool isSet = false;
    const QString why = attempt([&] { isSet = _set(layer, index.column(), value, role); });
    if (!why.isEmpty()) {
        Q_EMIT refused(tr("Not done: %1.").arg(why));
    }
    if (isSet) {
        _announceRow(layer);
    }
    return isSet;
}

bool LayerModel::_set(int layer, int column, const QVariant& value, int role) {
    if (const auto flag = LayerCells::flagOf(column); flag && role == Qt::CheckStateRole) {
        LayerEdits(_document).set({layer}, *flag, value.toInt() == Qt::Checked);
        return true;
    }
    if (role == Qt::EditRole && column == colourColumn) {
        return _setColour(layer, value.value<QColor>());
    }
    return role == Qt::EditRole && column == nameColumn && _rename(layer, value.toString());
}

bool LayerModel::_rename(int layer, const QString& name) {
    if (const QString why = problemInName(name); !why.isEmpty()) {
        Q_EMIT refused(tr("Not renamed: %1").arg(why));
        return false;
    }
    if (name != _document.layer(layer)->getActuatorName()) {
        Macro::push(_document.history(), std::make_unique<RenameLayerCommand>(_document, layer, name));
    }
    return true;
}

bool LayerModel::_setColour(int layer, const QColor& colour) {
    LayerLook look = _document.look(layer);
    if (!colour.isValid()) {
        return false;
    }
    if (colour.rgba() != look.colour.rgba()) { // Comparison tells apart in which way it was made.
        look.colour = colour;
        Macro::push(_document.history(), std::make_unique<ChangeLookCommand>(_document, layer, look));
    }
    return true;
}

QStringList LayerModel::mimeTypes() const {
    return {rowsType()};
}

QMimeData* LayerModel::mimeData(const QModelIndexList& indexes) const {
    QVector<int> rows;
    for (const QModelIndex& index : indexes) {
        rows.append(index.row());
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    if (rows.isEmpty()) {
        return nullptr;
    }
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << _identity << rows;
    auto data = std::make_unique<QMimeData>();
    data->setData(rowsType(), bytes);
    return data.release(); // The drag owns it.
}

// Empty unless they are rows of this very model, in ascending order.
std::vector<int> LayerModel::_draggedRows(const QMimeData& data) const {
    QByteArray id;
    QVector<int> rows;
    QDataStream stream(data.data(rowsType()));
    stream >> id >> rows;
    const bool areOurs =
        stream.status() == QDataStream::Ok && id == _identity &&
        std::all_of(rows.begin(), rows.end(), [this](int row) { return row >= 0 && row < rowCount(); });
    return areOurs ? std::vector<int>(rows.begin(), rows.end()) : std::vector<int>();
}

bool LayerModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int /*column*/,
                                 const QModelIndex& parent) const {
    return data != nullptr && action == Qt::MoveAction && row <= rowCount() && !parent.isValid() &&
           !_draggedRows(*data).empty();
}

bool LayerModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                              const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent)) {
        return false;
    }
    const int to = row < 0 ? rowCount() : row; // -1: behind the last row
    const QString why = attempt([&] { LayerEdits(_document).move(_draggedRows(*data), to); });
    if (!why.isEmpty()) {
        Q_EMIT refused(tr("Not moved: %1.").arg(why));
    }
    return why.isEmpty();
}

} // namespace Editor
