#include "views/Shadow.h"

#include <QImage>
#include <QPainter>
#include <QPixmapCache>

#include <algorithm>
#include <cmath>

namespace taliro {

namespace {

/// How far the point is outside of the rounded box that has its centre at 0; negative inside.
double distanceOutside(QPointF point, QSizeF size, double radius) {
    auto const dx = std::abs(point.x()) - (size.width() / 2 - radius);
    auto const dy = std::abs(point.y()) - (size.height() / 2 - radius);
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) - radius;
}

QPixmap render(QSizeF card, int radius, Shadow const& shadow, double ratio) {
    QSizeF const size(card.width() + 2 * shadow.blur, card.height() + 2 * shadow.blur);
    QImage image((size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    auto const softness = shadow.blur / 2.0 * std::sqrt(2.0);
    for (int row = 0; row < image.height(); ++row) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int column = 0; column < image.width(); ++column) {
            QPointF const point((column + .5) / ratio - size.width() / 2,
                                (row + .5) / ratio - size.height() / 2);
            auto const dark = .5 * std::erfc(distanceOutside(point, card, radius) / softness);
            line[column] = qRgba(0, 0, 0, static_cast<int>(std::lround(dark * shadow.opacity * 255)));
        }
    }
    auto pixmap = QPixmap::fromImage(image);
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

} // namespace

void drawShadow(QPainter& painter, QRectF const& card, int radius, Shadow const& shadow) {
    auto const ratio = painter.device()->devicePixelRatioF();
    auto const key = QStringLiteral("shadow %1x%2 %3 %4 %5 %6")
                         .arg(card.width())
                         .arg(card.height())
                         .arg(radius)
                         .arg(shadow.opacity)
                         .arg(shadow.blur)
                         .arg(ratio);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = render(card.size(), radius, shadow, ratio);
        QPixmapCache::insert(key, pixmap);
    }
    painter.drawPixmap(card.topLeft() + QPointF(-shadow.blur, shadow.offset - shadow.blur), pixmap);
}

} // namespace taliro
