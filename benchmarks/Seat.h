#pragma once

#include "desktop/Process.h"
#include "support/TemporaryFolder.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace taliro::bench {

template <typename T>
using Reply = std::unique_ptr<T, decltype([](T* reply) { std::free(reply); })>;

/// A place to work at: a virtual screen with a window manager and a session bus, a home folder, and someone
/// at the keyboard who looks at the middle of the screen. Nothing of the user's own is read or written.
class Seat {
public:
    static constexpr int width = 1024;
    static constexpr int height = 768;

    /// `home`: where everything that programs write goes.
    explicit Seat(testing::TemporaryFolder const& home) : m_home(home) {}
    ~Seat();
    Seat(Seat const&) = delete;
    Seat& operator=(Seat const&) = delete;

    /// False where the machine has no virtual screen, window manager or bus.
    bool start();

    testing::Process run(std::vector<std::string> const& command) const;
    testing::Environment const& environment() const { return m_environment; }
    std::filesystem::path const& home() const { return m_home.path(); }
    xcb_connection_t* connection() const { return m_connection; }
    xcb_window_t root() const { return m_screen->root; }

    // Keys have the numbers that X gives them.
    static constexpr std::uint8_t control = 37, alt = 64, super = 133, p = 33, f12 = 96;
    void key(std::uint8_t key, bool down);
    /// Presses what shows and hides Taliro.
    void pressShortcut();

    /// Whether something is in the middle of the screen.
    bool sees() const;
    /// Until it is, or isn't.
    bool waitUntilSeen(bool something) const;

private:
    bool startServer();
    bool startBus();
    bool startWindowManager();

    testing::TemporaryFolder const& m_home;
    testing::Environment m_environment;
    testing::Process m_server;
    testing::Process m_bus;
    testing::Process m_windowManager;
    xcb_connection_t* m_connection = nullptr;
    xcb_screen_t* m_screen = nullptr;
};

} // namespace taliro::bench
