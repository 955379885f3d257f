#include "platform/linux/renderer/Renderers.h"

#include "platform/linux/ImageReading.h"

#include <QFile>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>

namespace taliro {

namespace {

constexpr qint64 largestFont = 64 << 20; ///< bytes

/// "Ag", or what the font has instead of letters.
QList<quint32> sampleGlyphs(QRawFont const& font) {
    if (font.supportsCharacter(u'A') && font.supportsCharacter(u'g'))
        return font.glyphIndexesForString(QStringLiteral("Ag"));
    return {1, 2};
}

} // namespace

QImage drawFont(std::string const& path, QSize box) {
    auto const descriptor = openPlainFile(path);
    QFile file;
    if (!descriptor || !file.open(descriptor.get(), QIODevice::ReadOnly) || file.size() > largestFont)
        return {};
    auto const side = std::min(box.width(), box.height());
    QRawFont const font(file.readAll(), side * 0.5);
    if (!font.isValid())
        return {};
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    auto const glyphs = sampleGlyphs(font);
    auto const advances = font.advancesForGlyphIndexes(glyphs);
    QList<QPointF> positions;
    QPointF pen;
    QRectF ink;
    for (qsizetype i = 0; i < glyphs.size(); ++i) {
        positions.append(pen);
        ink |= font.boundingRect(glyphs[i]).translated(pen);
        pen += advances.value(i);
    }
    if (ink.isEmpty())
        return {};
    QGlyphRun run;
    run.setRawFont(font);
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(0x22, 0x22, 0x26));
    auto const fit = std::min(1.0, side * 0.86 / std::max(ink.width(), ink.height()));
    painter.translate(side / 2.0, side / 2.0);
    painter.scale(fit, fit);
    painter.drawGlyphRun(-ink.center(), run);
    return image;
}

} // namespace taliro
