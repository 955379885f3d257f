#pragma once

#include <chrono>
#include <cstddef>
#include <stop_token>

namespace taliro {

// Whole messages over a connected stream socket; false where the other end is gone.

/// How long to wait for bytes, and what ends the waiting early.
struct Patience {
    std::chrono::steady_clock::time_point until;
    std::stop_token stop;
};

bool sendAll(int socket, void const* from, std::size_t size);
/// Reads exactly `size` bytes. Without a `patience`, waits for them as long as it takes.
bool receiveAll(int socket, void* into, std::size_t size, Patience const* patience = nullptr);

} // namespace taliro
