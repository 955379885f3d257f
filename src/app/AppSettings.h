#pragma once

#include "foundation/Published.h"

#include <functional>

namespace taliro {

class BrowserState;
struct Platform;

/// The user's preferences, stored the moment they change, and two layout flags that follow the browser's
/// width. A popover needs the menu bar icon to hang from: turning one on or off keeps the other in step.
class AppSettings {
public:
    AppSettings(Platform& platform, BrowserState& browser);
    static AppSettings& shared();

    AppSettings(AppSettings const&) = delete;
    AppSettings& operator=(AppSettings const&) = delete;

    // Observable; changed through the setters below, which store and run the side effects.
    Published<bool> popoverMode;
    Published<bool> showInDock;
    Published<bool> showWindowAtCursorOnHotkey;
    Published<bool> startAtLogin;
    Published<bool> showMenuBarIcon;
    Published<bool> closePopoverOnOutsideClick;
    Published<double> popoverWidth;  ///< points
    Published<double> popoverHeight; ///< points
    Published<bool> miniMode;        ///< narrow enough for the compact layout
    Published<bool> searchHidden;    ///< too narrow for the search field

    void setPopoverMode(bool value);
    void setShowInDock(bool value);
    void setShowWindowAtCursorOnHotkey(bool value);
    void setStartAtLogin(bool value);
    void setShowMenuBarIcon(bool value);
    void setClosePopoverOnOutsideClick(bool value);
    void setPopoverWidth(double points);
    void setPopoverHeight(double points);

    /// `points`: the width that the browser has now.
    void updateLayoutMode(double points);

private:
    bool loadStartAtLogin() const;

    Platform& m_platform;
    BrowserState& m_browser;
};

} // namespace taliro
