#pragma once

#include "foundation/Url.h"

#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// What the program was started for.
struct CommandLine {
    enum class Task { run, help, version };
    Task task = Task::run;
    std::vector<Url> urls; ///< absolute

    /// `arguments` without the program's name; relative paths are taken from `workingDirectory`. Fails with
    /// one line for the user.
    static std::expected<CommandLine, std::string> parse(std::span<char const* const> arguments,
                                                         std::string_view workingDirectory);
    static std::string_view helpText();
};

} // namespace taliro
