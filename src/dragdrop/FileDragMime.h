#pragma once

#include "foundation/Url.h"

#include <QMimeData>
#include <string>
#include <vector>

namespace taliro {

struct Platform;

/// Dragged files in the ways that other programs take them: as addresses, as a file manager's clipboard, as
/// paths in text, and a single image as its picture. Each is made when it is asked for.
class FileDragMime : public QMimeData {
public:
    FileDragMime(std::vector<Url> urls, Platform& platform);

    QStringList formats() const override;
    bool hasFormat(QString const& format) const override;

protected:
    QVariant retrieveData(QString const& format, QMetaType type) const override;

private:
    QByteArray addresses() const;
    QByteArray paths() const;
    QByteArray imageBytes() const;

    std::vector<Url> m_urls;
    Platform& m_platform;
    QString m_imageType; ///< of the one file, if it is an image; empty otherwise
};

} // namespace taliro
