#pragma once

#include "platform/PreviewService.h"
#include "platform/linux/WorkerPool.h"

#include <memory>

namespace taliro {

class MainQueue;
class TypeCatalog;

/// Previews: plain images, texts and folders are read in a thread of this process; drawings, documents, fonts
/// and archives by the renderer process; sounds and films are played by a player process.
class FilePreviews : public PreviewService {
public:
    /// The paths of the programs that draw and that play; empty where there is none.
    struct Programs {
        std::string renderer;
        std::string player;
    };
    FilePreviews(MainQueue& queue, TypeCatalog& types, Programs programs);

    PreviewKind previewKind(Url const& item, bool isDirectory) override;
    Subscription page(PageRequest request,
                      std::function<void(std::optional<PagePicture>)> completion) override;
    Subscription text(Url const& file, std::size_t limit,
                      std::function<void(std::optional<TextPreview>)> completion) override;
    Subscription summary(Url const& folderOrArchive,
                         std::function<void(ContentSummary const&)> update) override;
    std::unique_ptr<Playback> playback(Url const& file, int width, int height,
                                       PlaybackEvents events) override;

private:
    std::optional<PagePicture> makePage(PageRequest const& request, RendererClient& renderer,
                                        std::stop_token stop);

    MainQueue& m_queue;
    TypeCatalog& m_types;
    std::string m_player;
    std::shared_ptr<WorkerPool> m_pool; ///< last, for its threads use the others
};

} // namespace taliro
