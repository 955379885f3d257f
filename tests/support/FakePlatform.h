#pragma once

#include "platform/Platform.h"
#include "support/FakeDesktop.h"
#include "support/FakeDrops.h"
#include "support/FakeFiles.h"
#include "support/FakeKeyboard.h"
#include "support/FakePlaces.h"
#include "support/FakePreviews.h"
#include "support/FakeSystem.h"
#include "support/HandQueue.h"

namespace taliro::testing {

/// A desktop that the test holds in its hands: each service is a stand-in whose state is open.
struct FakePlatform {
    FakeFileManager fileManager;
    FakeAlerts alerts;
    FakeBookmarks bookmarks{fileManager};
    FakeColorScheme colorScheme;
    FakeDesktopPlaces desktopPlaces;
    FakeDirectSave directSave;
    FakeDirectoryEvents directoryEvents;
    FakeDownloads downloads;
    FakeFileOperations fileOperations{fileManager};
    FakeHotKeys hotKeys;
    FakeImageCodec imageCodec;
    FakeKeyboardLayout keyboardLayout;
    FakeLoginItems loginItems;
    HandQueue mainQueue;
    FakeMetadataQuery metadataQuery;
    FakeNewFiles newFiles{fileManager};
    FakeOpenRequests openRequests;
    FakePointerEvents pointerEvents;
    FakePreviews previews;
    FakePropertyLists propertyLists;
    FakeScreens screens;
    FakeScriptInterpreter scriptInterpreter;
    FakeShell shell;
    FakeSoftwareUpdate softwareUpdate;
    FakeStandardFolders standardFolders;
    FakeStatusBar statusBar;
    FakeSystemShortcuts systemShortcuts;
    FakeThumbnailer thumbnailer;
    FakeTypeCatalog typeCatalog;
    FakeUserDefaults userDefaults;
    FakeVolumes volumes;
    FakeWindowManager windowManager;
    FakeWorkspace workspace;

    Platform platform{
        .alerts = alerts,
        .bookmarks = bookmarks,
        .colorScheme = colorScheme,
        .desktopPlaces = desktopPlaces,
        .directoryEvents = directoryEvents,
        .directSave = directSave,
        .downloads = downloads,
        .fileManager = fileManager,
        .fileOperations = fileOperations,
        .hotKeys = hotKeys,
        .imageCodec = imageCodec,
        .keyboardLayout = keyboardLayout,
        .loginItems = loginItems,
        .mainQueue = mainQueue,
        .metadataQuery = metadataQuery,
        .newFiles = newFiles,
        .openRequests = openRequests,
        .pointerEvents = pointerEvents,
        .previews = previews,
        .propertyLists = propertyLists,
        .screens = screens,
        .scriptInterpreter = scriptInterpreter,
        .shell = shell,
        .softwareUpdate = softwareUpdate,
        .standardFolders = standardFolders,
        .statusBar = statusBar,
        .systemShortcuts = systemShortcuts,
        .thumbnailer = thumbnailer,
        .typeCatalog = typeCatalog,
        .userDefaults = userDefaults,
        .volumes = volumes,
        .windowManager = windowManager,
        .workspace = workspace,
    };
};

} // namespace taliro::testing
