#include "preferences/CLIInstaller.h"

#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/Shell.h"

namespace taliro {

namespace {

std::string asScript(std::string const& command) {
    return "do shell script \"" + command + "\" with administrator privileges";
}

/// As the inside of a script's string.
std::string escaped(std::string_view text) {
    std::string result;
    for (char letter : text) {
        if (letter == '\\' || letter == '"')
            result += '\\';
        result += letter;
    }
    return result;
}

} // namespace

std::string CLIInstaller::quoted(std::string_view text) {
    std::string word = "'";
    for (char letter : text) {
        if (letter == '\'')
            word += "'\\''";
        else
            word += letter;
    }
    return word + "'";
}

std::optional<std::string> CLIInstaller::bundledBinaryPath() const {
    return m_platform.shell.bundledResource("taliro");
}

void CLIInstaller::refreshStatus() {
    auto const tool = bundledBinaryPath();
    if (!tool || !m_platform.fileManager.exists(Url::file(linkPath))) {
        m_status = Status::notInstalled;
        return;
    }
    auto const target = m_platform.shell.resolvingSymlinks(linkPath);
    m_status =
        target == m_platform.shell.resolvingSymlinks(*tool) ? Status::installed : Status::installedStale;
}

void CLIInstaller::install() {
    auto const tool = bundledBinaryPath();
    if (!tool)
        return;
    auto const command = "mkdir -p /usr/local/bin && ln -sf " + quoted(*tool) + " " + quoted(linkPath);
    runWithRights(command, asScript(escaped(command)), "Install failed.");
}

void CLIInstaller::uninstall() {
    auto const command = "rm -f " + quoted(linkPath);
    runWithRights(command, asScript(command), "Uninstall failed.");
}

void CLIInstaller::runWithRights(std::string const& command, std::string const& script, char const* failure) {
    m_errorMessage.reset();
    if (m_platform.shell.runShell(command) != 0)
        if (auto const done = m_platform.scriptInterpreter.run(script); !done)
            m_errorMessage = done.error().empty() ? failure : done.error();
    refreshStatus();
}

} // namespace taliro
