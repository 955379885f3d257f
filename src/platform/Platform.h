#pragma once

namespace taliro {

class Alerts;
class DirectSave;
class Bookmarks;
class DesktopPlaces;
class DirectoryEvents;
class Downloads;
class FileManager;
class ImageCodec;
class FileOperations;
class LoginItems;
class MainQueue;
class NewFiles;
class MetadataQuery;
class OpenRequests;
class PropertyLists;
class Screens;
class ScriptInterpreter;
class Shell;
class SoftwareUpdate;
class StandardFolders;
class StatusBar;
class TypeCatalog;
class UserDefaults;
class Volumes;
class Workspace;

/// What the program needs of a desktop, one service a member. Made once in `main` and handed down;
/// tests make one of stand-ins.
struct Platform {
    Alerts& alerts;
    DirectSave& directSave;
    Bookmarks& bookmarks;
    DesktopPlaces& desktopPlaces;
    DirectoryEvents& directoryEvents;
    Downloads& downloads;
    FileManager& fileManager;
    ImageCodec& imageCodec;
    FileOperations& fileOperations;
    LoginItems& loginItems;
    MainQueue& mainQueue;
    NewFiles& newFiles;
    MetadataQuery& metadataQuery;
    OpenRequests& openRequests;
    PropertyLists& propertyLists;
    Screens& screens;
    ScriptInterpreter& scriptInterpreter;
    Shell& shell;
    SoftwareUpdate& softwareUpdate;
    StandardFolders& standardFolders;
    StatusBar& statusBar;
    TypeCatalog& typeCatalog;
    UserDefaults& userDefaults;
    Volumes& volumes;
    Workspace& workspace;

    /// The platform that the process's shared objects stand on. `install` comes before their first use.
    static Platform& current();
    static void install(Platform& platform);
};

} // namespace taliro
