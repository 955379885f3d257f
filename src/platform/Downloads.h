#pragma once

#include "foundation/Url.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace taliro {

/// Fetches links into hidden files, for the caller to name and keep.
class Downloads {
public:
    struct Progress {
        std::int64_t received = 0;            ///< bytes
        std::optional<std::int64_t> expected; ///< as the server says
    };
    struct Downloaded {
        Url temporary;                  ///< complete and safe on disk, in the folder asked for
        std::string contentDisposition; ///< the server's header; empty where it sent none
    };
    struct Callbacks {
        std::function<void(Progress)> onProgress;             ///< may be empty
        std::function<void(std::optional<Downloaded>)> onEnd; ///< once; nothing where it failed
    };
    /// A running download; destroying it before its end cancels it and leaves nothing behind.
    class Task {
    public:
        virtual ~Task() = default;
    };

    virtual ~Downloads() = default;
    /// Never ends before it returns. Only http and https are fetched; redirects, size, and the time without a
    /// byte are limited. Callbacks come on the main thread.
    virtual std::unique_ptr<Task> start(Url const& link, Url const& folder, Callbacks callbacks) = 0;
};

} // namespace taliro
