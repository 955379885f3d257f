#pragma once

namespace taliro {

class Alerts;
class Bookmarks;
class ColorScheme;
class DesktopPlaces;
class DirectSave;
class DirectoryEvents;
class Downloads;
class FileManager;
class FileOperations;
class HotKeys;
class ImageCodec;
class KeyboardLayout;
class LoginItems;
class MainQueue;
class MetadataQuery;
class NewFiles;
class OpenRequests;
class PointerEvents;
class PreviewService;
class PropertyLists;
class Screens;
class ScriptInterpreter;
class Shell;
class SoftwareUpdate;
class StandardFolders;
class StatusBar;
class SystemShortcuts;
class Thumbnailer;
class TypeCatalog;
class UserDefaults;
class Volumes;
class WindowManager;
class Workspace;

/// What the program needs of a desktop, one service a member. Made once in `main` and handed down;
/// tests make one of stand-ins.
struct Platform {
    Alerts& alerts;
    Bookmarks& bookmarks;
    ColorScheme& colorScheme;
    DesktopPlaces& desktopPlaces;
    DirectoryEvents& directoryEvents;
    DirectSave& directSave;
    Downloads& downloads;
    FileManager& fileManager;
    FileOperations& fileOperations;
    HotKeys& hotKeys;
    ImageCodec& imageCodec;
    KeyboardLayout& keyboardLayout;
    LoginItems& loginItems;
    MainQueue& mainQueue;
    MetadataQuery& metadataQuery;
    NewFiles& newFiles;
    OpenRequests& openRequests;
    PointerEvents& pointerEvents;
    PreviewService& previews;
    PropertyLists& propertyLists;
    Screens& screens;
    ScriptInterpreter& scriptInterpreter;
    Shell& shell;
    SoftwareUpdate& softwareUpdate;
    StandardFolders& standardFolders;
    StatusBar& statusBar;
    SystemShortcuts& systemShortcuts;
    Thumbnailer& thumbnailer;
    TypeCatalog& typeCatalog;
    UserDefaults& userDefaults;
    Volumes& volumes;
    WindowManager& windowManager;
    Workspace& workspace;

    /// The platform that the process's shared objects stand on. `install` comes before their first use.
    static Platform& current();
    static void install(Platform& platform);
};

} // namespace taliro
