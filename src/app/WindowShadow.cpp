#include "app/WindowShadow.h"

#include "views/Theme.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace taliro::WindowShadow {

namespace {

constexpr int offsetDown = 8;
constexpr double blur = 26;
/// Of the picture that is stretched to any window's size: corners, and a middle of one point.
constexpr int cornerSize = cornerRadius + static_cast<int>(blur) + offsetDown;
constexpr int surfaceSize = 2 * cornerSize + 1;

/// How far `x, y` is outside of the rounded square from 0 to `size`; negative inside.
double distanceOutside(double x, double y, double size) {
    auto const half = size / 2;
    auto const dx = std::abs(x - half) - (half - cornerRadius);
    auto const dy = std::abs(y - half) - (half - cornerRadius);
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) - cornerRadius;
}

double shadowAt(double distance) {
    auto const part = std::clamp((distance + blur / 3) / (blur * 4 / 3), 0.0, 1.0);
    return (1 - part) * (1 - part) * (1 - part);
}

QPixmap render(double ratio) {
    auto const width = surfaceSize + reach.left() + reach.right();
    auto const height = surfaceSize + reach.top() + reach.bottom();
    QImage image(QSize(width, height) * ratio, QImage::Format_ARGB32_Premultiplied);
    auto const shadow = colors().shadow.alphaF() * 1.3;
    auto const border = Theme::current().isDark() ? QColor(255, 255, 255, 46) : QColor(0, 0, 0, 46);
    for (int row = 0; row < image.height(); ++row) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int column = 0; column < image.width(); ++column) {
            auto const x = (column + .5) / ratio - reach.left();
            auto const y = (row + .5) / ratio - reach.top();
            auto const distance = distanceOutside(x, y, surfaceSize);
            auto const outside = std::clamp(distance * ratio + .5, 0.0, 1.0);
            auto const dark = shadow * shadowAt(distanceOutside(x, y - offsetDown, surfaceSize)) * outside;
            auto const edge = border.alphaF() * outside * std::clamp(1.5 - distance, 0.0, 1.0);
            auto const alpha = edge + dark * (1 - edge);
            auto const light = static_cast<int>(border.redF() * edge * 255);
            line[column] = qRgba(light, light, light, static_cast<int>(std::min(alpha, 1.0) * 255));
        }
    }
    auto pixmap = QPixmap::fromImage(image);
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

QPixmap const& picture(double ratio) {
    // Never destroyed: pictures mustn't outlive the application.
    static auto& rendered = *new std::map<std::pair<bool, double>, QPixmap>;
    auto const [found, isNew] = rendered.try_emplace({Theme::current().isDark(), ratio});
    if (isNew)
        found->second = render(ratio);
    return found->second;
}

} // namespace

void paint(QPainter& painter, QRect const& surface) {
    auto const ratio = painter.device()->devicePixelRatioF();
    auto const& source = picture(ratio);
    auto const size = source.deviceIndependentSize();
    QRectF const target = surface.marginsAdded(reach);
    auto const left = reach.left() + cornerSize;
    auto const right = reach.right() + cornerSize;
    auto const top = reach.top() + cornerSize;
    auto const bottom = reach.bottom() + cornerSize;
    std::array const fromX{0.0, double(left), size.width() - right, size.width()};
    std::array const fromY{0.0, double(top), size.height() - bottom, size.height()};
    std::array const toX{target.left(), target.left() + left, target.right() - right, target.right()};
    std::array const toY{target.top(), target.top() + top, target.bottom() - bottom, target.bottom()};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue;
            QRectF const to(QPointF(toX[column], toY[row]), QPointF(toX[column + 1], toY[row + 1]));
            QRectF const from(QPointF(fromX[column], fromY[row]) * ratio,
                              QPointF(fromX[column + 1], fromY[row + 1]) * ratio);
            painter.drawPixmap(to, source, from);
        }
    }
}

} // namespace taliro::WindowShadow
