#include "app/Updater.h"

#include "platform/Platform.h"
#include "platform/SoftwareUpdate.h"

namespace taliro {

Updater::Updater(Platform& platform) : m_update(platform.softwareUpdate) {
    m_update.start();
}

Updater& Updater::shared() {
    static Updater updater(Platform::current());
    return updater;
}

void Updater::checkForUpdates() {
    m_update.checkForUpdates();
}

} // namespace taliro
