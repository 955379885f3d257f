#include "platform/linux/renderer/Renderers.h"

#include "foundation/TextDecoding.h"
#include "platform/linux/ImageReading.h"

#include <QFile>
#include <QFontDatabase>
#include <QPainter>

namespace taliro {

namespace {
constexpr qint64 firstBytes = 8 * 1024;
constexpr int linesOnPage = 26;
} // namespace

QImage drawText(std::string const& path, QSize box) {
    auto const descriptor = openPlainFile(path);
    QFile file;
    if (!descriptor || !file.open(descriptor.get(), QIODevice::ReadOnly))
        return {};
    auto const bytes = file.read(firstBytes);
    auto const decoded = decodeText({bytes.data(), static_cast<std::size_t>(bytes.size())});
    if (!decoded || decoded->utf8.empty())
        return {};

    auto const size = QSize(4, 5).scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    auto const margin = size.width() / 12.0;
    auto const lineHeight = (size.height() - 2 * margin) / linesOnPage;
    auto font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(std::max(2, qRound(lineHeight * 0.85)));
    painter.setFont(font);
    painter.setPen(QColor(0x33, 0x33, 0x38));
    painter.setClipRect(QRectF(margin, 0, size.width() - 2 * margin, size.height() - margin));
    auto y = margin + lineHeight * 0.8;
    auto const lines = QString::fromStdString(decoded->utf8).split(u'\n');
    for (auto const& line : lines.first(std::min<qsizetype>(linesOnPage, lines.size()))) {
        constexpr qsizetype longestLine = 120;
        auto text = line.left(longestLine);
        text.replace(u'\t', QStringLiteral("    "));
        text.remove(u'\r');
        painter.drawText(QPointF(margin, y), text);
        y += lineHeight;
    }
    return image;
}

} // namespace taliro
