#pragma once

#include "platform/linux/renderer/Protocol.h"

#include <functional>
#include <string>
#include <string_view>

#include <QImage>

namespace taliro {

// Each draws a file into at most `box` pixels; a null image where it can't.

struct DrawnPage {
    QImage image;
    int pages = 1;
};

QImage drawDrawing(std::string const& path, QSize box);
DrawnPage drawDocument(std::string const& path, int page, QSize box);
QImage drawText(std::string const& path, QSize box);
QImage drawFont(std::string const& path, QSize box);
/// Runs an installed thumbnailer. `command` may hold the field codes %i, %u, %o and %s.
QImage drawWithProgram(std::string const& command, std::string const& path, QSize box);

/// Reads the archive's table of contents. `report` hears of the counts now and then, with the name of each
/// new outermost item, and at last that it is finished.
void listArchive(std::string const& path,
                 std::function<bool(SummaryReply const&, std::string_view)> const& report);

} // namespace taliro
