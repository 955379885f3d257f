#pragma once

namespace taliro {

class Alerts;
class ColorScheme;
class DirectoryEvents;
class FileManager;
class LoginItems;
class MainQueue;
class OpenRequests;
class PointerEvents;
class Screens;
class StatusBar;
class TypeCatalog;
class UserDefaults;
class WindowManager;
class Workspace;

/// What the program needs of a desktop, one service a member. Made once in `main` and handed down;
/// tests make one of stand-ins.
struct Platform {
    Alerts& alerts;
    ColorScheme& colorScheme;
    DirectoryEvents& directoryEvents;
    FileManager& fileManager;
    LoginItems& loginItems;
    MainQueue& mainQueue;
    OpenRequests& openRequests;
    PointerEvents& pointerEvents;
    Screens& screens;
    StatusBar& statusBar;
    TypeCatalog& typeCatalog;
    UserDefaults& userDefaults;
    WindowManager& windowManager;
    Workspace& workspace;

    /// The platform that the process's shared objects stand on. `install` comes before their first use.
    static Platform& current();
    static void install(Platform& platform);
};

} // namespace taliro
