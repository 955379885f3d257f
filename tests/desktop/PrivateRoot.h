#pragma once

#include <string>

namespace taliro::testing {

/// Gives this process, and those that it starts, a `/usr/local/bin` of their own: empty, and root's rights to
/// it. To be called before there are threads. Empty, or why the system doesn't let it.
std::string enterPrivateRoot();

/// Whether anyone may write there, root too.
void setLinkFolderWritable(bool writable);

/// Takes from this process, and those that it starts, all they could harm: nothing can be written but to a
/// `/tmp` and a `/media` of their own, no network reached, no application found to open a file with. To be
/// called before there are threads. Empty, or why the system doesn't let it.
std::string enterReadOnlyRoot();

} // namespace taliro::testing
