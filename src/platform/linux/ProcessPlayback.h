#pragma once

#include "platform/Playback.h"
#include "platform/linux/BackgroundAnswer.h"
#include "platform/linux/HelperProcess.h"
#include "platform/linux/player/Protocol.h"

#include <string>
#include <thread>

namespace taliro {

/// Plays through a process of its own: decoders are large, and a bad file may kill them.
class ProcessPlayback : public Playback {
public:
    struct Film {
        std::string path;
        int width = 0;  ///< pixels that its pictures may take at most
        int height = 0; ///< pixels
    };
    /// `program`: the player's path.
    ProcessPlayback(std::string program, MainQueue& queue, Film const& film, PlaybackEvents events);
    ~ProcessPlayback() override;

    void play() override { send(PlayerCommand::Action::play); }
    void pause() override { send(PlayerCommand::Action::pause); }
    void seek(std::chrono::milliseconds position) override {
        send(PlayerCommand::Action::seek, position.count());
    }
    void setMuted(bool muted) override {
        send(muted ? PlayerCommand::Action::mute : PlayerCommand::Action::unmute);
    }

private:
    class Screen;

    bool ask(Film const& film);
    void send(PlayerCommand::Action action, std::int64_t milliseconds = 0);
    void listen(int mostWidth, int mostHeight);

    HelperProcess m_player;
    BackgroundAnswer<PlaybackState> m_changed;
    std::shared_ptr<Screen> m_screen;
    std::jthread m_listener;
};

} // namespace taliro
