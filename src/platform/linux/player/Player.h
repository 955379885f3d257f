#pragma once

#include "platform/Playback.h"
#include "platform/linux/player/Protocol.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

namespace taliro {

/// Plays one file as the other end of the connection says, and reports how far it is and what there is to
/// see.
class Player {
public:
    /// Pictures are at most `width` and `height` pixels large.
    Player(int connection, std::string const& path, int width, int height);
    ~Player();
    Player(Player const&) = delete;
    Player& operator=(Player const&) = delete;

    /// Until the connection ends or the file can't be played.
    void run();

private:
    using Phase = PlaybackState::Phase;
    struct Unref {
        void operator()(void* object) const { gst_object_unref(object); }
    };

    GstElement* makeFilmSink(int width, int height);
    bool obey();
    void hear(GstMessage& message);
    void prerolled();
    void ended();
    void fail();
    void seek(std::int64_t milliseconds);
    void report();
    bool sendFrame(GstSample* sample);
    bool send(PlayerReport const& report, void const* pixels, std::size_t size);
    PlayerReport state() const;

    int m_connection;
    std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> m_loop;
    std::unique_ptr<GstElement, Unref> m_pipeline;
    Phase m_phase = Phase::opening;
    bool m_wantsToPlay = false;
    bool m_hasEnded = false;
    bool m_isSeeking = false;
    std::optional<std::int64_t> m_nextSeek; ///< milliseconds, once the current one is done
    std::mutex m_sending;
};

} // namespace taliro
