#pragma once

#include "platform/LoginItems.h"

#include <string>

namespace taliro {

/// The login item as an XDG autostart entry. An entry that the desktop has switched off (`Hidden=true`,
/// GNOME's `X-GNOME-Autostart-enabled=false`, or other desktops' names only) waits for the user's approval.
/// One whose program is gone is made to start this one.
class AutostartLoginItems : public LoginItems {
public:
    /// `program`: what the entry starts, an absolute path.
    explicit AutostartLoginItems(std::string program);

    LoginItemStatus status() override;
    std::expected<void, std::string> registerItem() override;
    std::expected<void, std::string> unregisterItem() override;

private:
    void followProgram();

    std::string m_program;
    std::string m_entry; ///< the autostart file's path
};

} // namespace taliro
