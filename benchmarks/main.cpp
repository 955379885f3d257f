// Prints a table of what Taliro takes beside what others take for the same, all from one run.
// Arguments choose subjects; without any, all are measured.

#include "Comparison.h"
#include "Samples.h"
#include "Seat.h"

#include "platform/linux/LinuxPlatform.h"
#include "support/PrivateBus.h"
#include "views/Theme.h"

#include <QApplication>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <functional>
#include <string_view>
#include <vector>

int main(int argc, char** argv) {
    using namespace taliro;
    // Nothing of the user's own is read or written.
    testing::TemporaryFolder const home;
    bench::Seat seat(home);
    if (!bench::makeSampleHome(home.path()) || !seat.start()) {
        std::fprintf(stderr, "No virtual screen to measure on\n");
        return 1;
    }
    for (auto const* variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, home.path().c_str());
    qputenv("DISPLAY", seat.environment().at("DISPLAY").c_str());
    qputenv("QT_QPA_PLATFORM", "xcb");
    // The bus at the seat is for the programs that are measured.
    if (!testing::PrivateBus::shared().isRunning())
        std::fprintf(stderr, "No session bus\n");
    std::setlocale(LC_ALL, "");
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    LinuxPlatform services({QStringLiteral("0"), QString()});
    Platform::install(services.platform);
    Theme::current().install(application);

    struct Subject {
        std::string_view name;
        std::function<bool()> measure;
    };
    // Copying comes before all that removes thousands of files: where they were, ext4 is slow for five
    // minutes.
    Subject const subjects[]{
        {"copying", bench::measureCopying},
        {"start", [&] { return bench::measureStart(seat); }},
        {"large-folder", [&] { return bench::measureLargeFolder(seat); }},
        {"hotkey", [&] { return bench::measureHotkey(seat); }},
        {"idling", [&] { return bench::measureIdling(seat); }},
        {"views", bench::measureViews},
        {"completion", bench::measureCompletion},
        {"listing", bench::measureListing},
        {"recent-files", bench::measureRecentFiles},
        {"thumbnails", bench::measureThumbnails},
    };
    std::vector<std::string_view> const wanted(argv + 1, argv + argc);
    bench::printTableHead();
    bool measured = true;
    for (auto const& [name, measure] : subjects)
        if (wanted.empty() || std::ranges::find(wanted, name) != wanted.end())
            measured = measure() && measured;
    return measured ? 0 : 1;
}
