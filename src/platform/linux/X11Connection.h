#pragma once

#include "foundation/Subscription.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QSocketNotifier;

namespace taliro {

/// A connection to the X server of our own, beside the toolkit's: for events that the toolkit doesn't select
/// and for what windows ask of the window manager. Its events are heard on the main thread.
class X11Connection {
public:
    /// To the server that `DISPLAY` names; nothing where there is none.
    static std::unique_ptr<X11Connection> open();
    /// Whether `open` would succeed.
    static bool isReachable();
    ~X11Connection();

    xcb_connection_t* get() const { return m_connection; }
    operator xcb_connection_t*() const { return m_connection; }
    xcb_screen_t const& screen() const { return *m_screen; }
    xcb_window_t root() const { return m_screen->root; }
    xcb_atom_t atom(std::string_view name);
    /// The atom of a selection that each screen has its own of: `prefix` followed by the screen's number.
    xcb_atom_t screenAtom(std::string_view prefix);

    [[nodiscard]] Subscription observe(std::function<void(xcb_generic_event_t const&)> observer) {
        return m_observers.add(std::move(observer));
    }
    /// Told of property changes on the root window.
    void watchRootProperties();
    /// Told of the selection's owners as XFixes events; false where the server can't.
    bool watchSelection(xcb_atom_t selection);
    /// The first event number of XFixes, once `watchSelection` succeeded.
    std::optional<std::uint8_t> xfixesEvents() const { return m_xfixesEvents; }

    xcb_window_t selectionOwner(xcb_atom_t selection);
    /// A property of 32-bit values; empty where absent.
    std::vector<std::uint32_t> values(xcb_window_t window, xcb_atom_t property);
    void sendToRoot(xcb_window_t window, xcb_atom_t type, std::array<std::uint32_t, 5> const& data);
    void flush() { xcb_flush(m_connection); }

private:
    X11Connection(xcb_connection_t* connection, int screen);
    void readEvents();

    xcb_connection_t* m_connection;
    int m_screenNumber;
    xcb_screen_t* m_screen;
    std::map<std::string, xcb_atom_t, std::less<>> m_atoms;
    std::optional<std::uint8_t> m_xfixesEvents;
    Observers<xcb_generic_event_t const&> m_observers;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// What the xcb calls return is freed with it.
template <typename T>
struct Freed {
    void operator()(T* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, Freed<T>>;

} // namespace taliro
