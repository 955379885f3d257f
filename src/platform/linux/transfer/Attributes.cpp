#include "platform/linux/transfer/Attributes.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace taliro::transfer {

namespace {

constexpr mode_t lendingBits = S_ISUID | S_ISGID;

/// The mode to give once the owner has been set as far as we may.
template <typename SetOwner>
mode_t modeAfterOwner(struct stat const& wanted, struct stat const& actual, SetOwner setOwner) {
    auto const mode = wanted.st_mode & 07777;
    if (wanted.st_uid == actual.st_uid && wanted.st_gid == actual.st_gid)
        return mode;
    if (setOwner(wanted.st_uid, wanted.st_gid) == 0)
        return mode;
    constexpr auto unchanged = static_cast<uid_t>(-1);
    if (setOwner(unchanged, wanted.st_gid) == 0 && wanted.st_uid == actual.st_uid)
        return mode;
    return mode & ~lendingBits;
}

bool mayBeLeftOut(std::string_view name, int error) {
    if (error == ENOTSUP)
        return true;
    // What is not the user's own belongs to the system there: labels, rights.
    return !name.starts_with("user.") && (error == EPERM || error == EACCES || error == EINVAL);
}

Result copyExtendedAttribute(int from, int to, char const* name) {
    std::vector<char> value(256);
    auto size = ::fgetxattr(from, name, value.data(), value.size());
    while (size < 0 && errno == ERANGE) {
        auto const needed = ::fgetxattr(from, name, nullptr, 0);
        if (needed < 0)
            return failure();
        value.resize(static_cast<std::size_t>(needed) + 1);
        size = ::fgetxattr(from, name, value.data(), value.size());
    }
    if (size < 0)
        return errno == ENODATA || mayBeLeftOut(name, errno) ? Result() : failure();
    if (::fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0) == 0)
        return {};
    return mayBeLeftOut(name, errno) ? Result() : failure();
}

Result copyExtendedAttributes(int from, int to) {
    std::vector<char> names;
    auto size = ::flistxattr(from, nullptr, 0);
    if (size <= 0)
        return size == 0 || errno == ENOTSUP ? Result() : failure();
    do {
        names.resize(static_cast<std::size_t>(size) + 256);
        size = ::flistxattr(from, names.data(), names.size());
    } while (size < 0 && errno == ERANGE && (size = ::flistxattr(from, nullptr, 0)) >= 0);
    if (size < 0)
        return failure();
    for (auto const* name = names.data(); name < names.data() + size;
         name += std::string_view(name).size() + 1)
        if (auto const copied = copyExtendedAttribute(from, to, name); !copied)
            return copied;
    return {};
}

} // namespace

Result copyAttributes(int from, int to, struct stat const& status) {
    struct stat actual {};
    if (::fstat(to, &actual) != 0)
        return failure();
    auto const mode =
        modeAfterOwner(status, actual, [&](uid_t user, gid_t group) { return ::fchown(to, user, group); });
    if (auto const copied = copyExtendedAttributes(from, to); !copied)
        return copied;
    if ((actual.st_mode & 07777) != mode && ::fchmod(to, mode) != 0)
        return failure();
    timespec const times[] = {status.st_atim, status.st_mtim};
    return outcome(::futimens(to, times));
}

Result setAttributes(int folder, std::string const& name, struct stat const& status) {
    struct stat actual {};
    if (::fstatat(folder, name.c_str(), &actual, AT_SYMLINK_NOFOLLOW) != 0)
        return failure();
    auto const mode = modeAfterOwner(status, actual, [&](uid_t user, gid_t group) {
        return ::fchownat(folder, name.c_str(), user, group, AT_SYMLINK_NOFOLLOW);
    });
    if (!S_ISLNK(status.st_mode) && ::fchmodat(folder, name.c_str(), mode, 0) != 0)
        return failure();
    timespec const times[] = {status.st_atim, status.st_mtim};
    return outcome(::utimensat(folder, name.c_str(), times, AT_SYMLINK_NOFOLLOW));
}

} // namespace taliro::transfer
