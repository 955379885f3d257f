#pragma once

#include "platform/Thumbnailer.h"
#include "platform/linux/ThumbnailMaker.h"
#include "platform/linux/WorkerPool.h"

#include <chrono>
#include <memory>

namespace taliro {

class MainQueue;

/// Thumbnails from the desktop's shared store, else made: plain images in a thread of this process, all else
/// by the renderer process or, through it, by an installed thumbnailer. What was made, or failed, is kept in
/// the store.
class ThumbnailService : public Thumbnailer {
public:
    struct Options {
        std::string storeFolder; ///< usually `~/.cache/thumbnails`
        std::string renderer;    ///< the renderer program's path
        std::vector<std::string> programFolders = ThumbnailPrograms::standardFolders();
        int threads = 0;                           ///< 0: as many as the machine has processors, up to four
        std::size_t limit = 256;                   ///< requests that may wait
        std::chrono::milliseconds timeLimit{5000}; ///< for one picture
    };

    ThumbnailService(MainQueue& queue, TypeCatalog& types, Options options);

    Subscription request(ThumbnailRequest request,
                         std::function<void(std::optional<Picture>)> completion) override;

private:
    MainQueue& m_queue;
    ThumbnailMaker m_maker;
    std::shared_ptr<WorkerPool> m_pool; ///< last, for its threads use the others
};

} // namespace taliro
