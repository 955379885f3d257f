#include "platform/linux/transfer/Mover.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace taliro::transfer {

namespace {

/// An item by its name in an open folder.
struct Location {
    std::string folderPath;
    std::string name;
    FileDescriptor folder;
};

std::expected<Location, std::errc> locate(std::string const& path) {
    auto const slash = path.rfind('/');
    if (!path.starts_with('/') || slash + 1 == path.size())
        return std::unexpected(std::errc::invalid_argument);
    Location location{path.substr(0, slash + 1), path.substr(slash + 1), {}};
    auto const* folder = location.folderPath.c_str();
    location.folder = FileDescriptor(::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!location.folder && errno == EACCES) // one that may be entered but not listed
        location.folder = FileDescriptor(::open(folder, O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!location.folder)
        return failure();
    return location;
}

/// A name that is too long or taken shows here, before anything is copied.
Result checkFree(Location const& place) {
    struct stat status {};
    if (::fstatat(place.folder.get(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return std::unexpected(std::errc::file_exists);
    return errno == ENOENT ? Result() : failure();
}

/// A tree goes to disk at once, which costs far less than file by file; a single file has been brought there.
Result bringToDisk(int folder, struct stat const& status) {
    if (!S_ISDIR(status.st_mode) || ::syncfs(folder) == 0)
        return {};
    if (errno != EBADF)
        return failure();
    ::sync(); // a folder that may not be listed can't be asked
    return {};
}

/// The new name itself. Some file systems don't sync folders; the name is then as safe as they make it.
void syncFolder(int folder) {
    ::fsync(folder);
}

Result removeCopied(int folder, CopiedItem const& item) {
    auto const* name = item.name.c_str();
    struct stat now {};
    if (::fstatat(folder, name, &now, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? Result() : failure();
    if (!S_ISDIR(item.status.st_mode)) {
        if (!isUnchanged(item.status, now))
            return std::unexpected(std::errc::device_or_resource_busy);
        return outcome(::unlinkat(folder, name, 0));
    }
    FileDescriptor const opened(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!opened)
        return failure();
    Result result; // the first fault; the rest is removed all the same, since it is safe in its new place
    for (auto const& child : item.children)
        if (auto const removed = removeCopied(opened.get(), child); !removed && result)
            result = removed;
    if (!result || ::unlinkat(folder, name, AT_REMOVEDIR) == 0)
        return result;
    return std::unexpected(errno == ENOTEMPTY || errno == EEXIST ? std::errc::device_or_resource_busy
                                                                 : lastError());
}

std::expected<CopiedItem, std::errc> copyTo(Location const& source, Location const& destination,
                                            Purpose purpose, Leftovers const& leftovers, Sink& sink) {
    if (auto const isFree = checkFree(destination); !isFree)
        return std::unexpected(isFree.error());
    auto const folder = destination.folder.get();
    auto const temporary = Leftovers::temporaryName();
    auto note = leftovers.note(destination.folderPath, temporary);

    auto copied = CopyEngine(purpose, sink).copy(source.folder.get(), source.name, folder, temporary);
    Result done = copied ? Result() : std::unexpected(copied.error());
    if (done)
        done = bringToDisk(folder, copied->status);
    if (done)
        done = renameWithoutReplacing(folder, temporary, folder, destination.name);
    if (done) {
        syncFolder(folder);
        return copied;
    }
    struct stat left {};
    if (!removeTree(folder, temporary) &&
        ::fstatat(folder, temporary.c_str(), &left, AT_SYMLINK_NOFOLLOW) == 0)
        note.keep();
    return std::unexpected(done.error());
}

} // namespace

Result renameWithoutReplacing(int from, std::string const& name, int to, std::string const& newName) {
    if (::renameat2(from, name.c_str(), to, newName.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    bool const isUnsupported = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
    return isUnsupported ? renameByClaiming(from, name, to, newName) : failure();
}

Result renameByClaiming(int from, std::string const& name, int to, std::string const& newName) {
    struct stat status {};
    if (::fstatat(from, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failure();
    if (!S_ISDIR(status.st_mode)) {
        if (::linkat(from, name.c_str(), to, newName.c_str(), 0) == 0)
            return outcome(::unlinkat(from, name.c_str(), 0));
        return errno == EPERM ? std::unexpected(std::errc::operation_not_supported) : failure();
    }
    if (::mkdirat(to, newName.c_str(), 0700) != 0)
        return failure();
    if (::renameat(from, name.c_str(), to, newName.c_str()) == 0) // takes the place of an empty folder only
        return {};
    auto const error = lastError();
    ::unlinkat(to, newName.c_str(), AT_REMOVEDIR);
    return std::unexpected(error);
}

Result copyItem(std::string const& source, std::string const& destination, Leftovers const& leftovers,
                Sink& sink) {
    auto const from = locate(source);
    auto const to = from ? locate(destination) : std::unexpected(from.error());
    if (!to)
        return std::unexpected(to.error());
    auto const copied = copyTo(*from, *to, Purpose::copy, leftovers, sink);
    return copied ? Result() : std::unexpected(copied.error());
}

Result moveItem(std::string const& source, std::string const& destination, Leftovers const& leftovers,
                Sink& sink) {
    auto const from = locate(source);
    auto const to = from ? locate(destination) : std::unexpected(from.error());
    if (!to)
        return std::unexpected(to.error());
    auto const renamed = renameWithoutReplacing(from->folder.get(), from->name, to->folder.get(), to->name);
    if (renamed || renamed.error() != std::errc::cross_device_link)
        return renamed;
    if (::faccessat(from->folder.get(), ".", W_OK | X_OK, AT_EACCESS) != 0)
        return failure();
    auto const copied = copyTo(*from, *to, Purpose::move, leftovers, sink);
    return copied ? removeCopied(from->folder.get(), *copied) : std::unexpected(copied.error());
}

} // namespace taliro::transfer
