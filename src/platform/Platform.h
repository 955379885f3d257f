#pragma once

namespace taliro {

class Alerts;
class DirectSave;
class DirectoryEvents;
class Downloads;
class FileManager;
class ImageCodec;
class FileOperations;
class LoginItems;
class MainQueue;
class NewFiles;
class OpenRequests;
class Screens;
class StatusBar;
class TypeCatalog;
class UserDefaults;
class Workspace;

/// What the program needs of a desktop, one service a member. Made once in `main` and handed down;
/// tests make one of stand-ins.
struct Platform {
    Alerts& alerts;
    DirectSave& directSave;
    DirectoryEvents& directoryEvents;
    Downloads& downloads;
    FileManager& fileManager;
    ImageCodec& imageCodec;
    FileOperations& fileOperations;
    LoginItems& loginItems;
    MainQueue& mainQueue;
    NewFiles& newFiles;
    OpenRequests& openRequests;
    Screens& screens;
    StatusBar& statusBar;
    TypeCatalog& typeCatalog;
    UserDefaults& userDefaults;
    Workspace& workspace;

    /// The platform that the process's shared objects stand on. `install` comes before their first use.
    static Platform& current();
    static void install(Platform& platform);
};

} // namespace taliro
