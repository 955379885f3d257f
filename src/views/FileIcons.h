#pragma once

#include "browsing/FileEntry.h"

#include <QHash>
#include <QIcon>
#include <QPixmap>

class QPainter;

namespace taliro {

class TypeCatalog;

/// Icons by type: our own folder, the icon theme's picture for everything else, our own where it has none.
/// Looked up when first drawn, then kept.
class FileIcons {
public:
    static FileIcons& shared();
    explicit FileIcons(TypeCatalog& types);

    QPixmap pixmap(std::string_view name, bool isDirectory, int points, qreal devicePixelRatio);
    /// Fills `box`, keeping the picture's proportions.
    void draw(QPainter& painter, QRect const& box, FileEntry const& entry);

private:
    QIcon const& iconOf(std::string const& mimeType);

    TypeCatalog& m_types;
    QHash<QString, QIcon> m_icons;
};

} // namespace taliro
