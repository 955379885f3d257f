#pragma once

#include "platform/Picture.h"
#include "platform/linux/FileDescriptor.h"

#include <optional>
#include <string>

#include <QImage>

namespace taliro {

struct ReadImage {
    QImage image;
    QSize fullSize; ///< as shown: turned by the orientation that the camera noted
};

/// Whether pictures of the type are decoded in this process: plain pixels, no drawings.
bool isPlainImage(std::string const& mimeType);

/// Decodes the first picture in the file, turned upright, no larger than `box` and its own size. Nothing
/// where the file holds no plain image or one that would take too much memory. Any thread may call.
std::optional<ReadImage> readImage(std::string const& path, QSize box);

/// `size` shrunk to fit `box`, its proportions kept, at least one pixel wide and high.
QSize shrunkToFit(QSize size, QSize box);

/// Shares the pixels, once they have the right format.
Picture toPicture(QImage image);

/// Opens a plain file for reading, and nothing else: no pipe to wait at, no device.
FileDescriptor openPlainFile(std::string const& path);

} // namespace taliro
