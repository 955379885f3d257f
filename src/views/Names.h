#pragma once

#include "browsing/FileEntry.h"
#include "foundation/Text.h"

#include <QString>

namespace taliro {

/// A name as it is shown: readable whatever bytes it is made of.
inline QString shownName(std::string_view name) {
    return QString::fromStdString(legible(name));
}
inline QString shownName(FileEntry const& entry) {
    return shownName(entry.nameView());
}

} // namespace taliro
