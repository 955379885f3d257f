#include "preferences/KeyCap.h"

#include "views/Drawing.h"
#include "views/Theme.h"

#include <QFontMetricsF>
#include <QPainter>

namespace taliro {

namespace {

constexpr qreal narrowest = 22;
constexpr qreal radius = 5;

QFont capFont() {
    return Theme::current().font(metrics::small, QFont::DemiBold);
}

QColor borderColor() {
    return Theme::current().isDark() ? colors().controlBorder : faded(Qt::black, 0.18);
}

} // namespace

qreal KeyCap::width() const {
    constexpr qreal padding = 6;
    return std::max(narrowest, QFontMetricsF(capFont()).horizontalAdvance(m_character) + 2 * padding);
}

void KeyCap::paint(QPainter& painter, QRectF const& rect) const {
    fillRounded(painter, rect.translated(0, 1), radius, faded(Qt::black, 0.10));
    fillRounded(painter, rect, radius, colors().cap);
    strokeRounded(painter, rect, radius, borderColor());
    painter.setFont(capFont());
    painter.setPen(colors().text2);
    painter.drawText(rect, Qt::AlignCenter, m_character);
}

} // namespace taliro
