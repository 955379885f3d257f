#pragma once

#include "platform/linux/transfer/CopyEngine.h"
#include "platform/linux/transfer/Leftovers.h"

namespace taliro::transfer {

/// Copies `source`, an absolute path, to `destination`. The copy is made under a hidden name beside it,
/// brought to disk, and only then given its name; where that is taken meanwhile, `file_exists`.
Result copyItem(std::string const& source, std::string const& destination, Leftovers const&, Sink&);

/// Renames, or between volumes copies and then removes the source, item by item, as far as it is what was
/// copied. Whenever the process dies, every file is whole in one of the two places.
Result moveItem(std::string const& source, std::string const& destination, Leftovers const&, Sink&);

/// Gives an item its new name in one step and never over another item.
Result renameWithoutReplacing(int from, std::string const& name, int to, std::string const& newName);

/// The same where the file system has no call for that: a folder's name is claimed first, a file is linked.
/// Where it can't link either, `operation_not_supported`.
Result renameByClaiming(int from, std::string const& name, int to, std::string const& newName);

} // namespace taliro::transfer
