#pragma once

#include <QObject>

class QWidget;

namespace Editor {

/// Opens the context menu of the widget that has the focus by Shift+F10, which not all platforms turn into a
/// context menu of their own as they do with the menu key.
class ContextMenuKey : public QObject {
    Q_OBJECT

public:
    /// Works in @p window, which owns it.
    explicit ContextMenuKey(QWidget& window);

private:
    static void _open();
};

} // namespace Editor
