#pragma once

#include "platform/HotKeys.h"
#include "platform/Platform.h"
#include "platform/linux/AutostartLoginItems.h"
#include "platform/linux/BackgroundFileOperations.h"
#include "platform/linux/DBusOpenRequests.h"
#include "platform/linux/DesktopShortcuts.h"
#include "platform/linux/FileManagerPlaces.h"
#include "platform/linux/FilePreviews.h"
#include "platform/linux/HomeMetadataQuery.h"
#include "platform/linux/InotifyDirectoryEvents.h"
#include "platform/linux/LinuxHotKeys.h"
#include "platform/linux/MimeTypeCatalog.h"
#include "platform/linux/MountVolumes.h"
#include "platform/linux/PathBookmarks.h"
#include "platform/linux/PlistPropertyLists.h"
#include "platform/linux/PlistUserDefaults.h"
#include "platform/linux/PortalColorScheme.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/PosixNewFiles.h"
#include "platform/linux/PosixShell.h"
#include "platform/linux/QtAlerts.h"
#include "platform/linux/QtDownloads.h"
#include "platform/linux/QtImageCodec.h"
#include "platform/linux/QtMainQueue.h"
#include "platform/linux/QtScreens.h"
#include "platform/linux/QtSoftwareUpdate.h"
#include "platform/linux/ThumbnailService.h"
#include "platform/linux/TrayStatusBar.h"
#include "platform/linux/X11Connection.h"
#include "platform/linux/X11PointerEvents.h"
#include "platform/linux/X11WindowManager.h"
#include "platform/linux/XKeyboard.h"
#include "platform/linux/XcbDirectSave.h"
#include "platform/linux/XdgStandardFolders.h"
#include "platform/linux/XdgWorkspace.h"
#include "platform/linux/XkbKeyboardLayout.h"

#include <memory>

namespace taliro {

/// Each service of the Linux desktop, in the order in which they depend on one another. Made after the
/// toolkit's application object.
class LinuxPlatform {
public:
    /// What the build knows of itself.
    struct Build {
        QString version;
        QString updateFeed; ///< empty where a package manager updates
    };
    explicit LinuxPlatform(Build const& build);

    /// Whether no other instance got ahead of this one.
    bool isOnlyInstance() const { return m_openRequests.isOnlyOne(); }

private:
    std::unique_ptr<X11Connection> m_x;
    XKeyboard m_keyboard;

    QtMainQueue m_mainQueue;
    InotifyDirectoryEvents m_directoryEvents;
    PosixFileManager m_fileManager;
    XdgStandardFolders m_standardFolders;

    QtAlerts m_alerts;
    PathBookmarks m_bookmarks;
    PortalColorScheme m_colorScheme;
    FileManagerPlaces m_desktopPlaces;
    XcbDirectSave m_directSave;
    QtDownloads m_downloads;
    BackgroundFileOperations m_fileOperations;
    QtImageCodec m_imageCodec;
    XkbKeyboardLayout m_keyboardLayout;
    std::unique_ptr<HotKeys> m_hotKeys;
    AutostartLoginItems m_loginItems;
    HomeMetadataQuery m_metadataQuery;
    PosixNewFiles m_newFiles;
    DBusOpenRequests m_openRequests;
    X11PointerEvents m_pointerEvents;
    PlistPropertyLists m_propertyLists;
    QtScreens m_screens;
    PkexecScriptInterpreter m_scriptInterpreter;
    PosixShell m_shell;
    TrayStatusBar m_statusBar;
    DesktopShortcuts m_systemShortcuts;
    MimeTypeCatalog m_typeCatalog;
    FilePreviews m_previews;
    ThumbnailService m_thumbnailer;
    PlistUserDefaults m_userDefaults;
    QtSoftwareUpdate m_softwareUpdate;
    MountVolumes m_volumes;
    X11WindowManager m_windowManager;
    XdgWorkspace m_workspace;

public:
    Platform platform;
};

} // namespace taliro
