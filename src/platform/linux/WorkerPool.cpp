#include "platform/linux/WorkerPool.h"

#include "platform/linux/RendererClient.h"

#include <algorithm>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace taliro {

namespace {
/// An unused renderer process is let go after this time.
constexpr std::chrono::seconds idleTime{10};

/// What the user does comes before what the user sees.
void yieldToTheUser() {
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), 1);
}
} // namespace

WorkerPool::WorkerPool(Options options) : m_options(std::move(options)) {}

WorkerPool::~WorkerPool() {
    {
        std::lock_guard const lock(m_mutex);
        m_ending = true;
        m_waiting.clear();
        for (auto& [id, stop] : m_running)
            stop.request_stop();
    }
    m_wake.notify_all();
}

std::uint64_t WorkerPool::add(Job job) {
    std::function<void()> dropped;
    std::uint64_t id = 0;
    {
        std::lock_guard const lock(m_mutex);
        if (m_threads.empty())
            for (int i = 0; i < m_options.threads; ++i)
                m_threads.emplace_back([this] { work(); });
        id = m_nextId++;
        m_waiting.push_back({id, std::move(job)});
        if (m_waiting.size() > m_options.limit) {
            dropped = std::move(m_waiting.front().job.dropped);
            m_waiting.pop_front();
        }
    }
    m_wake.notify_one();
    if (dropped)
        dropped();
    return id;
}

void WorkerPool::cancel(std::uint64_t id) {
    Job taken; // What it holds is destroyed outside of the lock.
    std::lock_guard const lock(m_mutex);
    if (auto const running = m_running.find(id); running != m_running.end()) {
        running->second.request_stop();
        return;
    }
    auto const waiting = std::ranges::find(m_waiting, id, &Waiting::id);
    if (waiting == m_waiting.end())
        return;
    taken = std::move(waiting->job);
    m_waiting.erase(waiting);
}

void WorkerPool::work() {
    yieldToTheUser();
    RendererClient renderer(m_options.renderer);
    std::unique_lock lock(m_mutex);
    while (true) {
        auto const isDue = [this] { return m_ending || !m_waiting.empty(); };
        if (!m_wake.wait_for(lock, idleTime, isDue)) {
            renderer.stop();
            m_wake.wait(lock, isDue);
        }
        if (m_ending)
            return;
        auto next = std::move(m_waiting.back());
        m_waiting.pop_back();
        auto const stop = m_running[next.id].get_token();
        lock.unlock();
        next.job.run(renderer, stop);
        next.job = {};
        lock.lock();
        m_running.erase(next.id);
    }
}

} // namespace taliro
