#include "views/Drawing.h"

#include "views/Theme.h"

#include <QPainter>

namespace taliro {

void fillRounded(QPainter& painter, QRectF const& rect, qreal radius, QColor const& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

void strokeRounded(QPainter& painter, QRectF const& rect, qreal radius, QColor const& color, qreal width) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    auto const inset = width / 2;
    auto const corner = qMax(0.0, radius - inset);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), corner, corner);
    painter.restore();
}

void drawFocusRing(QPainter& painter, QRectF const& rect, qreal radius) {
    strokeRounded(painter, rect, radius, faded(colors().accent, .7), 2);
}

} // namespace taliro
