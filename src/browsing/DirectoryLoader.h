#pragma once

#include "browsing/FileEntry.h"
#include "browsing/RowList.h"

#include <string>
#include <string_view>
#include <vector>

namespace taliro {

struct Platform;

/// The one way every view lists a folder.
namespace DirectoryLoader {

/// Rows for `folder`: hidden items left out, names containing `filter`, in `sortKey`'s order.
/// An unreadable folder has no rows. Blocks while it reads.
RowList load(Platform& platform, Url const& folder, std::string_view filter, SortKey sortKey, bool ascending);

/// Everything in `folder` that isn't hidden, in the file system's order; nothing of an unreadable folder.
/// Blocks.
std::vector<FileEntry> list(Platform& platform, Url const& folder);
/// Those of `names` that are in `folder` and not hidden. Blocks.
std::vector<FileEntry> list(Platform& platform, Url const& folder, std::vector<std::string> const& names);

/// The filter as `matches` takes it: trimmed of spaces and tabs, lowercased.
std::string normalizedFilter(std::string_view filter);
bool matches(std::string_view name, std::string_view normalizedFilter);

} // namespace DirectoryLoader

/// The user's home folder, read once.
struct RealHome {
    static Url const& url();
};

} // namespace taliro
