#include "platform/linux/Socket.h"

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <sys/socket.h>

namespace taliro {

namespace {

/// How long a wait takes to notice that nobody wants its bytes any more.
constexpr std::chrono::milliseconds stopDelay{100};

bool waitForBytes(int socket, Patience const& patience) {
    using namespace std::chrono;
    while (true) {
        auto const left = ceil<milliseconds>(patience.until - steady_clock::now());
        if (left <= milliseconds::zero() || patience.stop.stop_requested())
            return false;
        pollfd waited{.fd = socket, .events = POLLIN, .revents = 0};
        auto const ready = poll(&waited, 1, static_cast<int>(std::min(left, stopDelay).count()));
        if (ready > 0 || (ready < 0 && errno != EINTR))
            return ready > 0;
    }
}

/// `step` moves as many bytes as it can at once, and says how many.
bool transferAll(auto* next, std::size_t size, auto step) {
    while (size > 0) {
        ssize_t const count = step(next, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        next += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace

bool sendAll(int socket, void const* from, std::size_t size) {
    return transferAll(static_cast<char const*>(from), size, [&](char const* next, std::size_t left) {
        return send(socket, next, left, MSG_NOSIGNAL);
    });
}

bool receiveAll(int socket, void* into, std::size_t size, Patience const* patience) {
    return transferAll(static_cast<char*>(into), size, [&](char* next, std::size_t left) -> ssize_t {
        return patience && !waitForBytes(socket, *patience) ? 0 : recv(socket, next, left, 0);
    });
}

} // namespace taliro
