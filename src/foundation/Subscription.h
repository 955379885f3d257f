#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace taliro {

/// Keeps an observation alive; destroying it ends the observation. May outlive what it observes.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel) : m_cancel(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : m_cancel(std::exchange(other.m_cancel, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        cancel();
        m_cancel = std::exchange(other.m_cancel, nullptr);
        return *this;
    }
    ~Subscription() { cancel(); }

    void cancel() {
        if (auto action = std::exchange(m_cancel, nullptr))
            action();
    }

private:
    std::function<void()> m_cancel;
};

/// A list of callbacks that may change while it is being called: one removed is not called any more,
/// one added is called from the next time on.
template <typename... Args>
class Observers {
public:
    using Callback = std::function<void(Args...)>;

    [[nodiscard]] Subscription add(Callback callback) {
        auto const id = m_list->next++;
        m_list->callbacks.emplace(id, std::make_shared<Callback>(std::move(callback)));
        return Subscription([list = std::weak_ptr(m_list), id] {
            if (auto held = list.lock())
                held->callbacks.erase(id);
        });
    }

    void notify(Args... args) const {
        auto const list = m_list;
        std::vector<std::uint64_t> ids;
        ids.reserve(list->callbacks.size());
        for (auto const& [id, callback] : list->callbacks)
            ids.push_back(id);
        for (auto id : ids) {
            auto const found = list->callbacks.find(id);
            if (found == list->callbacks.end())
                continue;
            auto const callback = found->second;
            (*callback)(args...);
        }
    }

    bool empty() const { return m_list->callbacks.empty(); }

private:
    struct List {
        std::uint64_t next = 0;
        std::map<std::uint64_t, std::shared_ptr<Callback>> callbacks;
    };
    std::shared_ptr<List> m_list = std::make_shared<List>();
};

} // namespace taliro
