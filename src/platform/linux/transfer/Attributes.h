#pragma once

#include "platform/linux/transfer/Transfer.h"

#include <string>
#include <sys/stat.h>

namespace taliro::transfer {

/// Gives `to` the owner, extended attributes, mode and times of `from`, described by `status`. An owner that
/// we may not give is left, without the bits that lend his rights; attributes that the file system can't hold
/// are left out.
Result copyAttributes(int from, int to, struct stat const& status);

/// The same for what is not opened: links, pipes, sockets and devices.
Result setAttributes(int folder, std::string const& name, struct stat const& status);

} // namespace taliro::transfer
