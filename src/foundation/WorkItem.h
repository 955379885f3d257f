#pragma once

#include <functional>
#include <memory>

namespace taliro {

/// A task that waits for its time. Destroying or replacing the item cancels the task.
class WorkItem {
public:
    using State = std::function<void()>;

    WorkItem() = default;
    /// The queue shares `task` and runs it when due; emptied, it does nothing.
    explicit WorkItem(std::shared_ptr<State> task) : m_task(std::move(task)) {}
    WorkItem(WorkItem&& other) noexcept = default;
    WorkItem& operator=(WorkItem&& other) noexcept {
        cancel();
        m_task = std::move(other.m_task);
        return *this;
    }
    ~WorkItem() { cancel(); }

    void cancel();
    /// Whether the task is still to come.
    bool isPending() const { return m_task && *m_task; }

    /// Runs `task` once and for all; what a queue does when the time has come.
    static void run(std::shared_ptr<State> const& task);

private:
    std::shared_ptr<State> m_task;
};

} // namespace taliro
