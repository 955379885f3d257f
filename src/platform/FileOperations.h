#pragma once

#include "foundation/Url.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

namespace taliro {

/// How far a copy or a move has come.
struct TransferProgress {
    std::string name; ///< of the item being copied now, in the file system's bytes
    std::int64_t bytesDone = 0;
    std::optional<std::int64_t> bytesTotal; ///< nothing until it has been counted
};

enum class TransferAnswer { carryOn, cancel };

/// Copies and moves items whole or not at all: nothing shows under `destination` before it is complete, and
/// what is there already is never overwritten (`file_exists`).
///
/// The calls return when the work has ended, but the event loop turns meanwhile: whatever the caller refers
/// to has to outlive that. Quitting cancels.
class FileOperations {
public:
    using Result = std::expected<void, std::errc>;
    /// Asked on the main thread some times a second while bytes are moved. May be empty.
    using Report = std::function<TransferAnswer(TransferProgress const&)>;

    virtual ~FileOperations() = default;

    /// With mode, times, extended attributes, links and holes. `operation_canceled` where the report said so.
    virtual Result copy(Url source, Url destination, Report report) = 0;
    /// A rename, or between volumes a copy whose source is removed once the copy is safe on disk.
    /// `device_or_resource_busy` where the source changed meanwhile: what changed is still in its old place.
    virtual Result move(Url source, Url destination, Report report) = 0;
    /// Into the trash of the item's volume, from where it can be restored. `operation_not_supported` where
    /// the volume has none: the item stays.
    virtual Result trash(Url item) = 0;
    /// Removes, in the background, what copies of an earlier run that was killed left half-made.
    virtual void removeLeftovers() = 0;
};

} // namespace taliro
