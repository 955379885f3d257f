#include "platform/linux/XKeyboard.h"

#include "platform/linux/X11Connection.h"

#include <QSocketNotifier>

#define explicit explicit_ // a C header, which names members so
#include <xcb/xkb.h>
#undef explicit
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace taliro {

namespace {

/// Changing a keyboard's map makes a burst of events.
constexpr std::chrono::milliseconds burst{20};

/// The real modifiers that pressing the key sets or locks.
std::uint16_t modifiersSetBy(xkb_keymap* keymap, xkb_keycode_t key) {
    auto* state = xkb_state_new(keymap);
    xkb_state_update_key(state, key, XKB_KEY_DOWN);
    auto const mask = xkb_state_serialize_mods(state, XKB_STATE_MODS_EFFECTIVE);
    xkb_state_unref(state);
    return mask & 0xFF;
}

/// Keys that type these have the modifier's bit, wherever they are on this keyboard.
XKeyboard::ModifierBits findModifierBits(xkb_keymap* keymap) {
    XKeyboard::ModifierBits bits;
    for (auto key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap); ++key) {
        xkb_keysym_t const* symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap, key, 0, 0, &symbols) != 1)
            continue;
        switch (symbols[0]) {
        case XKB_KEY_Alt_L:
        case XKB_KEY_Alt_R:
            bits.alt |= modifiersSetBy(keymap, key);
            break;
        case XKB_KEY_Super_L:
        case XKB_KEY_Super_R:
            bits.super |= modifiersSetBy(keymap, key);
            break;
        case XKB_KEY_Num_Lock:
            bits.numLock |= modifiersSetBy(keymap, key);
            break;
        case XKB_KEY_Scroll_Lock:
            bits.scrollLock |= modifiersSetBy(keymap, key);
            break;
        default:
            break;
        }
    }
    return bits;
}

/// A grab is for one exact state of all modifiers, so each state of the locks needs one.
template <typename Action>
void forEachLockState(XKeyboard::Combination const& combination, Action action) {
    for (std::uint16_t subset = combination.locks;; subset = (subset - 1) & combination.locks) {
        action(static_cast<std::uint16_t>(combination.modifiers | subset));
        if (subset == 0)
            return;
    }
}

} // namespace

XKeyboard::XKeyboard() : m_context(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    m_readMapSoon.setSingleShot(true);
    QObject::connect(&m_readMapSoon, &QTimer::timeout, [this] {
        readMap();
        mapChanged.notify();
        layoutChanged.notify();
    });
    if (connect())
        selectEvents();
    readMap();
}

XKeyboard::~XKeyboard() {
    m_notifier.reset();
    xkb_keymap_unref(m_keymap);
    xkb_context_unref(m_context);
    if (m_connection)
        xcb_disconnect(m_connection);
}

bool XKeyboard::connect() {
    int screenNumber = 0;
    auto* connection = xcb_connect(nullptr, &screenNumber);
    bool const usable =
        xcb_connection_has_error(connection) == 0 &&
        xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &m_xkbEvent,
                                    nullptr) != 0;
    if (!usable) {
        xcb_disconnect(connection);
        return false;
    }
    m_connection = connection;
    m_device = xkb_x11_get_core_keyboard_device_id(connection);
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { readEvents(); });
    return true;
}

void XKeyboard::selectEvents() {
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                     XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                       XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_KEY_ACTIONS |
                                       XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    auto const device = static_cast<xcb_xkb_device_spec_t>(m_device);
    xcb_xkb_select_events_aux(m_connection, device, events, 0, 0, mapParts, mapParts, &details);
    // A key held down then repeats as presses alone.
    constexpr auto detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    auto const cookie = xcb_xkb_per_client_flags(m_connection, device, detectable, detectable, 0, 0, 0);
    Reply<xcb_xkb_per_client_flags_reply_t> const reply(
        xcb_xkb_per_client_flags_reply(m_connection, cookie, nullptr));
}

void XKeyboard::readMap() {
    xkb_keymap* keymap = nullptr;
    m_layout = 0;
    if (m_connection) {
        keymap =
            xkb_x11_keymap_new_from_device(m_context, m_connection, m_device, XKB_KEYMAP_COMPILE_NO_FLAGS);
        if (auto* state = keymap ? xkb_x11_state_new_from_device(keymap, m_connection, m_device) : nullptr) {
            m_layout = xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE);
            xkb_state_unref(state);
        }
        readEventsSoon();
    } else {
        keymap = xkb_keymap_new_from_names(m_context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS);
    }
    if (!keymap)
        return; // The last one known serves on.
    xkb_keymap_unref(m_keymap);
    m_keymap = keymap;
    m_bits = findModifierBits(keymap);
}

void XKeyboard::readEvents() {
    while (Reply<xcb_generic_event_t> const event{xcb_poll_for_event(m_connection)})
        hear(*event);
    if (xcb_connection_has_error(m_connection) != 0)
        m_notifier->setEnabled(false);
}

/// Waiting for a reply may have taken events off the socket, which then stays silent.
void XKeyboard::readEventsSoon() {
    QTimer::singleShot(0, m_notifier.get(), [this] { readEvents(); });
}

void XKeyboard::hear(xcb_generic_event_t const& event) {
    auto const type = event.response_type & 0x7F;
    if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
        auto const& key = reinterpret_cast<xcb_key_press_event_t const&>(event);
        keyEvents.notify({type == XCB_KEY_PRESS, key.detail, key.state});
        return;
    }
    if (type != m_xkbEvent)
        return;
    // The XKB extension tells its events apart by the byte after the type.
    switch (event.pad0) {
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
        m_readMapSoon.start(burst);
        break;
    case XCB_XKB_STATE_NOTIFY: {
        auto const layout = reinterpret_cast<xcb_xkb_state_notify_event_t const&>(event).group;
        if (std::exchange(m_layout, layout) != layout)
            layoutChanged.notify();
        break;
    }
    default:
        break;
    }
}

XKeyboard::Combination XKeyboard::combination(std::uint8_t keycode, std::uint16_t modifiers) const {
    std::uint16_t const locks = XCB_MOD_MASK_LOCK | m_bits.numLock | m_bits.scrollLock;
    return {keycode, modifiers, static_cast<std::uint16_t>(locks & ~modifiers)};
}

std::optional<int> XKeyboard::grab(Combination const& combination) {
    std::vector<xcb_void_cookie_t> cookies;
    forEachLockState(combination, [&](std::uint16_t state) {
        cookies.push_back(xcb_grab_key_checked(m_connection, true, m_root, state, combination.keycode,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    });
    std::optional<int> refused;
    for (auto cookie : cookies) {
        Reply<xcb_generic_error_t> const error(xcb_request_check(m_connection, cookie));
        if (error)
            refused = error->error_code;
    }
    if (refused)
        ungrab(combination);
    readEventsSoon();
    return refused;
}

void XKeyboard::ungrab(Combination const& combination) {
    forEachLockState(combination, [&](std::uint16_t state) {
        xcb_ungrab_key(m_connection, combination.keycode, m_root, state);
    });
    xcb_flush(m_connection);
}

std::optional<std::string> XKeyboard::rootText(std::string_view property) {
    if (!m_connection)
        return std::nullopt;
    auto const length = static_cast<std::uint16_t>(property.size());
    Reply<xcb_intern_atom_reply_t> const atom(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, true, length, property.data()), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return std::nullopt;
    constexpr std::uint32_t words = 1024;
    Reply<xcb_get_property_reply_t> const reply(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, false, m_root, atom->atom, XCB_ATOM_ANY, 0, words),
        nullptr));
    readEventsSoon();
    if (!reply || reply->type == XCB_ATOM_NONE)
        return std::nullopt;
    auto const* bytes = static_cast<char const*>(xcb_get_property_value(reply.get()));
    return std::string(bytes, static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

} // namespace taliro
