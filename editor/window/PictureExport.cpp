#include "window/PictureExport.h"

#include "document/Translation.h"

#include <QBuffer>
#include <QPainter>
#include <QPixmap>
#include <QSaveFile>
#include <QSvgGenerator>
#include <QWidget>

#include <stdexcept>

namespace Editor {

namespace {

[[noreturn]] void fail(const QString& path, const QString& what) {
    throw std::runtime_error((path + QStringLiteral(": ") + what).toStdString());
}

QByteArray pngOf(QWidget& widget) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return widget.grab().save(&buffer, "PNG") ? bytes : QByteArray();
}

QByteArray svgOf(QWidget& widget) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(widget.size());
    generator.setViewBox(widget.rect());
    generator.setResolution(widget.logicalDpiX()); // Texts have the size that they have on the screen.
    generator.setTitle(widget.window()->windowTitle().remove(QStringLiteral("[*]")));
    QPainter painter(&generator);
    widget.render(&painter);
    return painter.end() ? bytes : QByteArray();
}

} // namespace

void exportPicture(QWidget& widget, const QString& path) {
    const bool isSvg = path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive);
    if (!isSvg && !path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        fail(path, tr("a picture can be written as .png or .svg only"));
    }
    const QByteArray bytes = isSvg ? svgOf(widget) : pngOf(widget);
    if (bytes.isEmpty()) {
        fail(path, tr("there is nothing to draw"));
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        fail(path, file.errorString());
    }
}

} // namespace Editor
