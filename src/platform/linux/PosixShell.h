#pragma once

#include "platform/Shell.h"

namespace taliro {

class PosixShell : public Shell {
public:
    /// `resources`: the bundle's `Resources` folder.
    explicit PosixShell(std::string resources) : m_resources(std::move(resources)) {}

    std::int32_t runShell(std::string const& command) override;
    std::string resolvingSymlinks(std::string const& path) override;
    std::optional<std::string> bundledResource(std::string const& name) override;

private:
    std::string m_resources;
};

/// Runs the script's command by `pkexec`, which asks for the password through the desktop's own agent.
class PkexecScriptInterpreter : public ScriptInterpreter {
public:
    std::expected<void, std::string> run(std::string const& source) override;

    /// The command inside `do shell script "…" with administrator privileges`; nothing where the source is
    /// not that.
    static std::optional<std::string> commandOf(std::string const& source);
};

} // namespace taliro
