#pragma once

#include "foundation/Subscription.h"

#include <functional>
#include <utility>

namespace taliro {

/// An observable property. Observers hear the new value before it is assigned, on every assignment;
/// a new observer is not called for the value already there.
template <typename T>
class Published {
public:
    Published() = default;
    explicit Published(T value) : m_value(std::move(value)) {}
    Published(Published const&) = delete;
    Published& operator=(Published const&) = delete;

    T const& get() const { return m_value; }
    operator T const&() const { return m_value; }
    T const* operator->() const { return &m_value; }
    T const& operator*() const { return m_value; }

    Published& operator=(T value) {
        set(std::move(value));
        return *this;
    }
    void set(T value) {
        m_observers.notify(value);
        m_value = std::move(value);
    }

    /// Heard until the subscription is destroyed.
    [[nodiscard]] Subscription observe(std::function<void(T const&)> observer) {
        return m_observers.add(std::move(observer));
    }

private:
    T m_value{};
    Observers<T const&> m_observers;
};

} // namespace taliro
