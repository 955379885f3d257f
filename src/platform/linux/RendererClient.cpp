#include "platform/linux/RendererClient.h"

#include "platform/linux/Socket.h"

#include <vector>

namespace taliro {

namespace {

constexpr std::chrono::seconds startLimit{10};
constexpr std::chrono::seconds summaryLimit{60};

} // namespace

bool RendererClient::start() {
    if (m_process.isRunning())
        return true;
    std::uint32_t greeting = 0;
    Patience const patience{std::chrono::steady_clock::now() + startLimit, {}};
    if (m_process.start() && receive(&greeting, sizeof greeting, patience) && greeting == rendererGreeting)
        return true;
    stop();
    return false;
}

bool RendererClient::send(Task const& task) {
    RenderRequest const header{.kind = task.kind,
                               .width = task.width,
                               .height = task.height,
                               .page = task.page,
                               .pathLength = static_cast<std::uint32_t>(task.path.size()),
                               .commandLength = static_cast<std::uint32_t>(task.command.size())};
    auto const message =
        std::string(reinterpret_cast<char const*>(&header), sizeof header) + task.path + task.command;
    return sendAll(m_process.socket(), message.data(), message.size());
}

bool RendererClient::receive(void* into, std::size_t size, Patience const& patience) {
    return receiveAll(m_process.socket(), into, size, &patience);
}

std::optional<RendererClient::Drawn> RendererClient::receivePicture(Task const& task,
                                                                    Patience const& patience) {
    RenderReply reply;
    if (!receive(&reply, sizeof reply, patience))
        return std::nullopt;
    if (reply.width == 0 && reply.height == 0)
        return Drawn{};
    // A renderer that a bad file has taken over may answer anything.
    if (reply.width <= 0 || reply.height <= 0 || reply.width > task.width || reply.height > task.height)
        return std::nullopt;
    QImage image(reply.width, reply.height, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull() || !receive(image.bits(), static_cast<std::size_t>(image.sizeInBytes()), patience))
        return std::nullopt;
    return Drawn{std::move(image), std::max(reply.pages, 1)};
}

std::expected<RendererClient::Drawn, RendererClient::Failure> RendererClient::draw(Task const& task,
                                                                                   std::stop_token stop) {
    if (task.path.size() > longestText || task.command.size() > longestText)
        return std::unexpected(Failure::badFile);
    if (!start())
        return std::unexpected(Failure::noRenderer);
    Patience const patience{std::chrono::steady_clock::now() + task.timeLimit, stop};
    auto drawn = send(task) ? receivePicture(task, patience) : std::nullopt;
    if (!drawn) {
        // What the process has left in its socket would be taken for the next answer.
        this->stop();
        return std::unexpected(stop.stop_requested() ? Failure::stopped : Failure::badFile);
    }
    if (drawn->image.isNull())
        return std::unexpected(Failure::badFile);
    return std::move(*drawn);
}

bool RendererClient::summarize(std::string const& path,
                               std::function<void(ContentSummary const&)> const& update,
                               std::stop_token stop) {
    if (path.size() > longestText || !start() ||
        !send({.kind = RenderKind::archive, .path = path, .command = {}}))
        return false;
    Patience const patience{std::chrono::steady_clock::now() + summaryLimit, std::move(stop)};
    ContentSummary summary;
    while (!summary.finished) {
        SummaryReply reply;
        if (!receive(&reply, sizeof reply, patience) || reply.nameLength > longestText)
            break;
        std::string name(reply.nameLength, '\0');
        if (!receive(name.data(), name.size(), patience))
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
