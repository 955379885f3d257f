#include "platform/linux/AutostartLoginItems.h"

#include "platform/linux/PosixFileManager.h"
#include "platform/linux/WriteFile.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <unistd.h>

namespace taliro {

namespace {

std::string autostartFolder() {
    char const* configured = std::getenv("XDG_CONFIG_HOME");
    auto const base = configured && configured[0] == '/'
                          ? std::string(configured)
                          : PosixFileManager().homeDirectory().path() + "/.config";
    return base + "/autostart";
}

/// An argument of an `Exec` line; see the Desktop Entry Specification, "The Exec key".
std::string quotedForExec(std::string_view argument) {
    std::string quoted = "\"";
    for (char letter : argument) {
        if (letter == '%')
            quoted += '%';
        // Escaped once for the quotes, and the backslash once more for the value itself.
        if (letter == '"' || letter == '`' || letter == '$')
            quoted += "\\\\";
        if (letter == '\\')
            quoted += "\\\\\\";
        quoted += letter;
    }
    return quoted + "\"";
}

std::string entryText(std::string const& program) {
    return "[Desktop Entry]\nType=Application\nName=Taliro\nComment=Browse files from anywhere\n"
           "Exec=" +
           quotedForExec(program) +
           "\nIcon=com.taliro.Taliro\nTerminal=false\nNoDisplay=true\n"
           "X-GNOME-Autostart-enabled=true\n";
}

bool hasLine(std::string const& text, std::string_view line) {
    auto const at = ("\n" + text + "\n").find("\n" + std::string(line) + "\n");
    return at != std::string::npos;
}

} // namespace

AutostartLoginItems::AutostartLoginItems(std::string program)
    : m_program(std::move(program)), m_entry(autostartFolder() + "/com.taliro.Taliro.desktop") {}

LoginItemStatus AutostartLoginItems::status() {
    PosixFileManager files;
    auto const entry = Url::file(m_entry, false);
    if (!files.exists(entry))
        return LoginItemStatus::notRegistered;
    auto const text = files.readFile(entry, 64 * 1024);
    if (!text)
        return LoginItemStatus::unknown;
    if (text->find("\nExec=") == std::string::npos)
        return LoginItemStatus::notFound;
    if (hasLine(*text, "Hidden=true") || hasLine(*text, "X-GNOME-Autostart-enabled=false"))
        return LoginItemStatus::requiresApproval;
    return LoginItemStatus::enabled;
}

std::expected<void, std::string> AutostartLoginItems::registerItem() {
    auto made = makeFolders(m_entry.substr(0, m_entry.rfind('/')), 0700);
    if (made)
        made = writeFileAtomically(m_entry, entryText(m_program), 0644);
    if (!made)
        return std::unexpected(std::make_error_code(made.error()).message());
    return {};
}

std::expected<void, std::string> AutostartLoginItems::unregisterItem() {
    if (::unlink(m_entry.c_str()) != 0 && errno != ENOENT)
        return std::unexpected(std::error_code(errno, std::generic_category()).message());
    return {};
}

} // namespace taliro
