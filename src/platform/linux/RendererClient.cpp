#include "platform/linux/RendererClient.h"

#include <cerrno>
#include <csignal>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace taliro {

namespace {

/// How long a renderer takes to notice that its picture is not wanted any more.
constexpr std::chrono::milliseconds stopDelay{100};
constexpr std::chrono::seconds startLimit{10};
constexpr std::chrono::seconds summaryLimit{60};

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

/// Ours, but for what would lead the renderer to a display.
std::vector<char*> rendererEnvironment() {
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

bool RendererClient::start() {
    if (m_process > 0)
        return true;
    int ends[2];
    if (m_program.empty() || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;
    SpawnSetup setup;
    posix_spawn_file_actions_adddup2(&setup.files, ends[1], STDIN_FILENO);
    for (int const output : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&setup.files, output, "/dev/null", O_WRONLY, 0);
    // A group of its own, so that what it starts ends with it.
    posix_spawnattr_setflags(&setup.attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setpgroup(&setup.attributes, 0);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&setup.attributes, &none);
    char* const arguments[] = {m_program.data(), nullptr};
    auto const error = posix_spawn(&m_process, m_program.c_str(), &setup.files, &setup.attributes, arguments,
                                   rendererEnvironment().data());
    close(ends[1]);
    if (error != 0) {
        close(ends[0]);
        m_process = -1;
        return false;
    }
    m_socket = ends[0];
    std::uint32_t greeting = 0;
    auto const until = std::chrono::steady_clock::now() + startLimit;
    if (receive(&greeting, sizeof greeting, until, {}) && greeting == rendererGreeting)
        return true;
    stop();
    return false;
}

void RendererClient::stop() {
    if (m_process <= 0)
        return;
    kill(-m_process, SIGKILL);
    close(m_socket);
    while (waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    m_socket = -1;
}

bool RendererClient::send(Task const& task) {
    RenderRequest const header{.kind = task.kind,
                               .width = task.width,
                               .height = task.height,
                               .page = task.page,
                               .pathLength = static_cast<std::uint32_t>(task.path.size()),
                               .commandLength = static_cast<std::uint32_t>(task.command.size())};
    auto message =
        std::string(reinterpret_cast<char const*>(&header), sizeof header) + task.path + task.command;
    std::string_view rest = message;
    while (!rest.empty()) {
        auto const sent = ::send(m_socket, rest.data(), rest.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        rest.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool RendererClient::receive(void* into, std::size_t size, std::chrono::steady_clock::time_point until,
                             std::stop_token const& stop) {
    using namespace std::chrono;
    auto* next = static_cast<char*>(into);
    while (size > 0) {
        auto const left = ceil<milliseconds>(until - steady_clock::now());
        if (left <= milliseconds::zero() || stop.stop_requested())
            return false;
        pollfd waited{.fd = m_socket, .events = POLLIN, .revents = 0};
        auto const ready = poll(&waited, 1, static_cast<int>(std::min(left, stopDelay).count()));
        if (ready == 0 || (ready < 0 && errno == EINTR))
            continue;
        auto const count = recv(m_socket, next, size, 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        next += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

std::optional<RendererClient::Drawn>
RendererClient::receivePicture(Task const& task, std::chrono::steady_clock::time_point until,
                               std::stop_token const& stop) {
    RenderReply reply;
    if (!receive(&reply, sizeof reply, until, stop))
        return std::nullopt;
    if (reply.width == 0 && reply.height == 0)
        return Drawn{};
    // A renderer that a bad file has taken over may answer anything.
    if (reply.width <= 0 || reply.height <= 0 || reply.width > task.width || reply.height > task.height)
        return std::nullopt;
    auto const count = static_cast<std::size_t>(reply.width) * static_cast<std::size_t>(reply.height);
    std::shared_ptr<std::uint32_t[]> const pixels(new std::uint32_t[count]);
    if (!receive(pixels.get(), count * sizeof(std::uint32_t), until, stop))
        return std::nullopt;
    return Drawn{{reply.width, reply.height, pixels}, std::max(reply.pages, 1)};
}

std::expected<RendererClient::Drawn, RendererClient::Failure> RendererClient::draw(Task const& task,
                                                                                   std::stop_token stop) {
    if (task.path.size() > longestText || task.command.size() > longestText)
        return std::unexpected(Failure::badFile);
    if (!start())
        return std::unexpected(Failure::noRenderer);
    auto const until = std::chrono::steady_clock::now() + task.timeLimit;
    auto drawn = send(task) ? receivePicture(task, until, stop) : std::nullopt;
    if (!drawn) {
        // What the process has left in its socket would be taken for the next answer.
        this->stop();
        return std::unexpected(stop.stop_requested() ? Failure::stopped : Failure::badFile);
    }
    if (drawn->picture.isEmpty())
        return std::unexpected(Failure::badFile);
    return std::move(*drawn);
}

bool RendererClient::summarize(std::string const& path,
                               std::function<void(ContentSummary const&)> const& update,
                               std::stop_token stop) {
    if (path.size() > longestText || !start() ||
        !send({.kind = RenderKind::archive, .path = path, .command = {}}))
        return false;
    auto const until = std::chrono::steady_clock::now() + summaryLimit;
    ContentSummary summary;
    while (!summary.finished) {
        SummaryReply reply;
        if (!receive(&reply, sizeof reply, until, stop) || reply.nameLength > longestText)
            break;
        std::string name(reply.nameLength, '\0');
        if (!receive(name.data(), name.size(), until, stop))
            break;
        summary.files = reply.files;
        summary.folders = reply.folders;
        summary.bytes = reply.bytes;
        summary.finished = reply.finished != 0;
        summary.damaged = reply.damaged != 0;
        if (!name.empty() && summary.names.size() < mostNames)
            summary.names.push_back(std::move(name));
        else
            update(summary);
    }
    if (!summary.finished)
        this->stop();
    return summary.finished;
}

} // namespace taliro
