#pragma once

#include "foundation/MainQueue.h"
#include "foundation/Published.h"

#include <cstdint>
#include <optional>
#include <string>

namespace taliro {

/// The one short message on screen. A new one takes the old one's place at once; it goes after 2 s.
class ToastCenter {
public:
    struct Toast {
        std::uint64_t id = 0; ///< no two toasts have the same
        std::string icon;     ///< a symbol's name
        std::string message;
        bool operator==(Toast const&) const = default;
    };

    static constexpr char success[] = "checkmark.circle.fill";
    static constexpr char failure[] = "exclamationmark.triangle.fill";

    explicit ToastCenter(MainQueue& queue) : m_queue(queue) {}
    static ToastCenter& shared();

    Published<std::optional<Toast>> current;

    void show(std::string message, std::string icon);

private:
    MainQueue& m_queue;
    std::uint64_t m_shown = 0;
    WorkItem m_dismissWork;
};

} // namespace taliro
