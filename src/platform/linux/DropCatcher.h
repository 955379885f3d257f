#pragma once

#include "platform/Screens.h"
#include "platform/linux/X11PointerEvents.h"

#include <functional>
#include <optional>
#include <vector>

namespace taliro {

/// Tells when a drag comes over a place on the screen that can't receive drags itself, such as a tray icon.
/// While any drag is under way, an invisible window of its own lies there; it never accepts a drop.
class DropCatcher {
public:
    /// `place`: where the catcher is to lie, in the server's pixels; asked at each drag's start.
    /// `onEntered`: a drag of files, links or images came there.
    DropCatcher(X11Connection& x, X11PointerEvents& pointer, std::function<std::optional<Rect>()> place,
                std::function<void()> onEntered);
    ~DropCatcher();
    DropCatcher(DropCatcher const&) = delete;
    DropCatcher& operator=(DropCatcher const&) = delete;

private:
    void hear(xcb_generic_event_t const& event);
    void hearMessage(xcb_client_message_event_t const& message);
    void rise();
    void sink();
    void refuse(xcb_window_t source, char const* type);
    bool isWanted(xcb_client_message_event_t const& enter);

    X11Connection& m_x;
    std::function<std::optional<Rect>()> m_place;
    std::function<void()> m_onEntered;
    xcb_window_t m_window;
    bool m_risen = false;
    Subscription m_events;
    Subscription m_release;
};

} // namespace taliro
