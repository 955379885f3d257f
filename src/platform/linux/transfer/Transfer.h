#pragma once

#include <cerrno>
#include <cstdint>
#include <expected>
#include <string_view>
#include <system_error>

namespace taliro::transfer {

using Result = std::expected<void, std::errc>;

inline std::errc lastError() {
    return static_cast<std::errc>(errno);
}
inline std::unexpected<std::errc> failure() {
    return std::unexpected(lastError());
}
/// The outcome of a call that says 0 for success.
inline Result outcome(int returned) {
    return returned == 0 ? Result() : Result(failure());
}

/// What an engine tells while it works, on its own thread.
class Sink {
public:
    virtual ~Sink() = default;
    virtual void began(std::string_view /*name*/) {}
    /// So many bytes more have been copied, or none. False stops the work with `operation_canceled`.
    virtual bool advance(std::int64_t bytes) = 0;
};

} // namespace taliro::transfer
