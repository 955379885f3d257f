#pragma once

namespace taliro {

/// Looks for newer versions and tells the user.
class SoftwareUpdate {
public:
    virtual ~SoftwareUpdate() = default;
    /// Begins the daily checks, which speak up only when there is something new.
    virtual void start() = 0;
    /// Checks now and always says what came of it.
    virtual void checkForUpdates() = 0;
};

} // namespace taliro
