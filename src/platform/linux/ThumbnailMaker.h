#pragma once

#include "platform/Thumbnailer.h"
#include "platform/linux/RendererClient.h"
#include "platform/linux/ThumbnailPrograms.h"
#include "platform/linux/ThumbnailStore.h"

#include <optional>
#include <stop_token>
#include <string>

namespace taliro {

class TypeCatalog;

/// How files of a type get their picture.
struct DrawingPlan {
    enum class Method { none, image, renderer };
    Method method = Method::none;
    RenderKind kind = RenderKind::drawing; ///< for the renderer
    std::string command;                   ///< for `RenderKind::program`
};

/// Finds or makes one thumbnail at a time, in whichever thread asks.
class ThumbnailMaker {
public:
    ThumbnailMaker(TypeCatalog& types, std::string storeFolder, std::vector<std::string> programFolders,
                   std::chrono::milliseconds timeLimit)
        : m_types(types),
          m_store(std::move(storeFolder)),
          m_programs(std::move(programFolders)),
          m_timeLimit(timeLimit) {}

    std::optional<Picture> make(ThumbnailRequest const& request, RendererClient& renderer,
                                std::stop_token stop);

private:
    DrawingPlan planFor(std::string const& mimeType);
    /// Nothing where the file can't be drawn, and a null image where that may be otherwise the next time.
    std::optional<QImage> draw(DrawingPlan const& plan, std::string const& path, int size,
                               RendererClient& renderer, std::stop_token stop);

    TypeCatalog& m_types;
    ThumbnailStore m_store;
    ThumbnailPrograms m_programs;
    std::chrono::milliseconds m_timeLimit;
};

/// Which kind of drawing the renderer makes of the type by itself.
std::optional<RenderKind> builtInKind(std::string const& mimeType);

} // namespace taliro
