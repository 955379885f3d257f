#pragma once

#include "platform/Picture.h"

#include <chrono>
#include <functional>

namespace taliro {

struct PlaybackState {
    enum class Phase { opening, paused, playing, failed };
    Phase phase = Phase::opening; ///< `failed`: this system can't play the file, or not any further
    std::chrono::milliseconds position{0};
    std::chrono::milliseconds duration{0}; ///< 0 where it isn't known
    bool isMuted = false;
};

/// A sound or a film being played. It opens paused and ends with this object.
class Playback {
public:
    virtual ~Playback() = default;

    /// Goes on from where it stands, or from the start once it has come to the end.
    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void seek(std::chrono::milliseconds position) = 0;
    virtual void setMuted(bool muted) = 0;
};

/// What a playback tells, on the main thread.
struct PlaybackEvents {
    /// Several times a second while playing.
    std::function<void(PlaybackState const&)> changed;
    /// A film's next picture. One that comes before the last was taken replaces it.
    std::function<void(Picture const&)> frame;
};

} // namespace taliro
