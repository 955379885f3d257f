#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/X11PointerEvents.h"

namespace taliro {

/// The item as an icon in the desktop's tray or, while there is none, on a small strip of ours at the
/// screen's top right.
class TrayStatusBar : public StatusBar {
public:
    /// `connection`: null where there is no X server; then drags over the item go unnoticed.
    TrayStatusBar(X11Connection* connection, X11PointerEvents& pointer, Screens& screens)
        : m_connection(connection), m_pointer(pointer), m_screens(screens) {}

    std::unique_ptr<StatusItem> makeItem(std::string const& autosaveName, std::string const& symbolName,
                                         std::string const& description) override;

private:
    X11Connection* m_connection;
    X11PointerEvents& m_pointer;
    Screens& m_screens;
};

} // namespace taliro
