#pragma once

#include "foundation/MainQueue.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Published.h"
#include "foundation/Url.h"
#include "platform/DirectoryEvents.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

struct Platform;

/// Posted with the `Url` of a folder whose contents the application changed.
inline constexpr char taliroFolderDidChange[] = "com.taliro.folderDidChange";

/// Watches one folder and counts its changes. A burst within 30 ms counts twice: at its start and when the 30
/// ms are over. Changes that the application announces by `taliroFolderDidChange` count at once, each. What
/// is watched is the path: where another folder takes its place, or none does for a while, that is a change.
class DirectoryWatcher {
public:
    DirectoryWatcher(DirectoryEvents& events, MainQueue& queue);
    explicit DirectoryWatcher(Platform& platform);
    static DirectoryWatcher& shared();

    Published<int> tick{0};

    /// Watches `url` instead of what was watched; nothing changes if it is watched already.
    void watch(Url const& url);
    void stop();
    std::optional<Url> const& watchedURL() const { return m_watchedURL; }
    /// Names of the folder's items that changed since `tick` was `since`; nothing where all may have.
    std::optional<std::vector<std::string>> changedSince(int since) const;
    /// Whether the system tells of changes to the folder; if not, only announced ones count.
    bool isLive() const { return m_source != nullptr; }

private:
    struct Change {
        int tick = 0; ///< what `tick` becomes when the change is told
        std::string name;
    };

    bool attach();
    void attachAbove();
    void folderChanged(DirectoryEvents::Changed const& changed);
    void checkPlace();
    void announced();
    void coalesceAndBump();
    void note(DirectoryEvents::Changed const& changed);
    void forgetChanges();
    void bump() { tick = tick.get() + 1; }

    DirectoryEvents& m_events;
    MainQueue& m_queue;
    std::optional<Url> m_watchedURL;
    std::unique_ptr<DirectoryEvents::Source>
        m_source;               ///< none where the folder isn't there or can't be watched
    std::optional<Url> m_above; ///< the nearest folder there is that leads to it
    std::unique_ptr<DirectoryEvents::Source> m_sourceAbove;
    WorkItem m_coalesceWindow;
    bool m_moreEventsDuringWindow = false;
    std::vector<Change> m_changes;
    int m_changesKnownSince = 0; ///< of what happened before this tick nothing is known
    Subscription m_manualRefresh;
};

} // namespace taliro
