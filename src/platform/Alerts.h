#pragma once

#include <string>
#include <vector>

namespace taliro {

/// Messages that wait for an answer, and the sound that asks for none.
class Alerts {
public:
    virtual ~Alerts() = default;
    /// A modal warning with one "OK" button; returns when it is dismissed.
    virtual void warn(std::string const& message, std::string const& informativeText) = 0;
    /// A modal question; the index of the chosen button, the last one's when dismissed.
    virtual int ask(std::string const& message, std::string const& informativeText,
                    std::vector<std::string> const& buttons) = 0;
    virtual void beep() = 0;
};

} // namespace taliro
