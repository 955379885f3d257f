#pragma once

#include "foundation/MainQueue.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Published.h"

#include <functional>
#include <utility>
#include <vector>

namespace taliro {

/// Re-evaluates something once, in the next turn, after any number of changes to what it depends on.
class Refresher {
public:
    Refresher(MainQueue& queue, std::function<void()> refresh)
        : m_queue(queue), m_refresh(std::move(refresh)) {}

    template <typename T>
    void dependOn(Published<T>& property) {
        m_subscriptions.push_back(property.observe([this](T const&) { schedule(); }));
    }
    void schedule() {
        if (m_pending.isPending())
            return;
        m_pending = m_queue.after(std::chrono::milliseconds(0), [this] { m_refresh(); });
    }
    /// Does at once what is pending, if anything is.
    void flush() {
        if (!m_pending.isPending())
            return;
        m_pending.cancel();
        m_refresh();
    }

private:
    MainQueue& m_queue;
    std::function<void()> m_refresh;
    std::vector<Subscription> m_subscriptions;
    WorkItem m_pending;
};

} // namespace taliro
