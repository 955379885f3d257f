#include "platform/linux/Sandbox.h"

#include <csignal>
#include <fstream>
#include <string>

#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace taliro {

namespace {

void limit(__rlimit_resource resource, rlim_t most) {
    rlimit current{};
    getrlimit(resource, &current);
    current.rlim_cur = std::min(most, current.rlim_max);
    if (resource != RLIMIT_CPU)
        current.rlim_max = current.rlim_cur;
    setrlimit(resource, &current);
}

/// A network of its own has no connections. Where the system lets nobody make one, the other limits must do.
void leaveNetwork() {
    auto const user = std::to_string(getuid());
    auto const group = std::to_string(getgid());
    if (unshare(CLONE_NEWNET) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
        return;
    // Without a map, the new user namespace would show the user's own files as nobody's.
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << " " << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << " " << group << " 1";
}

} // namespace

void enterSandbox([[maybe_unused]] unsigned mostMegabytes) {
    constexpr rlim_t megabyte = 1 << 20;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    leaveNetwork();
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 64 * megabyte);
    limit(RLIMIT_NOFILE, 256);
#ifndef __SANITIZE_ADDRESS__
    limit(RLIMIT_AS, mostMegabytes * megabyte);
#endif
}

void limitProcessorTime(unsigned seconds) {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    limit(RLIMIT_CPU, static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) + seconds);
}

} // namespace taliro
