#pragma once

#include "platform/PreviewService.h"
#include "platform/linux/HelperProcess.h"
#include "platform/linux/renderer/Protocol.h"

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>

#include <QImage>

namespace taliro {

struct Patience;

/// Has a picture drawn by a process of its own, which may crash, hang or run out of memory over a bad file:
/// then that picture fails, and the next one gets a new process. One thread at a time.
class RendererClient {
public:
    struct Task {
        RenderKind kind = RenderKind::drawing;
        std::string path;
        std::string command; ///< of an installed thumbnailer, with its field codes
        int width = 0;       ///< pixels that the picture may take at most
        int height = 0;      ///< pixels
        int page = 0;
        std::chrono::milliseconds timeLimit{5000};
    };
    struct Drawn {
        QImage image;
        int pages = 1;
    };
    enum class Failure { noRenderer, badFile, stopped };

    explicit RendererClient(std::string program) : m_process(std::move(program)) {}

    std::expected<Drawn, Failure> draw(Task const& task, std::stop_token stop);
    /// Lists the archive at `path`: `update` hears of the counts so far and of the first names, several
    /// times. Whether it came to the end.
    bool summarize(std::string const& path, std::function<void(ContentSummary const&)> const& update,
                   std::stop_token stop);
    /// Ends the process, if one runs, with all that it started.
    void stop() { m_process.stop(); }

private:
    bool start();
    bool send(Task const& task);
    /// False where the time is up, the process is gone, or a stop is requested.
    bool receive(void* into, std::size_t size, Patience const& patience);
    std::optional<Drawn> receivePicture(Task const& task, Patience const& patience);

    HelperProcess m_process;
};

} // namespace taliro
