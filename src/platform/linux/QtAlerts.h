#pragma once

#include "platform/Alerts.h"

namespace taliro {

/// Message boxes over the active window.
class QtAlerts : public Alerts {
public:
    void warn(std::string const& message, std::string const& informativeText) override;
    int ask(std::string const& message, std::string const& informativeText,
            std::vector<std::string> const& buttons) override;
    void beep() override;
};

} // namespace taliro
