#pragma once

namespace taliro {

class SoftwareUpdate;
struct Platform;

/// The program's one update controller. Creating it starts the scheduled checks.
class Updater {
public:
    explicit Updater(Platform& platform);
    static Updater& shared();

    /// The user asked.
    void checkForUpdates();

private:
    SoftwareUpdate& m_update;
};

} // namespace taliro
