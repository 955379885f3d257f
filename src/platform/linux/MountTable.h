#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// A line of `/proc/self/mountinfo`; see proc(5).
struct Mount {
    unsigned major = 0;
    unsigned minor = 0;
    std::string root; ///< the part of the file system that is mounted; "/" for the whole
    std::string point;
    std::string type;
    std::string source;
    bool operator==(Mount const&) const = default;
};

/// Lines that are not as they should be are left out; of several mounts on one point the last, seen one
/// stays.
std::vector<Mount> parseMounts(std::string_view mountinfo);

/// Whether the mount holds files at all, rather than the kernel's or a desktop service's own matters.
bool holdsFiles(Mount const& mount);
/// Whether a user would look for it: a disk, a stick, a share, rather than a part of the system. `home` is
/// the user's home folder.
bool isForBrowsing(Mount const& mount, std::string_view home);
/// Whether its files are on another machine.
bool isRemote(Mount const& mount);

} // namespace taliro
