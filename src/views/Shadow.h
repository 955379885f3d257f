#pragma once

#include <QRectF>

class QPainter;

namespace taliro {

/// What a raised card casts on the ground below it.
struct Shadow {
    double opacity = .22; ///< of black, where it is darkest
    int blur = 14;        ///< points: how far it fades out beyond the card
    int offset = 6;       ///< points downward
};

/// Draws the shadow of a rounded card, also below the card. Kept by size, so cheap to draw again.
void drawShadow(QPainter& painter, QRectF const& card, int radius, Shadow const& shadow);

} // namespace taliro
