#pragma once

#include "support/TemporaryFolder.h"

#include <cstdint>
#include <map>
#include <string>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace taliro::testing {

/// A folder on another volume than the temporary one: a small memory disk of the test's own where that may be
/// mounted, else the system's.
class OtherVolume {
public:
    explicit OtherVolume(std::int64_t bytes = 64 << 20);
    ~OtherVolume();
    OtherVolume(OtherVolume const&) = delete;
    OtherVolume& operator=(OtherVolume const&) = delete;

    /// Empty where there is none.
    std::filesystem::path const& path() const { return m_path; }
    bool isOwn() const { return m_isMounted; } ///< of the size asked for

private:
    std::filesystem::path m_path;
    bool m_isMounted = false;
};

/// All there is to know of a tree, by path below `root`: type, mode, owner, size, times, bytes, links and
/// attributes.
std::map<std::string, std::string> describe(std::filesystem::path const& root);

/// One of every kind of item, with attributes of every kind, also below folders that forbid writing.
void makeRichTree(std::filesystem::path const& root);

/// Bytes taken on disk.
std::int64_t allocated(std::filesystem::path const& file);

} // namespace taliro::testing
