#include "platform/linux/ProcessPlayback.h"

#include "platform/linux/Socket.h"

#include <algorithm>
#include <mutex>
#include <optional>

namespace taliro {

/// Hands pictures to the main thread. One that is late is passed over: they must not pile up there.
class ProcessPlayback::Screen : public std::enable_shared_from_this<Screen> {
public:
    Screen(MainQueue& queue, std::function<void(Picture const&)> show)
        : m_queue(queue), m_show(std::move(show)) {}

    void put(Picture frame) {
        {
            std::lock_guard const lock(m_mutex);
            if (std::exchange(m_latest, std::move(frame)))
                return; // It is asked for already.
        }
        m_queue.async([self = shared_from_this()] {
            auto const frame = self->take();
            if (frame && self->m_show)
                self->m_show(*frame);
        });
    }
    /// Main thread only.
    void turnOff() { m_show = nullptr; }

private:
    std::optional<Picture> take() {
        std::lock_guard const lock(m_mutex);
        return std::exchange(m_latest, std::nullopt);
    }

    MainQueue& m_queue;
    std::function<void(Picture const&)> m_show;
    std::mutex m_mutex;
    std::optional<Picture> m_latest;
};

ProcessPlayback::ProcessPlayback(std::string program, MainQueue& queue, Film const& film,
                                 PlaybackEvents events)
    : m_player(std::move(program)),
      m_changed(queue, std::move(events.changed)),
      m_screen(std::make_shared<Screen>(queue, std::move(events.frame))) {
    if (m_player.start() && ask(film))
        m_listener = std::jthread([this, film] { listen(film.width, film.height); });
    else
        m_changed.give({.phase = PlaybackState::Phase::failed});
}

ProcessPlayback::~ProcessPlayback() {
    m_changed.takeBack();
    m_screen->turnOff();
    m_player.disconnect();
}

bool ProcessPlayback::ask(Film const& film) {
    PlayerRequest const request{.width = std::min(film.width, longestFilmSide),
                                .height = std::min(film.height, longestFilmSide),
                                .pathLength = static_cast<std::uint32_t>(film.path.size())};
    return film.path.size() <= longestPlayerPath && sendAll(m_player.socket(), &request, sizeof request) &&
           sendAll(m_player.socket(), film.path.data(), film.path.size());
}

void ProcessPlayback::send(PlayerCommand::Action action, std::int64_t milliseconds) {
    PlayerCommand const command{action, milliseconds};
    sendAll(m_player.socket(), &command, sizeof command); // Its end is heard of by the listener.
}

void ProcessPlayback::listen(int mostWidth, int mostHeight) {
    using Phase = PlaybackState::Phase;
    auto const phaseOf = [](std::uint32_t number) {
        return number < static_cast<std::uint32_t>(Phase::failed) ? static_cast<Phase>(number)
                                                                  : Phase::failed;
    };
    PlayerReport report;
    while (receiveAll(m_player.socket(), &report, sizeof report)) {
        if (report.width == 0) {
            PlaybackState const state{.phase = phaseOf(report.phase),
                                      .position = std::chrono::milliseconds(report.position),
                                      .duration = std::chrono::milliseconds(report.duration),
                                      .isMuted = report.isMuted != 0};
            m_changed.give(state);
            if (state.phase == Phase::failed)
                return;
            continue;
        }
        // A player that a bad file has taken over may say anything.
        if (report.width < 0 || report.height <= 0 || report.width > mostWidth || report.height > mostHeight)
            break;
        auto const count = static_cast<std::size_t>(report.width) * static_cast<std::size_t>(report.height);
        std::shared_ptr<std::uint32_t[]> const pixels(new std::uint32_t[count]);
        if (!receiveAll(m_player.socket(), pixels.get(), count * sizeof(std::uint32_t)))
            break;
        m_screen->put({report.width, report.height, pixels});
    }
    m_changed.give({.phase = Phase::failed});
}

} // namespace taliro
