#include "desktop/Servers.h"

#include <fcntl.h>
#include <unistd.h>

namespace taliro::testing {

namespace {

/// Starts what tells its address in one line through its descriptor 3, and waits for that.
Server startAndListen(std::vector<std::string> const& command, Environment const& environment,
                      std::filesystem::path const& log) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {};
    Server server{Process(command, environment, log, "/", ends[1]), {}};
    ::close(ends[1]);
    for (char letter = 0; ::read(ends[0], &letter, 1) == 1 && letter != '\n';)
        server.address += letter;
    ::close(ends[0]);
    return server;
}

} // namespace

Server startXServer(int width, int height, Environment const& environment, std::filesystem::path const& log) {
    auto const screen = std::to_string(width) + 'x' + std::to_string(height) + "x24";
    auto server =
        startAndListen({"Xvfb", "-displayfd", "3", "-screen", "0", screen, "-nolisten", "tcp", "-noreset"},
                       environment, log);
    if (!server.address.empty())
        server.address.insert(0, ":");
    return server;
}

Server startBus(Environment const& environment, std::filesystem::path const& log) {
    return startAndListen({"dbus-daemon", "--session", "--nofork", "--print-address=3"}, environment, log);
}

} // namespace taliro::testing
