#pragma once

#include "views/Theme.h"

#include <QIcon>
#include <QPixmap>

#include <string_view>

class QPainter;

namespace taliro {

/// The symbol called `name` ("chevron.right"), `points` wide and high. Kept, so cheap to ask for in a paint.
/// Null, with one warning, where there is no such symbol.
QPixmap symbolPixmap(std::string_view name, qreal points, QColor const& color, qreal devicePixelRatio);

/// Draws the symbol `points` wide in the middle of `box`, on whole pixels.
void drawSymbol(QPainter& painter, QRectF const& box, std::string_view name, qreal points,
                QColor const& color);

/// An icon for menus and buttons, drawn at whatever size is asked for; it follows the theme, is white where
/// it stands on the accent colour, and pale where disabled.
QIcon symbolIcon(std::string_view name, ColorRole color = &Colors::text1);
/// The same in a colour that stays.
QIcon symbolIcon(std::string_view name, QColor const& color);

/// Our own picture for a file where the icon theme has none: "folder", "document" or "image".
QPixmap filePixmap(std::string_view name, qreal points, qreal devicePixelRatio);

} // namespace taliro
