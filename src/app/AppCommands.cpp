#include "app/AppCommands.h"

#include <QCoreApplication>

namespace taliro {

AppCommands& AppCommands::shared() {
    static AppCommands commands{nullptr, nullptr, [] { QCoreApplication::quit(); }};
    return commands;
}

} // namespace taliro
