// Prints a table of what Taliro takes beside what others take for the same, all from one run.

#include "Comparison.h"

#include "platform/linux/LinuxPlatform.h"
#include "support/TemporaryFolder.h"

#include <QGuiApplication>
#include <algorithm>
#include <functional>

#include <clocale>

int main(int argc, char** argv) {
    using namespace taliro;
    // Nothing of the user's own is read or written, and no display is needed.
    testing::TemporaryFolder const home;
    for (auto const* variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        qputenv(variable, home.path().c_str());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    std::setlocale(LC_ALL, "");
    QGuiApplication application(argc, argv);
    LinuxPlatform services({QStringLiteral("0"), QString()});
    Platform::install(services.platform);

    bench::printTableHead();
    bool const measured[]{bench::measureCopying(), bench::measureHotkey(), bench::measureListing(),
                          bench::measureRecentFiles(), bench::measureThumbnails()};
    return std::ranges::all_of(measured, std::identity{}) ? 0 : 1;
}
