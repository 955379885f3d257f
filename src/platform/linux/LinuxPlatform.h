#pragma once

#include "platform/Platform.h"
#include "platform/linux/AutostartLoginItems.h"
#include "platform/linux/DBusOpenRequests.h"
#include "platform/linux/InotifyDirectoryEvents.h"
#include "platform/linux/MimeTypeCatalog.h"
#include "platform/linux/PlistUserDefaults.h"
#include "platform/linux/PortalColorScheme.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/QtAlerts.h"
#include "platform/linux/QtMainQueue.h"
#include "platform/linux/QtScreens.h"
#include "platform/linux/TrayStatusBar.h"
#include "platform/linux/X11Connection.h"
#include "platform/linux/X11PointerEvents.h"
#include "platform/linux/X11WindowManager.h"
#include "platform/linux/XdgWorkspace.h"

#include <memory>

namespace taliro {

/// Each service of the Linux desktop, in the order in which they depend on one another. Made after the
/// toolkit's application object.
class LinuxPlatform {
public:
    LinuxPlatform();

    /// Whether no other instance got ahead of this one.
    bool isOnlyInstance() const { return m_openRequests.isOnlyOne(); }

private:
    std::unique_ptr<X11Connection> m_x;

    QtMainQueue m_mainQueue;
    QtAlerts m_alerts;
    PortalColorScheme m_colorScheme;
    InotifyDirectoryEvents m_directoryEvents;
    PosixFileManager m_fileManager;
    AutostartLoginItems m_loginItems;
    DBusOpenRequests m_openRequests;
    X11PointerEvents m_pointerEvents;
    QtScreens m_screens;
    TrayStatusBar m_statusBar;
    MimeTypeCatalog m_typeCatalog;
    PlistUserDefaults m_userDefaults;
    X11WindowManager m_windowManager;
    XdgWorkspace m_workspace;

public:
    Platform platform;
};

} // namespace taliro
