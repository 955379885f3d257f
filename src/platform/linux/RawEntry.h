#pragma once

#include <cstdint>

namespace taliro {

/// A folder's entry as the kernel lays it out; see getdents64(2).
struct RawEntry {
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length; ///< bytes from this entry to the next
    unsigned char type;
    char name[1]; ///< as many as there are, and a zero
};

} // namespace taliro
