#include "keyboard/Typist.h"

#include <cstdlib>
#include <memory>
#include <ranges>
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#include <xcb/xtest.h>

namespace taliro::testing {

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype([](T* reply) { std::free(reply); })>;

} // namespace

Typist::Typist() : m_connection(xcb_connect(nullptr, nullptr)) {
    auto const* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_root = screen->root;
    m_window = xcb_generate_id(m_connection);
    std::uint32_t const values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE};
    xcb_create_window(m_connection, screen->root_depth, m_window, m_root, 700, 500, 200, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(m_connection, m_window);
    Reply<xcb_xkb_use_extension_reply_t> const xkb(
        xcb_xkb_use_extension_reply(m_connection, xcb_xkb_use_extension(m_connection, 1, 0), nullptr));
    sync();
}

Typist::~Typist() {
    xcb_disconnect(m_connection);
}

void Typist::send(std::uint8_t key, bool down) {
    xcb_test_fake_input(m_connection, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, XCB_CURRENT_TIME, m_root,
                        0, 0, 0);
    sync();
}

void Typist::type(std::vector<std::uint8_t> const& keys) {
    for (auto key : keys)
        press(key);
    for (auto key : std::views::reverse(keys))
        release(key);
}

void Typist::click(int x, int y) {
    xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_root, static_cast<int16_t>(x),
                        static_cast<int16_t>(y), 0);
    for (auto type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
        xcb_test_fake_input(m_connection, static_cast<std::uint8_t>(type), 1, XCB_CURRENT_TIME, m_root, 0, 0,
                            0);
    sync();
}

void Typist::takeFocus() {
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
    sync();
}

bool Typist::hasFocus() {
    Reply<xcb_get_input_focus_reply_t> const reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply && reply->focus == m_window;
}

std::vector<std::uint8_t> Typist::received() {
    sync();
    std::vector<std::uint8_t> keys;
    while (Reply<xcb_generic_event_t> const event{xcb_poll_for_event(m_connection)})
        if ((event->response_type & 0x7F) == XCB_KEY_PRESS)
            keys.push_back(reinterpret_cast<xcb_key_press_event_t const&>(*event).detail);
    return keys;
}

bool Typist::grab(std::uint8_t key, std::uint16_t modifiers) {
    Reply<xcb_generic_error_t> const error(
        xcb_request_check(m_connection, xcb_grab_key_checked(m_connection, true, m_root, modifiers, key,
                                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    return !error;
}

void Typist::ungrab(std::uint8_t key, std::uint16_t modifiers) {
    xcb_ungrab_key(m_connection, key, m_root, modifiers);
    sync();
}

void Typist::lockLayout(std::uint8_t layout) {
    xcb_xkb_latch_lock_state(m_connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, true, layout, 0, false, 0);
    sync();
}

std::uint16_t Typist::lockedModifiers() {
    Reply<xcb_xkb_get_state_reply_t> const reply(xcb_xkb_get_state_reply(
        m_connection, xcb_xkb_get_state(m_connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return reply ? reply->lockedMods : 0;
}

void Typist::sync() {
    Reply<xcb_get_input_focus_reply_t> const reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

} // namespace taliro::testing
