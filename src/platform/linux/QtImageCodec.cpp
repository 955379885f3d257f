#include "platform/linux/QtImageCodec.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

namespace taliro {

std::optional<std::string> QtImageCodec::png(std::string_view bytes) {
    auto data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer input(&data);
    QImageReader reader(&input); // refuses what would take more than its allocation limit
    reader.setAutoTransform(true);
    auto const image = reader.read();
    if (image.isNull())
        return std::nullopt;
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    if (!image.save(&output, "PNG"))
        return std::nullopt;
    return output.data().toStdString();
}

} // namespace taliro
