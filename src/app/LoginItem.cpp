#include "app/LoginItem.h"

#include "platform/Alerts.h"
#include "platform/LoginItems.h"
#include "platform/Platform.h"

namespace taliro {

void LoginItem::setEnabled(Platform& platform, bool enabled) {
    auto const status = platform.loginItems.status();
    if (enabled) {
        if (status == LoginItemStatus::enabled)
            return;
        if (auto const done = platform.loginItems.registerItem(); !done)
            platform.alerts.warn("Couldn't enable Start at Login", done.error());
        return;
    }
    if (status != LoginItemStatus::enabled && status != LoginItemStatus::requiresApproval)
        return;
    if (auto const done = platform.loginItems.unregisterItem(); !done)
        platform.alerts.warn("Couldn't disable Start at Login", done.error());
}

} // namespace taliro
