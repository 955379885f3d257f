#include "keyboard/XServer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QProcess>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace taliro::testing {

Child::Child(std::vector<std::string> const& command, int output) {
    std::vector<char*> arguments;
    for (auto const& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    m_pid = ::fork();
    if (m_pid != 0)
        return;
    int const null = ::open("/dev/null", O_RDWR);
    ::dup2(null, STDOUT_FILENO);
    ::dup2(null, STDERR_FILENO);
    if (output >= 0)
        ::dup2(output, 3);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
}

Child::~Child() {
    if (m_pid <= 0)
        return;
    ::kill(m_pid, SIGTERM);
    ::waitpid(m_pid, nullptr, 0);
}

XServer::XServer() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        std::abort();
    m_server = Child(
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

int run(std::vector<std::string> const& command) {
    QStringList arguments;
    for (auto const& argument : command)
        arguments.append(QString::fromStdString(argument));
    auto const program = arguments.takeFirst();
    return QProcess::execute(program, arguments);
}

bool waitUntil(std::function<bool()> const& condition) {
    QDeadlineTimer const deadline(std::chrono::seconds(10));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    return true;
}

} // namespace taliro::testing
