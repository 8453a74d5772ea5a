#include "document/AnimationData.h"
#include "document/AnimationFile.h"
#include "document/Autosave.h"
#include "document/Document.h"
#include "document/KeyEdits.h"

#include <QCoreApplication>
#include <QTimer>

#include <exception>
#include <iostream>

/// Opens a file, edits it and says "edited"; then waits to be killed, or until its input ends, which has it
/// leave orderly.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        const QString path = QCoreApplication::arguments().value(1);
        Editor::Document document;
        Editor::Autosave autosave(document);
        document.replace(Editor::AnimationFile(path).load(), path);
        Editor::KeyEdits(document).insert(*document.layer(0)->getCurve(), 77);
        QTimer::singleShot(2 * Editor::Autosave::delay, &document, [] {
            std::cout << "edited" << std::endl;
            std::cin.get();
            QCoreApplication::quit();
        });
        return QCoreApplication::exec();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
