#include "desktop/PrivateRoot.h"

#include "support/TemporaryFolder.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace taliro::testing {

namespace {

constexpr char linkFolder[] = "/usr/local/bin";

/// Enters namespaces of these kinds, where this user is root.
bool enter(int kinds) {
    auto const user = ::getuid();
    auto const group = ::getgid();
    if (::unshare(kinds) == 0)
        return true;
    if (::unshare(kinds | CLONE_NEWUSER) != 0)
        return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    return true;
}

std::string failure(char const* what) {
    return std::string(what) + ": " + std::strerror(errno);
}

} // namespace

std::string enterPrivateRoot() {
    if (!enter(CLONE_NEWNS))
        return failure("no namespace of our own");
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", linkFolder, "tmpfs", 0, "mode=755") != 0)
        return failure("no mount of our own");
    return {};
}

void setLinkFolderWritable(bool writable) {
    unsigned long const flags = writable ? MS_REMOUNT | MS_BIND : MS_REMOUNT | MS_BIND | MS_RDONLY;
    EXPECT_EQ(::mount(nullptr, linkFolder, nullptr, flags, nullptr), 0) << std::strerror(errno);
}

std::string enterReadOnlyRoot() {
    if (!enter(CLONE_NEWNS | CLONE_NEWNET))
        return failure("no namespace of our own");
    static constexpr char accessibility[] = "/usr/share/dbus-1/services/org.a11y.Bus.service";
    auto const keptService = contentsOf(accessibility);
    mount_attr readOnly{
        .attr_set = MOUNT_ATTR_RDONLY, .attr_clr = 0, .propagation = MS_PRIVATE, .userns_fd = 0};
    mount_attr writable{.attr_set = 0, .attr_clr = MOUNT_ATTR_RDONLY, .propagation = 0, .userns_fd = 0};
    if (::mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &readOnly, sizeof readOnly) != 0 ||
        ::mount_setattr(AT_FDCWD, "/proc", 0, &writable, sizeof writable) != 0)
        return failure("no system that is read only");
    for (auto const* folder :
         {"/tmp", "/media", "/dev/shm", "/usr/share/applications", "/usr/share/dbus-1/services"}) {
        if (::mount("tmpfs", folder, "tmpfs", 0, "size=1g,mode=1777") != 0)
            return failure(folder);
    }
    std::ofstream(accessibility) << keptService;
    return {};
}

} // namespace taliro::testing
