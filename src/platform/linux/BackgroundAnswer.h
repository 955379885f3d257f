#pragma once

#include "foundation/MainQueue.h"
#include "foundation/Subscription.h"
#include "platform/linux/WorkerPool.h"

#include <functional>
#include <memory>
#include <utility>

namespace taliro {

/// A callback that worker threads may hand answers to: it is called on the main thread, until it is taken
/// back there.
template <typename Answer>
class BackgroundAnswer {
public:
    BackgroundAnswer(MainQueue& queue, std::function<void(Answer)> callback)
        : m_queue(queue), m_callback(std::make_shared<std::function<void(Answer)>>(std::move(callback))) {}

    void give(Answer answer) const {
        m_queue.async([callback = m_callback, answer = std::move(answer)]() mutable {
            // Taken back or destroyed while it runs, it still runs to its end.
            if (auto const current = *callback)
                current(std::move(answer));
        });
    }
    void takeBack() { *m_callback = nullptr; }

private:
    MainQueue& m_queue;
    std::shared_ptr<std::function<void(Answer)>> m_callback;
};

/// Puts `job` into the pool. Ending the subscription takes both the job and its answer back.
template <typename Answer>
Subscription answerFrom(std::shared_ptr<WorkerPool> const& pool, BackgroundAnswer<Answer> answer,
                        WorkerPool::Job job) {
    auto const id = pool->add(std::move(job));
    return Subscription([weak = std::weak_ptr(pool), answer, id]() mutable {
        answer.takeBack();
        if (auto const held = weak.lock())
            held->cancel(id);
    });
}

} // namespace taliro
