#pragma once

#include "platform/WindowManager.h"
#include "platform/linux/X11Connection.h"

#include <QTimer>

namespace taliro {

/// Window properties and requests of the Extended Window Manager Hints.
class X11WindowManager : public WindowManager {
public:
    /// `connection`: null where there is no X server; then nothing is asked and nothing is translucent.
    explicit X11WindowManager(X11Connection* connection);

    void floatEverywhere(WindowId window, Taskbar taskbar) override;
    void setTaskbar(WindowId window, Taskbar taskbar) override;
    void focus(WindowId window) override;
    void raise(WindowId window) override;
    void setVisibleArea(WindowId window, Rect area, Size size) override;
    bool isComposited() override;
    Subscription observeCompositing(std::function<void()> observer) override {
        return m_compositing.add(std::move(observer));
    }
    Subscription observeWorkspace(std::function<void()> observer) override {
        return m_workspace.add(std::move(observer));
    }

private:
    void hear(xcb_generic_event_t const& event);
    void changeState(xcb_window_t window, bool add, xcb_atom_t state);
    bool isViewable(xcb_window_t window);
    void askForFocus();

    X11Connection* m_x;
    Subscription m_events;
    Observers<> m_compositing;
    Observers<> m_workspace;
    xcb_window_t m_focusWanted = XCB_NONE;
    int m_focusTries = 0;
    QTimer m_focusTimer;
};

} // namespace taliro
