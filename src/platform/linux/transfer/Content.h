#pragma once

#include "platform/linux/transfer/Transfer.h"

#include <sys/stat.h>

namespace taliro::transfer {

/// Copies the bytes of one plain file, opened as `from` and described by `status`, into the empty file `to`:
/// by sharing its blocks where the file system can, else within the kernel, else by hand. Holes stay holes.
Result copyContent(int from, int to, struct stat const& status, Sink& sink);

} // namespace taliro::transfer
