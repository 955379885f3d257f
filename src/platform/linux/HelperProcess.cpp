#include "platform/linux/HelperProcess.h"

#include <cerrno>
#include <csignal>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

extern char** environ;

namespace taliro {

namespace {

struct SpawnSetup {
    posix_spawn_file_actions_t files{};
    posix_spawnattr_t attributes{};
    SpawnSetup() {
        posix_spawn_file_actions_init(&files);
        posix_spawnattr_init(&attributes);
    }
    ~SpawnSetup() {
        posix_spawn_file_actions_destroy(&files);
        posix_spawnattr_destroy(&attributes);
    }
};

/// Ours, but for what would lead the helper to a display.
std::vector<char*> helperEnvironment() {
    std::vector<char*> result;
    for (auto** variable = environ; *variable; ++variable) {
        std::string_view const text(*variable);
        if (!text.starts_with("QT_") && !text.starts_with("DISPLAY=") &&
            !text.starts_with("WAYLAND_DISPLAY="))
            result.push_back(*variable);
    }
    static char offscreen[] = "QT_QPA_PLATFORM=offscreen";
    result.push_back(offscreen);
    result.push_back(nullptr);
    return result;
}

} // namespace

bool HelperProcess::start() {
    if (isRunning())
        return true;
    int ends[2];
    if (m_program.empty() || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;
    FileDescriptor ours(ends[0]);
    FileDescriptor const theirs(ends[1]);
    SpawnSetup setup;
    posix_spawn_file_actions_adddup2(&setup.files, theirs.get(), STDIN_FILENO);
    for (int const output : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&setup.files, output, "/dev/null", O_WRONLY, 0);
    // A group of its own, so that what it starts ends with it.
    posix_spawnattr_setflags(&setup.attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setpgroup(&setup.attributes, 0);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&setup.attributes, &none);
    char* const arguments[] = {m_program.data(), nullptr};
    if (posix_spawn(&m_process, m_program.c_str(), &setup.files, &setup.attributes, arguments,
                    helperEnvironment().data()) != 0) {
        m_process = -1;
        return false;
    }
    m_socket = std::move(ours);
    return true;
}

void HelperProcess::stop() {
    if (!isRunning())
        return;
    kill(-m_process, SIGKILL);
    m_socket.reset();
    while (waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
}

void HelperProcess::disconnect() {
    if (isRunning())
        shutdown(m_socket.get(), SHUT_RDWR);
}

} // namespace taliro
