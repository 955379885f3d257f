#include "app/AppCommands.h"

#include <QCoreApplication>

namespace taliro {

AppCommands& AppCommands::shared() {
    // Not `quit`, which asks every window to close first: ours only hide, and so would stop it.
    static AppCommands commands{nullptr, nullptr, [] { QCoreApplication::exit(); }};
    return commands;
}

} // namespace taliro
