#pragma once

#include "platform/linux/transfer/Transfer.h"

#include <string>

namespace taliro::transfer {

/// Puts `item`, an absolute path, into the trash of its volume, with a note of where it was:
/// https://specifications.freedesktop.org/trash-spec/
Result trashItem(std::string const& item);

/// To be called once `item` was moved elsewhere: where it lay in a trash, the note of where it was before
/// goes too.
void forgetTrashed(std::string const& item);

} // namespace taliro::transfer
