#include "keyboard/XServer.h"

#include "desktop/Servers.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace taliro::testing {

namespace {

constexpr char nowhere[] = "/dev/null";

Environment ownEnvironment() {
    Environment environment;
    for (char** variable = environ; *variable; ++variable) {
        std::string const text = *variable;
        auto const equals = text.find('=');
        environment[text.substr(0, equals)] = text.substr(equals + 1);
    }
    return environment;
}

} // namespace

Process start(std::vector<std::string> const& command) {
    return Process(command, ownEnvironment(), nowhere);
}

std::optional<int> run(std::vector<std::string> const& command) {
    return start(command).waitForExit();
}

XServer::XServer() {
    auto server = startXServer(1024, 768, ownEnvironment(), nowhere);
    if (server.address.empty()) {
        std::fputs("Xvfb did not start\n", stderr);
        std::_Exit(1);
    }
    m_server = std::move(server.process);
    ::setenv("DISPLAY", server.address.c_str(), 1);
}

} // namespace taliro::testing
