#include "platform/linux/transfer/CopyEngine.h"

#include "platform/linux/transfer/Attributes.h"
#include "platform/linux/transfer/Content.h"

#include <algorithm>
#include <atomic>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <thread>
#include <unistd.h>

namespace taliro::transfer {

namespace {

struct DirectoryCloser {
    void operator()(DIR* directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

Directory openDirectory(int folder) {
    FileDescriptor own(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    Directory directory(own ? ::fdopendir(own.get()) : nullptr);
    if (directory)
        own.release();
    return directory;
}

/// The next item; null at the end and, with errno other than 0, where the folder can't be read on.
dirent* nextEntry(DIR* directory) {
    for (;;) {
        errno = 0;
        auto* const entry = ::readdir(directory);
        if (!entry)
            return nullptr;
        std::string_view const name = entry->d_name;
        if (name != "." && name != "..")
            return entry;
    }
}

FileDescriptor openFolder(int folder, std::string const& name) {
    return FileDescriptor(::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

std::uint64_t mountOf(int descriptor) {
    struct statx status {};
    auto const known = ::statx(descriptor, "", AT_EMPTY_PATH, STATX_MNT_ID, &status) == 0;
    return known && (status.stx_mask & STATX_MNT_ID) ? status.stx_mnt_id : 0;
}

bool sameTime(timespec const& a, timespec const& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

std::pair<dev_t, ino_t> identity(struct stat const& status) {
    return {status.st_dev, status.st_ino};
}

constexpr int mostPasses = 2;
/// So many entries of a folder are held in memory at once.
constexpr std::size_t batchSize = 512;
/// From here on a second thread costs less than it saves.
constexpr std::size_t manyFiles = 16;

/// Calls `work` with every number below `count`, on two threads where that pays, up to the first fault.
template <typename Work>
Result forEach(std::size_t count, Work const& work) {
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> failed = false;
    auto const run = [&]() -> Result {
        while (!failed) {
            auto const i = next++;
            if (i >= count)
                break;
            if (auto const done = work(i); !done) {
                failed = true;
                return done;
            }
        }
        return {};
    };
    if (count < manyFiles)
        return run();
    Result other;
    std::jthread helper;
    try {
        helper = std::jthread([&] { other = run(); });
    } catch (std::system_error const&) { // there is no thread to be had: it takes longer
    }
    auto const own = run();
    if (helper.joinable())
        helper.join();
    return own ? other : own;
}

} // namespace

void CopyEngine::SharedSink::began(std::string_view name) {
    std::lock_guard const lock(m_mutex);
    m_sink.began(name);
}

bool CopyEngine::SharedSink::advance(std::int64_t bytes) {
    std::lock_guard const lock(m_mutex);
    return m_sink.advance(bytes);
}

bool isUnchanged(struct stat const& before, struct stat const& after) {
    // A file of several names gets a new change time each time one of them is removed.
    bool const touched = before.st_nlink == 1 && !sameTime(before.st_ctim, after.st_ctim);
    return identity(before) == identity(after) && before.st_size == after.st_size &&
           sameTime(before.st_mtim, after.st_mtim) && !touched;
}

std::expected<CopiedItem, std::errc> CopyEngine::copy(int from, std::string const& name, int to,
                                                      std::string const& copyName) {
    m_root = to;
    CopiedItem item;
    if (auto const copied = copyItem({from, to, name, copyName}, DT_UNKNOWN, item); !copied)
        return std::unexpected(copied.error());
    return item;
}

Result CopyEngine::copyItem(Place const& place, unsigned char type, CopiedItem& item) {
    m_sink.began(place.name);
    if (!m_sink.advance(0))
        return std::unexpected(std::errc::operation_canceled);
    item.name = place.name;
    if (type == DT_REG) // most items: opened at once, looked at when open
        return copyFile(place, item);
    if (::fstatat(place.from, place.name.c_str(), &item.status, AT_SYMLINK_NOFOLLOW) != 0)
        return failure();
    switch (item.status.st_mode & S_IFMT) {
    case S_IFREG:
        return copyFile(place, item);
    case S_IFDIR:
        return copyFolder(place, item);
    case S_IFLNK:
        return copyLink(place, item);
    default:
        return makeSpecial(place, item);
    }
}

Result CopyEngine::copyFile(Place const& place, CopiedItem& item) {
    // Not blocking: it may have become a pipe since we looked.
    FileDescriptor const source(
        ::openat(place.from, place.name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!source || ::fstat(source.get(), &item.status) != 0)
        return failure();
    if (!S_ISREG(item.status.st_mode))
        return std::unexpected(std::errc::device_or_resource_busy);
    std::unique_lock lock(m_linkedMutex, std::defer_lock);
    if (item.status.st_nlink > 1)
        lock.lock(); // its next name waits until there is something to link to
    return linkToEarlierCopy(place, item.status) ? Result() : copyOpenFile(source.get(), place, item);
}

Result CopyEngine::copyOpenFile(int source, Place const& place, CopiedItem& item) {
    // Its final mode at once, in most cases; attributes can be set only while we may write.
    auto const mode = (item.status.st_mode & 0777) | S_IRUSR | S_IWUSR;
    FileDescriptor const copy(
        ::openat(place.to, place.copyName.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!copy)
        return failure();
    for (int pass = 1;; ++pass) {
        if (auto const copied = copyContent(source, copy.get(), item.status, m_sink); !copied)
            return copied;
        auto const repeat = checkUnchanged(source, pass, item);
        if (!repeat)
            return std::unexpected(repeat.error());
        if (*repeat == Repeat::no)
            break;
        if (::ftruncate(copy.get(), 0) != 0)
            return failure();
    }
    if (auto const given = copyAttributes(source, copy.get(), item.status); !given)
        return given;
    bool const isAll = m_path.empty();
    return isAll ? outcome(::fsync(copy.get())) : Result();
}

std::expected<CopyEngine::Repeat, std::errc> CopyEngine::checkUnchanged(int source, int pass,
                                                                        CopiedItem& item) const {
    struct stat now {};
    if (::fstat(source, &now) != 0)
        return failure();
    if (isUnchanged(item.status, now))
        return Repeat::no;
    if (m_purpose == Purpose::move)
        return std::unexpected(std::errc::device_or_resource_busy);
    item.status = now;
    return pass < mostPasses ? Repeat::yes : Repeat::no;
}

bool CopyEngine::linkToEarlierCopy(Place const& place, struct stat const& status) {
    if (status.st_nlink < 2)
        return false;
    auto const [earlier, isFirst] = m_copiesOfLinked.try_emplace(identity(status), pathOf(place));
    return !isFirst && ::linkat(m_root, earlier->second.c_str(), place.to, place.copyName.c_str(), 0) == 0;
}

std::string CopyEngine::pathOf(Place const& place) const {
    return m_path + place.copyName;
}

Result CopyEngine::copyFolder(Place const& place, CopiedItem& item) {
    auto const source = openFolder(place.from, place.name);
    if (!source || ::fstat(source.get(), &item.status) != 0)
        return failure();
    if (identity(item.status) == m_copyRoot) // the copy lies in what is copied
        return std::unexpected(std::errc::invalid_argument);
    if (m_purpose == Purpose::move)
        if (auto const removable = checkRemovable(source.get(), place); !removable)
            return removable;
    if (::mkdirat(place.to, place.copyName.c_str(), 0700) != 0)
        return failure();
    auto const copy = openFolder(place.to, place.copyName);
    if (!copy)
        return failure();
    if (!m_copyRoot) {
        struct stat made {};
        if (::fstat(copy.get(), &made) != 0)
            return failure();
        m_copyRoot = identity(made);
    }
    auto const outer = std::exchange(m_path, pathOf(place) + "/");
    if (auto const copied = copyChildren(source.get(), copy.get(), item); !copied)
        return copied;
    m_path = outer;
    return copyAttributes(source.get(), copy.get(), item.status);
}

Result CopyEngine::copyChildren(int source, int copy, CopiedItem& item) {
    auto const directory = openDirectory(source);
    if (!directory)
        return failure();
    for (;;) {
        std::vector<Entry> entries;
        dirent const* entry = nullptr;
        while (entries.size() < batchSize && (entry = nextEntry(directory.get())))
            entries.push_back({entry->d_name, entry->d_type});
        if (!entry && errno != 0)
            return failure();
        if (auto const copied = copyEntries(entries, source, copy, item); !copied || !entry)
            return copied;
    }
}

Result CopyEngine::copyEntries(std::vector<Entry> entries, int source, int copy, CopiedItem& item) {
    auto const firstOther = std::ranges::partition(entries, [](Entry const& e) { return e.type == DT_REG; });
    std::vector<CopiedItem> items(entries.size());
    auto const copyEntry = [&](std::size_t i) {
        return copyItem({source, copy, entries[i].name, entries[i].name}, entries[i].type, items[i]);
    };
    auto const files = entries.size() - firstOther.size();
    if (auto const copied = forEach(files, copyEntry); !copied)
        return copied;
    for (auto i = files; i < entries.size(); ++i)
        if (auto const copied = copyEntry(i); !copied)
            return copied;
    if (m_purpose == Purpose::move)
        std::ranges::move(items, std::back_inserter(item.children));
    return {};
}

/// Found out before anything is copied, so that a move that can't be ended is not begun.
Result CopyEngine::checkRemovable(int source, Place const& place) const {
    if (mountOf(source) != mountOf(place.from))
        return std::unexpected(std::errc::device_or_resource_busy); // another volume hangs here
    return outcome(::faccessat(source, ".", W_OK | X_OK, AT_EACCESS));
}

Result CopyEngine::copyLink(Place const& place, CopiedItem const& item) {
    std::string target(static_cast<std::size_t>(std::max<off_t>(item.status.st_size, 256)) + 1, '\0');
    auto const length = ::readlinkat(place.from, place.name.c_str(), target.data(), target.size());
    if (length < 0)
        return failure();
    if (static_cast<std::size_t>(length) == target.size())
        return std::unexpected(std::errc::device_or_resource_busy); // it grew since we looked
    target.resize(static_cast<std::size_t>(length));
    if (::symlinkat(target.c_str(), place.to, place.copyName.c_str()) != 0)
        return failure();
    return setAttributes(place.to, place.copyName, item.status);
}

Result CopyEngine::makeSpecial(Place const& place, CopiedItem const& item) {
    auto const type = item.status.st_mode & S_IFMT;
    if (linkToEarlierCopy(place, item.status))
        return {};
    if (::mknodat(place.to, place.copyName.c_str(), type | 0600, item.status.st_rdev) != 0)
        return failure();
    return setAttributes(place.to, place.copyName, item.status);
}

Result removeTree(int folder, std::string const& name) {
    if (::unlinkat(folder, name.c_str(), 0) == 0)
        return {};
    if (errno != EISDIR && errno != EPERM)
        return failure();
    if (::unlinkat(folder, name.c_str(), AT_REMOVEDIR) == 0)
        return {};
    ::fchmodat(folder, name.c_str(), 0700, 0); // it may have got its final mode, which may forbid writing
    auto const tree = openFolder(folder, name);
    auto const directory = tree ? openDirectory(tree.get()) : nullptr;
    if (!directory)
        return failure();
    while (auto const* entry = nextEntry(directory.get()))
        if (auto const removed = removeTree(tree.get(), entry->d_name); !removed)
            return removed;
    return outcome(::unlinkat(folder, name.c_str(), AT_REMOVEDIR));
}

} // namespace taliro::transfer
