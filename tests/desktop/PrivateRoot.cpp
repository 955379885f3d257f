#include "desktop/PrivateRoot.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace taliro::testing {

namespace {

constexpr char linkFolder[] = "/usr/local/bin";

/// Makes this user the root of a namespace of their own.
void becomeRoot(uid_t user, gid_t group) {
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
}

} // namespace

std::string enterPrivateRoot() {
    auto const user = ::getuid();
    auto const group = ::getgid();
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return std::string("no namespace of our own: ") + std::strerror(errno);
        becomeRoot(user, group);
    }
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", linkFolder, "tmpfs", 0, "mode=755") != 0)
        return std::string("no mount of our own: ") + std::strerror(errno);
    return {};
}

void setLinkFolderWritable(bool writable) {
    unsigned long const flags = writable ? MS_REMOUNT | MS_BIND : MS_REMOUNT | MS_BIND | MS_RDONLY;
    EXPECT_EQ(::mount(nullptr, linkFolder, nullptr, flags, nullptr), 0) << std::strerror(errno);
}

} // namespace taliro::testing
