#pragma once

#include "foundation/Subscription.h"
#include "platform/Screens.h"

#include <cstdint>
#include <functional>

namespace taliro {

/// A top-level window, as the desktop numbers it.
using WindowId = std::uintptr_t;

/// What a window asks of the desktop beyond what the toolkit does. Where the desktop can't, the call does
/// nothing.
class WindowManager {
public:
    enum class Taskbar { shown, skipped };

    virtual ~WindowManager() = default;

    /// Above other programs' windows and on every workspace. Said again before each time the window is shown.
    virtual void floatEverywhere(WindowId window, Taskbar taskbar) = 0;
    /// For a window that is shown already.
    virtual void setTaskbar(WindowId window, Taskbar taskbar) = 0;
    /// To the front and with the keyboard, whatever the desktop's rules against focus stealing say.
    virtual void focus(WindowId window) = 0;
    /// To the front, the keyboard staying where it is.
    virtual void raise(WindowId window) = 0;
    /// Only `area` of the window, which is of `size`, is more than shadow: clicks elsewhere reach what lies
    /// below. In pixels of the window.
    virtual void setVisibleArea(WindowId window, Rect area, Size size) = 0;

    /// Whether windows may be translucent.
    virtual bool isComposited() = 0;
    [[nodiscard]] virtual Subscription observeCompositing(std::function<void()> observer) = 0;
    /// The user went to another workspace.
    [[nodiscard]] virtual Subscription observeWorkspace(std::function<void()> observer) = 0;
};

} // namespace taliro
