#pragma once

#include "platform/PointerEvents.h"
#include "platform/linux/X11Connection.h"

#include <QObject>

namespace taliro {

/// XInput2's raw button events, which tell of every press, whoever gets it.
class X11PointerEvents : public QObject, public PointerEvents {
public:
    /// `connection`: null where there is no X server; then nothing is ever heard.
    explicit X11PointerEvents(X11Connection* connection);

    Subscription observeGlobalMouseDown(std::function<void(Point)> observer) override {
        return m_presses.add(std::move(observer));
    }
    /// A button was let go, anywhere.
    [[nodiscard]] Subscription observeButtonRelease(std::function<void()> observer) {
        return m_releases.add(std::move(observer));
    }

    /// Notes the presses that windows of ours get.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool selectRawEvents();
    void hear(xcb_generic_event_t const& event);
    void hearPress(xcb_timestamp_t time);
    bool pointerIsOverOurs();

    X11Connection* m_x;
    std::uint8_t m_opcode = 0;
    std::array<xcb_timestamp_t, 8> m_ownPresses{}; ///< when windows of ours got a press lately
    std::size_t m_nextPress = 0;
    Subscription m_events;
    Observers<Point> m_presses;
    Observers<> m_releases;
};

} // namespace taliro
