#include "browsing/DirectoryWatcher.h"

#include "platform/Platform.h"

#include <algorithm>

namespace taliro {

using namespace std::chrono_literals;

namespace {

/// As many events as the kernel queues by default. Asking for an item costs hardly more than reading it with
/// all the others, so that a storm that only adds to a large folder is followed name by name.
constexpr std::size_t mostChanges = 16384;

bool isMissing(std::errc error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

} // namespace

DirectoryWatcher::DirectoryWatcher(Platform& platform)
    : DirectoryWatcher(platform.directoryEvents, platform.mainQueue) {}

DirectoryWatcher::DirectoryWatcher(DirectoryEvents& events, MainQueue& queue)
    : m_events(events), m_queue(queue) {
    m_manualRefresh =
        NotificationCenter::standard().observe(taliroFolderDidChange, [this](Notification const& change) {
            auto const* folder = std::any_cast<Url>(&change.object);
            if (folder && m_watchedURL && folder->standardized() == m_watchedURL->standardized())
                announced();
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
    attach();
    if (m_source)
        m_changesKnownSince = tick.get();
}

void DirectoryWatcher::stop() {
    m_source.reset();
    m_sourceAbove.reset();
    m_above.reset();
    m_watchedURL.reset();
    forgetChanges();
}

/// Listens to what is at the path now; whether that is another folder than before, or none.
bool DirectoryWatcher::attach() {
    std::optional<Url> before;
    do { // Until nothing on the way to the folder appeared meanwhile.
        before = m_above;
        attachAbove();
    } while (m_above != before);
    auto const identity = [this] { return m_source ? std::optional(m_source->identity()) : std::nullopt; };
    auto const known = identity();
    auto source = m_events.watch(*m_watchedURL, [this](auto const& changed) { folderChanged(changed); });
    m_source = source ? std::move(*source) : nullptr;
    return identity() != known;
}

/// A folder that some program stands in doesn't tell of its own removal; the one above it does.
void DirectoryWatcher::attachAbove() {
    for (auto below = *m_watchedURL; below.path() != "/";) {
        auto above = below.deletingLastPathComponent();
        auto source = m_events.watch(above, [this, name = below.lastPathComponent()](auto const& changed) {
            if (!changed || std::ranges::find(*changed, name) != changed->end())
                checkPlace();
        });
        if (source || !isMissing(source.error())) {
            m_above = std::move(above);
            m_sourceAbove = source ? std::move(*source) : nullptr;
            return;
        }
        below = std::move(above);
    }
}

void DirectoryWatcher::checkPlace() {
    if (!attach())
        return;
    forgetChanges();
    coalesceAndBump();
}

void DirectoryWatcher::folderChanged(DirectoryEvents::Changed const& changed) {
    if (!changed) // It is about the folder itself: another may be in its place by now.
        attach();
    note(changed);
    coalesceAndBump();
}

/// The system knows already what the application did.
void DirectoryWatcher::announced() {
    m_events.deliverPending();
    if (!isLive())
        forgetChanges();
    bump();
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
