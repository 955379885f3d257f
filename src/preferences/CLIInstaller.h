#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace taliro {

struct Platform;

/// The link that makes the bundle's command-line tool a command of every terminal.
class CLIInstaller {
public:
    enum class Status { installed, installedStale, notInstalled };

    static constexpr char linkPath[] = "/usr/local/bin/taliro";

    explicit CLIInstaller(Platform& platform) : m_platform(platform) {}

    /// As of the last `refreshStatus`, `install` or `uninstall`.
    Status status() const { return m_status; }
    /// Why the last attempt failed, in words for the user.
    std::optional<std::string> const& errorMessage() const { return m_errorMessage; }
    void clearErrorMessage() { m_errorMessage.reset(); }

    /// The tool inside the bundle; nothing where it is missing.
    std::optional<std::string> bundledBinaryPath() const;
    void refreshStatus();
    /// Makes the link, or puts it in the place of whatever is there. Asks for administrator rights if it
    /// must.
    void install();
    void uninstall();

    /// One word of a shell command, whatever the text holds.
    static std::string quoted(std::string_view text);

private:
    void runWithRights(std::string const& command, std::string const& script, char const* failure);

    Platform& m_platform;
    Status m_status = Status::notInstalled;
    std::optional<std::string> m_errorMessage;
};

} // namespace taliro
