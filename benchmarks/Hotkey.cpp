#include "Comparison.h"

#include "Seat.h"

#include <chrono>
#include <cstdio>
#include <utility>

namespace taliro::bench {

using namespace std::chrono_literals;

namespace {

constexpr int rounds = 101;

/// The least that a program can do: hold a key and fill a window.
class BareProgram {
public:
    explicit BareProgram(Seat const& seat)
        : m_connection(xcb_connect(seat.environment().at("DISPLAY").c_str(), nullptr)) {
        auto const* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_grab_key(m_connection, true, screen->root, XCB_MOD_MASK_ANY, Seat::f12, XCB_GRAB_MODE_ASYNC,
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

bool measureHotkey(Seat& seat) {
    auto const program = seat.run({TALIRO_PROGRAM});
    if (!seat.waitUntilSeen(true)) {
        std::fprintf(stderr, "Taliro did not show\n");
        return false;
    }
    BareProgram bare(seat);
    auto const holdModifiers = [&](bool down) {
        for (auto key : {Seat::control, Seat::alt, Seat::super})
            seat.key(key, down);
    };
    /// Looks without a pause between two looks.
    auto const stareUntilSeen = [&] {
        auto const end = std::chrono::steady_clock::now() + 10s;
        while (!seat.sees())
            if (std::chrono::steady_clock::now() > end)
                return false;
        return true;
    };
    bool isOursShown = true;
    auto const hideAll = [&] {
        bare.hide();
        if (std::exchange(isOursShown, false))
            seat.pressShortcut();
        seat.waitUntilSeen(false);
    };
    auto const prepareOurs = [&] {
        hideAll();
        holdModifiers(true);
    };
    auto const pressOurs = [&]() -> std::size_t {
        seat.key(Seat::p, true);
        bool const seen = stareUntilSeen();
        isOursShown = true;
        seat.key(Seat::p, false);
        holdModifiers(false);
        return seen;
    };
    auto const pressBare = [&]() -> std::size_t {
        seat.key(Seat::f12, true);
        bare.showWhenPressed();
        bool const seen = stareUntilSeen();
        seat.key(Seat::f12, false);
        return seen;
    };
    bool const measured = compare("press the shortcut, see the browser", {"ours", pressOurs, prepareOurs},
                                  {{"xcb, an empty window", pressBare, hideAll}}, rounds);
    hideAll();
    return measured;
}

} // namespace taliro::bench
