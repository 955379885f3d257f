#include "desktop/Process.h"

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace taliro::testing {

namespace {

constexpr int channelNumber = 3;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

bool waitFor(std::function<bool()> const& condition, std::chrono::milliseconds limit) {
    auto const end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

Process::Process(std::vector<std::string> const& command, Environment const& environment,
                 std::filesystem::path const& log, std::filesystem::path const& folder,
                 std::optional<int> channel) {
    auto arguments = command;
    std::vector<std::string> variables;
    for (auto const& [name, value] : environment)
        variables.push_back(name + '=' + value);
    auto const argv = pointersTo(arguments);
    auto const envp = pointersTo(variables);
    m_pid = ::fork();
    if (m_pid != 0)
        return;
    // Nothing outlives the test, not even one that crashes.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::setpgid(0, 0);
    int const output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    if (channel && *channel != channelNumber)
        ::dup2(*channel, channelNumber);
    ::close_range(channel ? channelNumber + 1 : channelNumber, ~0U, 0);
    if (::chdir(folder.c_str()) == 0)
        ::execvpe(argv[0], argv.data(), envp.data());
    ::_exit(127);
}

Process::Process(Process&& other) noexcept
    : m_pid(std::exchange(other.m_pid, -1)), m_status(std::exchange(other.m_status, std::nullopt)) {}

Process& Process::operator=(Process&& other) noexcept {
    if (this != &other) {
        kill();
        m_pid = std::exchange(other.m_pid, -1);
        m_status = std::exchange(other.m_status, std::nullopt);
    }
    return *this;
}

Process::~Process() {
    kill();
}

void Process::reap() {
    int status = 0;
    if (m_pid > 0 && !m_status && ::waitpid(m_pid, &status, WNOHANG) == m_pid)
        m_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool Process::isRunning() {
    reap();
    return m_pid > 0 && !m_status;
}

std::optional<int> Process::waitForExit(std::chrono::milliseconds limit) {
    waitFor([this] { return !isRunning(); }, limit);
    return m_status;
}

std::optional<int> Process::terminate() {
    if (isRunning())
        ::kill(m_pid, SIGTERM);
    return waitForExit();
}

void Process::kill() {
    if (!isRunning())
        return;
    ::kill(m_pid, SIGKILL);
    waitForExit();
}

} // namespace taliro::testing
