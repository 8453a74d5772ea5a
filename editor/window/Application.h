#pragma once

#include <QApplication>
#include <QString>

namespace Editor {

/// The program. An exception that leaves the handling of an event, such as one for want of memory, ends here:
/// Qt lets none through its own loops, and the open work is worth more than the one event.
class Application : public QApplication {
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

Q_SIGNALS:
    /// An event was handled in part only; @p why is what the exception says.
    void eventFailed(const QString& why);
};

} // namespace Editor
