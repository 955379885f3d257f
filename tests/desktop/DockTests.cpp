// The program as one of the taskbar, switched while its panel is shown. It runs in this process, for it has
// no control for that.

#include "app/AppDelegate.h"
#include "app/AppSettings.h"
#include "browsing/BrowserState.h"
#include "desktop/Display.h"
#include "keyboard/XServer.h"
#include "platform/linux/LinuxPlatform.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"
#include "views/Theme.h"

#include <QApplication>
#include <QMenuBar>

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

QMenuBar const* menuBar() {
    for (auto const* one : QApplication::topLevelWidgets())
        if (auto const* bar =
                one->windowRole() == QLatin1String("panel") ? one->findChild<QMenuBar*>() : nullptr)
            return bar;
    return nullptr;
}

TEST(Dock, TakesThePanelToTheTaskbarAndBackAtOnce) {
    Display display(std::getenv("DISPLAY"));
    auto const isListed = [&](bool expected) {
        return waitUntil([&] {
            auto const panel = display.window("panel");
            return panel && display.hasState(panel->id, "_NET_WM_STATE_SKIP_TASKBAR") != expected;
        });
    };
    auto& settings = AppSettings::shared();
    AppDelegate delegate(Platform::current(), settings, BrowserState::shared());
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(isListed(false));
    auto const panel = display.window("panel").value_or(WindowInfo{}).id;
    for (bool const inDock : {true, false, true}) {
        settings.setShowInDock(inDock);
        EXPECT_TRUE(isListed(inDock)) << inDock;
        EXPECT_EQ(display.window("panel").value_or(WindowInfo{}).id, panel) << "it stays where it is";
        EXPECT_EQ(menuBar() && menuBar()->isVisible(), inDock);
    }
}

/// On a desktop of their own, with settings of their own.
int runTests(int argc, char** argv) {
    TemporaryFolder folder;
    for (char const* name : {"HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        ::setenv(name, folder.makeFolder(name).c_str(), 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    ::unsetenv("WAYLAND_DISPLAY");
    XServer const server;
    auto const windowManager = start({"openbox"});
    Display display(std::getenv("DISPLAY"));
    if (!waitFor([&] { return !display.values(display.root(), "_NET_SUPPORTING_WM_CHECK").empty(); }))
        return EXIT_FAILURE;
    QApplication application(argc, argv);
    LinuxPlatform services({QStringLiteral("0"), QString()});
    Platform::install(services.platform);
    Theme::current().install(application);
    return RUN_ALL_TESTS();
}

} // namespace
} // namespace taliro::testing

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    return ::testing::GTEST_FLAG(list_tests) ? RUN_ALL_TESTS() : taliro::testing::runTests(argc, argv);
}
