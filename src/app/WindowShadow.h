#pragma once

#include <QMargins>
#include <QRect>

class QPainter;

namespace taliro::WindowShadow {

/// How far the shadow reaches beyond a window's surface.
inline constexpr QMargins reach{26, 20, 26, 34};
inline constexpr int cornerRadius = 10;

/// Draws the shadow and hairline border around a rounded `surface`, and nothing within it.
void paint(QPainter& painter, QRect const& surface);

} // namespace taliro::WindowShadow
