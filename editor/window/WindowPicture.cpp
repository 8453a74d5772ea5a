#include "window/WindowPicture.h"

#include "curves/CurveView.h"
#include "document/AnimationData.h"
#include "document/AnimationFile.h"
#include "document/Translation.h"
#include "layers/LayerEdits.h"
#include "window/CommandLine.h"
#include "window/MainWindow.h"
#include "window/Settings.h"
#include "window/WidgetFileDialogs.h"
#include "window/Workspace.h"

#include <QApplication>
#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QTemporaryDir>

#include <stdexcept>

namespace Editor {

namespace {

void selectLayer(Workspace& workspace, MainWindow& window, const QString& name) {
    ZT::EditableAnimationLayer* const layer = workspace.document.animation().getLayer(name);
    if (layer == nullptr) {
        throw std::runtime_error(tr("there is no layer named \"%1\"").arg(name).toStdString());
    }
    const int index = workspace.document.indexOf(layer);
    window.setCurrentLayer(index);
    LayerEdits(workspace.document).selectKeys({index});
}

} // namespace

QImage windowPicture(const CommandLine& line) {
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        QFont font = QApplication::font(); // No desktop is there to say what size is usual.
        font.setPointSize(10);
        QApplication::setFont(font);
    }
    const QTemporaryDir directory;
    QSettings store(directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    Settings settings(store);
    settings.setTheme(line.theme());
    WidgetFileDialogs dialogs;
    Workspace workspace;
    const QString path = QFileInfo(line.files().first()).absoluteFilePath();
    AnimationData data = AnimationFile(path).load();

    MainWindow window(workspace, settings, dialogs);
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.resize(line.size());
    window.show();
    workspace.document.replace(std::move(data), AnimationFile::isWritable(path) ? path : QString());
    if (line.layer()) {
        selectLayer(workspace, window, *line.layer());
    }
    workspace.selection.update();
    QApplication::processEvents(); // Docks find their places, and views theirs in them.
    return window.grab().toImage();
}

} // namespace Editor
