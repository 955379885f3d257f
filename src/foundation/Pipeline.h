#pragma once

#include "foundation/Parallel.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <iterator>
#include <mutex>
#include <system_error>
#include <utility>
#include <vector>

namespace taliro {

/// Items that other threads work on while more of them come in, batch by batch.
template <typename Item>
class Pipeline {
public:
    using Batch = std::vector<Item>;

    /// `work` is called once for each batch, for several at once.
    explicit Pipeline(std::function<void(Batch&)> work) : m_work(std::move(work)) {}
    Pipeline(Pipeline const&) = delete;
    Pipeline& operator=(Pipeline const&) = delete;
    ~Pipeline() { close(); } // Then the helpers end, which are waited for first.

    void add(Batch batch) {
        {
            std::lock_guard const lock(m_mutex);
            m_batches.push_back(std::move(batch));
        }
        m_changed.notify_one();
        startHelper();
    }

    /// Works along until all is done. What was added, in order.
    Batch finish() {
        close();
        workOnBatches();
        for (auto& helper : std::exchange(m_helpers, {}))
            helper.get();
        return joined();
    }

private:
    /// There is none for the first batch, which is most often the only one.
    void startHelper() {
        if (m_helpers.size() >= spareCores() || m_helpers.size() + 1 >= m_batches.size())
            return;
        try {
            m_helpers.push_back(std::async(std::launch::async, [this] { workOnBatches(); }));
        } catch (std::system_error const&) { // No more threads to be had: `finish` does the work.
        }
    }

    void workOnBatches() {
        while (auto* batch = take())
            m_work(*batch);
    }

    /// The next batch; waits for it, but not when there won't be one.
    Batch* take() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_next < m_batches.size() || m_closed; });
        return m_next < m_batches.size() ? &m_batches[m_next++] : nullptr;
    }

    void close() {
        {
            std::lock_guard const lock(m_mutex);
            m_closed = true;
        }
        m_changed.notify_all();
    }

    Batch joined() {
        if (m_batches.size() == 1)
            return std::move(m_batches.front());
        std::size_t size = 0;
        for (auto const& batch : m_batches)
            size += batch.size();
        Batch all;
        all.reserve(size);
        for (auto& batch : m_batches)
            std::ranges::move(std::exchange(batch, {}), std::back_inserter(all));
        return all;
    }

    std::function<void(Batch&)> m_work;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Batch> m_batches; ///< those there stay where they are while more come
    std::size_t m_next = 0;
    bool m_closed = false;
    std::vector<std::future<void>> m_helpers; ///< last, so that they end before what they use
};

} // namespace taliro
