#include "views/FileIcons.h"

#include "platform/Platform.h"
#include "platform/TypeCatalog.h"
#include "views/Symbols.h"

#include <QPainter>

namespace taliro {

FileIcons& FileIcons::shared() {
    // Never destroyed: pixmaps may not outlive the application object.
    static auto& icons = *new FileIcons(Platform::current().typeCatalog);
    return icons;
}

FileIcons::FileIcons(TypeCatalog& types) : m_types(types) {
    // A bare window manager names no icon theme.
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == QStringLiteral("hicolor"))
        QIcon::setThemeName(QStringLiteral("Adwaita"));
}

QIcon const& FileIcons::iconOf(std::string const& mimeType) {
    auto const key = QString::fromStdString(mimeType);
    auto const known = m_icons.constFind(key);
    if (known != m_icons.constEnd())
        return *known;
    auto icon = QIcon::fromTheme(QString::fromStdString(m_types.iconName(mimeType)));
    if (icon.isNull())
        icon = QIcon::fromTheme(QString::fromStdString(m_types.genericIconName(mimeType)));
    return *m_icons.insert(key, icon);
}

QPixmap FileIcons::pixmap(std::string_view name, bool isDirectory, int points, qreal devicePixelRatio) {
    if (isDirectory)
        return filePixmap("folder", points, devicePixelRatio);
    auto const type = m_types.mimeType(name, false);
    auto const& icon = iconOf(type);
    if (!icon.isNull())
        return icon.pixmap(QSize(points, points), devicePixelRatio);
    return filePixmap(type.starts_with("image/") ? "image" : "document", points, devicePixelRatio);
}

void FileIcons::draw(QPainter& painter, QRect const& box, FileEntry const& entry) {
    auto const picture =
        pixmap(entry.nameView(), entry.isDirectory, box.width(), painter.device()->devicePixelRatioF());
    auto const size = picture.deviceIndependentSize().scaled(box.size(), Qt::KeepAspectRatio);
    QRectF target(QPointF(), size);
    target.moveCenter(QRectF(box).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, picture, picture.rect());
}

} // namespace taliro
