#pragma once

#include "platform/DirectoryEvents.h"

#include <memory>

namespace taliro {

/// Folder events by inotify. One queue serves every watch; a folder watched twice is watched once by the
/// kernel.
class InotifyDirectoryEvents : public DirectoryEvents {
public:
    InotifyDirectoryEvents();
    ~InotifyDirectoryEvents() override;

    std::expected<std::unique_ptr<Source>, std::errc>
    watch(Url const& folder, std::function<void(Changed const&)> onEvent) override;
    void deliverPending() override;

private:
    class Queue;
    std::shared_ptr<Queue> m_queue; ///< none where the system has no more inotify instances
};

} // namespace taliro
