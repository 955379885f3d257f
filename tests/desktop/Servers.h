#pragma once

#include "desktop/Process.h"

namespace taliro::testing {

/// A server that runs, and where its clients find it: empty where it did not start.
struct Server {
    Process process;
    std::string address;
};

/// An X server with a screen that nobody sees; the address is a `DISPLAY`.
Server startXServer(int width, int height, Environment const& environment, std::filesystem::path const& log);

/// A session bus.
Server startBus(Environment const& environment, std::filesystem::path const& log);

} // namespace taliro::testing
