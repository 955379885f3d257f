#pragma once

#include "platform/SystemShortcuts.h"

namespace taliro {

class XKeyboard;
class XkbKeyboardLayout;

/// The shortcuts that the running desktop has in its settings: GNOME, Cinnamon, KDE Plasma, Xfce, Openbox.
/// Read anew at each call.
class DesktopShortcuts : public SystemShortcuts {
public:
    DesktopShortcuts(XKeyboard& keyboard, XkbKeyboardLayout& layout)
        : m_keyboard(keyboard), m_layout(layout) {}
    std::vector<Entry> enabled() override;

private:
    XKeyboard& m_keyboard;
    XkbKeyboardLayout& m_layout;
};

} // namespace taliro
