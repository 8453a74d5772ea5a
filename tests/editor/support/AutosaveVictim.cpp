#include "document/Autosave.h"
#include "document/Document.h"
#include "tests/editor/support/UnsavedWork.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QTimer>

#include <exception>
#include <iostream>

/// Arguments: the application's name, a file to open (empty for a new animation). Edits, has the copy written
/// and says "edited"; then waits to be killed, or until its input ends, which has it leave orderly.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setApplicationName(QCoreApplication::arguments().value(1));
    try {
        Editor::Document document;
        Editor::Autosave autosave(document);
        UnsavedWork::open(document, QCoreApplication::arguments().value(2));
        UnsavedWork::edit(document);
        QTimer written;
        written.setSingleShot(true);
        QObject::connect(&written, &QTimer::timeout, &document, [] {
            std::cout << "edited" << std::endl;
            std::cin.get();
            QCoreApplication::quit();
        });
        written.start(2 * Editor::Autosave::delay);
        const int code = QCoreApplication::exec();
        autosave.discard();
        return code;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
