#pragma once

#include <functional>
#include <string>
#include <vector>

namespace taliro::testing {

/// A program that runs until the object ends.
class Child {
public:
    Child() = default;
    /// `output`: the file descriptor that the program inherits as number 3, or -1.
    explicit Child(std::vector<std::string> const& command, int output = -1);
    ~Child();
    Child(Child&& other) noexcept : m_pid(std::exchange(other.m_pid, 0)) {}
    Child& operator=(Child&& other) noexcept {
        std::swap(m_pid, other.m_pid);
        return *this;
    }

private:
    int m_pid = 0;
};

/// An X server without a screen to look at, with the address `DISPLAY` set to it.
class XServer {
public:
    XServer();

private:
    Child m_server;
};

/// Runs a program to its end; its exit status.
int run(std::vector<std::string> const& command);

/// Handles events until `condition` holds; false after ten seconds.
bool waitUntil(std::function<bool()> const& condition);

} // namespace taliro::testing
