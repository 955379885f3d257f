#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace taliro::testing {

using Environment = std::map<std::string, std::string>;

/// Asks until `condition` holds; whether it did in time. Generous, for a machine that is busy.
bool waitFor(std::function<bool()> const& condition,
             std::chrono::milliseconds limit = std::chrono::seconds(15));

/// A program that was started for a test and ends with it.
class Process {
public:
    Process() = default;
    /// Its output goes to `log`. `channel`: the child gets this descriptor as its number 3.
    Process(std::vector<std::string> const& command, Environment const& environment,
            std::filesystem::path const& log, std::filesystem::path const& folder = "/",
            std::optional<int> channel = std::nullopt);
    Process(Process&& other) noexcept;
    Process& operator=(Process&& other) noexcept;
    ~Process();

    int pid() const { return m_pid; }
    bool isRunning();
    /// The exit status; 128 and the signal's number where a signal ended it; nothing where it goes on.
    std::optional<int> waitForExit(std::chrono::milliseconds limit = std::chrono::seconds(15));
    /// Asks it to end, as a session does that is over, and waits.
    std::optional<int> terminate();
    void kill();

private:
    void reap();

    int m_pid = -1;
    std::optional<int> m_status;
};

} // namespace taliro::testing
