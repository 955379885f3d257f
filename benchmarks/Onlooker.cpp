#include "Onlooker.h"

#include <xcb/damage.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <thread>

#include <ctime>
#include <poll.h>

namespace taliro::bench {

using namespace std::chrono_literals;

namespace {

constexpr int tile = 16; ///< pixels in width and height of what is compared as one
constexpr auto lookInterval = 5ms;
constexpr auto restTime = 1s;
/// What a program at rest may still do, for a cursor that blinks.
constexpr double restingShare = .03;

/// What the program used so far, all its threads together.
std::chrono::nanoseconds processorTime(pid_t pid) {
    clockid_t clock{};
    timespec used{};
    if (::clock_getcpuclockid(pid, &clock) == 0)
        ::clock_gettime(clock, &used);
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

} // namespace

Onlooker::Onlooker(Seat& seat) : m_seat(seat) {
    auto* const x = seat.connection();
    auto const* extension = xcb_get_extension_data(x, &xcb_damage_id);
    m_damageEvent = extension->first_event;
    Reply<xcb_damage_query_version_reply_t> const version(
        xcb_damage_query_version_reply(x, xcb_damage_query_version(x, 1, 1), nullptr));
    m_damage = xcb_generate_id(x);
    xcb_damage_create(x, m_damage, seat.root(), XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_flush(x);
}

Onlooker::~Onlooker() {
    xcb_damage_destroy(m_seat.connection(), m_damage);
    xcb_flush(m_seat.connection());
}

Onlooker::Picture Onlooker::look() const {
    auto* const x = m_seat.connection();
    Reply<xcb_get_image_reply_t> const image(xcb_get_image_reply(
        x,
        xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, m_seat.root(), 0, 0, Seat::width, Seat::height, 0xFFFFFF),
        nullptr));
    constexpr std::size_t columns = Seat::width / tile;
    Picture picture(columns * (Seat::height / tile));
    if (!image)
        return picture;
    auto const* pixel = reinterpret_cast<std::uint32_t const*>(xcb_get_image_data(image.get()));
    for (std::size_t y = 0; y < Seat::height; ++y)
        for (std::size_t x = 0; x < Seat::width; ++x, ++pixel) {
            auto& value = picture[y / tile * columns + x / tile];
            value = (value ^ (*pixel & 0xFFFFFF)) * 0x100000001b3; // FNV-1a
        }
    return picture;
}

/// True as soon as something on the screen changed.
bool Onlooker::waitForChange(std::chrono::milliseconds limit) {
    auto* const x = m_seat.connection();
    auto const end = Clock::now() + limit;
    for (;;) {
        bool changed = false;
        while (Reply<xcb_generic_event_t> const event{xcb_poll_for_event(x)})
            changed = changed || (event->response_type & 0x7F) == m_damageEvent + XCB_DAMAGE_NOTIFY;
        if (changed) {
            xcb_damage_subtract(x, m_damage, XCB_NONE, XCB_NONE);
            xcb_flush(x);
            return true;
        }
        auto const left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        if (left <= 0ms)
            return false;
        pollfd socket{xcb_get_file_descriptor(x), POLLIN, 0};
        ::poll(&socket, 1, static_cast<int>(left.count()));
    }
}

std::size_t Onlooker::differences(Picture const& a, Picture const& b) {
    return std::transform_reduce(a.begin(), a.end(), b.begin(), std::size_t{0}, std::plus(),
                                 std::not_equal_to());
}

/// The earliest from which on the program did next to nothing.
Onlooker::Clock::time_point Onlooker::restingSince(std::vector<Use> const& uses) {
    auto const& last = uses.back();
    auto since = last.time;
    for (auto use = uses.rbegin(); use != uses.rend(); ++use) {
        auto const used = Milliseconds(last.processor - use->processor);
        if (used > 5ms + restingShare * Milliseconds(last.time - use->time))
            break;
        since = use->time;
    }
    return since;
}

std::optional<Onlooker::Seen> Onlooker::watch(std::function<pid_t()> const& act, std::chrono::seconds limit) {
    while (waitForChange(0ms)) {
    }
    auto const before = look();
    std::vector<Moment> moments;
    std::vector<Use> uses;
    auto const start = Clock::now();
    auto const pid = act();
    auto changedAt = start;
    for (;;) {
        if (waitForChange(10ms)) {
            auto picture = look();
            auto const now = Clock::now();
            bool const matters = moments.empty() || differences(picture, moments.back().picture) > 2;
            if (matters)
                changedAt = now;
            moments.push_back({now, std::move(picture)});
            std::this_thread::sleep_for(lookInterval);
        }
        uses.push_back({Clock::now(), processorTime(pid)});
        if (uses.back().time - std::max(changedAt, restingSince(uses)) > restTime)
            break;
        if (uses.back().time - start > limit)
            return std::nullopt;
    }
    if (moments.empty())
        return std::nullopt;
    auto const& end = moments.back().picture;
    auto const changed = differences(before, end);
    auto shown = moments.rbegin();
    while (shown + 1 != moments.rend() && differences((shown + 1)->picture, end) * 50 <= changed)
        ++shown;
    auto const idle = std::max(shown->time, restingSince(uses));
    return Seen{shown->time - start, idle - start};
}

} // namespace taliro::bench
