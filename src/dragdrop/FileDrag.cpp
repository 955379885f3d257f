#include "dragdrop/FileDrag.h"

#include "browsing/DirectoryWatcher.h"
#include "dragdrop/InAppDropLatch.h"
#include "foundation/MainQueue.h"
#include "foundation/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace taliro {

std::vector<Url> draggedUrls(Url const& leading, std::vector<Url> chosen) {
    if (chosen.empty())
        return {leading};
    if (auto const found = std::ranges::find(chosen, leading); found != chosen.end())
        std::rotate(chosen.begin(), found, found + 1);
    return chosen;
}

void fileDragEnded(Url const& leading, DragEnd end, MainQueue& queue) {
    if (end == DragEnd::nothing)
        return;
    if (end == DragEnd::moved)
        NotificationCenter::standard().post(taliroFolderDidChange, leading.deletingLastPathComponent());
    queue.async([] {
        if (!std::exchange(InAppDropLatch::armed, false))
            NotificationCenter::standard().post(fileDragDidComplete);
    });
}

} // namespace taliro
