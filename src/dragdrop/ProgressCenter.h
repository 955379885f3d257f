#pragma once

#include "foundation/MainQueue.h"
#include "foundation/Published.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

/// What takes long: one card an operation, shown once it has run for half a second.
class ProgressCenter {
public:
    struct Card {
        std::uint64_t id = 0;
        std::string title = {};
        std::int64_t bytesDone = 0;
        std::optional<std::int64_t> bytesTotal = {};
        std::optional<double> bytesPerSecond = {}; ///< of the last few seconds
        bool isCancelled = false;                  ///< asked to stop, and about to

        /// From 0 to 1; nothing while the total is unknown.
        std::optional<double> fraction() const;
        std::optional<std::chrono::seconds> timeLeft() const;
        /// "1.2 GB of 4 GB · 310 MB/s · 9 seconds left", as far as known.
        std::string detail() const;
        bool operator==(Card const&) const = default;
    };

    /// A running operation; destroying it takes its card away. Main thread only.
    class Operation {
    public:
        ~Operation();
        Operation(Operation const&) = delete;
        Operation& operator=(Operation const&) = delete;

        void setTitle(std::string title);
        void update(std::int64_t bytesDone, std::optional<std::int64_t> bytesTotal);
        bool isCancelled() const { return m_card.isCancelled; }

    private:
        friend class ProgressCenter;
        struct Sample {
            std::chrono::milliseconds time;
            std::int64_t bytesDone;
        };

        Operation(ProgressCenter& center, std::string title, std::function<void()> onCancel);
        void measureRate();

        ProgressCenter& m_center;
        Card m_card;
        std::function<void()> m_onCancel;
        std::deque<Sample> m_samples;
        WorkItem m_showing;
        bool m_isShown = false;
    };

    explicit ProgressCenter(MainQueue& queue) : m_queue(queue) {}
    static ProgressCenter& shared();

    Published<std::vector<Card>> cards; ///< the oldest first

    /// `onCancel` is called once when the user cancels; who would rather look may ask `isCancelled`.
    [[nodiscard]] std::unique_ptr<Operation> begin(std::string title, std::function<void()> onCancel = {});
    void cancel(std::uint64_t id);

private:
    void publish();

    MainQueue& m_queue;
    std::uint64_t m_begun = 0;
    std::vector<Operation*> m_operations;
};

} // namespace taliro
