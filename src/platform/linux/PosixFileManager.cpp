#include "platform/linux/PosixFileManager.h"

#include "foundation/Pipeline.h"
#include "platform/linux/Dates.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/RawEntry.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <unordered_set>

namespace taliro {

namespace {

constexpr unsigned wantedFields =
    STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_BLOCKS | STATX_MTIME | STATX_BTIME | STATX_INO;

std::errc lastError() {
    return static_cast<std::errc>(errno);
}

Date dateOf(statx_timestamp const& stamp) {
    return dateFrom(stamp.tv_sec, stamp.tv_nsec);
}

FileAttributes attributesOf(struct statx const& status) {
    FileAttributes known;
    known.isDirectory = S_ISDIR(status.stx_mode);
    known.isRegular = S_ISREG(status.stx_mode);
    known.isSymlink = S_ISLNK(status.stx_mode);
    known.size = known.isDirectory ? 0 : static_cast<std::int64_t>(status.stx_size);
    known.allocated = static_cast<std::int64_t>(status.stx_blocks) * 512;
    if (status.stx_mask & STATX_MTIME)
        known.modified = dateOf(status.stx_mtime);
    if (status.stx_mask & STATX_BTIME)
        known.added = dateOf(status.stx_btime);
    known.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    known.inode = status.stx_ino;
    return known;
}

/// A link is described by what it leads to, and by itself where that can't be reached.
std::optional<FileAttributes> readAttributes(int folder, char const* name) {
    struct statx status {};
    constexpr int flags = AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    if (::statx(folder, name, flags | AT_SYMLINK_NOFOLLOW, wantedFields, &status) != 0)
        return std::nullopt;
    auto known = attributesOf(status);
    if (!known.isSymlink)
        return known;
    if (::statx(folder, name, flags, wantedFields, &status) == 0) {
        known = attributesOf(status);
        known.isSymlink = true;
    }
    return known;
}

/// Calls `visit(name, type)` for each entry but "." and ".."; the type is one of `DT_…`.
template <typename Visit>
std::expected<void, std::errc> forEachEntry(int folder, Visit const& visit) {
    std::vector<char> buffer(256 * 1024);
    for (;;) {
        auto const read = ::syscall(SYS_getdents64, folder, buffer.data(), buffer.size());
        if (read < 0)
            return std::unexpected(lastError());
        if (read == 0)
            return {};
        for (long position = 0; position < read;) {
            RawEntry entry;
            auto const* start = buffer.data() + position;
            std::memcpy(&entry, start, offsetof(RawEntry, name));
            position += entry.length;
            std::string_view const name = start + offsetof(RawEntry, name);
            if (name != "." && name != "..")
                visit(name, entry.type);
        }
    }
}

std::optional<std::string> readBytes(int descriptor, std::size_t limit) {
    std::string bytes;
    std::array<char, 65536> buffer;
    while (bytes.size() < limit) {
        auto const wanted = std::min(buffer.size(), limit - bytes.size());
        auto const count = ::read(descriptor, buffer.data(), wanted);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

/// Opened only if it is a plain file: opening a pipe or device can block or do things.
FileDescriptor openRegular(int folder, char const* name) {
    FileDescriptor file(::openat(folder, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return file;
}

/// Names that the folder's own `.hidden` file asks to hide, one a line; none where hidden items are wanted.
std::unordered_set<std::string> namesHiddenByList(int folder, Hidden hidden) {
    std::unordered_set<std::string> names;
    if (hidden == Hidden::include)
        return names;
    if (auto const list = openRegular(folder, ".hidden")) {
        auto const text = readBytes(list.get(), 1024 * 1024).value_or("");
        for (std::size_t start = 0; start < text.size();) {
            auto const end = std::min(text.find('\n', start), text.size());
            if (end > start)
                names.insert(text.substr(start, end - start));
            start = end + 1;
        }
    }
    return names;
}

} // namespace

std::expected<std::vector<ListedItem>, std::errc> PosixFileManager::contents(Url const& folder,
                                                                             Hidden hidden) {
    FileDescriptor const descriptor(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor)
        return std::unexpected(lastError());
    auto const listed = namesHiddenByList(descriptor.get(), hidden);
    Pipeline<ListedItem> items([&](std::vector<ListedItem>& batch) {
        for (auto& item : batch)
            item.attributes = readAttributes(descriptor.get(), item.name.c_str());
    });
    std::vector<ListedItem> batch;
    auto const read = forEachEntry(descriptor.get(), [&](std::string_view name, unsigned char) {
        if (hidden == Hidden::skip && name.starts_with('.'))
            return;
        ListedItem item{std::string(name)};
        if (listed.contains(item.name))
            return;
        batch.push_back(std::move(item));
        if (batch.size() == pieceSize) {
            items.add(std::exchange(batch, {}));
            batch.reserve(pieceSize);
        }
    });
    if (!read)
        return std::unexpected(read.error());
    items.add(std::move(batch));
    return items.finish();
}

std::vector<ListedItem> PosixFileManager::contents(Url const& folder, std::vector<std::string> const& names,
                                                   Hidden hidden) {
    FileDescriptor const descriptor(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor)
        return {};
    auto const listed = namesHiddenByList(descriptor.get(), hidden);
    std::vector<ListedItem> items;
    for (auto const& name : names) {
        if (hidden == Hidden::skip && (name.starts_with('.') || listed.contains(name)))
            continue;
        struct stat status {};
        if (::fstatat(descriptor.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 || errno != ENOENT)
            items.push_back({name, readAttributes(descriptor.get(), name.c_str())});
    }
    return items;
}

std::optional<std::vector<std::string>> PosixFileManager::subfolders(Url const& folder, Hidden hidden) {
    FileDescriptor const descriptor(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor)
        return std::nullopt;
    auto const listed = namesHiddenByList(descriptor.get(), hidden);
    std::vector<std::string> names;
    auto const read = forEachEntry(descriptor.get(), [&](std::string_view name, unsigned char type) {
        if (hidden == Hidden::skip && name.starts_with('.'))
            return;
        std::string owned(name);
        bool const told = type != DT_LNK && type != DT_UNKNOWN;
        auto const known = told ? std::nullopt : readAttributes(descriptor.get(), owned.c_str());
        if ((told ? type == DT_DIR : known && known->isDirectory) && !listed.contains(owned))
            names.push_back(std::move(owned));
    });
    return read ? std::optional(std::move(names)) : std::nullopt;
}

std::optional<FileAttributes> PosixFileManager::attributes(Url const& item) {
    return item.isFile() ? readAttributes(AT_FDCWD, item.path().c_str()) : std::nullopt;
}

bool PosixFileManager::exists(Url const& item) {
    struct stat status {};
    return item.isFile() && ::lstat(item.path().c_str(), &status) == 0;
}

bool PosixFileManager::isDirectory(Url const& item) {
    struct stat status {};
    return item.isFile() && ::stat(item.path().c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool PosixFileManager::isWritable(Url const& folder) {
    return folder.isFile() && ::access(folder.path().c_str(), W_OK | X_OK) == 0;
}

std::expected<void, std::errc> PosixFileManager::createDirectory(Url const& folder) {
    if (::mkdir(folder.path().c_str(), 0777) != 0)
        return std::unexpected(lastError());
    return {};
}

Url PosixFileManager::homeDirectory() {
    if (char const* home = std::getenv("HOME"); home && home[0] == '/')
        return Url::file(home, true).standardized().asDirectory();
    if (auto const* user = ::getpwuid(::getuid()); user && user->pw_dir && user->pw_dir[0] == '/')
        return Url::file(user->pw_dir, true);
    return Url();
}

std::optional<std::string> PosixFileManager::readFile(Url const& file, std::size_t limit) {
    auto const descriptor = openRegular(AT_FDCWD, file.path().c_str());
    return descriptor ? readBytes(descriptor.get(), limit) : std::nullopt;
}

} // namespace taliro
