#include "desktop/Display.h"

#include "desktop/Process.h"

#include <gtest/gtest.h>

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <ranges>

namespace taliro::testing {

namespace {

template <typename T>
struct Freed {
    void operator()(T* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, Freed<T>>;

constexpr int dragSteps = 12;

std::uint32_t keysymNamed(std::string_view name) {
    if (name == "Control" || name == "Shift" || name == "Alt" || name == "Super")
        return xkb_keysym_from_name((std::string(name) + "_L").c_str(), XKB_KEYSYM_NO_FLAGS);
    return xkb_keysym_from_name(std::string(name).c_str(), XKB_KEYSYM_NO_FLAGS);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, Place const& place) {
    return stream << place.width << 'x' << place.height << '+' << place.x << '+' << place.y;
}

Display::Display(std::string const& name) : m_connection(xcb_connect(name.c_str(), nullptr)) {
    auto const* setup = xcb_get_setup(m_connection);
    m_screen = xcb_setup_roots_iterator(setup).data;
    m_minKeycode = setup->min_keycode;
    auto const count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    Reply<xcb_get_keyboard_mapping_reply_t> const mapping(xcb_get_keyboard_mapping_reply(
        m_connection, xcb_get_keyboard_mapping(m_connection, m_minKeycode, count), nullptr));
    auto const* syms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    m_symsPerKeycode = mapping->keysyms_per_keycode;
    m_keysyms.assign(syms, syms + xcb_get_keyboard_mapping_keysyms_length(mapping.get()));
}

Display::~Display() {
    xcb_disconnect(m_connection);
}

xcb_atom_t Display::atom(std::string_view name) {
    Reply<xcb_intern_atom_reply_t> const reply(xcb_intern_atom_reply(
        m_connection,
        xcb_intern_atom(m_connection, false, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<std::uint32_t> Display::values(xcb_window_t window, std::string_view property) {
    auto const cookie = xcb_get_property(m_connection, false, window, atom(property), XCB_ATOM_ANY, 0, 4096);
    Reply<xcb_get_property_reply_t> const reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    auto const* first = static_cast<std::uint32_t const*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

std::string Display::text(xcb_window_t window, std::string_view property) {
    auto const cookie = xcb_get_property(m_connection, false, window, atom(property), XCB_ATOM_ANY, 0, 4096);
    Reply<xcb_get_property_reply_t> const reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<char const*>(xcb_get_property_value(reply.get())), reply->value_len};
}

bool Display::hasOwner(std::string_view selection) {
    Reply<xcb_get_selection_owner_reply_t> const reply(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, atom(selection)), nullptr));
    return reply && reply->owner != XCB_NONE;
}

void Display::sync() {
    Reply<xcb_get_input_focus_reply_t> const reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

std::vector<WindowInfo> Display::windows() {
    std::vector<WindowInfo> found;
    collect(root(), false, found);
    return found;
}

void Display::collect(xcb_window_t parent, bool isInFrame, std::vector<WindowInfo>& found) {
    Reply<xcb_query_tree_reply_t> const tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, parent), nullptr));
    if (!tree)
        return;
    auto const* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        auto const id = children[i];
        Reply<xcb_get_window_attributes_reply_t> const attributes(xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, id), nullptr));
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
            continue;
        auto const klass = text(id, "WM_CLASS");
        if (!klass.empty()) {
            Reply<xcb_get_geometry_reply_t> const geometry(
                xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, id), nullptr));
            Reply<xcb_translate_coordinates_reply_t> const corner(xcb_translate_coordinates_reply(
                m_connection, xcb_translate_coordinates(m_connection, id, root(), 0, 0), nullptr));
            if (geometry && corner)
                found.push_back({id, text(id, "_NET_WM_NAME"), klass.substr(klass.find('\0') + 1).c_str(),
                                 text(id, "WM_WINDOW_ROLE"),
                                 Place{corner->dst_x, corner->dst_y, geometry->width, geometry->height},
                                 isInFrame});
        }
        collect(id, parent == root(), found);
    }
}

std::optional<WindowInfo> Display::window(std::string_view role) {
    auto const all = windows();
    auto const found = std::ranges::find(all, role, &WindowInfo::role);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

WindowInfo Display::expectWindow(std::string_view role) {
    std::optional<WindowInfo> found;
    EXPECT_TRUE(waitFor([&] { return (found = window(role)).has_value(); })) << "no window \"" << role << '"';
    return found.value_or(WindowInfo{});
}

bool Display::waitUntilGone(std::string_view role) {
    return waitFor([&] { return !window(role); });
}

xcb_window_t Display::focused() {
    Reply<xcb_get_input_focus_reply_t> const reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply ? reply->focus : xcb_window_t{XCB_NONE};
}

xcb_window_t Display::underPointer() {
    auto found = root();
    for (auto child = found; child != XCB_NONE;) {
        found = child;
        Reply<xcb_query_pointer_reply_t> const reply(
            xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, found), nullptr));
        child = reply ? reply->child : xcb_window_t{XCB_NONE};
    }
    return found;
}

std::uint32_t Display::colour(int x, int y) {
    Reply<xcb_get_image_reply_t> const reply(xcb_get_image_reply(
        m_connection,
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root(), static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), 1, 1, ~0u),
        nullptr));
    std::uint32_t colour = 0;
    if (reply && xcb_get_image_data_length(reply.get()) >= 4)
        std::memcpy(&colour, xcb_get_image_data(reply.get()), 4);
    return colour;
}

bool Display::isKeyboardGrabbed() {
    auto const cookie = xcb_grab_keyboard(m_connection, false, root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                          XCB_GRAB_MODE_ASYNC);
    Reply<xcb_grab_keyboard_reply_t> const reply(xcb_grab_keyboard_reply(m_connection, cookie, nullptr));
    xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    sync();
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool Display::hasState(xcb_window_t window, std::string_view state) {
    auto const states = values(window, "_NET_WM_STATE");
    return std::ranges::find(states, atom(state)) != states.end();
}

void Display::sendKeysym(std::uint32_t keysym, bool down) {
    auto const found = std::ranges::find(m_keysyms, keysym);
    ASSERT_NE(found, m_keysyms.end()) << "no key for keysym " << keysym;
    auto const keycode =
        static_cast<std::uint8_t>(m_minKeycode + (found - m_keysyms.begin()) / m_symsPerKeycode);
    xcb_test_fake_input(m_connection, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode, XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
    sync();
}

void Display::sendKey(std::string_view name, bool down) {
    sendKeysym(keysymNamed(name), down);
}

void Display::key(std::string_view chord) {
    std::vector<std::string_view> names;
    for (std::size_t at = 0; at <= chord.size();) {
        auto const end = std::min(chord.find('+', at), chord.size());
        names.push_back(chord.substr(at, end - at));
        at = end + 1;
    }
    for (auto const name : names)
        sendKey(name, true);
    for (auto const name : names | std::views::reverse)
        sendKey(name, false);
}

void Display::type(std::string_view text) {
    for (char const letter : text) {
        auto const keysym = static_cast<std::uint32_t>(letter);
        auto const found = std::ranges::find(m_keysyms, keysym);
        bool const shifted = (found - m_keysyms.begin()) % m_symsPerKeycode == 1;
        if (shifted)
            keyDown("Shift");
        sendKeysym(keysym, true);
        sendKeysym(keysym, false);
        if (shifted)
            keyUp("Shift");
    }
}

void Display::move(int x, int y) {
    xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root(),
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    sync();
}

void Display::button(int number, bool down) {
    sendButton(number, down);
    sync();
}

void Display::sendButton(int number, bool down) {
    xcb_test_fake_input(m_connection, down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE,
                        static_cast<std::uint8_t>(number), XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void Display::click(int x, int y, int number, int times) {
    move(x, y);
    for (int i = 0; i < times; ++i) {
        sendButton(number, true);
        sendButton(number, false);
    }
    sync(); // Once: on a busy machine the clicks of a double click would else lie too far apart.
}

void Display::drag(int fromX, int fromY, int toX, int toY) {
    move(fromX, fromY);
    button(1, true);
    for (int step = 1; step <= dragSteps; ++step)
        move(fromX + (toX - fromX) * step / dragSteps, fromY + (toY - fromY) * step / dragSteps);
    button(1, false);
}

ForeignWindow::ForeignWindow(std::string const& display, Place const& place)
    : m_connection(xcb_connect(display.c_str(), nullptr)) {
    auto const* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    auto const window = xcb_generate_id(m_connection);
    std::uint32_t const values[]{screen->white_pixel, XCB_EVENT_MASK_BUTTON_PRESS};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root,
                      static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y),
                      static_cast<std::uint16_t>(place.width), static_cast<std::uint16_t>(place.height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    static constexpr char klass[] = "foreign\0Foreign";
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof klass, klass);
    // The user asked for this place, so the window manager keeps it: flags, then place and size.
    std::uint32_t const hints[18]{
        1 | 2, static_cast<std::uint32_t>(place.x), static_cast<std::uint32_t>(place.y),
        static_cast<std::uint32_t>(place.width), static_cast<std::uint32_t>(place.height)};
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, 18, hints);
    xcb_map_window(m_connection, window);
    xcb_flush(m_connection);
}

ForeignWindow::~ForeignWindow() {
    xcb_disconnect(m_connection);
}

} // namespace taliro::testing
