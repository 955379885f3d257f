#include "platform/linux/X11PointerEvents.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QTimer>
#include <QWindow>

#include <xcb/xinput.h>

namespace taliro {

namespace {
constexpr std::uint32_t leftButton = 1;
/// By then the toolkit has told a window of ours of a press that was for it.
constexpr std::chrono::milliseconds ownPressDelay(60);
} // namespace

X11PointerEvents::X11PointerEvents(X11Connection* connection) : m_x(connection) {
    if (!m_x || !selectRawEvents())
        return;
    m_events = m_x->observe([this](xcb_generic_event_t const& event) { hear(event); });
    qApp->installEventFilter(this);
}

bool X11PointerEvents::selectRawEvents() {
    auto const* extension = xcb_get_extension_data(*m_x, &xcb_input_id);
    if (!extension || !extension->present)
        return false;
    auto const cookie = xcb_input_xi_query_version(*m_x, 2, 2);
    Reply<xcb_input_xi_query_version_reply_t> const version(
        xcb_input_xi_query_version_reply(*m_x, cookie, nullptr));
    if (!version || version->major_version < 2)
        return false;
    m_opcode = extension->major_opcode;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t bits;
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                 XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};
    xcb_input_xi_select_events(*m_x, m_x->root(), 1, &mask.head);
    m_x->flush();
    return true;
}

void X11PointerEvents::hear(xcb_generic_event_t const& event) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC)
        return;
    auto const& raw = reinterpret_cast<xcb_input_raw_button_press_event_t const&>(event);
    if (raw.extension != m_opcode)
        return;
    if (raw.event_type == XCB_INPUT_RAW_BUTTON_RELEASE)
        m_releases.notify();
    else if (raw.event_type == XCB_INPUT_RAW_BUTTON_PRESS && raw.detail == leftButton && !m_presses.empty())
        hearPress(raw.time);
}

/// A raw press doesn't tell where it was, and a quick pointer is elsewhere by now. So a press that seems to
/// be outside counts only if none of our windows got it.
void X11PointerEvents::hearPress(xcb_timestamp_t time) {
    if (pointerIsOverOurs())
        return;
    auto const place = QCursor::pos();
    QTimer::singleShot(ownPressDelay, this, [this, time, place] {
        if (std::ranges::find(m_ownPresses, time) == m_ownPresses.end())
            m_presses.notify({static_cast<double>(place.x()), static_cast<double>(place.y())});
    });
}

bool X11PointerEvents::eventFilter(QObject* watched, QEvent* event) {
    bool const isPress =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (isPress && watched->isWindowType()) {
        m_ownPresses[m_nextPress] =
            static_cast<xcb_timestamp_t>(static_cast<QMouseEvent*>(event)->timestamp());
        m_nextPress = (m_nextPress + 1) % m_ownPresses.size();
    }
    return false;
}

/// Follows the pointer from the root down; one of our windows may sit in a frame or in the tray.
bool X11PointerEvents::pointerIsOverOurs() {
    QList<WId> ours;
    for (auto const* window : QGuiApplication::allWindows())
        if (window->handle())
            ours.append(window->winId());
    auto window = m_x->root();
    while (window != XCB_NONE) {
        if (ours.contains(window))
            return true;
        Reply<xcb_query_pointer_reply_t> const reply(
            xcb_query_pointer_reply(*m_x, xcb_query_pointer(*m_x, window), nullptr));
        window = reply ? reply->child : xcb_window_t{XCB_NONE};
    }
    return false;
}

} // namespace taliro
