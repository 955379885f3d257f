#include "keyboard/XServer.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace taliro::testing {

Process start(std::vector<std::string> const& command, std::optional<int> channel) {
    Environment environment;
    for (char** variable = environ; *variable; ++variable) {
        std::string const text = *variable;
        auto const equals = text.find('=');
        environment[text.substr(0, equals)] = text.substr(equals + 1);
    }
    return Process(command, environment, "/dev/null", "/", channel);
}

std::optional<int> run(std::vector<std::string> const& command) {
    return start(command).waitForExit();
}

XServer::XServer() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        std::abort();
    m_server = start(
        {"Xvfb", "-displayfd", "3", "-screen", "0", "1024x768x24", "-nolisten", "tcp", "-noreset"}, ends[1]);
    ::close(ends[1]);
    std::string number;
    for (char digit = 0; ::read(ends[0], &digit, 1) == 1 && digit != '\n';)
        number += digit;
    ::close(ends[0]);
    if (number.empty()) {
        std::fputs("Xvfb did not start\n", stderr);
        std::_Exit(1);
    }
    ::setenv("DISPLAY", (":" + number).c_str(), 1);
}

} // namespace taliro::testing
