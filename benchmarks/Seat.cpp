#include "Seat.h"

#include "desktop/Servers.h"

#include <xcb/xtest.h>

namespace taliro::bench {

using testing::Process;

Seat::~Seat() {
    if (m_connection)
        xcb_disconnect(m_connection);
}

bool Seat::start() {
    m_environment = {{"HOME", m_home.path()},
                     {"PATH", std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin:/bin"},
                     {"LANG", "C.UTF-8"},
                     {"XDG_RUNTIME_DIR", m_home.path()}};
    return startServer() && startBus() && startWindowManager();
}

Process Seat::run(std::vector<std::string> const& command) const {
    return Process(command, m_environment, m_home / ".log", m_home.path());
}

bool Seat::startServer() {
    auto server = testing::startXServer(width, height, m_environment, m_home / ".log");
    m_server = std::move(server.process);
    m_environment["DISPLAY"] = server.address;
    m_connection = xcb_connect(server.address.c_str(), nullptr);
    if (xcb_connection_has_error(m_connection) != 0)
        return false;
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    return true;
}

bool Seat::startBus() {
    auto bus = testing::startBus(m_environment, m_home / ".log");
    m_bus = std::move(bus.process);
    m_environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address;
    return !bus.address.empty();
}

bool Seat::startWindowManager() {
    auto const ready = m_home / ".ready";
    m_windowManager = run({"openbox", "--startup", "touch " + ready.string()});
    return testing::waitFor([&] { return std::filesystem::exists(ready); });
}

void Seat::key(std::uint8_t key, bool down) {
    xcb_test_fake_input(m_connection, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, XCB_CURRENT_TIME, root(),
                        0, 0, 0);
    xcb_flush(m_connection);
}

void Seat::pressShortcut() {
    for (auto const held : {control, alt, super, p})
        key(held, true);
    for (auto const held : {p, super, alt, control})
        key(held, false);
}

bool Seat::sees() const {
    Reply<xcb_get_image_reply_t> const image(xcb_get_image_reply(
        m_connection,
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root(), width / 2, height / 2, 1, 1, 0xFFFFFF),
        nullptr));
    return image && (*reinterpret_cast<std::uint32_t*>(xcb_get_image_data(image.get())) & 0xFFFFFF) != 0;
}

bool Seat::waitUntilSeen(bool something) const {
    return testing::waitFor([&] { return sees() == something; });
}

} // namespace taliro::bench
