#include "desktop/Desktop.h"

#include "desktop/Servers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <iostream>

namespace taliro::testing {

namespace {

constexpr char trayConfiguration[] = "panel_items = TSC\npanel_size = 100% 30\npanel_position = top center "
                                     "horizontal\nstrut_policy = follow_size\nsystray_padding = 4 4 4\n"
                                     "systray_icon_size = 22\ntime1_format = %H:%M\n";

std::string inherited(char const* name, char const* fallback) {
    char const* value = std::getenv(name);
    return value ? value : fallback;
}

std::string nextName(char const* prefix) {
    static std::atomic<int> count{0};
    return prefix + std::to_string(++count);
}

} // namespace

Desktop::Desktop(Options const& options) : m_home(m_folder.makeFolder("home")) {
    auto const folder = [&](char const* name) { return m_folder.makeFolder(name).string(); };
    m_environment = {
        {"PATH", inherited("PATH", "/usr/local/bin:/usr/bin:/bin")},
        {"HOME", m_home},
        {"LANG", inherited("LANG", "C.UTF-8")},
        {"TZ", "UTC"},
        {"XDG_CACHE_HOME", folder("cache")},
        {"XDG_CONFIG_HOME", folder("config")},
        {"XDG_DATA_HOME", folder("data")},
        {"XDG_RUNTIME_DIR", folder("runtime")},
        {"XDG_STATE_HOME", folder("state")},
        {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
    };
    std::filesystem::permissions(m_folder / "runtime", std::filesystem::perms::owner_all);
    startServer(options);
    startBus();
    if (options.windowManager) {
        m_windowManager = Process({"openbox"}, m_environment, log("openbox"));
        EXPECT_TRUE(waitFor(
            [&] { return !m_display->values(m_display->root(), "_NET_SUPPORTING_WM_CHECK").empty(); }));
    }
    if (options.tray)
        startTray();
}

Desktop::~Desktop() {
    m_accessibility.reset();
    m_bus.reset();
    QDBusConnection::disconnectFromBus(m_busName);
    m_display.reset();
    // The accessibility services go with their bus.
    m_busDaemon.terminate();
}

void Desktop::startServer(Options const& options) {
    auto server = testing::startXServer(options.width, options.height, m_environment, log("Xvfb"));
    ASSERT_FALSE(server.address.empty()) << "no X server: " << contentsOf(log("Xvfb"));
    m_server = std::move(server.process);
    m_displayName = server.address;
    m_environment["DISPLAY"] = m_displayName;
    m_display = std::make_unique<Display>(m_displayName);
}

void Desktop::startBus() {
    auto bus = testing::startBus(m_environment, log("bus"));
    ASSERT_FALSE(bus.address.empty()) << "no bus: " << contentsOf(log("bus"));
    m_busDaemon = std::move(bus.process);
    m_environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address;
    m_busName = QString::fromStdString(nextName("desktop"));
    m_bus = QDBusConnection::connectToBus(QString::fromStdString(bus.address), m_busName);
    ASSERT_TRUE(m_bus->isConnected());
}

AccessibilityBus& Desktop::accessibility() {
    if (!m_accessibility)
        m_accessibility = std::make_unique<AccessibilityBus>(*m_bus);
    return *m_accessibility;
}

std::filesystem::path Desktop::write(std::string const& relative, std::string const& bytes) const {
    return m_folder.write("home/" + relative, bytes);
}

std::filesystem::path Desktop::makeFolder(std::string const& relative) const {
    return m_folder.makeFolder("home/" + relative);
}

std::filesystem::path Desktop::defaultsFile() const {
    return m_environment.at("XDG_CONFIG_HOME") + "/taliro/defaults.plist";
}

void Desktop::writeDefaults(std::string const& entries) const {
    std::filesystem::create_directories(defaultsFile().parent_path());
    std::ofstream(defaultsFile()) << R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)"
                                  << entries << "</dict></plist>\n";
}

std::string Desktop::storedDefaults() const {
    return contentsOf(defaultsFile());
}

void Desktop::startTray() {
    auto const configuration = m_folder.write("tint2rc", trayConfiguration);
    m_tray = Process({"tint2", "-c", configuration}, m_environment, log("tint2"));
    EXPECT_TRUE(waitFor([&] { return m_display->hasOwner("_NET_SYSTEM_TRAY_S0"); }));
}

std::filesystem::path Program::built() {
    return TALIRO_PROGRAM;
}

Program::Program(Desktop& desktop, std::vector<std::string> const& arguments, Environment const& more,
                 std::filesystem::path const& program)
    : m_desktop(desktop), m_log(desktop.log(nextName("Taliro"))) {
    std::vector<std::string> command{program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    auto environment = desktop.environment();
    for (auto const& [name, value] : more)
        environment[name] = value;
    m_process = Process(command, environment, m_log, desktop.home());
}

Program::~Program() {
    if (::testing::Test::HasFailure())
        std::cerr << output();
}

std::string Program::output() const {
    return contentsOf(m_log);
}

Accessible const& Program::tree() {
    if (!m_tree) {
        m_tree = m_desktop.accessibility().application(m_process.pid());
        EXPECT_TRUE(static_cast<bool>(m_tree)) << "the program is not in the accessibility tree";
    }
    return m_tree;
}

std::optional<int> runProgram(Desktop& desktop, std::vector<std::string> const& arguments,
                              std::filesystem::path const& folder) {
    std::vector<std::string> command{TALIRO_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return Process(command, desktop.environment(), desktop.log(nextName("run")), folder).waitForExit();
}

} // namespace taliro::testing
