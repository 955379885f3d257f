#pragma once

#include "foundation/MainQueue.h"

#include <memory>

namespace taliro {

/// The main queue on Qt's event loop.
class QtMainQueue : public MainQueue {
public:
    QtMainQueue();
    ~QtMainQueue() override;

    void async(std::function<void()> task) override;
    WorkItem after(std::chrono::milliseconds delay, std::function<void()> task) override;
    std::chrono::milliseconds now() const override;

private:
    class Receiver;
    std::unique_ptr<Receiver> m_receiver;
};

} // namespace taliro
