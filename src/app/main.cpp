#include "app/AppDelegate.h"
#include "app/AppSettings.h"
#include "app/CommandLine.h"
#include "browsing/BrowserState.h"
#include "platform/ColorScheme.h"
#include "platform/FileOperations.h"
#include "platform/linux/LinuxPlatform.h"
#include "views/Theme.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>

namespace {

using namespace taliro;

int fail(std::string const& reason) {
    std::fprintf(stderr, "Taliro: %s\n", reason.c_str());
    return EXIT_FAILURE;
}

bool hasDisplay() {
    // The toolkit would end the process with several lines of its own.
    auto const isSet = [](char const* name) {
        char const* value = std::getenv(name);
        return value && *value;
    };
    return isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM") || X11Connection::isReachable();
}

void preferX11() {
    // Windows that place themselves, float and hang from an icon need what Wayland keeps from programs.
    if (!std::getenv("QT_QPA_PLATFORM") && std::getenv("DISPLAY"))
        ::setenv("QT_QPA_PLATFORM", "xcb;wayland", 1);
}

/// Looking an icon up in all themes takes a while, and task lists can wait for it until the browser is there.
void setIconLater(QApplication& application) {
    using namespace std::chrono_literals;
    QTimer::singleShot(200ms, &application, [&application] {
        application.setWindowIcon(
            QIcon::fromTheme(QStringLiteral("com.taliro.Taliro"), QIcon(":/icons/128.png")));
    });
}

/// What a large folder took and nothing uses any more goes back to the system while nobody waits for us.
void giveMemoryBackWhenLeft(QApplication& application) {
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, &application,
                     [](Qt::ApplicationState state) {
                         if (state != Qt::ApplicationActive)
                             ::malloc_trim(0);
                     });
}

int run(CommandLine const& commandLine, int argc, char** argv) {
    switch (DBusOpenRequests::handOver(commandLine.urls)) {
    case DBusOpenRequests::HandOver::taken:
        return EXIT_SUCCESS;
    case DBusOpenRequests::HandOver::failed:
        return fail("it runs already but does not answer");
    case DBusOpenRequests::HandOver::nobody:
        break;
    }
    if (!hasDisplay())
        return fail("no display to show anything on; is DISPLAY set?");
    preferX11();

    QApplication application(argc, argv);
    application.setApplicationName(QStringLiteral("Taliro"));
    application.setApplicationVersion(QStringLiteral(TALIRO_VERSION));
    application.setDesktopFileName(QStringLiteral("com.taliro.Taliro"));
    application.setQuitOnLastWindowClosed(false);

    LinuxPlatform services({QStringLiteral(TALIRO_VERSION), QStringLiteral(TALIRO_UPDATE_FEED)});
    if (!services.isOnlyInstance()) // Another start was quicker.
        return DBusOpenRequests::handOver(commandLine.urls) == DBusOpenRequests::HandOver::taken
                   ? EXIT_SUCCESS
                   : fail("it runs already but does not answer");
    auto& platform = services.platform;
    Platform::install(platform);

    auto& theme = Theme::current();
    theme.setDark(platform.colorScheme.isDark());
    theme.install(application);
    auto const darkness = platform.colorScheme.observe([&](bool dark) { theme.setDark(dark); });

    AppDelegate delegate(platform, AppSettings::shared(), BrowserState::shared());
    if (!commandLine.urls.empty())
        platform.mainQueue.async([&] { delegate.openURLs(commandLine.urls); });
    delegate.applicationDidFinishLaunching();
    setIconLater(application);
    giveMemoryBackWhenLeft(application);
    platform.fileOperations.removeLeftovers();
    return application.exec();
}

} // namespace

int main(int argc, char** argv) {
    std::error_code ignored;
    auto const workingDirectory = std::filesystem::current_path(ignored).string();
    auto const commandLine = CommandLine::parse(
        std::span<char const* const>(argv + 1, static_cast<std::size_t>(argc - 1)), workingDirectory);
    if (!commandLine)
        return fail(commandLine.error());
    switch (commandLine->task) {
    case CommandLine::Task::help:
        std::fputs(CommandLine::helpText().data(), stdout);
        return EXIT_SUCCESS;
    case CommandLine::Task::version:
        std::puts("Taliro " TALIRO_VERSION);
        return EXIT_SUCCESS;
    case CommandLine::Task::run:
        break;
    }
    return run(*commandLine, argc, argv);
}
