#pragma once

#include "desktop/Process.h"

namespace taliro::testing {

/// An X server without a screen to look at, with the address `DISPLAY` set to it.
class XServer {
public:
    XServer();

private:
    Process m_server;
};

/// Starts a program with the environment of this process, its output thrown away.
Process start(std::vector<std::string> const& command);
/// Runs a program to its end; its exit status.
std::optional<int> run(std::vector<std::string> const& command);

} // namespace taliro::testing
