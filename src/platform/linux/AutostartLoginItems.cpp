#include "platform/linux/AutostartLoginItems.h"

#include "platform/linux/PosixFileManager.h"
#include "platform/linux/WriteFile.h"

#include <cerrno>
#include <cstdlib>
#include <gio/gdesktopappinfo.h>
#include <system_error>
#include <unistd.h>

namespace taliro {

namespace {

constexpr char group[] = G_KEY_FILE_DESKTOP_GROUP;
constexpr std::size_t largestEntry = 64 * 1024;

struct Free {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
    void operator()(GDesktopAppInfo* info) const { g_object_unref(info); }
    void operator()(char* text) const { g_free(text); }
    void operator()(char** texts) const { g_strfreev(texts); }
};
using KeyFile = std::unique_ptr<GKeyFile, Free>;
using Text = std::unique_ptr<char, Free>;

std::string autostartFolder() {
    char const* configured = std::getenv("XDG_CONFIG_HOME");
    auto const base = configured && configured[0] == '/'
                          ? std::string(configured)
                          : PosixFileManager().homeDirectory().path() + "/.config";
    return base + "/autostart";
}

/// The program as an `Exec` line; see the Desktop Entry Specification, "The Exec key".
std::string asExec(std::string_view program) {
    std::string line = "\"";
    for (char letter : program) {
        if (letter == '%')
            line += '%';
        if (letter == '"' || letter == '`' || letter == '$' || letter == '\\')
            line += '\\';
        line += letter;
    }
    return line + "\"";
}

/// Whether an `Exec` line's program is there to be started.
bool canStart(char const* exec) {
    char** parsed = nullptr;
    if (!exec || !g_shell_parse_argv(exec, nullptr, &parsed, nullptr))
        return false;
    std::unique_ptr<char*, Free> const words(parsed);
    std::string program = parsed[0];
    for (auto at = program.find("%%"); at != std::string::npos; at = program.find("%%", at + 1))
        program.erase(at, 1);
    return Text(g_find_program_in_path(program.c_str())) != nullptr;
}

Text valueOf(GKeyFile* entry, char const* key) {
    return Text(g_key_file_get_string(entry, group, key, nullptr));
}

bool isSwitchedOff(GKeyFile* entry) {
    constexpr char gnome[] = "X-GNOME-Autostart-enabled";
    if (g_key_file_get_boolean(entry, group, G_KEY_FILE_DESKTOP_KEY_HIDDEN, nullptr) ||
        (g_key_file_has_key(entry, group, gnome, nullptr) &&
         !g_key_file_get_boolean(entry, group, gnome, nullptr)))
        return true;
    std::unique_ptr<GDesktopAppInfo, Free> const info(g_desktop_app_info_new_from_keyfile(entry));
    return info && !g_desktop_app_info_get_show_in(info.get(), nullptr);
}

std::expected<void, std::string> told(std::expected<void, std::errc> const& done) {
    if (!done)
        return std::unexpected(std::make_error_code(done.error()).message());
    return {};
}

std::expected<void, std::errc> save(GKeyFile* entry, std::string const& path) {
    gsize length = 0;
    Text const bytes(g_key_file_to_data(entry, &length, nullptr));
    return writeFileAtomically(path, {bytes.get(), length}, 0644);
}

KeyFile readEntry(std::string const& text) {
    KeyFile entry(g_key_file_new());
    auto const flags = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    return g_key_file_load_from_data(entry.get(), text.data(), text.size(), flags, nullptr) ? std::move(entry)
                                                                                            : nullptr;
}

} // namespace

AutostartLoginItems::AutostartLoginItems(std::string program)
    : m_program(std::move(program)), m_entry(autostartFolder() + "/com.taliro.Taliro.desktop") {
    followProgram();
}

/// An entry whose program is gone is from before Taliro was moved. One that can't be written stays as it is,
/// and counts as not found.
void AutostartLoginItems::followProgram() {
    auto const text = PosixFileManager().readFile(Url::file(m_entry, false), largestEntry);
    auto const entry = text ? readEntry(*text) : nullptr;
    auto const exec = entry ? valueOf(entry.get(), G_KEY_FILE_DESKTOP_KEY_EXEC) : nullptr;
    if (!exec || canStart(exec.get()))
        return;
    g_key_file_set_string(entry.get(), group, G_KEY_FILE_DESKTOP_KEY_EXEC, asExec(m_program).c_str());
    static_cast<void>(save(entry.get(), m_entry));
}

LoginItemStatus AutostartLoginItems::status() {
    PosixFileManager files;
    auto const place = Url::file(m_entry, false);
    if (!files.exists(place))
        return LoginItemStatus::notRegistered;
    auto const text = files.readFile(place, largestEntry);
    if (!text)
        return LoginItemStatus::unknown;
    auto const entry = readEntry(*text);
    if (!entry || !canStart(valueOf(entry.get(), G_KEY_FILE_DESKTOP_KEY_EXEC).get()))
        return LoginItemStatus::notFound;
    return isSwitchedOff(entry.get()) ? LoginItemStatus::requiresApproval : LoginItemStatus::enabled;
}

std::expected<void, std::string> AutostartLoginItems::registerItem() {
    if (!g_utf8_validate(m_program.c_str(), -1, nullptr))
        return std::unexpected("The path of Taliro has letters that a desktop entry can't hold.");
    KeyFile const entry(g_key_file_new());
    auto const set = [&](char const* key, std::string const& value) {
        g_key_file_set_string(entry.get(), group, key, value.c_str());
    };
    set(G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION);
    set(G_KEY_FILE_DESKTOP_KEY_NAME, "Taliro");
    set(G_KEY_FILE_DESKTOP_KEY_COMMENT, "Browse files from anywhere");
    set(G_KEY_FILE_DESKTOP_KEY_EXEC, asExec(m_program));
    set(G_KEY_FILE_DESKTOP_KEY_ICON, "com.taliro.Taliro");
    set(G_KEY_FILE_DESKTOP_KEY_TERMINAL, "false");
    set(G_KEY_FILE_DESKTOP_KEY_NO_DISPLAY, "true");
    auto made = makeFolders(m_entry.substr(0, m_entry.rfind('/')), 0700);
    return told(made ? save(entry.get(), m_entry) : made);
}

std::expected<void, std::string> AutostartLoginItems::unregisterItem() {
    if (::unlink(m_entry.c_str()) != 0 && errno != ENOENT)
        return std::unexpected(std::error_code(errno, std::generic_category()).message());
    return {};
}

} // namespace taliro
