#pragma once

namespace taliro {

struct Platform;

/// Starting with the user's session.
namespace LoginItem {

/// Registers or unregisters the program; a failure is shown to the user.
void setEnabled(Platform& platform, bool enabled);

} // namespace LoginItem

} // namespace taliro
