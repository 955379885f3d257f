#pragma once

#include "Seat.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace taliro::bench {

/// Someone who looks at the whole screen and tells when a program has shown what it was asked for. The rule
/// is the same for every program and takes nothing from it: it has shown when the screen looks as it does in
/// the end, but for two in a hundred of the places that changed, such as a cursor that blinks; the end is
/// when nothing happened for a second, neither on the screen nor in the program.
class Onlooker {
public:
    using Milliseconds = std::chrono::duration<double, std::milli>;
    using Clock = std::chrono::steady_clock;

    explicit Onlooker(Seat& seat);
    ~Onlooker();
    Onlooker(Onlooker const&) = delete;
    Onlooker& operator=(Onlooker const&) = delete;

    /// Counted from when `act` was called.
    struct Seen {
        Milliseconds shown; ///< the screen looks as in the end
        Milliseconds idle;  ///< and the program is at rest; not before `shown`
    };
    /// Calls `act`, which returns the process to watch; nothing where the end didn't come within `limit`, or
    /// where nothing was to be seen.
    std::optional<Seen> watch(std::function<pid_t()> const& act, std::chrono::seconds limit);

private:
    /// What a part of the screen looks like, as a number.
    using Picture = std::vector<std::uint64_t>;
    struct Moment {
        Clock::time_point time;
        Picture picture;
    };
    struct Use {
        Clock::time_point time;
        std::chrono::nanoseconds processor; ///< used by the program so far
    };

    Picture look() const;
    bool waitForChange(std::chrono::milliseconds limit);
    static std::size_t differences(Picture const& a, Picture const& b);
    static Clock::time_point restingSince(std::vector<Use> const& uses);

    Seat& m_seat;
    std::uint8_t m_damageEvent = 0;
    std::uint32_t m_damage = 0;
};

} // namespace taliro::bench
