#include "platform/linux/XcbDirectSave.h"

#include <QGuiApplication>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace taliro {

namespace {

constexpr xcb_atom_t noAtom = XCB_ATOM_NONE;
constexpr xcb_window_t noWindow = XCB_WINDOW_NONE;

template <typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T* reply) {
    return {reply, &std::free};
}

xcb_connection_t* connection() {
    auto* const x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* x, char const* name) {
    auto const cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    auto const reply = owned(xcb_intern_atom_reply(x, cookie, nullptr));
    return reply ? reply->atom : noAtom;
}

/// The drag's source owns the selection that the drag's data comes by.
xcb_window_t dragSource(xcb_connection_t* x) {
    auto const reply = owned(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, atom(x, "XdndSelection")), nullptr));
    return reply ? reply->owner : noWindow;
}

} // namespace

std::optional<std::string> XcbDirectSave::promisedName() {
    auto* const x = connection();
    auto const source = x ? dragSource(x) : noWindow;
    if (source == noWindow)
        return std::nullopt;
    constexpr std::uint32_t longestName = 1024; // in units of four bytes
    auto const cookie =
        xcb_get_property(x, 0, source, atom(x, format), XCB_GET_PROPERTY_TYPE_ANY, 0, longestName);
    auto const reply = owned(xcb_get_property_reply(x, cookie, nullptr));
    if (!reply || reply->format != 8 || xcb_get_property_value_length(reply.get()) <= 0)
        return std::nullopt;
    return std::string(static_cast<char const*>(xcb_get_property_value(reply.get())),
                       static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

void XcbDirectSave::setDestination(Url const& destination) {
    auto* const x = connection();
    auto const source = x ? dragSource(x) : noWindow;
    if (source == noWindow)
        return;
    auto const text = destination.absoluteString();
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, source, atom(x, format), atom(x, "text/plain"), 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
    xcb_flush(x);
}

} // namespace taliro
