#include "desktop/Desktop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <iostream>
#include <unistd.h>

namespace taliro::testing {

namespace {

constexpr char trayConfiguration[] = "panel_items = TSC\npanel_size = 100% 30\npanel_position = top center "
                                     "horizontal\nstrut_policy = follow_size\nsystray_padding = 4 4 4\n"
                                     "systray_icon_size = 22\ntime1_format = %H:%M\n";

std::string inherited(char const* name, char const* fallback) {
    char const* value = std::getenv(name);
    return value ? value : fallback;
}

/// One line that a child writes to its descriptor 3.
class Channel {
public:
    Channel() { EXPECT_EQ(::pipe(m_ends), 0); }
    ~Channel() {
        ::close(m_ends[0]);
        closeWriter();
    }
    int writer() const { return m_ends[1]; }
    std::string readLine() {
        closeWriter();
        std::string line;
        for (char letter = 0; ::read(m_ends[0], &letter, 1) == 1 && letter != '\n';)
            line += letter;
        return line;
    }

private:
    void closeWriter() {
        if (m_ends[1] >= 0)
            ::close(std::exchange(m_ends[1], -1));
    }
    int m_ends[2]{-1, -1};
};

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
    Channel channel;
    auto const screen = std::to_string(options.width) + 'x' + std::to_string(options.height) + "x24";
    m_server = Process({"Xvfb", "-displayfd", "3", "-screen", "0", screen, "-nolisten", "tcp", "-noreset"},
                       m_environment, log("Xvfb"), "/", channel.writer());
    auto const number = channel.readLine();
    ASSERT_FALSE(number.empty()) << "no X server: " << contentsOf(log("Xvfb"));
    m_displayName = ':' + number;
    m_environment["DISPLAY"] = m_displayName;
    m_display = std::make_unique<Display>(m_displayName);
}

void Desktop::startBus() {
    Channel channel;
    m_busDaemon = Process({"dbus-daemon", "--session", "--nofork", "--print-address=3"}, m_environment,
                          log("bus"), "/", channel.writer());
    auto const address = channel.readLine();
    ASSERT_FALSE(address.empty()) << "no bus: " << contentsOf(log("bus"));
    m_environment["DBUS_SESSION_BUS_ADDRESS"] = address;
    m_busName = QString::fromStdString(nextName("desktop"));
    m_bus = QDBusConnection::connectToBus(QString::fromStdString(address), m_busName);
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

void Desktop::startTray() {
    auto const configuration = m_folder.write("tint2rc", trayConfiguration);
    m_tray = Process({"tint2", "-c", configuration}, m_environment, log("tint2"));
    EXPECT_TRUE(waitFor([&] { return m_display->hasOwner("_NET_SYSTEM_TRAY_S0"); }));
}

void Desktop::startCompositor() {
    m_compositor =
        Process({"picom", "--backend", "xrender", "--config", "/dev/null"}, m_environment, log("picom"));
    EXPECT_TRUE(waitFor([&] { return m_display->hasOwner("_NET_WM_CM_S0"); }));
}

void Desktop::takePicture(std::string const& path) const {
    Process({"import", "-window", "root", path}, m_environment, log("import")).waitForExit();
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
