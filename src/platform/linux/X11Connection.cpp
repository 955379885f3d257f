#include "platform/linux/X11Connection.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>

#include <xcb/xfixes.h>

#include <array>

namespace taliro {

std::unique_ptr<X11Connection> X11Connection::open() {
    int screen = 0;
    auto* connection = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11Connection>(new X11Connection(connection, screen));
}

bool X11Connection::isReachable() {
    auto* connection = xcb_connect(nullptr, nullptr);
    bool const reached = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return reached;
}

X11Connection::X11Connection(xcb_connection_t* connection, int screen)
    : m_connection(connection), m_screenNumber(screen) {
    auto iterator = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screen && iterator.rem > 1; ++i)
        xcb_screen_next(&iterator);
    m_screen = iterator.data;
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { readEvents(); });
    // Waiting for a reply takes events off the socket too, of which the notifier then knows nothing.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     m_notifier.get(), [this] { readEvents(); });
}

X11Connection::~X11Connection() {
    m_notifier.reset();
    xcb_disconnect(m_connection);
}

void X11Connection::readEvents() {
    while (Reply<xcb_generic_event_t> const event{xcb_poll_for_event(m_connection)})
        m_observers.notify(*event);
    if (xcb_connection_has_error(m_connection) != 0)
        m_notifier->setEnabled(false);
}

xcb_atom_t X11Connection::atom(std::string_view name) {
    if (auto const known = m_atoms.find(name); known != m_atoms.end())
        return known->second;
    auto const cookie =
        xcb_intern_atom(m_connection, false, static_cast<std::uint16_t>(name.size()), name.data());
    Reply<xcb_intern_atom_reply_t> const reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    auto const atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    m_atoms.emplace(name, atom);
    return atom;
}

xcb_atom_t X11Connection::screenAtom(std::string_view prefix) {
    return atom(std::string(prefix) + std::to_string(m_screenNumber));
}

void X11Connection::watchRootProperties() {
    std::uint32_t const mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection, root(), XCB_CW_EVENT_MASK, &mask);
    flush();
}

bool X11Connection::watchSelection(xcb_atom_t selection) {
    if (!m_xfixesEvents) {
        auto const* extension = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
        if (!extension || !extension->present)
            return false;
        auto const cookie = xcb_xfixes_query_version(m_connection, 5, 0);
        Reply<xcb_xfixes_query_version_reply_t> const version(
            xcb_xfixes_query_version_reply(m_connection, cookie, nullptr));
        if (!version)
            return false;
        m_xfixesEvents = extension->first_event;
    }
    xcb_xfixes_select_selection_input(m_connection, root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    flush();
    return true;
}

xcb_window_t X11Connection::selectionOwner(xcb_atom_t selection) {
    auto const cookie = xcb_get_selection_owner(m_connection, selection);
    Reply<xcb_get_selection_owner_reply_t> const reply(
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

std::vector<std::uint32_t> X11Connection::values(xcb_window_t window, xcb_atom_t property) {
    auto const cookie = xcb_get_property(m_connection, false, window, property, XCB_ATOM_ANY, 0, 4096);
    Reply<xcb_get_property_reply_t> const reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    auto const* first = static_cast<std::uint32_t const*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

void X11Connection::sendToRoot(xcb_window_t window, xcb_atom_t type,
                               std::array<std::uint32_t, 5> const& data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = type;
    std::ranges::copy(data, event.data.data32);
    xcb_send_event(m_connection, false, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<char const*>(&event));
    flush();
}

} // namespace taliro
