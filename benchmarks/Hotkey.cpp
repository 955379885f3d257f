#include "Comparison.h"

#include "desktop/Process.h"
#include "support/TemporaryFolder.h"

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <thread>
#include <unistd.h>
#include <utility>

namespace taliro::bench {

namespace {

using testing::Environment;
using testing::Process;
using namespace std::chrono_literals;

template <typename T>
using Reply = std::unique_ptr<T, decltype([](T* reply) { std::free(reply); })>;

// The keys' numbers in X.
constexpr std::uint8_t control = 37, alt = 64, super = 133, p = 33, f12 = 96;

/// A virtual screen with a window manager, and someone at its keyboard who looks at the middle of it.
class Seat {
public:
    explicit Seat(testing::TemporaryFolder const& folder) : m_folder(folder) {}
    ~Seat() {
        if (m_connection)
            xcb_disconnect(m_connection);
    }

    bool start() {
        m_environment = {{"HOME", m_folder.path()},
                         {"PATH", std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin:/bin"},
                         {"LANG", "C.UTF-8"},
                         {"XDG_RUNTIME_DIR", m_folder.path()},
                         {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}};
        return startServer() && startWindowManager();
    }
    Process run(std::vector<std::string> const& command) {
        return Process(command, m_environment, m_folder / "log");
    }
    xcb_connection_t* connection() const { return m_connection; }
    xcb_window_t root() const { return m_screen->root; }
    char const* display() const { return m_environment.at("DISPLAY").c_str(); }

    void key(std::uint8_t key, bool down) {
        xcb_test_fake_input(m_connection, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, XCB_CURRENT_TIME,
                            root(), 0, 0, 0);
        xcb_flush(m_connection);
    }
    /// The pixel in the middle of the screen.
    std::uint32_t look() {
        Reply<xcb_get_image_reply_t> const image(xcb_get_image_reply(
            m_connection,
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root(), 512, 384, 1, 1, 0xFFFFFF),
            nullptr));
        return image ? *reinterpret_cast<std::uint32_t*>(xcb_get_image_data(image.get())) & 0xFFFFFF : 0;
    }
    bool see(bool something) {
        return testing::waitFor([&] { return (look() != 0) == something; });
    }
    /// As `see`, without a pause between two looks.
    bool stareUntilSeen() {
        auto const end = std::chrono::steady_clock::now() + 10s;
        while (look() == 0)
            if (std::chrono::steady_clock::now() > end)
                return false;
        return true;
    }

private:
    bool startServer() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            return false;
        m_server = Process({"Xvfb", "-displayfd", "3", "-screen", "0", "1024x768x24", "-nolisten", "tcp"},
                           m_environment, m_folder / "log", "/", ends[1]);
        ::close(ends[1]);
        std::string number;
        for (char digit = 0; ::read(ends[0], &digit, 1) == 1 && digit != '\n';)
            number += digit;
        ::close(ends[0]);
        m_environment["DISPLAY"] = ":" + number;
        m_connection = xcb_connect(display(), nullptr);
        if (xcb_connection_has_error(m_connection) != 0)
            return false;
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        return true;
    }
    bool startWindowManager() {
        auto const ready = m_folder / "ready";
        m_windowManager = run({"openbox", "--startup", "touch " + ready.string()});
        return testing::waitFor([&] { return std::filesystem::exists(ready); });
    }

    testing::TemporaryFolder const& m_folder;
    Environment m_environment;
    Process m_server;
    Process m_windowManager;
    xcb_connection_t* m_connection = nullptr;
    xcb_screen_t* m_screen = nullptr;
};

/// The least that a program can do: hold a key and fill a window.
class BareProgram {
public:
    explicit BareProgram(Seat const& seat) : m_connection(xcb_connect(seat.display(), nullptr)) {
        auto const* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_grab_key(m_connection, true, screen->root, XCB_MOD_MASK_ANY, f12, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_ASYNC);
        m_window = xcb_generate_id(m_connection);
        std::uint32_t const values[]{screen->white_pixel, XCB_EVENT_MASK_EXPOSURE};
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 152, 124, 720, 460, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        xcb_flush(m_connection);
    }
    ~BareProgram() { xcb_disconnect(m_connection); }

    void showWhenPressed() {
        waitFor(XCB_KEY_PRESS);
        xcb_map_window(m_connection, m_window);
        xcb_flush(m_connection);
        waitFor(XCB_EXPOSE);
    }
    void hide() {
        xcb_unmap_window(m_connection, m_window);
        xcb_flush(m_connection);
    }

private:
    void waitFor(int type) {
        while (Reply<xcb_generic_event_t> const event{xcb_wait_for_event(m_connection)})
            if ((event->response_type & 0x7F) == type)
                return;
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_window;
};

} // namespace

bool measureHotkey() {
    testing::TemporaryFolder const folder;
    Seat seat(folder);
    if (!seat.start()) {
        std::fprintf(stderr, "No virtual screen to press a key at\n");
        return false;
    }
    auto const program = seat.run({TALIRO_PROGRAM});
    if (!seat.see(true)) {
        std::fprintf(stderr, "Taliro did not show\n");
        return false;
    }
    BareProgram bare(seat);
    auto const holdModifiers = [&](bool down) {
        for (auto key : {control, alt, super})
            seat.key(key, down);
    };
    bool isOursShown = true;
    auto const hideAll = [&] {
        bare.hide();
        if (std::exchange(isOursShown, false)) {
            holdModifiers(true);
            seat.key(p, true);
            seat.key(p, false);
            holdModifiers(false);
        }
        seat.see(false);
    };
    auto const prepareOurs = [&] {
        hideAll();
        holdModifiers(true);
    };
    auto const pressOurs = [&]() -> std::size_t {
        seat.key(p, true);
        bool const seen = seat.stareUntilSeen();
        isOursShown = true;
        seat.key(p, false);
        holdModifiers(false);
        return seen;
    };
    auto const pressBare = [&]() -> std::size_t {
        seat.key(f12, true);
        bare.showWhenPressed();
        bool const seen = seat.stareUntilSeen();
        seat.key(f12, false);
        return seen;
    };
    return compare("press the shortcut, see the browser", {"ours", pressOurs, prepareOurs},
                   {{"xcb, an empty window", pressBare, hideAll}});
}

} // namespace taliro::bench
