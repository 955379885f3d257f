#include "platform/linux/DropCatcher.h"

#include <xcb/xfixes.h>

#include <algorithm>

namespace taliro {

namespace {

/// The version of the drag and drop protocol that we speak.
constexpr std::uint32_t xdndVersion = 5;
constexpr std::uint32_t hasMoreTypes = 1;

} // namespace

DropCatcher::DropCatcher(X11Connection& x, X11PointerEvents& pointer,
                         std::function<std::optional<Rect>()> place, std::function<void()> onEntered)
    : m_x(x), m_place(std::move(place)), m_onEntered(std::move(onEntered)), m_window(xcb_generate_id(x)) {
    std::uint32_t const overrideRedirect = 1;
    xcb_create_window(m_x, XCB_COPY_FROM_PARENT, m_window, m_x.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &overrideRedirect);
    xcb_change_property(m_x, XCB_PROP_MODE_REPLACE, m_window, m_x.atom("XdndAware"), XCB_ATOM_ATOM, 32, 1,
                        &xdndVersion);
    m_x.flush();
    m_x.watchSelection(m_x.atom("XdndSelection"));
    m_events = m_x.observe([this](xcb_generic_event_t const& event) { hear(event); });
    m_release = pointer.observeButtonRelease([this] { sink(); });
}

DropCatcher::~DropCatcher() {
    xcb_destroy_window(m_x, m_window);
    m_x.flush();
}

void DropCatcher::hear(xcb_generic_event_t const& event) {
    auto const type = event.response_type & 0x7f;
    if (m_x.xfixesEvents() && type == *m_x.xfixesEvents() + XCB_XFIXES_SELECTION_NOTIFY) {
        auto const& change = reinterpret_cast<xcb_xfixes_selection_notify_event_t const&>(event);
        if (change.selection == m_x.atom("XdndSelection"))
            change.owner == XCB_NONE ? sink() : rise();
    } else if (type == XCB_CLIENT_MESSAGE) {
        auto const& message = reinterpret_cast<xcb_client_message_event_t const&>(event);
        if (message.window == m_window)
            hearMessage(message);
    }
}

void DropCatcher::rise() {
    auto const place = m_place();
    if (!place)
        return;
    std::array const values{static_cast<std::uint32_t>(static_cast<std::int32_t>(place->x)),
                            static_cast<std::uint32_t>(static_cast<std::int32_t>(place->y)),
                            static_cast<std::uint32_t>(std::max(1.0, place->width)),
                            static_cast<std::uint32_t>(std::max(1.0, place->height)),
                            static_cast<std::uint32_t>(XCB_STACK_MODE_ABOVE)};
    xcb_configure_window(m_x, m_window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_STACK_MODE,
                         values.data());
    xcb_map_window(m_x, m_window);
    m_x.flush();
    m_risen = true;
}

void DropCatcher::sink() {
    if (!m_risen)
        return;
    m_risen = false;
    xcb_unmap_window(m_x, m_window);
    m_x.flush();
}

void DropCatcher::hearMessage(xcb_client_message_event_t const& message) {
    auto const source = message.data.data32[0];
    if (message.type == m_x.atom("XdndEnter")) {
        if (isWanted(message))
            m_onEntered();
    } else if (message.type == m_x.atom("XdndPosition")) {
        refuse(source, "XdndStatus");
    } else if (message.type == m_x.atom("XdndDrop")) {
        refuse(source, "XdndFinished");
    }
}

void DropCatcher::refuse(xcb_window_t source, char const* type) {
    xcb_client_message_event_t answer{};
    answer.response_type = XCB_CLIENT_MESSAGE;
    answer.format = 32;
    answer.window = source;
    answer.type = m_x.atom(type);
    answer.data.data32[0] = m_window;
    xcb_send_event(m_x, false, source, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<char const*>(&answer));
    m_x.flush();
}

bool DropCatcher::isWanted(xcb_client_message_event_t const& enter) {
    auto const& data = enter.data.data32;
    std::vector<std::uint32_t> offered(data + 2, data + 5);
    if ((data[1] & hasMoreTypes) != 0)
        offered = m_x.values(data[0], m_x.atom("XdndTypeList"));
    static constexpr std::array wanted{"text/uri-list", "text/x-moz-url",  "_NETSCAPE_URL",
                                       "image/png",     "image/tiff",      "image/jpeg",
                                       "image/bmp",     "XdndDirectSave0", "application/x-qt-image"};
    return std::ranges::any_of(wanted, [&](char const* type) {
        return std::ranges::find(offered, m_x.atom(type)) != offered.end();
    });
}

} // namespace taliro
