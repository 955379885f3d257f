#pragma once

namespace taliro::AppCommands {

// What menus in several places offer.

void showPreferences();
void checkForUpdates();
void quit();

} // namespace taliro::AppCommands
