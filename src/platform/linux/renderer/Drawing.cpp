#include "platform/linux/renderer/Renderers.h"

#include "platform/linux/ImageReading.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace taliro {

namespace {

constexpr qsizetype longestDrawing = 32 << 20; ///< bytes

} // namespace

QImage drawDrawing(std::string const& path, QSize box) {
    auto const descriptor = openPlainFile(path);
    QFile file;
    if (!descriptor || !file.open(descriptor.get(), QIODevice::ReadOnly) || file.size() > longestDrawing)
        return {};
    QSvgRenderer renderer(file.readAll());
    auto size = renderer.defaultSize();
    if (!renderer.isValid() || size.isEmpty())
        return {};
    size = size.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    renderer.render(&painter);
    return image;
}

} // namespace taliro
