#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace taliro {

class RendererClient;

/// A few threads that take the newest job first. Each has a renderer process of its own for jobs that need
/// one.
class WorkerPool {
public:
    struct Job {
        /// Ends early once a stop is requested.
        std::function<void(RendererClient&, std::stop_token)> run;
        /// Called instead, on any thread, where too many newer jobs wait.
        std::function<void()> dropped;
    };
    struct Options {
        int threads = 1;
        std::size_t limit = 256; ///< jobs that may wait
        std::string renderer;    ///< the renderer program's path
    };

    explicit WorkerPool(Options options);
    /// Forgets what waits, stops what runs and waits for it.
    ~WorkerPool();

    std::uint64_t add(Job job);
    void cancel(std::uint64_t id);

private:
    struct Waiting {
        std::uint64_t id;
        Job job;
    };
    void work();

    Options m_options;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<Waiting> m_waiting; ///< the newest at the back
    std::map<std::uint64_t, std::stop_source> m_running;
    std::uint64_t m_nextId = 1;
    bool m_ending = false;
    std::vector<std::jthread> m_threads;
};

} // namespace taliro
