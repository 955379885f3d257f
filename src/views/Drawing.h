#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace taliro {

/// Fills a rounded rectangle, smooth at its corners.
void fillRounded(QPainter& painter, QRectF const& rect, qreal radius, QColor const& color);

/// Draws a border of `width` points inside of `rect`'s edge.
void strokeRounded(QPainter& painter, QRectF const& rect, qreal radius, QColor const& color, qreal width = 1);

/// The ring that shows which control has the keyboard.
void drawFocusRing(QPainter& painter, QRectF const& rect, qreal radius);

} // namespace taliro
