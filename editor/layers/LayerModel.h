#pragma once

#include <QAbstractTableModel>
#include <QByteArray>
#include <QTimer>

#include <vector>

namespace Editor {

class Document;

/// The layers of a document as a table for Qt's views. Keeps nothing: LayerCells reads the document when it
/// is asked. Edits and rows that are dragged become commands of the document's history.
class LayerModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column : int {
        visibleColumn, ///< a check box
        colourColumn,  ///< a QColor
        nameColumn,    ///< edited in place
        muteColumn,    ///< a check box
        lockedColumn,  ///< a check box
        valueColumn,   ///< the curve's value at the current frame
        columns
    };

    /// @p document must outlive the model.
    explicit LayerModel(Document& document, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Pushes one command: Qt::CheckStateRole for the check boxes, Qt::EditRole for colour and name. Returns
    /// false, and does nothing, for anything else, a colour that is none and a name that a file cannot hold:
    /// refused() says why.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    /// The rows of @p indexes. Only this model can take them.
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    /// Moves the rows in front of @p row as one entry of the history.
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

Q_SIGNALS:
    /// An edit could not be done; @p why is for people.
    void refused(const QString& why);

private:
    bool _set(int layer, int column, const QVariant& value, int role);
    bool _rename(int layer, const QString& name);
    bool _setColour(int layer, const QColor& colour);
    std::vector<int> _draggedRows(const QMimeData& data) const;
    /// Ends a change of rows by @p action. Where another slot threw before this model heard of the beginning,
    /// all rows are read anew.
    template <class Action>
    void _end(Action action);
    void _observe();
    void _reset();
    void _announceRow(int layer);
    void _announceSoon();
    void _announceAll();

    Document& _document;
    bool _isChanging = false; ///< rows are about to come, go or move
    QTimer _timer;            ///< runs while values may differ from what was announced
    QByteArray _identity;     ///< tells what is dragged here from what is dragged anywhere else
};

} // namespace Editor
