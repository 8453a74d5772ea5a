#include "layers/ToggleDelegate.h"

#include "curves/ReadableColour.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace Editor {

namespace {

// All in a square of 16 units.

QPainterPath eye(bool isOpen) {
    QPainterPath path(QPointF(1.5, 8.0));
    path.quadTo(8.0, 15.5, 14.5, 8.0);
    if (isOpen) {
        path.quadTo(8.0, 0.5, 1.5, 8.0);
        path.addEllipse(QPointF(8.0, 8.0), 2.0, 2.0);
    } else {
        for (const double x : {3.5, 8.0, 12.5}) {
            path.moveTo(x, 11.5);
            path.lineTo(8.0 + (x - 8.0) * 1.3, 13.5);
        }
    }
    return path;
}

QPainterPath speaker(bool isMute) {
    QPainterPath path(QPointF(2.0, 6.0));
    for (const QPointF& corner : {QPointF(4.5, 6.0), QPointF(8.5, 2.5), QPointF(8.5, 13.5),
                                  QPointF(4.5, 10.0), QPointF(2.0, 10.0), QPointF(2.0, 6.0)}) {
        path.lineTo(corner);
    }
    if (isMute) {
        path.moveTo(10.5, 6.0);
        path.lineTo(14.5, 10.0);
        path.moveTo(14.5, 6.0);
        path.lineTo(10.5, 10.0);
    } else {
        path.moveTo(10.5, 5.5);
        path.quadTo(13.0, 8.0, 10.5, 10.5);
    }
    return path;
}

QPainterPath padlock(bool isClosed) {
    QPainterPath path;
    path.addRect(3.0, 7.5, 10.0, 6.5);
    path.moveTo(5.0, 7.5);
    path.cubicTo(5.0, 0.5, 11.0, 0.5, 11.0, isClosed ? 7.5 : 4.5);
    return path;
}

QPainterPath pathOf(ToggleDelegate::Icon icon, bool isChecked) {
    switch (icon) {
    case ToggleDelegate::Icon::eye:
        return eye(isChecked);
    case ToggleDelegate::Icon::speaker:
        return speaker(isChecked);
    case ToggleDelegate::Icon::padlock:
        return padlock(isChecked);
    }
    return {};
}

} // namespace

ToggleDelegate::ToggleDelegate(Icon icon, QObject* parent)
    : QStyledItemDelegate(parent)
    , _icon(icon) {}

void ToggleDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const bool isChecked = cell.checkState == Qt::Checked;
    cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    const QStyle* const style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);

    const bool isSelected = (cell.state & QStyle::State_Selected) != 0;
    const QColor ground = cell.palette.color(isSelected ? QPalette::Highlight : QPalette::Base);
    const QColor text = cell.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    const double side = cell.fontMetrics.height();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QRectF(cell.rect).center() - QPointF(0.5 * side, 0.5 * side));
    painter->scale(side / 16.0, side / 16.0);
    painter->setPen(
        QPen(isChecked ? text : mixed(ground, text, 0.5), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(pathOf(_icon, isChecked));
    painter->restore();
}

bool ToggleDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) {
    const bool isPress =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (isPress || event->type() == QEvent::MouseButtonRelease) {
        const auto* const mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() != Qt::LeftButton || !option.rect.contains(mouse->pos())) {
            return false;
        }
        if (isPress) {
            return true;
        }
    } else if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Space) {
        return false;
    }
    const bool isChecked = index.data(Qt::CheckStateRole) == Qt::Checked;
    return model->setData(index, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

} // namespace Editor
