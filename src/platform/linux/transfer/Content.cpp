#include "platform/linux/transfer/Content.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <linux/fs.h>
#include <memory>
#include <optional>
#include <sys/ioctl.h>
#include <unistd.h>

namespace taliro::transfer {

namespace {

/// Below this, asking the kernel for its ways costs more than copying by hand.
constexpr std::int64_t smallFile = 32 * 1024;
/// How much is copied between two looks at whether to stop.
constexpr std::int64_t step = 8 * 1024 * 1024;
constexpr std::size_t bufferSize = 256 * 1024;
/// From here on a file is written past the page cache, block by block.
constexpr std::int64_t largeFile = 16 * 1024 * 1024;
constexpr std::size_t directBlock = 4 * 1024 * 1024;
constexpr std::uint32_t blockAlignment = 4096;

char* buffer() {
    thread_local auto const bytes = std::make_unique_for_overwrite<char[]>(bufferSize);
    return bytes.get();
}

Result writeAll(int to, char const* bytes, std::size_t count, off_t offset) {
    while (count > 0) {
        auto const written = ::pwrite(to, bytes, count, offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return failure();
        bytes += written;
        count -= static_cast<std::size_t>(written);
        offset += written;
    }
    return {};
}

/// Reads `wanted` bytes or up to the end of the file.
std::expected<std::size_t, std::errc> readFully(int from, char* bytes, std::size_t wanted, off_t offset) {
    std::size_t done = 0;
    while (done < wanted) {
        auto const count = ::pread(from, bytes + done, wanted - done, offset + static_cast<off_t>(done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failure();
        if (count == 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

/// Copies up to `end` or the end of the file, whichever comes first.
Result copyByHand(int from, int to, off_t offset, off_t end, Sink& sink) {
    while (offset < end) {
        auto const wanted = static_cast<std::size_t>(std::min<off_t>(end - offset, bufferSize));
        auto const count = readFully(from, buffer(), wanted, offset);
        if (!count)
            return std::unexpected(count.error());
        if (*count == 0)
            break;
        if (auto const written = writeAll(to, buffer(), *count, offset); !written)
            return written;
        auto const copied = static_cast<off_t>(*count);
        offset += copied;
        if (!sink.advance(copied))
            return std::unexpected(std::errc::operation_canceled);
    }
    return {};
}

bool isUnsupported(int error) {
    return error == EXDEV || error == EINVAL || error == EOPNOTSUPP || error == ENOSYS || error == EPERM ||
           error == ETXTBSY || error == EBADF;
}

Result copyRange(int from, int to, off_t offset, off_t end, Sink& sink) {
    while (offset < end) {
        auto source = offset;
        auto target = offset;
        auto const wanted = static_cast<std::size_t>(std::min<off_t>(end - offset, step));
        auto const count = ::copy_file_range(from, &source, to, &target, wanted, 0);
        if (count < 0 && errno == EINTR)
            continue;
        // Some file systems can't, and some say that there is nothing where there is something.
        if (count == 0 || (count < 0 && isUnsupported(errno)))
            return copyByHand(from, to, offset, end, sink);
        if (count < 0)
            return failure();
        offset += count;
        if (!sink.advance(count))
            return std::unexpected(std::errc::operation_canceled);
    }
    return {};
}

Result copyExtents(int from, int to, off_t size, Sink& sink) {
    off_t end = 0;
    while (end < size) {
        auto const start = ::lseek(from, end, SEEK_DATA);
        if (start < 0 && errno == ENXIO) { // a hole up to the end
            if (!sink.advance(size - end))
                return std::unexpected(std::errc::operation_canceled);
            break;
        }
        if (start < 0)
            return copyRange(from, to, end, size, sink);
        if (!sink.advance(start - end))
            return std::unexpected(std::errc::operation_canceled);
        end = ::lseek(from, start, SEEK_HOLE);
        if (end < 0)
            end = size;
        if (auto const copied = copyRange(from, to, start, std::min(end, size), sink); !copied)
            return copied;
    }
    return outcome(::ftruncate(to, size));
}

/// What direct writing to the file has to be a multiple of; nothing where it can't be done.
std::optional<off_t> directAlignment(int file) {
    constexpr off_t most = 64 * 1024;
    struct statx status {};
    bool const isKnown = ::statx(file, "", AT_EMPTY_PATH, STATX_DIOALIGN, &status) == 0 &&
                         (status.stx_mask & STATX_DIOALIGN) != 0 && status.stx_dio_offset_align != 0;
    if (!isKnown || status.stx_dio_offset_align > most || status.stx_dio_mem_align > blockAlignment)
        return std::nullopt;
    return status.stx_dio_offset_align;
}

/// Past the page cache, which a large file would only drive everything else out of: the bytes are on their
/// way to disk at once, and bringing them there takes little afterwards.
Result copyDirectly(int from, int to, off_t size, off_t alignment, Sink& sink) {
    struct Free {
        void operator()(char* bytes) const { std::free(bytes); }
    };
    std::unique_ptr<char, Free> const block(
        static_cast<char*>(std::aligned_alloc(blockAlignment, directBlock)));
    // In one piece, where possible, and a full disk shows before anything is written.
    if (::fallocate(to, 0, 0, size) != 0 && errno == ENOSPC)
        return failure();
    auto const flags = ::fcntl(to, F_GETFL);
    bool isDirect = block && flags >= 0 && ::fcntl(to, F_SETFL, flags | O_DIRECT) == 0;
    off_t offset = 0;
    while (isDirect && offset < size) {
        auto const wanted = static_cast<std::size_t>(std::min<off_t>(size - offset, directBlock));
        auto const count = readFully(from, block.get(), wanted, offset);
        if (!count)
            return std::unexpected(count.error());
        auto const aligned = static_cast<off_t>(*count) / alignment * alignment;
        auto const written = writeAll(to, block.get(), static_cast<std::size_t>(aligned), offset);
        if (!written && written.error() != std::errc::invalid_argument)
            return written;
        isDirect = written && aligned == static_cast<off_t>(directBlock);
        offset += written ? aligned : 0;
        if (!sink.advance(written ? aligned : 0))
            return std::unexpected(std::errc::operation_canceled);
    }
    if (::fcntl(to, F_SETFL, flags) != 0)
        return failure();
    if (auto const rest = copyByHand(from, to, offset, size, sink); !rest)
        return rest;
    struct stat status {}; // the source may have shrunk
    if (::fstat(from, &status) != 0)
        return failure();
    return status.st_size < size ? outcome(::ftruncate(to, status.st_size)) : Result();
}

} // namespace

Result copyContent(int from, int to, struct stat const& status, Sink& sink) {
    auto const size = status.st_size;
    if (size == 0) // the kernel's made-up files claim to be empty
        return copyByHand(from, to, 0, std::numeric_limits<off_t>::max(), sink);
    if (size <= smallFile)
        return copyByHand(from, to, 0, size, sink);
    if (::ioctl(to, FICLONE, from) == 0)
        return sink.advance(size) ? Result() : std::unexpected(std::errc::operation_canceled);
    bool const hasHoles = status.st_blocks * 512 < size;
    if (hasHoles)
        return copyExtents(from, to, size, sink);
    auto const alignment = size >= largeFile ? directAlignment(to) : std::nullopt;
    return alignment ? copyDirectly(from, to, size, *alignment, sink) : copyRange(from, to, 0, size, sink);
}

} // namespace taliro::transfer
