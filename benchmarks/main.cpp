// Prints a table of what Taliro takes beside what others take for the same, all from one run.
// Arguments choose subjects; without any, all are measured.

#include "Comparison.h"

#include "platform/linux/LinuxPlatform.h"
#include "support/TemporaryFolder.h"

#include <QGuiApplication>
#include <algorithm>

#include <clocale>
#include <string_view>
#include <vector>

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

    struct Subject {
        std::string_view name;
        bool (*measure)();
    };
    constexpr Subject subjects[]{
        {"listing", bench::measureListing},          {"hotkey", bench::measureHotkey},
        {"recent-files", bench::measureRecentFiles}, {"thumbnails", bench::measureThumbnails},
        {"copying", bench::measureCopying},
    };
    std::vector<std::string_view> const wanted(argv + 1, argv + argc);
    bench::printTableHead();
    bool measured = true;
    for (auto const& [name, measure] : subjects)
        if (wanted.empty() || std::ranges::find(wanted, name) != wanted.end())
            measured = measure() && measured;
    return measured ? 0 : 1;
}
