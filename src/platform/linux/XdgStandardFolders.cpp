#include "platform/linux/XdgStandardFolders.h"

#include <cstdlib>
#include <glib.h>
#include <memory>

namespace taliro {

namespace {

constexpr std::size_t maxDirectoryFileBytes = 64 * 1024;

Url folderFromEnvironment(char const* name, Url const& fallback) {
    char const* path = std::getenv(name);
    return path && path[0] == '/' ? Url::file(path, true) : fallback;
}

std::optional<Url> userDirectory(GUserDirectory which, Url const& home) {
    char const* path = g_get_user_special_dir(which);
    // A folder set to the home folder means that the user wants none.
    if (!path || path[0] != '/' || Url::file(path, true) == home)
        return std::nullopt;
    return Url::file(path, true);
}

} // namespace

Url userConfigFolder(FileManager& files) {
    return folderFromEnvironment("XDG_CONFIG_HOME", files.homeDirectory().appending(".config", true));
}

Url userDataFolder(FileManager& files) {
    return folderFromEnvironment("XDG_DATA_HOME", files.homeDirectory().appending(".local/share", true));
}

std::optional<Url> XdgStandardFolders::url(StandardFolder folder) {
    auto const home = m_files.homeDirectory();
    switch (folder) {
    case StandardFolder::desktop:
        return userDirectory(G_USER_DIRECTORY_DESKTOP, home);
    case StandardFolder::documents:
        return userDirectory(G_USER_DIRECTORY_DOCUMENTS, home);
    case StandardFolder::downloads:
        return userDirectory(G_USER_DIRECTORY_DOWNLOAD, home);
    case StandardFolder::movies:
        return userDirectory(G_USER_DIRECTORY_VIDEOS, home);
    case StandardFolder::music:
        return userDirectory(G_USER_DIRECTORY_MUSIC, home);
    case StandardFolder::pictures:
        return userDirectory(G_USER_DIRECTORY_PICTURES, home);
    case StandardFolder::publicShare:
        return userDirectory(G_USER_DIRECTORY_PUBLIC_SHARE, home);
    case StandardFolder::trash:
        return userDataFolder(m_files).appending("Trash/files", true);
    }
    return std::nullopt;
}

std::optional<std::string> XdgStandardFolders::localizedName(Url const& folder) {
    auto const bytes = m_files.readFile(folder.appending(".directory"), maxDirectoryFileBytes);
    if (!bytes)
        return std::nullopt;
    std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> const file(g_key_file_new(), &g_key_file_free);
    if (!g_key_file_load_from_data(file.get(), bytes->data(), bytes->size(), G_KEY_FILE_KEEP_TRANSLATIONS,
                                   nullptr))
        return std::nullopt;
    std::unique_ptr<char, decltype(&g_free)> const name(
        g_key_file_get_locale_string(file.get(), "Desktop Entry", "Name", nullptr, nullptr), &g_free);
    return name && *name ? std::optional<std::string>(name.get()) : std::nullopt;
}

} // namespace taliro
