#pragma once

#include "desktop/Accessible.h"
#include "desktop/Display.h"
#include "desktop/Process.h"
#include "support/TemporaryFolder.h"

#include <QDBusConnection>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace taliro::testing {

/// A desktop of the test's own: an X server, a window manager, a session bus and a home folder, gone with it.
class Desktop {
public:
    struct Options {
        int width = 1280;
        int height = 800;
        bool windowManager = true;
        bool tray = false; ///< a panel with a tray along the top
    };
    Desktop() : Desktop(Options{}) {}
    explicit Desktop(Options const& options);
    ~Desktop();
    Desktop(Desktop const&) = delete;
    Desktop& operator=(Desktop const&) = delete;

    std::string const& displayName() const { return m_displayName; }
    Display& display() { return *m_display; }
    QDBusConnection const& bus() const { return *m_bus; }
    AccessibilityBus& accessibility();
    Environment const& environment() const { return m_environment; }
    std::filesystem::path const& home() const { return m_home; }
    std::filesystem::path log(std::string const& name) const { return m_folder / (name + ".log"); }

    /// `relative` to the home folder.
    std::filesystem::path write(std::string const& relative, std::string const& bytes = "text\n") const;
    std::filesystem::path makeFolder(std::string const& relative) const;

    /// Starts programs out with these settings, given as keys and values of a property list.
    void writeDefaults(std::string const& entries) const;
    /// The settings' property list.
    std::string storedDefaults() const;

    void startTray();

private:
    std::filesystem::path defaultsFile() const;
    void startServer(Options const& options);
    void startBus();

    TemporaryFolder m_folder;
    std::filesystem::path m_home;
    Environment m_environment;
    Process m_server;
    std::string m_displayName;
    std::unique_ptr<Display> m_display;
    Process m_busDaemon;
    std::optional<QDBusConnection> m_bus;
    QString m_busName;
    std::unique_ptr<AccessibilityBus> m_accessibility;
    Process m_windowManager;
    Process m_tray;
};

/// The program under test, started on a desktop.
class Program {
public:
    explicit Program(Desktop& desktop, std::vector<std::string> const& arguments = {},
                     Environment const& more = {}, std::filesystem::path const& program = built());
    /// The program as the build made it.
    static std::filesystem::path built();
    ~Program();

    /// The root of its accessibility tree.
    Accessible const& tree();
    Process& process() { return m_process; }
    /// What it wrote to its standard streams.
    std::string output() const;

private:
    Desktop& m_desktop;
    std::filesystem::path m_log;
    Process m_process;
    Accessible m_tree;
};

/// Starts the program anew, in `folder`, while another instance runs or only to ask it something; its exit
/// status.
std::optional<int> runProgram(Desktop& desktop, std::vector<std::string> const& arguments,
                              std::filesystem::path const& folder = "/");

} // namespace taliro::testing
