#pragma once

#include "browsing/FileEntry.h"

#include <string>
#include <string_view>
#include <vector>

namespace taliro {

struct Platform;

/// The one way every view lists a folder.
namespace DirectoryLoader {

/// Rows for `folder`: hidden items left out, names containing `filter`, in `sortKey`'s order.
/// An unreadable folder has no rows. Blocks while it reads.
std::vector<FileEntry> load(Platform& platform, Url const& folder, std::string_view filter, SortKey sortKey,
                            bool ascending);

/// The filter as `matches` takes it: trimmed of spaces and tabs, lowercased.
std::string normalizedFilter(std::string_view filter);
bool matches(std::string_view name, std::string_view normalizedFilter);

/// Orders as `sortsBefore` says; what it holds tied stays in its order.
void sort(std::vector<FileEntry>& entries, SortKey sortKey, bool ascending);

} // namespace DirectoryLoader

/// The user's home folder, read once.
struct RealHome {
    static Url const& url();
};

} // namespace taliro
