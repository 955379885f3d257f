#pragma once

#include "platform/Workspace.h"

namespace taliro {

/// The desktop's default applications, its file manager and its terminal.
class XdgWorkspace : public Workspace {
public:
    bool open(Url const& item) override;
    void reveal(std::vector<Url> const& items) override;
    bool openTerminal(Url const& folder) override;
    bool openPrivacySettings() override;
};

} // namespace taliro
