#pragma once

#include "foundation/MainQueue.h"

#include <map>
#include <mutex>
#include <vector>

namespace taliro::testing {

/// A main queue whose clock the test turns by hand: a delay of 0.75 s is exact and takes no time.
class HandQueue : public MainQueue {
public:
    void async(std::function<void()> task) override {
        std::lock_guard const lock(m_mutex);
        m_due.emplace(m_now, std::make_shared<WorkItem::State>(std::move(task)));
    }
    WorkItem after(std::chrono::milliseconds delay, std::function<void()> task) override {
        std::lock_guard const lock(m_mutex);
        auto shared = std::make_shared<WorkItem::State>(std::move(task));
        m_due.emplace(m_now + delay, shared);
        return WorkItem(std::move(shared));
    }
    std::chrono::milliseconds now() const override { return m_now; }

    /// Runs what is due now, and what that adds for now.
    void turn() { advance(std::chrono::milliseconds(0)); }
    /// Turns the clock, running each task at its time, in order.
    void advance(std::chrono::milliseconds by) {
        auto const end = m_now + by;
        for (auto task = next(end); task; task = next(end))
            WorkItem::run(task);
        m_now = end;
    }

private:
    std::shared_ptr<WorkItem::State> next(std::chrono::milliseconds end) {
        std::lock_guard const lock(m_mutex);
        if (m_due.empty() || m_due.begin()->first > end)
            return nullptr;
        auto const first = m_due.begin();
        m_now = std::max(m_now, first->first);
        auto task = first->second;
        m_due.erase(first);
        return task;
    }

    std::chrono::milliseconds m_now{0};
    std::multimap<std::chrono::milliseconds, std::shared_ptr<WorkItem::State>> m_due;
    std::mutex m_mutex;
};

} // namespace taliro::testing
