#pragma once

namespace taliro {

class Alerts;
class DirectoryEvents;
class FileManager;
class FileOperations;
class LoginItems;
class MainQueue;
class OpenRequests;
class Screens;
class ScriptInterpreter;
class Shell;
class SoftwareUpdate;
class StatusBar;
class TypeCatalog;
class UserDefaults;
class Workspace;

/// What the program needs of a desktop, one service a member. Made once in `main` and handed down;
/// tests make one of stand-ins.
struct Platform {
    Alerts& alerts;
    DirectoryEvents& directoryEvents;
    FileManager& fileManager;
    FileOperations& fileOperations;
    LoginItems& loginItems;
    MainQueue& mainQueue;
    OpenRequests& openRequests;
    Screens& screens;
    ScriptInterpreter& scriptInterpreter;
    Shell& shell;
    SoftwareUpdate& softwareUpdate;
    StatusBar& statusBar;
    TypeCatalog& typeCatalog;
    UserDefaults& userDefaults;
    Workspace& workspace;

    /// The platform that the process's shared objects stand on. `install` comes before their first use.
    static Platform& current();
    static void install(Platform& platform);
};

} // namespace taliro
