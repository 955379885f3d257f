#include "platform/linux/LinuxHotKeys.h"

#include "platform/linux/PortalHotKeys.h"
#include "platform/linux/X11HotKeys.h"
#include "platform/linux/XkbKeyboardLayout.h"

namespace taliro {

namespace {

bool isWaylandSession() {
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland");
}

} // namespace

std::unique_ptr<HotKeys> makeHotKeys(XKeyboard& keyboard, XkbKeyboardLayout& layout) {
    if (isWaylandSession())
        return std::make_unique<PortalHotKeys>(QDBusConnection::sessionBus(), layout,
                                               QStringLiteral("Show or hide Taliro"));
    return std::make_unique<X11HotKeys>(keyboard, layout);
}

} // namespace taliro
