#include "platform/linux/renderer/Renderers.h"

#include <QFile>

#include <poppler-qt6.h>

namespace taliro {

DrawnPage drawDocument(std::string const& path, int number, QSize box) {
    auto const document = Poppler::Document::load(QFile::decodeName(path.c_str()));
    if (!document || document->isLocked() || number < 0 || number >= document->numPages())
        return {};
    auto const page = document->page(number);
    auto const points = page ? page->pageSizeF() : QSizeF();
    if (points.isEmpty())
        return {};
    document->setRenderHint(Poppler::Document::Antialiasing);
    document->setRenderHint(Poppler::Document::TextAntialiasing);
    auto const scale = std::min(box.width() / points.width(), box.height() / points.height());
    constexpr double pointsAnInch = 72;
    auto image = page->renderToImage(pointsAnInch * scale, pointsAnInch * scale);
    // Rounding may give one pixel too many.
    return {image.copy(QRect(QPoint(), image.size().boundedTo(box))), document->numPages()};
}

} // namespace taliro
