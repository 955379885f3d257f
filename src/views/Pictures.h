#pragma once

#include "foundation/Url.h"
#include "platform/Picture.h"

#include <QImage>
#include <QRectF>

class QPainter;

namespace taliro {

/// Shares the picture's pixels.
QImage toImage(Picture const& picture);

/// Draws `image` in the middle of `box`, as large as it fits but for a margin.
void drawFitted(QPainter& painter, QRectF const& box, QImage const& image);

/// Draws the icon of the item's type in the middle of `box`, at most `points` wide.
void drawFileIcon(QPainter& painter, QRectF const& box, Url const& item, bool isDirectory, int points);

} // namespace taliro
