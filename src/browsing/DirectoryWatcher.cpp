#include "browsing/DirectoryWatcher.h"

#include "platform/Platform.h"

#include <algorithm>

namespace taliro {

using namespace std::chrono_literals;

namespace {

/// Above this, reading the whole folder is quicker than asking for each item.
constexpr std::size_t mostChanges = 256;

} // namespace

DirectoryWatcher::DirectoryWatcher(Platform& platform)
    : m_events(platform.directoryEvents), m_queue(platform.mainQueue) {
    m_manualRefresh =
        NotificationCenter::standard().observe(taliroFolderDidChange, [this](Notification const& change) {
            auto const* folder = std::any_cast<Url>(&change.object);
            if (!folder || !m_watchedURL || folder->standardized() != m_watchedURL->standardized())
                return;
            forgetChanges();
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
    auto source = m_events.watch(url, [this](auto const& changed) {
        note(changed);
        coalesceAndBump();
    });
    if (!source)
        return;
    m_source = std::move(*source);
    m_changesKnownSince = tick.get();
}

void DirectoryWatcher::stop() {
    m_source.reset();
    m_watchedURL.reset();
    forgetChanges();
}

void DirectoryWatcher::note(DirectoryEvents::Changed const& changed) {
    if (!changed || changed->size() > mostChanges) {
        forgetChanges();
        return;
    }
    for (auto const& name : *changed)
        m_changes.push_back({tick.get() + 1, name});
    if (m_changes.size() > 2 * mostChanges) {
        m_changesKnownSince = m_changes[mostChanges].tick;
        std::erase_if(m_changes, [this](Change const& change) { return change.tick <= m_changesKnownSince; });
    }
}

/// What was listed up to now must be listed anew at the next tick.
void DirectoryWatcher::forgetChanges() {
    m_changes.clear();
    m_changesKnownSince = tick.get() + 1;
}

std::optional<std::vector<std::string>> DirectoryWatcher::changedSince(int since) const {
    if (since < m_changesKnownSince)
        return std::nullopt;
    std::vector<std::string> names;
    for (auto const& change : m_changes)
        if (change.tick > since)
            names.push_back(change.name);
    std::ranges::sort(names);
    auto const repeated = std::ranges::unique(names);
    names.erase(repeated.begin(), repeated.end());
    return names;
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
