#include "browsing/DirectoryWatcher.h"

#include "platform/Platform.h"

namespace taliro {

using namespace std::chrono_literals;

DirectoryWatcher::DirectoryWatcher(Platform& platform)
    : m_events(platform.directoryEvents), m_queue(platform.mainQueue) {
    m_manualRefresh =
        NotificationCenter::standard().observe(taliroFolderDidChange, [this](Notification const& change) {
            auto const* folder = std::any_cast<Url>(&change.object);
            if (folder && m_watchedURL && folder->standardized() == m_watchedURL->standardized())
                bump();
        });
}

DirectoryWatcher& DirectoryWatcher::shared() {
    // Never destroyed: its source belongs to a platform that goes first.
    static auto& watcher = *new DirectoryWatcher(Platform::current());
    return watcher;
}

void DirectoryWatcher::watch(Url const& url) {
    if (m_watchedURL == url)
        return;
    stop();
    m_watchedURL = url;
    if (auto source = m_events.watch(url, [this] { coalesceAndBump(); }))
        m_source = std::move(*source);
}

void DirectoryWatcher::stop() {
    m_source.reset();
    m_watchedURL.reset();
}

void DirectoryWatcher::coalesceAndBump() {
    if (m_coalesceWindow.isPending()) {
        m_moreEventsDuringWindow = true;
        return;
    }
    m_coalesceWindow = m_queue.after(30ms, [this] {
        if (std::exchange(m_moreEventsDuringWindow, false))
            bump();
    });
    bump();
}

} // namespace taliro
