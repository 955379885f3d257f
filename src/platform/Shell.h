#pragma once

#include "foundation/Url.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>

namespace taliro {

/// Commands of the system's shell, links in the file system, and administrator rights.
class Shell {
public:
    virtual ~Shell() = default;

    /// Runs `/bin/sh -c command` and waits; its exit status, −1 where it could not be started.
    virtual std::int32_t runShell(std::string const& command) = 0;
    /// The path with every symbolic link resolved; as far as they lead where one leads nowhere.
    virtual std::string resolvingSymlinks(std::string const& path) = 0;
    /// A file of the program's bundle in its `Resources`, or nothing where it is missing.
    virtual std::optional<std::string> bundledResource(std::string const& name) = 0;
};

/// Runs scripts of the form `do shell script "…" with administrator privileges`, asking the user for the
/// right.
class ScriptInterpreter {
public:
    virtual ~ScriptInterpreter() = default;
    /// Waits for the end. A failure is the message for the user, empty where there is none.
    virtual std::expected<void, std::string> run(std::string const& source) = 0;
};

} // namespace taliro
