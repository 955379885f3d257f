#include "platform/linux/ImageReading.h"

#include <QFile>
#include <QImageReader>
#include <QLoggingCategory>
#include <QSet>

#include <fcntl.h>
#include <sys/stat.h>

namespace taliro {

namespace {

/// One picture in memory takes no more than this.
constexpr int mostMegabytes = 512;

QSet<QByteArray> plainTypes() {
    QImageReader::setAllocationLimit(mostMegabytes);
    // A damaged picture is an everyday thing and shows as one without a thumbnail.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));
    QSet<QByteArray> types;
    for (auto const& type : QImageReader::supportedMimeTypes())
        if (!type.startsWith("image/svg") && type.startsWith("image/"))
            types.insert(type);
    return types;
}

/// Beyond this many pixels, only JPEG is decoded, since it can be shrunk while it is.
constexpr qint64 mostPixels = mostMegabytes * (qint64{1} << 20) / 4;

bool isTooLarge(QSize size, QByteArray const& format) {
    return format != "jpeg" && qint64{size.width()} * size.height() > mostPixels;
}

/// Formats whose reader follows instructions in the file instead of decoding pixels.
bool isDrawing(QByteArray const& format) {
    return format.startsWith("svg") || format == "pdf" || format == "eps" || format == "wmf";
}

} // namespace

bool isPlainImage(std::string const& mimeType) {
    static auto const types = plainTypes();
    return types.contains(QByteArray::fromStdString(mimeType));
}

QSize shrunkToFit(QSize size, QSize box) {
    if (size.width() <= box.width() && size.height() <= box.height())
        return size;
    return size.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
}

std::optional<ReadImage> readImage(std::string const& path, QSize box) {
    auto const descriptor = openPlainFile(path);
    QFile file;
    if (!descriptor || !file.open(descriptor.get(), QIODevice::ReadOnly))
        return std::nullopt;
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (isDrawing(reader.format()))
        return std::nullopt;
    auto const stored = reader.size();
    if (isTooLarge(stored, reader.format()))
        return std::nullopt;
    bool const turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    if (stored.isValid())
        reader.setScaledSize(shrunkToFit(stored, turned ? box.transposed() : box));
    auto image = reader.read();
    if (image.isNull())
        return std::nullopt;
    auto const full = !stored.isValid() ? image.size() : turned ? stored.transposed() : stored;
    auto const fitting = shrunkToFit(image.size(), box);
    if (fitting != image.size())
        image = image.scaled(fitting, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return ReadImage{std::move(image), full};
}

Picture toPicture(QImage image) {
    if (image.isNull())
        return {};
    auto const held =
        std::make_shared<QImage const>(std::move(image).convertToFormat(QImage::Format_ARGB32_Premultiplied));
    auto const* pixels = reinterpret_cast<std::uint32_t const*>(held->constBits());
    return {held->width(), held->height(), std::shared_ptr<std::uint32_t const[]>(held, pixels)};
}

FileDescriptor openPlainFile(std::string const& path) {
    FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return file;
}

} // namespace taliro
