#include "dragdrop/FileDragMime.h"

#include "platform/FileManager.h"
#include "platform/ImageCodec.h"
#include "platform/Platform.h"
#include "platform/TypeCatalog.h"

namespace taliro {

namespace {

constexpr std::size_t largestImage = 64 << 20; // bytes that are worth handing over as a picture

QString const uriList = QStringLiteral("text/uri-list");
QString const copiedFiles = QStringLiteral("x-special/gnome-copied-files");
QString const plainText = QStringLiteral("text/plain");
QString const png = QStringLiteral("image/png");

} // namespace

FileDragMime::FileDragMime(std::vector<Url> urls, Platform& platform)
    : m_urls(std::move(urls)), m_platform(platform) {
    if (m_urls.size() != 1)
        return;
    auto const type =
        platform.typeCatalog.mimeType(m_urls[0].lastPathComponent(), m_urls[0].hasDirectoryPath());
    if (type.starts_with("image/"))
        m_imageType = QString::fromStdString(type);
}

QStringList FileDragMime::formats() const {
    QStringList formats{uriList, copiedFiles, plainText};
    if (!m_imageType.isEmpty()) {
        formats << m_imageType;
        if (m_imageType != png)
            formats << png;
    }
    return formats;
}

bool FileDragMime::hasFormat(QString const& format) const {
    return formats().contains(format);
}

QVariant FileDragMime::retrieveData(QString const& format, QMetaType) const {
    if (format == uriList)
        return addresses();
    if (format == copiedFiles)
        return QByteArray("copy\n" + addresses().replace("\r\n", "\n").trimmed());
    if (format == plainText)
        return paths();
    if (m_imageType.isEmpty())
        return {};
    if (format == m_imageType)
        return imageBytes();
    if (format == png) {
        auto const converted = m_platform.imageCodec.png(imageBytes().toStdString());
        return converted ? QByteArray::fromStdString(*converted) : QVariant();
    }
    return {};
}

QByteArray FileDragMime::addresses() const {
    QByteArray lines;
    for (auto const& url : m_urls)
        lines += QByteArray::fromStdString(url.absoluteString()) + "\r\n";
    return lines;
}

QByteArray FileDragMime::paths() const {
    QByteArray lines;
    for (auto const& url : m_urls)
        lines += (lines.isEmpty() ? "" : "\n") + QByteArray::fromStdString(url.path());
    return lines;
}

QByteArray FileDragMime::imageBytes() const {
    auto const attributes = m_platform.fileManager.attributes(m_urls[0]);
    if (!attributes || !attributes->isRegular || attributes->size > static_cast<std::int64_t>(largestImage))
        return {};
    return QByteArray::fromStdString(m_platform.fileManager.readFile(m_urls[0], largestImage).value_or(""));
}

} // namespace taliro
