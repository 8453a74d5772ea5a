#pragma once

#include <QStyledItemDelegate>

class QPainterPath;

namespace Editor {

/// Shows a cell with a check state as an icon, which is seen in light and dark palettes alike, and toggles it
/// by a click anywhere in the cell or by Space.
class ToggleDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    enum class Icon : int { eye, speaker, padlock };

    ToggleDelegate(Icon icon, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    Icon _icon;
};

} // namespace Editor
