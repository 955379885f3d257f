#include "views/Pictures.h"

#include "browsing/ThumbnailCache.h"
#include "views/FileIcons.h"

#include <QPainter>

namespace taliro {

QImage toImage(Picture const& picture) {
    if (picture.isEmpty())
        return {};
    auto* const held = new Picture(picture);
    return QImage(
        reinterpret_cast<uchar const*>(held->pixels.get()), held->width, held->height, held->width * 4,
        QImage::Format_ARGB32_Premultiplied, [](void* pixels) { delete static_cast<Picture*>(pixels); },
        held);
}

void drawFitted(QPainter& painter, QRectF const& box, QImage const& image) {
    auto const fitted = fittedImage({static_cast<double>(image.width()), static_cast<double>(image.height())},
                                    {box.width(), box.height()});
    QRectF target(0, 0, fitted.width, fitted.height);
    target.moveCenter(box.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, image);
}

void drawFileIcon(QPainter& painter, QRectF const& box, Url const& item, bool isDirectory, int points) {
    auto const scale = painter.device()->devicePixelRatioF();
    auto const pixmap = FileIcons::shared().pixmap(item.lastPathComponent(), isDirectory, points, scale);
    QRectF target(QPointF(), pixmap.deviceIndependentSize());
    auto const shrunk = std::min({1.0, box.width() / target.width(), box.height() / target.height()});
    target.setSize(target.size() * shrunk);
    target.moveCenter(box.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, pixmap, pixmap.rect());
}

} // namespace taliro
