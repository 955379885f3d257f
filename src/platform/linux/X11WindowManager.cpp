#include "platform/linux/X11WindowManager.h"

#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace taliro {

namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
/// The request's source: as a pager's, it is the user's own wish, which no focus stealing prevention refuses.
constexpr std::uint32_t usersWish = 2;
/// A window manager takes a while to manage a window that was just shown.
constexpr std::array focusWaits{20ms, 60ms, 120ms, 250ms};

} // namespace

X11WindowManager::X11WindowManager(X11Connection* connection) : m_x(connection) {
    m_focusTimer.setSingleShot(true);
    QObject::connect(&m_focusTimer, &QTimer::timeout, [this] { askForFocus(); });
    if (!m_x)
        return;
    m_x->watchRootProperties();
    m_x->watchSelection(m_x->screenAtom("_NET_WM_CM_S"));
    m_events = m_x->observe([this](xcb_generic_event_t const& event) { hear(event); });
}

void X11WindowManager::hear(xcb_generic_event_t const& event) {
    auto const type = event.response_type & 0x7f;
    if (type == XCB_PROPERTY_NOTIFY) {
        auto const& change = reinterpret_cast<xcb_property_notify_event_t const&>(event);
        if (change.window == m_x->root() && change.atom == m_x->atom("_NET_CURRENT_DESKTOP"))
            m_workspace.notify();
    } else if (m_x->xfixesEvents() && type == *m_x->xfixesEvents() + XCB_XFIXES_SELECTION_NOTIFY) {
        auto const& change = reinterpret_cast<xcb_xfixes_selection_notify_event_t const&>(event);
        if (change.selection == m_x->screenAtom("_NET_WM_CM_S"))
            m_compositing.notify();
    }
}

void X11WindowManager::floatEverywhere(WindowId id, Taskbar taskbar) {
    if (!m_x)
        return;
    auto const window = static_cast<xcb_window_t>(id);
    if (isViewable(window)) {
        changeState(window, true, m_x->atom("_NET_WM_STATE_ABOVE"));
        setTaskbar(id, taskbar);
        return;
    }
    // The window manager reads the state when it maps the window, and forgets it when the window is hidden.
    auto states = m_x->values(window, m_x->atom("_NET_WM_STATE"));
    auto const set = [&](char const* name, bool on) {
        std::erase(states, m_x->atom(name));
        if (on)
            states.push_back(m_x->atom(name));
    };
    set("_NET_WM_STATE_ABOVE", true);
    set("_NET_WM_STATE_STICKY", true);
    set("_NET_WM_STATE_SKIP_TASKBAR", taskbar == Taskbar::skipped);
    set("_NET_WM_STATE_SKIP_PAGER", taskbar == Taskbar::skipped);
    xcb_change_property(*m_x, XCB_PROP_MODE_REPLACE, window, m_x->atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(states.size()), states.data());
    xcb_change_property(*m_x, XCB_PROP_MODE_REPLACE, window, m_x->atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL,
                        32, 1, &everyWorkspace);
    // The toolkit adds to the state over its own connection: it must find ours there.
    isViewable(window);
}

void X11WindowManager::setTaskbar(WindowId id, Taskbar taskbar) {
    if (!m_x)
        return;
    auto const window = static_cast<xcb_window_t>(id);
    changeState(window, taskbar == Taskbar::skipped, m_x->atom("_NET_WM_STATE_SKIP_TASKBAR"));
    changeState(window, taskbar == Taskbar::skipped, m_x->atom("_NET_WM_STATE_SKIP_PAGER"));
}

void X11WindowManager::changeState(xcb_window_t window, bool add, xcb_atom_t state) {
    m_x->sendToRoot(window, m_x->atom("_NET_WM_STATE"), {add ? 1u : 0u, state, 0, usersWish, 0});
}

bool X11WindowManager::isViewable(xcb_window_t window) {
    auto const cookie = xcb_get_window_attributes(*m_x, window);
    Reply<xcb_get_window_attributes_reply_t> const reply(
        xcb_get_window_attributes_reply(*m_x, cookie, nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

void X11WindowManager::focus(WindowId window) {
    if (!m_x)
        return;
    m_focusWanted = static_cast<xcb_window_t>(window);
    m_focusTries = 0;
    askForFocus();
}

void X11WindowManager::askForFocus() {
    auto const focusCookie = xcb_get_input_focus(*m_x);
    Reply<xcb_get_input_focus_reply_t> const focus(xcb_get_input_focus_reply(*m_x, focusCookie, nullptr));
    bool const viewable = isViewable(m_focusWanted);
    if (focus && focus->focus == m_focusWanted)
        return;
    bool const lastTry = m_focusTries == static_cast<int>(focusWaits.size());
    if (lastTry) {
        if (viewable)
            xcb_set_input_focus(*m_x, XCB_INPUT_FOCUS_PARENT, m_focusWanted, XCB_CURRENT_TIME);
        m_x->flush();
        return;
    }
    if (m_focusTries > 0 && !viewable && m_focusTries > 2)
        return; // Hidden again meanwhile.
    m_x->sendToRoot(m_focusWanted, m_x->atom("_NET_ACTIVE_WINDOW"), {usersWish, XCB_CURRENT_TIME, 0, 0, 0});
    m_focusTimer.start(focusWaits[static_cast<std::size_t>(m_focusTries++)]);
}

void X11WindowManager::raise(WindowId window) {
    if (!m_x)
        return;
    std::uint32_t const above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(*m_x, static_cast<xcb_window_t>(window), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    m_x->flush();
}

void X11WindowManager::setVisibleArea(WindowId id, Rect area, Size size) {
    if (!m_x)
        return;
    auto const window = static_cast<xcb_window_t>(id);
    auto const pixels = [](double length) { return static_cast<std::uint32_t>(std::lround(length)); };
    std::array const extents{pixels(area.x), pixels(size.width - area.maxX()), pixels(area.y),
                             pixels(size.height - area.maxY())};
    auto const property = m_x->atom("_GTK_FRAME_EXTENTS");
    if (std::ranges::all_of(extents, [](std::uint32_t extent) { return extent == 0; })) {
        xcb_delete_property(*m_x, window, property);
        xcb_shape_mask(*m_x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, window, 0, 0, XCB_NONE);
    } else {
        xcb_change_property(*m_x, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32,
                            extents.size(), extents.data());
        xcb_rectangle_t const input{static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                                    static_cast<std::uint16_t>(area.width),
                                    static_cast<std::uint16_t>(area.height)};
        xcb_shape_rectangles(*m_x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window,
                             0, 0, 1, &input);
    }
    m_x->flush();
}

bool X11WindowManager::isComposited() {
    return m_x && m_x->selectionOwner(m_x->screenAtom("_NET_WM_CM_S")) != XCB_NONE;
}

} // namespace taliro
