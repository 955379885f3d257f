#include "platform/linux/PosixShell.h"

#include "foundation/Text.h"
#include "platform/linux/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace taliro {

namespace {

/// How pkexec ends where the user turned the question away, and where nobody could be asked or the answer was
/// no.
constexpr int dismissed = 126;
constexpr int notAuthorized = 127;
constexpr std::size_t longestMessage = 4096;

struct Ended {
    int status = -1;          ///< the exit status; −1 where the program could not be started or was killed
    int startError = 0;       ///< why it could not be started
    std::string message = {}; ///< what it wrote on standard error
};

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 1024> buffer;
    for (;;) {
        auto const count = ::read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return text.substr(0, longestMessage);
        if (text.size() < longestMessage)
            text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

int waitFor(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0)
        if (errno != EINTR)
            return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Runs a program to its end, its standard output dropped.
Ended runToEnd(std::vector<std::string> words) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {.startError = errno};
    FileDescriptor const reading(ends[0]);
    FileDescriptor writing(ends[1]);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, writing.get(), STDERR_FILENO);
    std::vector<char*> arguments;
    for (auto& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t process = 0;
    int const error = ::posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        return {.startError = error};
    writing.reset();
    auto message = readAll(reading.get());
    return {.status = waitFor(process), .message = std::move(message)};
}

} // namespace

std::int32_t PosixShell::runShell(std::string const& command) {
    return runToEnd({"/bin/sh", "-c", command}).status;
}

std::string PosixShell::resolvingSymlinks(std::string const& path) {
    std::unique_ptr<char, decltype(&std::free)> const real(::realpath(path.c_str(), nullptr), &std::free);
    if (real)
        return real.get();
    // A link that leads nowhere: one step of it tells it from what it should be.
    std::array<char, PATH_MAX> target;
    auto const length = ::readlink(path.c_str(), target.data(), target.size());
    return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : path;
}

std::optional<std::string> PosixShell::bundledResource(std::string const& name) {
    auto const path = m_resources + "/" + name;
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return path;
}

std::optional<std::string> PkexecScriptInterpreter::commandOf(std::string const& source) {
    constexpr std::string_view opening = "do shell script \"";
    constexpr std::string_view closing = "\" with administrator privileges";
    if (source.size() < opening.size() + closing.size() || !source.starts_with(opening) ||
        !source.ends_with(closing))
        return std::nullopt;
    auto const inside =
        std::string_view(source).substr(opening.size(), source.size() - opening.size() - closing.size());
    std::string command;
    for (std::size_t i = 0; i < inside.size(); ++i) {
        if (inside[i] == '"' || (inside[i] == '\\' && i + 1 == inside.size()))
            return std::nullopt;
        if (inside[i] == '\\')
            ++i;
        command += inside[i];
    }
    return command;
}

std::expected<void, std::string> PkexecScriptInterpreter::run(std::string const& source) {
    auto const command = commandOf(source);
    if (!command)
        return std::unexpected("The script could not be understood.");
    auto const ended = runToEnd({"pkexec", "/bin/sh", "-c", *command});
    if (ended.status == 0)
        return {};
    if (ended.startError == ENOENT)
        return std::unexpected("Administrator rights are asked for through pkexec, which isn't installed.");
    if (ended.status == dismissed)
        return std::unexpected("The request for administrator rights was cancelled.");
    std::string const message(
        trimmingWhitespaceAndNewlines(legible(trimmingWhitespaceAndNewlines(ended.message))));
    if (ended.status == notAuthorized)
        return std::unexpected(message.empty() ? "You are not authorized to do this." : message);
    return std::unexpected(message);
}

} // namespace taliro
